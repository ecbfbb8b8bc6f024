#include "guide/guide_menus.hh"
#include "guide/pages.hh"

namespace {

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
    return ask_number(TAP_CELL_TAB[page.row]->group_size, {5, "Enter group size : "}, "group size");
}

template <auto FIELD> constexpr MENU_TEXT tap_text = row_text<&TAP_CELL_TAB, FIELD>;

constexpr MENU_ENTRY tap_lib_entries[] = {
    {"specify TAP module name", tap_text<&TAP_CELL::name>},
    {"specify output pin connected to\n     the first boundary scan cell", tap_text<&TAP_CELL::first_bcell>},
    {"specify input pin connected to\n     the last boundary scan cell", tap_text<&TAP_CELL::last_bcell>},
    {"specify the signal for SHIFT_DR", tap_text<&TAP_CELL::shift_dr>},
    {"specify the signal for CLOCK_DR", tap_text<&TAP_CELL::clock_dr>},
    {"specify the signal for UPDATE_DR", tap_text<&TAP_CELL::update_dr>},
    {"specify the signal for MODE_1", tap_text<&TAP_CELL::mode_1>},
    {"specify the signal for MODE_2", tap_text<&TAP_CELL::mode_2>},
    {"specify the signal for MODE_3", tap_text<&TAP_CELL::mode_3>},
    {"specify the signal for RESET", tap_text<&TAP_CELL::tap_reset>},
    {"specify the signal for HIHGZ command", tap_text<&TAP_CELL::highz_command>},
    {"specify buffer type used for bus balancing", tap_text<&TAP_CELL::signal_buffer>},
    {"specify inverter type used for bus balancing", tap_text<&TAP_CELL::inv_buffer>},
    {.entry = "specify group size for bus balancing", .action = ask_group_size, .values = group_size_values},
    {"specify the signal for TDI", tap_text<&TAP_CELL::tdi>},
    {"specify the signal for TDO", tap_text<&TAP_CELL::tdo>},
    {"specify the signal for TMS", tap_text<&TAP_CELL::tms>},
    {"specify the signal for TCK", tap_text<&TAP_CELL::tck>},
    {"specify the signal for TRST", tap_text<&TAP_CELL::trst>},
    {"go to next page", nullptr, next_page<&TAP_CELL_TAB>},
    {"add a new page", nullptr, add_page<&TAP_CELL_TAB>},
    {"return to previous menu", nullptr, leave_pages<&TAP_CELL_TAB>},
};

constexpr GUIDE_MENU TAP_lib_menu1 = {.screen = tap_lib_screen,
                                      .indent = 0,
                                      .gap = 1,
                                      .value_column = 51,
                                      .dots = "..... ",
                                      .data_prompt = {5, "Enter Data : "},
                                      .entries = tap_lib_entries};

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
    {"edit TAP module in lib file", nullptr, open_menu<TAP_lib_menu1>},
    {.entry = "specify TAP module name in bsc file",
     .text = global_text<&TAP_MODULE_NAME>,
     .prompt = "Enter module name : "},
    {.entry = "specify TAP instance name in bsc file",
     .text = global_text<&TAP_INSTANCE_NAME>,
     .prompt = "Enter instance name : "},
    {"return to Main Menu", nullptr, leave_menu},
};

} // namespace

constexpr GUIDE_MENU TAP_menu = {.screen = tap_screen,
                                 .indent = 5,
                                 .gap = 1,
                                 .value_column = 50,
                                 .dots = "..... ",
                                 .data_prompt = {10, ""},
                                 .entries = tap_entries};
