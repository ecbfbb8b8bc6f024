#include "guide/guide_menus.hh"
#include "guide/pages.hh"

namespace {

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
    {"specify Input Scan Cell name", global_text<&INPUT_SCAN>},
    {"specify Output Scan Cell name", global_text<&OUTPUT_SCAN>},
    {"specify Control Scan Cell name", global_text<&CONTROL_SCAN>},
    {"specify Bidirectional Scan Cell name", global_text<&BIDIR_SCAN>},
    {"specify Clock Scan Cell name", global_text<&CLOCK_SCAN>},
    {"return to previous menu", nullptr, leave_menu},
};

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
    {"specify module name", cell_text<&SCAN_CELL::name>},
    {"specify the bidirectional pin", cell_text<&SCAN_CELL::sys_pin>},
    {"specify pin name of data in", cell_text<&SCAN_CELL::data_in>},
    {"specify pin name of data out", cell_text<&SCAN_CELL::data_out>},
    {"specify pin name of tdi", cell_text<&SCAN_CELL::tdi>},
    {"specify pin name of tdo", cell_text<&SCAN_CELL::tdo>},
    {"specify pin name of shift_dr", cell_text<&SCAN_CELL::shift_dr>},
    {"specify pin name of clock_dr", cell_text<&SCAN_CELL::clock_dr>},
    {"specify pin name of update_dr", cell_text<&SCAN_CELL::update_dr>},
    {"specify pin name of mode_1", cell_text<&SCAN_CELL::mode_1>},
    {"specify pin name of mode_2", cell_text<&SCAN_CELL::mode_2>},
    {"specify pin name of mode_3", cell_text<&SCAN_CELL::mode_3>},
    {"specify pin name of reset", cell_text<&SCAN_CELL::rst>},
    {"go to next page", nullptr, next_page<&SCAN_CELL_TAB>},
    {"add a new page", nullptr, add_page<&SCAN_CELL_TAB>},
    {"return to previous Menu", nullptr, leave_pages<&SCAN_CELL_TAB>},
};

constexpr GUIDE_MENU BD_name_menu = {.screen = role_screen,
                                     .indent = 5,
                                     .value_column = 50,
                                     .dots = "..... ",
                                     .data_prompt = {11, "Enter Data : "},
                                     .entries = role_entries};

constexpr GUIDE_MENU BD_module_menu = {.screen = module_screen,
                                       .indent = 10,
                                       .value_column = 47,
                                       .dots = "......... ",
                                       .data_prompt = {16, "Enter Data : "},
                                       .entries = module_entries};

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

/// True for a pattern of 32 such characters; says what is wrong otherwise and waits.
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

MENU_STEP ask_idcode(MENU_PAGE &) {
    ANSWER answer = ask({11, "Enter IDCODE REGISTER : "});
    if (!answer)
        return MENU_LEAVE;
    if (answer->empty() || check_idcode_reg(*answer))
        IDCODE_REG = field_text(*answer);
    return MENU_STAY;
}

MENU_STEP ask_usercode(MENU_PAGE &) {
    return ask_list(USERCODE_REG, {11, "Enter USERCODE REGISTER : "}, check_idcode_reg);
}

constexpr MENU_ENTRY register_entries[] = {
    {"specify Scan Cell name in bsc file", nullptr, open_menu<BD_name_menu>},
    {"edit  Scan Cell module in lib file", nullptr, open_menu<BD_module_menu>},
    {.entry = "edit IDCODE register code", .text = global_text<&IDCODE_REG>, .action = ask_idcode},
    {.entry = "edit USERCODE register code", .action = ask_usercode, .values = list_values<&USERCODE_REG>},
    {"return to Main Menu", nullptr, leave_menu},
};

} // namespace

constexpr GUIDE_MENU test_reg_menu = {
    .screen = register_screen, .indent = 0, .value_column = 34, .dots = "... ", .entries = register_entries};
