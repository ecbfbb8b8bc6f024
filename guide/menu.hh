// A menu is a table: one row per command, with the entry that the screen shows, the field behind it, or what
// the command does. One loop shows and works every menu.
#pragma once

#include "guide/dialog.hh"
#include "support/dyna.hh"

#include <span>
#include <vector>

/// What a menu works on: the row of its table, the page number in its title, and the kind of pad.
struct MENU_PAGE {
    int32_t row = 0;
    int32_t number = 1;
    int32_t kind = 0; ///< row of pad_kinds plus one; 0 in the other menus
};

enum MENU_STEP { MENU_STAY, MENU_LEAVE };

/// A text that the menu shows and asks for.
using MENU_TEXT = const char *&(*)(const MENU_PAGE &page);

/// Values shown one below the other; none leaves the entry alone.
using MENU_VALUES = std::vector<std::string> (*)(const MENU_PAGE &page);

using MENU_ACTION = MENU_STEP (*)(MENU_PAGE &page);

/// An entry is chosen by its number, which is its place in the menu.
struct MENU_ENTRY {
    const char *entry;                 ///< as shown, behind its number
    MENU_TEXT text = nullptr;          ///< field behind the entry
    MENU_ACTION action = nullptr;      ///< what is done; without it the field is asked for
    MENU_VALUES values = nullptr;      ///< shown in place of the field
    const char *prompt = nullptr;      ///< in place of the text of the menu's field prompt
    bool (*shown)(int kind) = nullptr; ///< null shows the entry always; a hidden command works all the same
};

/// The screen is a template of support/template_text.hh in which list E is the entries (<ENTRY>), list N the
/// rows of `listed` (<ROW>), <PAGE> the page number, and a digit the kind.
struct GUIDE_MENU {
    const char *screen;
    int indent;              ///< of the entries
    int gap = 2;             ///< between an entry's number and its text
    int value_column = 0;    ///< where values stand, the indent included
    const char *dots = "";   ///< lead of a value
    PROMPT data_prompt = {}; ///< of the fields
    std::span<const MENU_ENTRY> entries;
    std::vector<std::string> (*listed)() = nullptr; ///< rows of list N
};

enum MENU_END { MENU_LEFT, MENU_END_OF_INPUT };

/// Shows the menu and works its commands until one leaves it or the input ends. A field prompt at which the
/// input ends leaves the field as it was, and the menu.
MENU_END work_menu(const GUIDE_MENU &menu, MENU_PAGE &page);

/// Asks for a list: an answer adds the tokens that `accept` takes, an empty one empties the list.
MENU_STEP ask_list(const char **&list, const PROMPT &prompt, bool (*accept)(const std::string &token));

/// Asks for a value and gives `take(value)`. An empty answer changes nothing; the end of the input leaves.
template <class TAKE> MENU_STEP ask_value(const PROMPT &prompt, const TAKE &take) {
    ANSWER answer = ask(prompt);
    if (!answer)
        return MENU_LEAVE;
    return answer->empty() ? MENU_STAY : take(*answer);
}

/// Asks for a number; an empty answer leaves it, and of one that is none `subject` is said that it must be.
MENU_STEP ask_number(int32_t &number, const PROMPT &prompt, const char *subject);

/// The action of a command that only returns.
MENU_STEP leave_menu(MENU_PAGE &page);

/// The action of a command that opens another menu.
template <const GUIDE_MENU &MENU> MENU_STEP open_menu(MENU_PAGE &) {
    MENU_PAGE page;
    work_menu(MENU, page);
    return MENU_STAY;
}

/// A single global as the field of an entry.
template <const char **TEXT> const char *&global_text(const MENU_PAGE &) {
    return *TEXT;
}

/// A list of texts as the values of an entry.
template <const char ***LIST> std::vector<std::string> list_values(const MENU_PAGE &) {
    std::vector<std::string> values;
    for (const char *text : rows(*LIST))
        values.emplace_back(text);
    return values;
}
