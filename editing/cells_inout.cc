// Bidirectional ports with an input cell and an output cell.
#include "description/lookups.hh"
#include "editing/added_pads.hh"
#include "editing/cell_routines.hh"
#include "planning/cell_choice.hh"
#include "planning/planning.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

struct IN_OUT_PAIR {
    const SCAN_CELL *in, *out;
    const char *in_name, *out_name;
};

/// The chain holds output cell, control cell, input cell.
void add_on_pad(EDIT_FILE *fp, int32_t index, IN_OUT_PAIR &pair) {
    OPIN_ROW &row = OPIN_TAB[index];
    pair.out_name = add_scan_tab(pair.out, index, false, false);
    set_order_to_last(index);
    // The %OE_MODE wire of a control cell names the output cell, which then has to stand already.
    bool output_first = row.scan_cell->oe_mode != nullptr;
    if (output_first)
        edit_add_instance(fp, pair.out_name, pair.out->name);
    add_control_of_row(fp, index, pair.out_name);
    pair.in_name = add_scan_tab(pair.in, index, false, false);
    row.scan_cell_name = keep_format("%s,%s", pair.in_name, pair.out_name);

    SAVED_SIDE saved = begin_side(row, SIDE_OUTPUT, PAD_WORD_BIDIRECTIONAL);
    edit_add_instance(fp, pair.in_name, pair.in->name);
    if (!output_first)
        edit_add_instance(fp, pair.out_name, pair.out->name);
    if (pair.in->data_out != nullptr) {
        int32_t node = far_end_of_side(row, SIDE_OUTPUT, PAD_WORD_BIDIRECTIONAL);
        EDIT_OPERAND data_out = pin_of(pair.in_name, pair.in->data_out);
        cut_pin(fp, row.pad_instance, row.pad_output, data_out);
        warn_of_port_at_pad(row, node);
        edit_connect(fp, data_out, node_operand(node));
    }
    edit_connect(fp, pin_of(pair.in_name, pair.in->data_in), side_operand(row, SIDE_OUTPUT));
    end_side(row, SIDE_OUTPUT, saved);

    saved = begin_side(row, SIDE_INPUT, PAD_WORD_BIDIRECTIONAL);
    EDIT_OPERAND far = node_operand(far_end_of_side(row, SIDE_INPUT, PAD_WORD_BIDIRECTIONAL));
    EDIT_OPERAND data_in = pin_of(pair.out_name, pair.out->data_in);
    cut_pin(fp, row.pad_instance, row.pad_input, data_in);
    edit_connect(fp, data_in, far);
    edit_connect(fp, pin_of(pair.out_name, pair.out->data_out), side_operand(row, SIDE_INPUT));
    end_side(row, SIDE_INPUT, saved);
}

const BUFFER_CELL *bidirectional_pad_cell(const OPIN_ROW &row, const char *&name) {
    name = PIN_TABLE[row.pin_index]->pad_name;
    if (name != nullptr)
        bs_check_inout_buf_fields(name);
    else
        name = INOUT_BUFFER;
    const BUFFER_CELL *buffer = get_buffer(name);
    bool is_low;
    if (buffer == nullptr || chosen_enable_pin(buffer, PIN_TABLE[row.pin_index], &is_low) == nullptr)
        vmr_fail("ERROR: (%s) can't find %%EN_L or %%EN_H in %%BUFFER %s\n"
                 "       to add a bidirectional pad to port '%s'.\n\n",
                 JTAG_LIB_FILE == nullptr ? "" : JTAG_LIB_FILE, name == nullptr ? "%INOUT_BUFFER" : name,
                 row.port_name);
    return buffer;
}

