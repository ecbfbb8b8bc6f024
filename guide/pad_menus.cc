#include "guide/guide_menus.hh"
#include "guide/pages.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

/// %FUNCTION of the kinds, in the order of the pad menu.
constexpr const char *pad_functions[] = {"in", "out", "inout", "buf", "inv"};

constexpr const char *pad_page_screen = R"(
    |
    |
    |
   1|           *******       Input_only PAD Menu <PAGE>       *******
   2|           *******     3_state output PAD Menu <PAGE>     *******
   3|           *******      Bidirectional PAD Menu <PAGE>     *******
   4|           **  2_state output and internal buffer Menu <PAGE>  **
   5|           ****     Internal inverting buffer Menu <PAGE>    ****
    |
   E|<ENTRY>
    |           ==================================================
    |
    |                Enter Command :
)";

bool is_of_kind(int32_t row, int32_t kind) {
    return same_text_no_case(BUFFER_TAB[row]->function, pad_functions[kind - 1]);
}

/// The first row of the kind at or behind `row`, or -1.
int32_t find_kind(int32_t row, int32_t kind) {
    while (row < DYNA_count(BUFFER_TAB) && !is_of_kind(row, kind))
        ++row;
    return row < DYNA_count(BUFFER_TAB) ? row : -1;
}

/// A kind without a row is edited on the blank row, the last one.
void show_first(MENU_PAGE &page) {
    int32_t first = find_kind(0, page.kind);
    page.row = first >= 0 ? first : DYNA_count(BUFFER_TAB) - 1;
    page.number = 1;
}

MENU_STEP next_item(MENU_PAGE &page) {
    int32_t next = find_kind(page.row + 1, page.kind);
    if (next < 0) {
        show_first(page);
        return MENU_STAY;
    }
    page.row = next;
    ++page.number;
    return MENU_STAY;
}

MENU_STEP add_item(MENU_PAGE &page) {
    BUFFER_CELL *added = new_record<BUFFER_CELL>();
    added->function = pad_functions[page.kind - 1];
    append_row(BUFFER_TAB, added);
    page.row = DYNA_count(BUFFER_TAB) - 1;
    page.number = 0;
    for (int32_t row = 0; row <= page.row; ++row)
        page.number += is_of_kind(row, page.kind) ? 1 : 0;
    return MENU_STAY;
}

/// A name makes a row of the kind out of the blank row.
MENU_STEP ask_pad_name(MENU_PAGE &page) {
    ANSWER answer = ask({16, "Enter buffer name : "});
    if (!answer)
        return MENU_LEAVE;
    BUFFER_CELL *pad = BUFFER_TAB[page.row];
    pad->name = field_text(*answer);
    if (pad->name != nullptr)
        pad->function = pad_functions[page.kind - 1];
    return MENU_STAY;
}

/// Rows without a name go, but row 0 stays when it was given a function. The new blank row is the only one.
MENU_STEP leave_items(MENU_PAGE &) {
    for (int32_t row = DYNA_count(BUFFER_TAB) - 1; row >= 0; --row)
        if (BUFFER_TAB[row]->name == nullptr && (row > 0 || is_blank_pad(BUFFER_TAB[row])))
            DYNA_delete(&BUFFER_TAB, row);
    append_blank_pad();
    return MENU_LEAVE;
}

bool has_enable(int kind) {
    return kind == 2 || kind == 3;
}

bool is_bidirectional(int kind) {
    return kind == 3;
}

template <auto FIELD> constexpr MENU_TEXT pad_text = row_text<&BUFFER_TAB, FIELD>;

constexpr MENU_ENTRY pad_page_entries[] = {
    {"return to previous Menu", nullptr, leave_items},
    {"go to next item", nullptr, next_item},
    {"add a new item", nullptr, add_item},
    {.entry = "specify buffer name", .text = pad_text<&BUFFER_CELL::name>, .action = ask_pad_name},
    {"specify pin name of data in", pad_text<&BUFFER_CELL::input>},
    {"specify pin name of data out", pad_text<&BUFFER_CELL::output>},
    {.entry = "specify pin name of low active", .text = pad_text<&BUFFER_CELL::en_l>, .shown = has_enable},
    {.entry = "specify pin name of high active", .text = pad_text<&BUFFER_CELL::en_h>, .shown = has_enable},
    {.entry = "specify pin name of bidirection",
     .text = pad_text<&BUFFER_CELL::inout>,
     .shown = is_bidirectional},
};

constexpr GUIDE_MENU pad_page_menu = {.screen = pad_page_screen,
                                      .indent = 10,
                                      .value_column = 49,
                                      .dots = "..... ",
                                      .data_prompt = {16, "Enter Data : "},
                                      .entries = pad_page_entries};

template <int KIND> MENU_STEP edit_PAD(MENU_PAGE &) {
    MENU_PAGE page{.kind = KIND};
    show_first(page);
    work_menu(pad_page_menu, page);
    // An end of input leaves the rows as they are, but the row for the next kind has to be there.
    if (!is_blank_pad(BUFFER_TAB[DYNA_count(BUFFER_TAB) - 1]))
        append_blank_pad();
    return MENU_STAY;
}

constexpr const char *pad_screen = R"(
    |
    |
    |
    |                ****    PAD and internal buffer Menu   ****
    |
   E|<ENTRY>
    |                ===========================================
    |
    |                Enter Command :
)";

constexpr MENU_ENTRY pad_entries[] = {
    {"edit Input-only PAD", nullptr, edit_PAD<1>},
    {"edit 3-state output PAD", nullptr, edit_PAD<2>},
    {"edit Bidirectional PAD", nullptr, edit_PAD<3>},
    {"edit 2-state output or Internal buffer", nullptr, edit_PAD<4>},
    {"edit Internal inverting buffer", nullptr, edit_PAD<5>},
    {"return to Main Menu", nullptr, leave_menu},
};

} // namespace

constexpr GUIDE_MENU PAD_menu = {.screen = pad_screen, .indent = 15, .entries = pad_entries};
