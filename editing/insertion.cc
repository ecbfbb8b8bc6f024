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

void write_cells(EDIT_FILE *fp) {
    for (OPIN_ROW &row : rows(OPIN_TAB).subspan(first_row_with_cells()))
        if (row.scan_cell != nullptr)
            add_scan_cells_in_cmd_file(fp, row);
}

/// Writes all files but that of the module with the cells' pads, which it returns.
EDIT_FILE *write_cell_lines() {
    PAD_PATH pads = path_of_pads();
    edit_tap_path(pads);
    begin_routes(pads.levels);
    EDIT_FILE *file;
    if (pads.levels == 0) {
        open_sdb_file(MODULE_SDB);
        file = open_and_modify_top_sdb(pads);
        write_cells(file);
        rwv_do_connection_table(file);
    } else {
        file = write_pad_levels(pads, open_and_modify_top_sdb(pads));
        open_sdb_file(file->sdb_path);
        write_cells(file);
    }
    close_sdb_file();
    return file;
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

/// The cells' pads stand in one module.
void insert_in_one_module() {
    vmr_printf(" - Synthesizing Boundary Registers in gate level ...\n\n");
    EDIT_FILE *file = write_cell_lines();
    print_bso_file();
    built_bus_balance_group_tab_for_control_signal(MULTI_IO_TAB[0].trees);
    connect_scan_cell_in_cmd(file);
    warn_of_open_pad_pins();
    do_kalmedit();
}

void insert_in_modules() {
    open_multi_io_modules();
    bs_hier_search_tap_ports();
    emit_multi_io_cells();
    print_bso_file();
    set_hier_common_net();
    connect_scan_cell_for_multi_io();
    hier_replace_io_modules();
    warn_of_open_pad_pins();
    hier_do_kalmedit();
    print_closing_lines();
}

} // namespace

void plan_cells() {
    each_apart({check_pin_signal_inv_buf, classify_ports});
    arrange_opin_tab_from_tdo();
    setup_driving_control_cell_and_highz_buf();
    bs_reset_standard_port_ptr_of_TAP();
}

void add_boundary_scan_chain() {
    plan_cells();
    bool several = multi_io_module_flagG != 0;
    if (several && rwv_hier_tap_ctrlG != 0)
        vmr_fail("ERROR: Can not support hierarchic TAP controller for multiple IO-PAD modules.\n\n");
    check_cells_exist();
    (several ? insert_in_modules : insert_in_one_module)();
    print_report();
}

void add_boundary_scan_module() {
    plan_cells();
    check_cells_exist();
    check_bcm_design();
    vmr_printf(" - Synthesizing Boundary Registers in gate level ...\n\n");
    open_sdb_file(MODULE_SDB);
    begin_routes(0);
    EDIT_FILE *top = make_top_sdb();
    write_cells(top);
    close_sdb_file();
    edit_end_file(top);
    print_bso_file();
    do_kalmedit();
    print_report();
}
