// Control signals and chain of a design with pads in several modules.
#include "editing/cell_routines.hh"
#include "editing/multi_modules.hh"
#include "editing/wiring.hh"
#include "planning/balance_groups.hh"
#include "planning/tap_state.hh"

namespace {

/// Trees and control wires of one module. In the top module they hang on the TAP's pins, in the others on the
/// ports of the pins' names.
void connect_scan_cell_in_cmd_for_multi_io(EDIT_FILE *fp, CONTROL_TREES &trees,
                                           const std::vector<int32_t> &cells) {
    build_control_trees(fp, trees, false);
    for (int32_t row : cells)
        connect_control_signal(fp, trees, row);
}

void add_control_ports(EDIT_FILE *fp, int32_t module) {
    for (const char *name : signals_into_module(module)) {
        take_port_name(module, name);
        edit_add_port(fp, name, EDIT_INPUT);
    }
    for (const auto &[owner, group] : emission.highz_buffers)
        if (owner == module)
            edit_connect(fp, pin_of(highz_buffer_name(group), HIZ_BUF->input), port_net(TAP_HIZ_PIN));
}

} // namespace

void connect_scan_cell_for_multi_io() {
    std::vector<std::vector<int32_t>> cells(IO_MODULES.size());
    for (int32_t row = 0; row < DYNA_count(SCAN_TAB); row++)
        cells[SCAN_TAB[row].io_module].push_back(row);
    for (int32_t module = 0; module < DYNA_count(MULTI_IO_TAB); module++) {
        PAD_FP = IO_MODULES[module].file;
        if (module > 0)
            add_control_ports(PAD_FP, module);
        if (MULTI_IO_TAB[module].cell_count == 0)
            continue;
        CONTROL_TREES &trees = MULTI_IO_TAB[module].trees;
        built_bus_balance_group_tab_for_control_signal(trees);
        connect_scan_cell_in_cmd_for_multi_io(PAD_FP, trees, cells[module]);
    }
    for (int32_t row = 0; row < DYNA_count(SCAN_TAB); row++)
        hier_add_and_connect_bc_serial(row, IO_MODULES[SCAN_TAB[row].io_module].file);
}
