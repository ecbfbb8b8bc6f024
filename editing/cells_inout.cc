// Bidirectional ports with an input cell and an output cell.
#include "description/lookups.hh"
#include "editing/added_pads.hh"
#include "editing/bcm_cells.hh"
#include "planning/cell_choice.hh"
#include "planning/planning.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// The input cell stands between the pad and the core. A cell without %DATA_OUT only observes.
void join_input_cell(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &in) {
    PAD_PIN pin = pin_behind_buffer(fp, row, SIDE_OUTPUT, PAD_WORD_BIDIRECTIONAL);
    if (in.cell->data_out != nullptr) {
        int32_t node = cut_pad_output(fp, row, in, PIN_DATA_OUT, pin);
        if (in.bcm.empty())
            warn_of_port_at_pad(pin, node);
    }
    join(fp, in, PIN_DATA_IN, pin_operand(pin));
}

void join_output_cell(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &out) {
    cut_pad_input(fp, row, out, PIN_DATA_IN, PIN_DATA_OUT,
                  pin_behind_buffer(fp, row, SIDE_INPUT, PAD_WORD_BIDIRECTIONAL), false);
}

/// The chain holds output cell, control cell, input cell.
void add_on_pad(EDIT_FILE *fp, OPIN_ROW &row) {
    PLACED_CELL out = new_cell(row, row.scan_cell);
    row.order = row.chain_place;
    // The %OE_MODE wire of a control cell names the output cell, which then has to stand already.
    bool output_first = row.scan_cell->oe_mode != nullptr;
    if (output_first)
        edit_add_instance(fp, out.name, out.cell->name);
    add_control_of_row(fp, row);
    PLACED_CELL in = new_cell(row, row.input_cell.cell);
    row.scan_cell_name = keep_format("%s,%s", in.name, out.name);
    edit_add_instance(fp, in.name, in.cell->name);
    if (!output_first)
        edit_add_instance(fp, out.name, out.cell->name);
    join_input_cell(fp, row, in);
    join_output_cell(fp, row, out);
}

/// In <top>_BCM both data cells are reached as plain cells, the input cell by the lower number, and the chain
/// holds the control cell behind them.
void add_in_bcm(EDIT_FILE *fp, OPIN_ROW &row) {
    PLACED_CELL out = new_cell(row, row.scan_cell);
    PLACED_CELL in = new_cell(row, row.input_cell.cell);
    point_at_last_cell(row, keep_format("%s,%s", out.name, in.name));
    join_input_cell(fp, row, in);
    count_bcm_cell(in, true);
    out.bcm = next_bcm_cell();
    join_output_cell(fp, row, out);
    count_bcm_cell(out, true);
    add_control_scan_cell_in_cmd(fp, row);
}

ADDED_PAD bidirectional_pad(const OPIN_ROW &row) {
    ADDED_PAD pad = added_pad_cell(PAD_INOUT, PIN_TABLE[row.pin_index]);
    if (pad.enable == nullptr)
        vmr_fail("ERROR: (%s) can't find %%EN_L or %%EN_H in %%BUFFER %s\n"
                 "       to add a bidirectional pad to port '%s'.\n\n",
                 JTAG_LIB_FILE, pad.cell == nullptr ? "%INOUT_BUFFER" : pad.cell, row.port_name);
    return pad;
}

/// True when the node takes its value from its net. A pin that does both is taken for one that drives.
bool node_reads(const EDIT_FILE *fp, const OPIN_ROW &row, int32_t node) {
    if (is_port_node(node))
        return (port_tab[node_tab[node].pin].flags & SDB_DIRECTION_MASK) == SDB_OUTPUT;
    int32_t direction = pin_tab[node_tab[node].pin].direction & SDB_DIRECTION_MASK;
    if (direction == SDB_BIDIRECTIONAL)
        vmr_printf("WARNING: bidirectional port '%s' leads to bidirectional pin '%s' of '%s'.\n"
                   "         The core will drive the pad through that pin, and can't read it.\n\n",
                   row.port_name, node_pin_name(node), node_operand(fp, node).instance.c_str());
    return direction == SDB_INPUT;
}

/// The control cell of an added pad: a constant enables the direction in which the core uses the port.
void add_constant_control(EDIT_FILE *fp, OPIN_ROW &row, const EDIT_OPERAND &enable, bool is_low,
                          bool core_reads) {
    CHOSEN_CELL chosen = required_cell(row, declared_cell(COUNT_CONTROL));
    const SCAN_CELL *control = chosen.cell;
    const char *name = add_scan_tab(control, row, false, true);
    SCAN_COUNT[chosen.counter]++;
    edit_add_instance(fp, name, control->name);
    edit_connect(fp, pin_of(name, control->data_in), is_low == core_reads ? constant_one() : constant_zero());
    edit_connect(fp, pin_of(name, control->data_out), enable);
}

void add_with_new_pad(EDIT_FILE *fp, OPIN_ROW &row) {
    PLACED_CELL out = new_cell(row, row.scan_cell);
    PLACED_CELL in = new_cell(row, row.input_cell.cell);
    point_at_last_cell(row, keep_format("%s,%s", in.name, out.name));

    ADDED_PAD added = bidirectional_pad(row);
    const BUFFER_CELL *buffer = added.buffer;
    std::string pad = format_text("B_PAD%d", ADD_BUF_COUNT++);
    int32_t node = port_far_node(fp, row);
    bool core_reads = !is_constant_net(node) && node_reads(fp, row, node);
    EDIT_OPERAND far = node_operand(fp, node);
    EDIT_OPERAND pad_output = pin_of(pad, buffer->output);
    EDIT_OPERAND data_out = in.cell->data_out != nullptr ? cell_pin(in, PIN_DATA_OUT) : pad_output;
    EDIT_OPERAND out_data_in = cell_pin(out, PIN_DATA_IN);

    edit_add_instance(fp, pad, added.cell);
    note_added_pad(added.cell, {buffer->inout, buffer->input, buffer->output, added.enable});
    cut_port(fp, row, core_reads ? data_out : out_data_in);
    edit_connect(fp, pin_of(pad, buffer->inout), port_net(row.port_name));
    edit_add_instance(fp, in.name, in.cell->name);
    edit_add_instance(fp, out.name, out.cell->name);
    // A core that drives the port has nothing to be driven by.
    if (core_reads)
        edit_connect(fp, data_out, far);
    edit_connect(fp, pad_output, cell_pin(in, PIN_DATA_IN));
    edit_connect(fp, cell_pin(out, PIN_DATA_OUT), pin_of(pad, buffer->input));
    edit_connect(fp, out_data_in, core_reads ? constant_one() : far);
    add_constant_control(fp, row, pin_of(pad, added.enable), added.is_low, core_reads);
}

} // namespace

void add_in_out_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    if (lives_in_bcm(row))
        add_in_bcm(fp, row);
    else if (row.pad_instance != nullptr)
        add_on_pad(fp, row);
    else if (option(OPT_ADD_PAD))
        add_with_new_pad(fp, row);
}
