// Control signals and chain of a design with pads in several modules.
#include "editing/cell_routines.hh"
#include "editing/multi_modules.hh"
#include "editing/wiring.hh"
#include "planning/balance_groups.hh"
#include "planning/tap_state.hh"

namespace {

void add_control_ports(EDIT_FILE *fp, int32_t module) {
    for (const char *name : signals_into_module(module)) {
        take_port_name(module, name);
        edit_add_port(fp, name, EDIT_INPUT);
    }
    for (int32_t group : fp->highz_buffers)
        edit_connect(fp, pin_of(highz_buffer_name(group), HIZ_BUF->input), port_net(TAP_HIZ_PIN));
}

} // namespace

void connect_scan_cell_for_multi_io() {
    std::vector<std::vector<int32_t>> cells(DYNA_count(MULTI_IO_TAB));
    for (int32_t row = 0; row < DYNA_count(SCAN_TAB); row++)
        cells[SCAN_TAB[row].io_module].push_back(row);
    for (int32_t module = 0; module < DYNA_count(MULTI_IO_TAB); module++) {
        EDIT_FILE *fp = MULTI_IO_TAB[module].file;
        if (module > 0)
            add_control_ports(fp, module);
        if (cells[module].empty())
            continue;
        // In the top module the trees hang on the TAP's pins, in the others on the ports of the pins' names.
        CONTROL_TREES &trees = MULTI_IO_TAB[module].trees;
        built_bus_balance_group_tab_for_control_signal(trees);
        build_control_trees(fp, trees, false);
        for (int32_t row : cells[module])
            connect_control_signal(fp, trees, row);
    }
    for (int32_t row = 0; row < DYNA_count(SCAN_TAB); row++)
        hier_add_and_connect_bc_serial(row, MULTI_IO_TAB[SCAN_TAB[row].io_module].file);
}
