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
    {"Global scan ports", nullptr, open_menu<Global_port_menu>},
    {"TAP controller", nullptr, open_menu<TAP_menu>},
    {"Instruction register and decoder", nullptr, open_menu<INST_menu>},
    {"Test data registers", nullptr, open_menu<test_reg_menu>},
    {"PAD and internal buffer", nullptr, open_menu<PAD_menu>},
    {"Pin list", nullptr, open_menu<PIN_menu>},
    {"Skip signal", nullptr, open_menu<Skip_Signal_menu>},
    {"Save and continue the program", nullptr, save_and_go_on},
    {"Save and quit", nullptr, save_and_quit},
    {"Abort and quit", nullptr, abort_and_quit},
};

constexpr GUIDE_MENU main_menu = {.screen = main_screen, .indent = 15, .entries = main_entries};

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
    {"specify Global TDI", global_text<&GLOBAL_TDI>},   {"specify Global TDO", global_text<&GLOBAL_TDO>},
    {"specify Global TMS", global_text<&GLOBAL_TMS>},   {"specify Global TCK", global_text<&GLOBAL_TCK>},
    {"specify Global TRST", global_text<&GLOBAL_TRST>}, {"return to Main Menu", nullptr, leave_menu},
};

/// What the reading that follows sets only where the file says so. It must not find what was edited and not
/// saved, or what the file that was read held and the saved one does not.
void forget_roles_and_tap_names() {
#define FORGET_ROLE(name) name = nullptr;
    FOR_EACH_CELL_ROLE(FORGET_ROLE)
#undef FORGET_ROLE
    TAP_MODULE_NAME = TAP_INSTANCE_NAME = nullptr;
}

} // namespace

constexpr GUIDE_MENU Global_port_menu = {.screen = global_port_screen,
                                         .indent = 15,
                                         .gap = 1,
                                         .value_column = 47,
                                         .dots = ".....",
                                         .data_prompt = {20, "Enter Data : "},
                                         .entries = global_port_entries};

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
