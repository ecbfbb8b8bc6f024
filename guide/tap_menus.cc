#include "guide/guide_menus.hh"
#include "guide/pages.hh"

namespace {

constexpr const char *tap_screen = R"(
    |
    |
    |
    |      *******    TAP Controller Menu    *******
    |
   E|<ENTRY>
    |      =========================================
    |
    |          Enter Command :
)";

constexpr MENU_ENTRY tap_entries[] = {
    {.command = "1", .entry = " (1) edit TAP module in lib file", .action = open_menu<TAP_lib_menu1>},
    {.command = "2",
     .entry = " (2) specify TAP module name in bsc file",
     .text = global_text<&TAP_MODULE_NAME>,
     .prompt = "Enter module name : "},
    {.command = "3",
     .entry = " (3) specify TAP instance name in bsc file",
     .text = global_text<&TAP_INSTANCE_NAME>,
     .prompt = "Enter instance name : "},
    {.command = "4", .entry = " (4) return to Main Menu", .action = leave_menu},
};

constexpr GUIDE_MENU tap_menu = {.screen = tap_screen,
                                 .indent = 5,
                                 .value_column = 50,
                                 .dots = "..... ",
                                 .data_prompt = {10, ""},
                                 .entries = tap_entries};

constexpr const char *tap_lib_screen = R"(
    |
    |
    |
    | ***************    TAP Controller Module Menu <PAGE>   **************
    |
   E|<ENTRY>
    | ================================================================
    |
    |     Enter Command :
)";

/// A size of 0 or less was not given; a file that gives none leaves -1.
std::vector<std::string> group_size_values(const MENU_PAGE &page) {
    int32_t size = TAP_CELL_TAB[page.row]->group_size;
    if (size == 0)
        return {};
    return {std::to_string(size)};
}

MENU_STEP ask_group_size(MENU_PAGE &page) {
    ANSWER answer = ask({5, "Enter group size : "});
    if (!answer)
        return MENU_LEAVE;
    if (answer->empty())
        return MENU_STAY;
    if (auto size = to_integer(*answer))
        TAP_CELL_TAB[page.row]->group_size = *size;
    else
        error_wait("%5sgroup size must be an integer", "");
    return MENU_STAY;
}

template <auto FIELD> constexpr MENU_TEXT tap_text = row_text<&TAP_CELL_TAB, FIELD>;

constexpr MENU_ENTRY tap_lib_entries[] = {
    {.command = "1", .entry = " (1) specify TAP module name", .text = tap_text<&TAP_CELL::name>},
    {.command = "2",
     .entry = " (2) specify output pin connected to\n     the first boundary scan cell",
     .text = tap_text<&TAP_CELL::first_bcell>},
    {.command = "3",
     .entry = " (3) specify input pin connected to\n     the last boundary scan cell",
     .text = tap_text<&TAP_CELL::last_bcell>},
    {.command = "4", .entry = " (4) specify the signal for SHIFT_DR", .text = tap_text<&TAP_CELL::shift_dr>},
    {.command = "5", .entry = " (5) specify the signal for CLOCK_DR", .text = tap_text<&TAP_CELL::clock_dr>},
    {.command = "6",
     .entry = " (6) specify the signal for UPDATE_DR",
     .text = tap_text<&TAP_CELL::update_dr>},
    {.command = "7", .entry = " (7) specify the signal for MODE_1", .text = tap_text<&TAP_CELL::mode_1>},
    {.command = "8", .entry = " (8) specify the signal for MODE_2", .text = tap_text<&TAP_CELL::mode_2>},
    {.command = "9", .entry = " (9) specify the signal for MODE_3", .text = tap_text<&TAP_CELL::mode_3>},
    {.command = "10", .entry = "(10) specify the signal for RESET", .text = tap_text<&TAP_CELL::tap_reset>},
    {.command = "11",
     .entry = "(11) specify the signal for HIHGZ command",
     .text = tap_text<&TAP_CELL::highz_command>},
    {.command = "12",
     .entry = "(12) specify buffer type used for bus balancing",
     .text = tap_text<&TAP_CELL::signal_buffer>},
    {.command = "13",
     .entry = "(13) specify inverter type used for bus balancing",
     .text = tap_text<&TAP_CELL::inv_buffer>},
    {.command = "14",
     .entry = "(14) specify group size for bus balancing",
     .action = ask_group_size,
     .values = group_size_values},
    {.command = "15", .entry = "(15) specify the signal for TDI", .text = tap_text<&TAP_CELL::tdi>},
    {.command = "16", .entry = "(16) specify the signal for TDO", .text = tap_text<&TAP_CELL::tdo>},
    {.command = "17", .entry = "(17) specify the signal for TMS", .text = tap_text<&TAP_CELL::tms>},
    {.command = "18", .entry = "(18) specify the signal for TCK", .text = tap_text<&TAP_CELL::tck>},
    {.command = "19", .entry = "(19) specify the signal for TRST", .text = tap_text<&TAP_CELL::trst>},
    {.command = "20", .entry = "(20) go to next page", .action = next_page<&TAP_CELL_TAB>},
    {.command = "21", .entry = "(21) add a new page", .action = add_page<&TAP_CELL_TAB>},
    {.command = "22", .entry = "(22) return to previous menu", .action = leave_pages<&TAP_CELL_TAB>},
};

constexpr GUIDE_MENU tap_lib_menu = {.screen = tap_lib_screen,
                                     .indent = 0,
                                     .value_column = 51,
                                     .dots = "..... ",
                                     .data_prompt = {5, "Enter Data : "},
                                     .entries = tap_lib_entries};

} // namespace

void TAP_menu() {
    MENU_PAGE page;
    work_menu(tap_menu, page);
}

void TAP_lib_menu1() {
    MENU_PAGE page;
    work_menu(tap_lib_menu, page);
}