/// True when the node takes its value from its net. A pin that does both is taken for one that drives.
bool node_reads(const OPIN_ROW &row, int32_t node) {
    if (is_port_node(node))
        return (port_tab[node_tab[node].pin].flags & SDB_DIRECTION_MASK) == SDB_OUTPUT;
    int32_t direction = pin_tab[node_tab[node].pin].direction & SDB_DIRECTION_MASK;
    if (direction == SDB_BIDIRECTIONAL)
        vmr_printf("WARNING: bidirectional port '%s' leads to bidirectional pin '%s' of '%s'.\n"
                   "         The core will drive the pad through that pin, and can't read it.\n\n",
                   row.port_name, node_pin_name(node), node_operand(node).instance.c_str());
    return direction == SDB_INPUT;
}

/// The control cell of an added pad: a constant enables the direction in which the core uses the port.
void add_constant_control(EDIT_FILE *fp, int32_t index, const EDIT_OPERAND &enable, bool is_low,
                          bool core_reads) {
    const OPIN_ROW &row = OPIN_TAB[index];
    CHOSEN_CELL chosen = required_cell(row, declared_cell(COUNT_CONTROL));
    const SCAN_CELL *control = chosen.cell;
    const char *name = add_scan_tab(control, index, false, true);
    SCAN_COUNT[chosen.counter]++;
    edit_add_instance(fp, name, control->name);
    edit_connect(fp, pin_of(name, control->data_in), is_low == core_reads ? constant_one() : constant_zero());
    edit_connect(fp, pin_of(name, control->data_out), enable);
}

void add_with_new_pad(EDIT_FILE *fp, int32_t index, IN_OUT_PAIR &pair) {
    OPIN_ROW &row = OPIN_TAB[index];
    pair.out_name = add_scan_tab(pair.out, index, false, false);
    pair.in_name = add_scan_tab(pair.in, index, false, false);
    set_order_to_last(index);
    row.scan_cell_name = keep_format("%s,%s", pair.in_name, pair.out_name);

    const char *pad_cell;
    const BUFFER_CELL *buffer = bidirectional_pad_cell(row, pad_cell);
    std::string pad = format_text("B_PAD%d", ADD_BUF_COUNT++);
    int32_t node = port_far_node(row);
    bool core_reads = !is_constant_net(node) && node_reads(row, node);
    EDIT_OPERAND far = node_operand(node);
    EDIT_OPERAND pad_output = pin_of(pad, buffer->output);
    EDIT_OPERAND data_out =
        pair.in->data_out != nullptr ? pin_of(pair.in_name, pair.in->data_out) : pad_output;
    EDIT_OPERAND out_data_in = pin_of(pair.out_name, pair.out->data_in);

    bool is_low;
    const char *enable = chosen_enable_pin(buffer, PIN_TABLE[row.pin_index], &is_low);
    edit_add_instance(fp, pad, pad_cell);
    note_added_pad(pad_cell, {buffer->inout, buffer->input, buffer->output, enable});
    cut_port(fp, row, core_reads ? data_out : out_data_in);
    edit_connect(fp, pin_of(pad, buffer->inout), port_net(row.port_name));
    edit_add_instance(fp, pair.in_name, pair.in->name);
    edit_add_instance(fp, pair.out_name, pair.out->name);
    // A core that drives the port has nothing to be driven by.
    if (core_reads)
        edit_connect(fp, data_out, far);
    edit_connect(fp, pad_output, pin_of(pair.in_name, pair.in->data_in));
    edit_connect(fp, pin_of(pair.out_name, pair.out->data_out), pin_of(pad, buffer->input));
    edit_connect(fp, out_data_in, core_reads ? constant_one() : far);
    add_constant_control(fp, index, pin_of(pad, enable), is_low, core_reads);
}

} // namespace

const char *add_in_out_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    const OPIN_ROW &row = OPIN_TAB[index];
    SCAN_COUNT[row.input_cell.counter]++;
    SCAN_COUNT[row.counter]++;
    IN_OUT_PAIR pair = {row.input_cell.cell, row.scan_cell, nullptr, nullptr};
    if (row.pad_instance != nullptr)
        add_on_pad(fp, index, pair);
    else if (option(OPT_ADD_PAD))
        add_with_new_pad(fp, index, pair);
    return pair.out_name;
}
