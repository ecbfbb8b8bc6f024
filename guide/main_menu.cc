#include "description/reader.hh"
#include "description/tables.hh"
#include "guide/earlier_file.hh"
#include "guide/guide.hh"
#include "guide/guide_menus.hh"
#include "guide/guide_tables.hh"
#include "guide/menu.hh"
#include "guide/save.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/shell.hh"

#include <cstdlib>

namespace {

constexpr const char *main_screen = R"(
    |
    |
    |
    |
    |
    |                *********   Main  Menu   ********
    |
   E|<ENTRY>
    |                =================================
    |
    |                     Enter Command :
)";

MENU_STEP save_and_go_on(MENU_PAGE &) {
    save_bsc_lib();
    return MENU_LEAVE;
}

MENU_STEP save_and_quit(MENU_PAGE &) {
    save_bsc_lib();
    std::exit(0);
}

MENU_STEP abort_and_quit(MENU_PAGE &) {
    run_shell("clear");
    end_run();
}

constexpr MENU_ENTRY main_entries[] = {
    {.command = "1", .entry = " (1)  Global scan ports", .action = open_menu<Global_port_menu>},
    {.command = "2", .entry = " (2)  TAP controller", .action = open_menu<TAP_menu>},
    {.command = "3", .entry = " (3)  Instruction register and decoder", .action = open_menu<INST_menu>},
    {.command = "4", .entry = " (4)  Test data registers", .action = open_menu<test_reg_menu>},
    {.command = "5", .entry = " (5)  PAD and internal buffer", .action = open_menu<PAD_menu>},
    {.command = "6", .entry = " (6)  Pin list", .action = open_menu<PIN_menu>},
    {.command = "7", .entry = " (7)  Skip signal", .action = open_menu<Skip_Signal_menu>},
    {.command = "8", .entry = " (8)  Save and continue the program", .action = save_and_go_on},
    {.command = "9", .entry = " (9)  Save and quit", .action = save_and_quit},
    {.command = "10", .entry = "(10)  Abort and quit", .action = abort_and_quit},
};

constexpr GUIDE_MENU main_menu = {.screen = main_screen,
                                  .indent = 15,
                                  .value_column = 0,
                                  .dots = "",
                                  .data_prompt = {},
                                  .entries = main_entries};

constexpr const char *global_port_screen = R"(
    |
    |
    |
    |
    |
    |                *****     Global Port Menu     *****
    |
   E|<ENTRY>
    |                ====================================
    |
    |                    Enter Command :
)";

constexpr MENU_ENTRY global_port_entries[] = {
    {.command = "1", .entry = " (1) specify Global TDI", .text = global_text<&GLOBAL_TDI>},
    {.command = "2", .entry = " (2) specify Global TDO", .text = global_text<&GLOBAL_TDO>},
    {.command = "3", .entry = " (3) specify Global TMS", .text = global_text<&GLOBAL_TMS>},
    {.command = "4", .entry = " (4) specify Global TCK", .text = global_text<&GLOBAL_TCK>},
    {.command = "5", .entry = " (5) specify Global TRST", .text = global_text<&GLOBAL_TRST>},
    {.command = "6", .entry = " (6) return to Main Menu", .action = leave_menu},
};

constexpr GUIDE_MENU global_port_menu = {.screen = global_port_screen,
                                         .indent = 15,
                                         .value_column = 47,
                                         .dots = ".....",
                                         .data_prompt = {20, "Enter Data : "},
                                         .entries = global_port_entries};

/// What the reading that follows sets only where the file says so. It must not find what was edited and not
/// saved, or what the file that was read held and the saved one does not.
void forget_roles_and_tap_names() {
#define FORGET_ROLE(name) name = nullptr;
    FOR_EACH_CELL_ROLE(FORGET_ROLE)
    TAP_MODULE_NAME = TAP_INSTANCE_NAME = nullptr;
}

} // namespace

void Global_port_menu() {
    MENU_PAGE page;
    work_menu(global_port_menu, page);
}

void guideline_handler() {
    bsdft_init();
    if (JTAG_LIB_FILE != nullptr && JTAG_BSC_FILE != nullptr) {
        note_read_file(JTAG_LIB_FILE);
        note_read_file(JTAG_BSC_FILE);
        get_bs_dft_file(JTAG_LIB_FILE, JTAG_BSC_FILE, 0);
        // Without pins the name is that of a package list, which is in no menu.
        if (DYNA_count(PIN_TABLE) > 0)
            note_read_file(PIN_FILE);
    }
    initialize();
    MENU_PAGE page;
    if (work_menu(main_menu, page) == MENU_END_OF_INPUT)
        run_shell("clear");
    forget_roles_and_tap_names();
}
