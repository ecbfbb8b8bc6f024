// Control signals and chain of a design with pads in several modules.
#include "editing/cell_routines.hh"
#include "editing/multi_modules.hh"
#include "editing/wiring.hh"
#include "planning/balance_groups.hh"
#include "planning/tap_state.hh"

namespace {

/// Makes the module's loads the ones that the trees are built for, with fresh trees.
void load_needs(int32_t module) {
    const MULTI_IO_ROW &row = MULTI_IO_TAB[module];
    for (int32_t signal = 0; signal < SIGNAL_COUNT; signal++) {
        BUFFER_TREE &tree = TREES[signal];
        if (tree.group != nullptr)
            DYNA_free(&tree.group);
        tree = {row.need[signal], nullptr, tree.buffer, 0, row.cnt[signal], row.index[signal]};
    }
    for (BUFFER_TREE &tree : rows(EXTRA_TREES))
        if (tree.group != nullptr)
            DYNA_free(&tree.group);
    if (EXTRA_TREES != nullptr)
        DYNA_free(&EXTRA_TREES);
    EXTRA_TREES = nullptr;
    for (int32_t need : IO_MODULES[module].extra_need)
        append_row(EXTRA_TREES).need = need;
}

void store_counters(int32_t module) {
    MULTI_IO_ROW &row = MULTI_IO_TAB[module];
    for (int32_t signal = 0; signal < SIGNAL_COUNT; signal++) {
        row.cnt[signal] = TREES[signal].cnt;
        row.index[signal] = TREES[signal].index;
    }
}

/// Trees and control wires of one module. In the top module they hang on the TAP's pins, in the others on the
/// ports of the pins' names.
void connect_scan_cell_in_cmd_for_multi_io(EDIT_FILE *fp, const std::vector<int32_t> &cells) {
    build_control_trees(fp, false);
    for (int32_t row : cells)
        connect_control_signal(fp, row);
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
        load_needs(module);
        built_bus_balance_group_tab_for_control_signal();
        connect_scan_cell_in_cmd_for_multi_io(PAD_FP, cells[module]);
        store_counters(module);
    }
    for (int32_t row = 0; row < DYNA_count(SCAN_TAB); row++)
        hier_add_and_connect_bc_serial(row, IO_MODULES[SCAN_TAB[row].io_module].file);
}
