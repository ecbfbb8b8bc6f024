#include "guide/guide_menus.hh"
#include "guide/pages.hh"

namespace {

constexpr const char *register_screen = R"(
    |
    |
    |
    | *****   Test Date Registers Menu   *****
    |
   E|<ENTRY>
    | ========================================
    |
    |      Enter Command :
)";

MENU_STEP ask_idcode(MENU_PAGE &) {
    ANSWER answer = ask({11, "Enter IDCODE REGISTER : "});
    if (!answer)
        return MENU_LEAVE;
    if (answer->empty() || check_idcode_reg(*answer))
        IDCODE_REG = field_text(*answer);
    return MENU_STAY;
}

/// An answer adds to the list, an empty one empties it.
MENU_STEP ask_usercode(MENU_PAGE &) {
    ANSWER answer = ask({11, "Enter USERCODE REGISTER : "});
    if (!answer)
        return MENU_LEAVE;
    if (answer->empty())
        empty_list(USERCODE_REG);
    else
        append_tokens(USERCODE_REG, *answer, check_idcode_reg);
    return MENU_STAY;
}

constexpr MENU_ENTRY register_entries[] = {
    {.command = "1", .entry = " (1)  specify Scan Cell name in bsc file", .action = open_menu<BD_name_menu>},
    {.command = "2",
     .entry = " (2)  edit  Scan Cell module in lib file",
     .action = open_menu<BD_module_menu>},
    {.command = "3",
     .entry = " (3)  edit IDCODE register code",
     .text = global_text<&IDCODE_REG>,
     .action = ask_idcode},
    {.command = "4",
     .entry = " (4)  edit USERCODE register code",
     .action = ask_usercode,
     .values = list_values<&USERCODE_REG>},
    {.command = "5", .entry = " (5)  return to Main Menu", .action = leave_menu},
};

constexpr GUIDE_MENU register_menu = {.screen = register_screen,
                                      .indent = 0,
                                      .value_column = 34,
                                      .dots = "... ",
                                      .data_prompt = {},
                                      .entries = register_entries};

constexpr const char *role_screen = R"(
    |
    |
    |
    |      *****   Boundary Scan Cell  Menu   *****
    |
   E|<ENTRY>
    |      ========================================
    |
    |           Enter Command :
)";

constexpr MENU_ENTRY role_entries[] = {
    {.command = "1", .entry = " (1)  specify Input Scan Cell name", .text = global_text<&INPUT_SCAN>},
    {.command = "2", .entry = " (2)  specify Output Scan Cell name", .text = global_text<&OUTPUT_SCAN>},
    {.command = "3", .entry = " (3)  specify Control Scan Cell name", .text = global_text<&CONTROL_SCAN>},
    {.command = "4", .entry = " (4)  specify Bidirectional Scan Cell name", .text = global_text<&BIDIR_SCAN>},
    {.command = "5", .entry = " (5)  specify Clock Scan Cell name", .text = global_text<&CLOCK_SCAN>},
    {.command = "6", .entry = " (6)  return to previous menu", .action = leave_menu},
};

constexpr GUIDE_MENU role_menu = {.screen = role_screen,
                                  .indent = 5,
                                  .value_column = 50,
                                  .dots = "..... ",
                                  .data_prompt = {11, "Enter Data : "},
                                  .entries = role_entries};

constexpr const char *module_screen = R"(
    |
    |
    |
    |           *****   Boundary Scan Cell Menu <PAGE>  *****
    |
   E|<ENTRY>
    |           ============================================
    |
    |                Enter Command :
)";

template <auto FIELD> constexpr MENU_TEXT cell_text = row_text<&SCAN_CELL_TAB, FIELD>;

constexpr MENU_ENTRY module_entries[] = {
    {.command = "1", .entry = " (1)  specify module name", .text = cell_text<&SCAN_CELL::name>},
    {.command = "2", .entry = " (2)  specify the bidirectional pin", .text = cell_text<&SCAN_CELL::sys_pin>},
    {.command = "3", .entry = " (3)  specify pin name of data in", .text = cell_text<&SCAN_CELL::data_in>},
    {.command = "4", .entry = " (4)  specify pin name of data out", .text = cell_text<&SCAN_CELL::data_out>},
    {.command = "5", .entry = " (5)  specify pin name of tdi", .text = cell_text<&SCAN_CELL::tdi>},
    {.command = "6", .entry = " (6)  specify pin name of tdo", .text = cell_text<&SCAN_CELL::tdo>},
    {.command = "7", .entry = " (7)  specify pin name of shift_dr", .text = cell_text<&SCAN_CELL::shift_dr>},
    {.command = "8", .entry = " (8)  specify pin name of clock_dr", .text = cell_text<&SCAN_CELL::clock_dr>},
    {.command = "9",
     .entry = " (9)  specify pin name of update_dr",
     .text = cell_text<&SCAN_CELL::update_dr>},
    {.command = "10", .entry = "(10)  specify pin name of mode_1", .text = cell_text<&SCAN_CELL::mode_1>},
    {.command = "11", .entry = "(11)  specify pin name of mode_2", .text = cell_text<&SCAN_CELL::mode_2>},
    {.command = "12", .entry = "(12)  specify pin name of mode_3", .text = cell_text<&SCAN_CELL::mode_3>},
    {.command = "13", .entry = "(13)  specify pin name of reset", .text = cell_text<&SCAN_CELL::rst>},
    {.command = "14", .entry = "(14)  go to next page", .action = next_page<&SCAN_CELL_TAB>},
    {.command = "15", .entry = "(15)  add a new page", .action = add_page<&SCAN_CELL_TAB>},
    {.command = "16", .entry = "(16)  return to previous Menu", .action = leave_pages<&SCAN_CELL_TAB>},
};

constexpr GUIDE_MENU module_menu = {.screen = module_screen,
                                    .indent = 10,
                                    .value_column = 47,
                                    .dots = "......... ",
                                    .data_prompt = {16, "Enter Data : "},
                                    .entries = module_entries};

} // namespace

bool check_idcode_reg(const std::string &text) {
    size_t bad = text.find_first_not_of("01xX");
    if (bad != std::string::npos) {
        error_wait("%11sInvalid bit value '%c' in \"%s\"\n", "", text[bad], text.c_str());
        return false;
    }
    if (text.size() != 32) {
        error_wait("%11sThe length of data must be 32.\n", "");
        return false;
    }
    return true;
}

void test_reg_menu() {
    MENU_PAGE page;
    work_menu(register_menu, page);
}

void BD_name_menu() {
    MENU_PAGE page;
    work_menu(role_menu, page);
}

void BD_module_menu() {
    MENU_PAGE page;
    work_menu(module_menu, page);
}
