// Input and clock ports: the core side of the pad, ports that only feed another port, and the cell.
#include "planning/planning.hh"

#include "description/lookups.hh"
#include "planning/cell_choice.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

constexpr MUX_PIN_PAIR INPUT_MUX = {"%MODE_2", "%MUX_IN2", "mux input pad", "Mux input pad"};

/// The core side of a described pad: its output pin's node. `words` is the pad's keyword in messages.
int32_t pad_output_node(OPIN_ROW &row, const BUFFER_CELL *pad, const char *words) {
    if (pad->output == nullptr)
        vmr_fail("ERROR: (%s) can't find %%OUTPUT in %s %s\n\n", JTAG_LIB_FILE, words, row.pad_class);
    int32_t node = search_inode_connected_to_obj(row.pad_obj, pad->output, DIR_OUTPUT);
    if (node < 0)
        vmr_fail("ERROR: (%s) %%OUTPUT %s specified in %s %s\n"
                 "       can't be found in file '%s' while tracing port '%s'.\n\n",
                 JTAG_LIB_FILE, pad->output, words, row.pad_class, MODULE_C_SDB, row.port_name);
    row.net_name = keep_text_or_null(SDB_net_name(sdb, node_tab[node].net));
    row.pad_output = pad->output;
    return node;
}

/// The core side of a differential pad, or -1 for the minus leg: one differential input has one cell, on its
/// plus leg.
int32_t differential_output_node(OPIN_ROW &row, const BUFFER_CELL *pad, int32_t port) {
    if (pad->input == nullptr || pad->input_m == nullptr)
        vmr_fail("ERROR: (%s) can't find %%INPUT_P or %%INPUT_M in DIFFERENTIAL BUFFER %s\n\n", JTAG_LIB_FILE,
                 row.pad_class);
    if (pad->output == nullptr)
        vmr_fail("ERROR: (%s) can't find %%OUTPUT in DIFFERENTIAL BUFFER %s\n\n", JTAG_LIB_FILE,
                 row.pad_class);
    const char *leg = differential_leg(row, port);
    if (same_text_no_case(leg, pad->input))
        return pad_output_node(row, pad, "DIFFERENTIAL BUFFER");
    if (same_text_no_case(leg, pad->input_m))
        return -1;
    fail_third_leg(row, leg);
}

/// The port's own node, for a port without a described pad.
int32_t bare_port_node(OPIN_ROW &row, int32_t port) {
    if (INPUT_BUFFER == nullptr && !option(OPT_NO_PAD))
        vmr_fail("ERROR: option -add_pad requires to declare %%INPUT_BUFFER\n       in file '%s'.\n\n",
                 JTAG_BSC_FILE);
    int32_t node = port_tab[port].node;
    row.net_name = keep_text_or_null(SDB_net_name(sdb, node_tab[node].net));
    return node;
}

/// True, with a warning, when the core side of the port runs straight to another port, whose cell then serves
/// both.
bool is_merged(const OPIN_ROW &row, const BUFFER_CELL *pad, int32_t node) {
    int32_t adjacent = find_adjacent_node(node);
    if (adjacent < 0 || is_bs_buffer(pad))
        return false;
    const char *words = "output port";
    if (is_port_node(adjacent)) {
        if (skip_signal(node_pin_name(adjacent)))
            return false;
    } else {
        int32_t obj = node_tab[adjacent].obj;
        const BUFFER_CELL *buffer = get_buffer(object_class_name(obj));
        if (buffer == nullptr)
            return false;
        if (buffer->function == nullptr)
            adjacent = search_inode_connected_to_obj(obj, buffer->output, DIR_OUTPUT);
        adjacent = find_adjacent_node(adjacent);
        if (adjacent < 0 || !is_port_node(adjacent))
            return false;
        words = "port";
    }
    vmr_printf("WARNING: input port '%s' connects to %s '%s' directly.\n"
               "         A merged cell will be introduced.\n\n",
               row.port_name, words, node_pin_name(adjacent));
    return true;
}

