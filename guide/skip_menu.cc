#include "guide/guide_menus.hh"
#include "guide/guide_tables.hh"
#include "guide/menu.hh"
#include "support/text.hh"

namespace {

constexpr const char *skip_screen = R"(
    |
    |
    |
    |      ********        Skip Signal List        ********
    |
   N|<ROW>
    |      ================================================
    |
   E|<ENTRY>
    |             Enter Command :
)";

constexpr PROMPT signal_prompt = {13, "Enter Signal name : "};

/// Three names to a line.
std::vector<std::string> skip_signal_lines() {
    std::vector<std::string> lines;
    for (int32_t row = 0; row < DYNA_count(SKIP_SIGNAL_TAB); ++row) {
        const char *name = SKIP_SIGNAL_TAB[row]->name;
        if (row % 3 == 0)
            lines.push_back(format_text("%6s%15s", "", name));
        else
            lines.back() += format_text(",%15s", name);
    }
    return lines;
}

/// The row of that name, else the one that differs in case alone, else -1.
int32_t find_skip_signal(const char *name) {
    int32_t found = -1;
    for (int32_t row = DYNA_count(SKIP_SIGNAL_TAB) - 1; row >= 0; --row) {
        if (same_text(SKIP_SIGNAL_TAB[row]->name, name))
            return row;
        if (same_text_no_case(SKIP_SIGNAL_TAB[row]->name, name))
            found = row;
    }
    return found;
}

MENU_STEP add_skip_signal(MENU_PAGE &) {
    return ask_value(signal_prompt, [](const std::string &name) {
        if (find_skip_signal(name.c_str()) >= 0) {
            error_wait("%6sSignal '%s' is already in list.", "", name.c_str());
        } else {
            SKIP_SIGNAL *added = new_record<SKIP_SIGNAL>();
            added->name = keep_text(name);
            append_row(SKIP_SIGNAL_TAB, added);
        }
        return MENU_STAY;
    });
}

MENU_STEP delete_skip_signal(MENU_PAGE &) {
    return ask_value(signal_prompt, [](const std::string &name) {
        int32_t row = find_skip_signal(name.c_str());
        if (row < 0)
            error_wait("%6sSignal '%s' is not in list.", "", name.c_str());
        else
            DYNA_delete(&SKIP_SIGNAL_TAB, row);
        return MENU_STAY;
    });
}

constexpr MENU_ENTRY skip_entries[] = {
    {"Add a new skip signal", nullptr, add_skip_signal},
    {"Delete a skip signal from list", nullptr, delete_skip_signal},
    {"return to Main Menu", nullptr, leave_menu},
};

} // namespace

constexpr GUIDE_MENU Skip_Signal_menu = {
    .screen = skip_screen, .indent = 7, .entries = skip_entries, .listed = skip_signal_lines};
