#include "editing/bcm_cells.hh"

#include "editing/module_copies.hh"
#include "editing/tap_top.hh"
#include "planning/port_pad.hh"
#include "planning/tracing.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <map>
#include <unordered_set>

namespace {

/// The cells of <top>_BCM that have names so far.
struct BCM_CELLS {
    std::unordered_set<std::string> names;
    int32_t level_count = 0; ///< number of the next cell
    std::string last;
    std::map<const CONTROL_ROW *, std::string> controls;
};
BCM_CELLS bcm_cells;

/// "<top>_BCM".
std::string bcm_name() {
    return format_text("%s_BCM", TOP_MODULE);
}

std::string numbered_cell(int32_t number) {
    return format_text("BCELL%d", number);
}

void check_pad_in_top(const OPIN_ROW &row) {
    if (DYNA_count(row.hier_classes) > 0)
        vmr_fail("ERROR: the pad of port '%s' lies in module '%s'.\n"
                 "       Option -add_bcm needs all pads in the top module.\n\n",
                 row.port_name, row.hier_classes[0]);
}

} // namespace

void check_bcm_design() {
    for (const OPIN_ROW &row : rows(OPIN_TAB)) {
        if (!row_gets_cells(row))
            continue;
        check_pad_in_top(row);
        if (row.pad_instance == nullptr)
            vmr_fail("ERROR: port '%s' has no pad. Option -add_bcm needs a pad at each port with a cell.\n\n",
                     row.port_name);
    }
    for (const STANDARD_PORT_STATE &port : TAP_PORT)
        if (port.row != nullptr)
            check_pad_in_top(*port.row);
    if (multi_io_module_flagG != 0)
        vmr_fail("ERROR: Option -add_bcm can not support multiple IO-PAD modules.\n\n");
    if (CONNECT_TABLE != nullptr)
        vmr_printf("WARNING: option -add_bcm does not carry out %%CONNECTION_TABLE.\n\n");
}

EDIT_FILE *make_top_sdb() {
    EDIT_FILE *top = begin_top_file(false);
    top->warns_of_ports = true;
    bcm_cells = {};
    top->tap = keep_text(bcm_name());
    edit_add_instance(top, top->tap, top->tap);
    write_standard_ports(top, true);
    write_idcode_lines(top);
    return top;
}

bool keeps_scan_name(const OPIN_ROW &row) {
    return row.kind <= CELL_OUTPUT_EN;
}

EDIT_OPERAND bcm_port(const std::string &cell, const char *suffix) {
    return pin_of(bcm_name(), (cell + "_" + suffix).c_str());
}

std::string next_bcm_cell() {
    // A cell that is left alone has a row in SCAN_TAB and no number here, so the two may drift apart.
    int32_t number = bcm_cells.level_count;
    while (bcm_cells.names.contains(numbered_cell(number)))
        number++;
    return numbered_cell(number);
}

void count_bcm_cell(const PLACED_CELL &cell, bool numbered) {
    if (cell.bcm.empty())
        return;
    while (numbered && numbered_cell(bcm_cells.level_count) != cell.bcm)
        bcm_cells.level_count++;
    bcm_cells.last = numbered_cell(bcm_cells.level_count++);
    bcm_cells.names.insert({cell.bcm, bcm_cells.last});
}

std::string last_bcm_cell() {
    return bcm_cells.last;
}

void warn_of_unwired_cell(const OPIN_ROW &row, const char *name) {
    vmr_printf("WARNING: cell '%s' of port '%s' does not stand in %s:\n"
               "         option -add_bcm leaves its chain and control pins unconnected.\n\n",
               name, row.port_name, bcm_name().c_str());
}

std::string &bcm_control(const CONTROL_ROW &control) {
    return bcm_cells.controls[&control];
}

const char *bcm_enable(const OPIN_ROW &row) {
    const char *enable = row.pad->en_l != nullptr ? row.pad->en_l : row.pad->en_h;
    const char *chosen = chosen_enable_pin(row.pad, PIN_TABLE[row.pin_index], nullptr);
    if (chosen != nullptr && !same_text(enable, chosen))
        vmr_printf("WARNING: the pin list chooses enable '%s' of pad '%s' of port '%s'.\n"
                   "         Option -add_bcm drives its enable '%s' all the same.\n"
                   "         Please use a pad cell with one enable.\n\n",
                   chosen, row.pad_instance, row.port_name, enable);
    return enable;
}

bool stays_at_port(const EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell, const PAD_PIN &pin) {
    if (cell.bcm.empty())
        return false;
    int32_t node = far_end_of_pad(fp, row, pin);
    warn_of_chip_port(fp, pin, node);
    return !is_constant_net(node) && is_port_node(node);
}

void join_bcm_mode(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell, int32_t mode) {
    if (cell.bcm.empty() || !mode_hangs_on_tap(row, mode))
        return;
    free_pad_mode(fp, row, mode);
    edit_connect(fp, bcm_port(cell.bcm, format_text("MODE%d", mode + 1).c_str()),
                 pin_of(row.pad_instance, row.pad->*PAD_MODES[mode]));
}
