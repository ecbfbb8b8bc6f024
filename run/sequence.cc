// One run has one direction and no way back: start-up, options, guide, reading, TAP, insertion, connection
// files, summary. Each step ends the process itself when it meets a fault.
#include "run/sequence.hh"

#include "description/reader.hh"
#include "description/tables.hh"
#include "editing/insertion.hh"
#include "guide/guide.hh"
#include "planning/connect_file.hh"
#include "planning/input_files.hh"
#include "planning/planning.hh"
#include "planning/validation.hh"
#include "rtl/tap_build.hh"
#include "run/banner.hh"
#include "run/command_line.hh"
#include "run/fault_handlers.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/run_state.hh"
#include "support/shell.hh"
#include "support/system_info.hh"

#include <cstdlib>
#include <sys/times.h>

namespace {

int32_t get_CPU_time() {
    tms used;
    ::times(&used);
    return static_cast<int32_t>((used.tms_utime + used.tms_stime) / 60);
}

const char *get_CPU_time_string(int32_t start) {
    static char text[32];
    int32_t seconds = get_CPU_time() - start;
    std::snprintf(text, sizeof text, "%d:%.2d:%.2d", seconds / 3600, seconds / 60 % 60, seconds % 60);
    return text;
}

void start_routine() {
    add_own_folder_to_path();
    top_set_w_directory(set_up_search());
}

/// The tools are to find the modules and cells of a design that is given with its folder where the run finds
/// them.
void lead_tools_to_design() {
    std::string list = *PATH == '\0' ? "" : FNM_list_with_folder(PATH);
    if (!list.empty())
        ::setenv("VELMORA_DIRS", list.c_str(), 1);
}

void check_necessary_input_file() {
    bool with_design = !option(OPT_ADD_TAP_ONLY);
    find_input_files(with_design);
    vmr_printf("\n - Reading input files ...\n");
    if (with_design)
        vmr_printf("    %s,  %s,\n", MODULE_SDB, MODULE_C_SDB);
    vmr_printf("    %s,  %s.\n\n\n", JTAG_BSC_FILE, JTAG_LIB_FILE);
    bsdft_init();
    get_bs_dft_file(JTAG_LIB_FILE, JTAG_BSC_FILE, 0);
    rwv_check_hier_tap_ctrl_instance();
    check_scan_cells();
}

void build_and_insert() {
    if (option(OPT_ADD_TAP) || option(OPT_ADD_TAP_ONLY)) {
        if (option(OPT_ADD_TAP))
            check_connect_pad();
        jtag_init();
        jtagsyn();
    }
    if (option(OPT_ADD_BCM)) {
        check_connect_pad();
        jtag_init();
        add_boundary_scan_module();
    }
    if (!option(OPT_ADD_TAP_ONLY) && !option(OPT_ADD_BCM))
        add_boundary_scan_chain();
}

} // namespace

void run_sequence(int32_t argc, char **argv) {
    int32_t start = get_CPU_time();
    start_routine();
    install_fault_handlers();
    uti_prepare_system_info();
    jtag_parse_cmd_line(argc, argv);
    lead_tools_to_design();
    find_description_files();
    if (option(OPT_GUIDELINE))
        guideline_handler();
    check_necessary_input_file();
    build_and_insert();
    rwv_write_connect_file();
    free_planning_tables();
    vmr_printf("\nCPU TIME = %s\n\n", get_CPU_time_string(start));
    vmr_printf("END TIME : %s\n", get_time_string());
    uti_report_system_info(fd, 1);
    std::exit(0);
}