void take_mux_cell(OPIN_ROW &row, const BUFFER_CELL *pad, bool is_clock) {
    CELL_COUNTER own = is_clock ? COUNT_CLOCK_MUX : COUNT_INPUT_MUX;
    CHOSEN_CELL chosen = named_cell(row, own);
    // The report has no section for clock cells of mux pads: an input port's cell is found among its own.
    if (chosen.cell == nullptr)
        chosen.cell = declared_cell(own, is_clock ? COUNT_INPUT_MUX : COUNT_CLOCK_MUX).cell;
    if (chosen.cell == nullptr)
        vmr_fail("ERROR: can't find %%INPUT_MUX_SCAN in file '%s'.\n"
                 "       Need INPUT_MUX_SCAN to connect to input port '%s'.\n\n",
                 JTAG_BSC_FILE, row.port_name);
    take_cell(row, is_clock ? CELL_MUX_CLOCK : CELL_MUX_INPUT, chosen);
    row.mode_net[1] = search_inet_connected_to_obj(row.pad_obj, pad->mode_2, DIR_INPUT);
    row.mux_in2_net = search_inet_connected_to_obj(row.pad_obj, pad->mux_in2, DIR_INPUT);
}

/// A cell of the pin file counts as the clock or input cell that it is declared as; one that is neither
/// counts as its port does.
CHOSEN_CELL counted_as_declared(CHOSEN_CELL chosen, bool is_clock) {
    CELL_COUNTER own = is_clock ? COUNT_CLOCK : COUNT_INPUT, other = is_clock ? COUNT_INPUT : COUNT_CLOCK;
    bool is_other = chosen.cell == declared_cell(other).cell && chosen.cell != declared_cell(own).cell;
    chosen.counter = is_other ? other : own;
    return chosen;
}

CHOSEN_CELL choose_cell(OPIN_ROW &row, const BUFFER_CELL *pad, bool is_clock) {
    const PIN_ENTRY &pin = *PIN_TABLE[row.pin_index];
    CHOSEN_CELL chosen = named_cell(row, is_clock ? COUNT_CLOCK : COUNT_INPUT);
    if (chosen.cell == nullptr && pin.bsc_kind == BSC_I)
        chosen = checked_cell(pin.bsc_i, COUNT_INPUT);
    if (chosen.cell != nullptr)
        return counted_as_declared(chosen, is_clock);
    // A BSC list that gives the port more than an input cell leaves the input side to the declared input
    // cell.
    bool prefers_clock = is_clock && pin.bsc_kind < BSC_I;
    if (!is_clock && pin.bsc_kind < BSC_I && is_bs_buffer(pad))
        return {builtin_cell(row), COUNT_INPUT};
    chosen =
        prefers_clock ? declared_cell(COUNT_CLOCK, COUNT_INPUT) : declared_cell(COUNT_INPUT, COUNT_CLOCK);
    if (chosen.cell == nullptr)
        vmr_fail("ERROR: can't find %%INPUT_SCAN in file '%s'.\n"
                 "       Need INPUT SCAN to connect to input port '%s'.\n\n",
                 JTAG_BSC_FILE, row.port_name);
    return chosen;
}

} // namespace

void save_input_clock_tab(BUFFER_CELL *pad, int32_t row_index, int32_t port, int32_t is_input) {
    OPIN_ROW &row = OPIN_TAB[row_index];
    bool is_clock = is_input == 0;
    int32_t node = 0;
    if (pad == nullptr)
        node = bare_port_node(row, port);
    else if (is_differential(pad))
        node = differential_output_node(row, pad, port);
    else
        node = pad_output_node(row, pad, "%BUFFER");
    if (node < 0 || is_merged(row, pad, node))
        return;
    if (pad != nullptr && has_mux(row, pad->mode_2, pad->mux_in2, INPUT_MUX)) {
        take_mux_cell(row, pad, is_clock);
        return;
    }
    take_cell(row, is_clock ? CELL_CLOCK : CELL_INPUT, choose_cell(row, pad, is_clock));
}
