#include "guide/menu.hh"

#include "support/dyna.hh"
#include "support/text.hh"

namespace {

std::vector<std::string> entry_values(const MENU_ENTRY &entry, const MENU_PAGE &page) {
    if (entry.values != nullptr)
        return entry.values(page);
    const char *text = entry.text == nullptr ? nullptr : entry.text(page);
    if (text == nullptr)
        return {};
    return {text};
}

std::string command_of(const GUIDE_MENU &menu, const MENU_ENTRY &entry) {
    return std::to_string(&entry - menu.entries.data() + 1);
}

/// The entry behind its number, with its values in the menu's value column.
std::string entry_text(const GUIDE_MENU &menu, const MENU_ENTRY &entry, const MENU_PAGE &page) {
    std::string number = "(" + command_of(menu, entry) + ")";
    std::string text = format_text("%*s%*s%s", menu.indent + 4, number.c_str(), menu.gap, "", entry.entry);
    size_t line_start = text.rfind('\n') + 1;
    int column = static_cast<int>(text.size() - line_start);
    for (const std::string &value : entry_values(entry, page)) {
        if (column < 0)
            text += '\n';
        int gap = menu.value_column - (column < 0 ? 0 : column);
        text += format_text("%*s%s%s", gap, "", menu.dots, value.c_str());
        column = -1;
    }
    return text;
}

void print_menu(const GUIDE_MENU &menu, const MENU_PAGE &page) {
    TEMPLATE_VALUES values;
    values.letters = std::to_string(page.kind);
    values.names["PAGE"] = std::to_string(page.number);
    auto &entries = values.lists['E'];
    for (const MENU_ENTRY &entry : menu.entries)
        if (entry.shown == nullptr || entry.shown(page.kind))
            entries.push_back({{"ENTRY", entry_text(menu, entry, page)}});
    auto &listed = values.lists['N'];
    if (menu.listed != nullptr)
        for (std::string &row : menu.listed())
            listed.push_back({{"ROW", std::move(row)}});
    print_screen(menu.screen, values);
}

const MENU_ENTRY *find_entry(const GUIDE_MENU &menu, const std::string &command) {
    for (const MENU_ENTRY &entry : menu.entries)
        if (command == command_of(menu, entry))
            return &entry;
    return nullptr;
}

MENU_STEP ask_text(const GUIDE_MENU &menu, const MENU_ENTRY &entry, const MENU_PAGE &page) {
    PROMPT prompt = menu.data_prompt;
    if (entry.prompt != nullptr)
        prompt.text = entry.prompt;
    ANSWER answer = ask(prompt);
    if (!answer)
        return MENU_LEAVE;
    entry.text(page) = field_text(*answer);
    return MENU_STAY;
}

} // namespace

MENU_END work_menu(const GUIDE_MENU &menu, MENU_PAGE &page) {
    for (;;) {
        print_menu(menu, page);
        ANSWER command = read_answer();
        if (!command)
            return MENU_END_OF_INPUT;
        const MENU_ENTRY *entry = find_entry(menu, *command);
        if (entry == nullptr)
            continue;
        MENU_STEP step = entry->action != nullptr ? entry->action(page) : ask_text(menu, *entry, page);
        if (step == MENU_LEAVE)
            return MENU_LEFT;
    }
}

MENU_STEP ask_list(const char **&list, const PROMPT &prompt, bool (*accept)(const std::string &token)) {
    ANSWER answer = ask(prompt);
    if (!answer)
        return MENU_LEAVE;
    if (answer->empty())
        empty_list(list);
    else
        append_tokens(list, *answer, accept);
    return MENU_STAY;
}

MENU_STEP ask_number(int32_t &number, const PROMPT &prompt, const char *subject) {
    return ask_value(prompt, [&](const std::string &answer) {
        if (auto value = to_integer(answer))
            number = *value;
        else
            error_wait("%*s%s must be an integer", prompt.indent, "", subject);
        return MENU_STAY;
    });
}

MENU_STEP leave_menu(MENU_PAGE &) {
    return MENU_LEAVE;
}
