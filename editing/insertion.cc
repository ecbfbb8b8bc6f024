// The drivers: planning, emission of the cells, wiring, and the runs of the tools.
#include "editing/insertion.hh"

#include "editing/added_pads.hh"
#include "editing/bcm_cells.hh"
#include "editing/cells.hh"
#include "editing/multi_modules.hh"
#include "editing/pad_levels.hh"
#include "editing/pad_sides.hh"
#include "editing/tap_hierarchy.hh"
#include "editing/tap_top.hh"
#include "editing/tool_runs.hh"
#include "editing/wiring.hh"
#include "planning/balance_groups.hh"
#include "planning/planning.hh"
#include "planning/report.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/faults.hh"
#include "support/run_state.hh"

namespace {

void write_cells(EDIT_FILE *fp, int32_t first) {
    for (int32_t row = first; row < DYNA_count(OPIN_TAB); row++)
        if (OPIN_TAB[row].scan_cell != nullptr)
            add_scan_cells_in_cmd_file(fp, row);
}

/// The cells' pads stand in the top module.
void emit_in_top(const PAD_PATH &pads, int32_t first) {
    open_sdb_file(MODULE_SDB);
    open_and_modify_top_sdb(pads);
    write_cells(TAP_FP, first);
    rwv_do_connection_table(TAP_FP);
    close_sdb_file();
}

/// The cells' pads stand in a module below the top.
void emit_in_pad_module(const PAD_PATH &pads, int32_t first) {
    open_and_modify_top_sdb(pads);
    open_sdb_file(write_pad_levels(pads));
    write_cells(PAD_FP, first);
    close_sdb_file();
}

void classify_ports() {
    open_sdb_file(MODULE_C_SDB);
    rimweave_init();
    each_apart({check_necessary_fields, produce_opin_control_tab});
}

void check_cells_exist() {
    if (first_row_with_cells() < 0)
        vmr_fail("ERROR: no port of '%s' gets a boundary cell.\n       Please check the pin list in file "
                 "'%s'.\n\n",
                 TOP_MODULE, JTAG_BSC_FILE == nullptr ? "" : JTAG_BSC_FILE);
}

void add_scan_cell() {
    plan_cells();
    if (multi_io_module_flagG != 0 && rwv_hier_tap_ctrlG != 0)
        vmr_fail("ERROR: Can not support hierarchic TAP controller for multiple IO-PAD modules.\n\n");
    check_cells_exist();
    reset_emission();
    if (multi_io_module_flagG != 0) {
        open_multi_io_modules();
        bs_hier_search_tap_ports();
        emit_multi_io_cells();
        print_bso_file();
        return;
    }
    vmr_printf(" - Synthesizing Boundary Registers in gate level ...\n\n");
    PAD_PATH pads = path_of_pads();
    edit_tap_path(pads);
    begin_routes(pads.levels);
    (pads.levels == 0 ? emit_in_top : emit_in_pad_module)(pads, first_row_with_cells());
    print_bso_file();
}

} // namespace

void plan_cells() {
    each_apart({check_pin_signal_inv_buf, classify_ports});
    arrange_opin_tab_from_tdo();
    setup_driving_control_cell_and_highz_buf();
    bs_reset_standard_port_ptr_of_TAP();
}

void add_boundary_scan_chain() {
    init_multi_io_tables();
    add_scan_cell();
    if (multi_io_module_flagG != 0) {
        set_hier_common_net();
        connect_scan_cell_for_multi_io();
        hier_replace_io_module(0, MULTI_IO_HIER.children);
        warn_of_open_pad_pins();
        hier_do_kalmedit(0, MULTI_IO_HIER.children);
        print_closing_lines();
    } else {
        built_bus_balance_group_tab_for_control_signal(MULTI_IO_TAB[0].trees);
        connect_scan_cell_in_cmd(PAD_FP != nullptr ? PAD_FP : TAP_FP);
        warn_of_open_pad_pins();
        do_kalmedit();
    }
    print_report();
}

void add_boundary_scan_module() {
    init_multi_io_tables();
    plan_cells();
    check_cells_exist();
    check_bcm_design();
    vmr_printf(" - Synthesizing Boundary Registers in gate level ...\n\n");
    open_sdb_file(MODULE_SDB);
    reset_emission();
    begin_routes(0);
    make_top_sdb();
    write_cells(TAP_FP, first_row_with_cells());
    close_sdb_file();
    edit_end_file(TAP_FP);
    print_bso_file();
    do_kalmedit();
    print_report();
}
