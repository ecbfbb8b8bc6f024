// Input and clock ports: the core side of the pad, ports that only feed another port, and the cell.
#include "planning/planning.hh"

#include "description/lookups.hh"
#include "planning/cell_choice.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// The core side of a differential pad, or -1 for the minus leg: one differential input has one cell, on its
/// plus leg.
int32_t differential_output_node(OPIN_ROW &row, int32_t port) {
    constexpr const char *words = "DIFFERENTIAL BUFFER";
    const BUFFER_CELL &pad = *row.pad;
    if (pad.input == nullptr || pad.input_m == nullptr)
        vmr_fail("ERROR: (%s) can't find %%INPUT_P or %%INPUT_M in %s %s\n\n", JTAG_LIB_FILE, words,
                 row.pad_class);
    if (pad.output == nullptr)
        vmr_fail("ERROR: (%s) can't find %%OUTPUT in %s %s\n\n", JTAG_LIB_FILE, words, row.pad_class);
    return is_plus_leg(row, port, pad.input, pad.input_m) ? take_pad_output(row, words) : -1;
}

/// The node at the core side of the port, or -1 where no cell may stand.
int32_t core_node(OPIN_ROW &row, int32_t port) {
    if (row.pad != nullptr)
        return is_differential(row.pad) ? differential_output_node(row, port) : take_pad_output(row);
    if (INPUT_BUFFER == nullptr && !option(OPT_NO_PAD))
        fail_add_pad("%INPUT_BUFFER");
    return take_own_net(row, port);
}

/// The node that a buffer behind the port's core net leads to, or -1.
int32_t node_behind_buffer(int32_t node, bool is_bidir) {
    int32_t obj = node_tab[node].obj;
    const BUFFER_CELL *buffer = get_buffer(object_class_name(obj));
    if (buffer == nullptr)
        return -1;
    if (is_bidir && has_function(buffer, "inout"))
        node = search_inode_connected_to_obj(obj, buffer->inout, SDB_BIDIRECTIONAL);
    else if (is_bidir || buffer->function == nullptr)
        node = search_inode_connected_to_obj(obj, buffer->output, SDB_OUTPUT);
    return find_adjacent_node(node);
}

CHOSEN_CELL choose_mux_cell(OPIN_ROW &row, bool is_clock) {
    CELL_COUNTER own = is_clock ? COUNT_CLOCK_MUX : COUNT_INPUT_MUX;
    CHOSEN_CELL chosen = named_cell(row, own);
    // The report has no section for clock cells of mux pads: an input port's cell is found among its own.
    if (chosen.cell == nullptr)
        chosen.cell = declared_cell(own, is_clock ? COUNT_INPUT_MUX : COUNT_CLOCK_MUX).cell;
    return required_cell(row, chosen, {"%INPUT_MUX_SCAN", "INPUT_MUX_SCAN", "input"});
}

/// A cell of the pin file counts as the clock or input cell that it is declared as; one that is neither
/// counts as its port does.
CHOSEN_CELL counted_as_declared(CHOSEN_CELL chosen, bool is_clock) {
    CELL_COUNTER own = is_clock ? COUNT_CLOCK : COUNT_INPUT, other = is_clock ? COUNT_INPUT : COUNT_CLOCK;
    bool is_other = chosen.cell == declared_cell(other).cell && chosen.cell != declared_cell(own).cell;
    chosen.counter = is_other ? other : own;
    return chosen;
}

CHOSEN_CELL choose_cell(OPIN_ROW &row, bool is_clock) {
    const PIN_ENTRY &pin = *PIN_TABLE[row.pin_index];
    CHOSEN_CELL chosen = named_cell(row, is_clock ? COUNT_CLOCK : COUNT_INPUT);
    if (chosen.cell == nullptr && pin.bsc_kind == BSC_I)
        chosen = checked_cell(pin.bsc_i, COUNT_INPUT);
    if (chosen.cell != nullptr)
        return counted_as_declared(chosen, is_clock);
    // A BSC list that gives the port more than an input cell leaves the input side to the declared input
    // cell.
    bool prefers_clock = is_clock && pin.bsc_kind < BSC_I;
    if (!is_clock && pin.bsc_kind < BSC_I && is_bs_buffer(row.pad))
        return {builtin_cell(row), COUNT_INPUT};
    chosen =
        prefers_clock ? declared_cell(COUNT_CLOCK, COUNT_INPUT) : declared_cell(COUNT_INPUT, COUNT_CLOCK);
    return required_cell(row, chosen, {"%INPUT_SCAN", "INPUT SCAN", "input"});
}

} // namespace

bool is_merged(const OPIN_ROW &row, int32_t node, bool is_bidir) {
    int32_t far = find_adjacent_node(node);
    if (far < 0)
        return false;
    bool is_direct = is_port_node(far);
    if (is_direct && !is_bidir && skip_signal(node_pin_name(far)))
        return false;
    if (!is_direct)
        far = node_behind_buffer(far, is_bidir);
    if (far < 0 || !is_port_node(far))
        return false;
    vmr_printf("WARNING: %s '%s' connects to %s '%s' directly.\n"
               "         A merged cell will be introduced.\n\n",
               is_bidir && !is_direct ? "input end of bidir port" : "input port", row.port_name,
               is_direct ? "output port" : "port", node_pin_name(far));
    return true;
}

void save_input_clock_tab(OPIN_ROW &row, int32_t port) {
    bool is_clock = has_function(row.pad, "CLOCK");
    int32_t node = core_node(row, port);
    if (node < 0 || (!is_bs_buffer(row.pad) && is_merged(row, node, false)))
        return;
    if (row.pad != nullptr && has_mux(row, PAD_MUX_2, "input")) {
        take_cell(row, is_clock ? CELL_MUX_CLOCK : CELL_MUX_INPUT, choose_mux_cell(row, is_clock));
        trace_mux(row, PAD_MUX_2);
    } else {
        take_cell(row, is_clock ? CELL_CLOCK : CELL_INPUT, choose_cell(row, is_clock));
    }
}
