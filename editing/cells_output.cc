// Output cells, bidirectional cells and cells in the core.
#include "editing/added_pads.hh"
#include "editing/bcm_cells.hh"
#include "planning/cell_choice.hh"
#include "planning/planning.hh"
#include "planning/tracing.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// Between the core and the port, with a pad of its own when one is to be added.
void add_at_port(EDIT_FILE *fp, OPIN_ROW &row, const char *name) {
    EDIT_OPERAND data_in = pin_of(name, row.scan_cell->data_in);
    EDIT_OPERAND far = port_far_operand(fp, row);
    EDIT_OPERAND driven = port_net(row.port_name);
    if (option(OPT_ADD_PAD)) {
        ADDED_PAD pad = added_pad_cell(PAD_OUTPUT, PIN_TABLE[row.pin_index]);
        const char *instance = keep_format("B_PAD%d", ADD_BUF_COUNT++);
        edit_add_instance(fp, instance, pad.cell);
        cut_port(fp, row, data_in);
        edit_connect(fp, pin_of(instance, pad.buffer->output), port_net(row.port_name));
        row.shown_pad = {true, instance, nullptr};
        driven = pin_of(instance, pad.buffer->input);
        // A two-state output on a pad with an enable: the pad drives always.
        if (pad.enable != nullptr)
            edit_connect(fp, pin_of(instance, pad.enable), pad.is_low ? constant_zero() : constant_one());
        note_added_pad(pad.cell, {pad.buffer->input, pad.buffer->output, pad.enable});
    } else {
        cut_port(fp, row, data_in);
    }
    edit_connect(fp, pin_of(name, row.scan_cell->data_out), driven);
    edit_connect(fp, data_in, far);
}

} // namespace

void add_output_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    PLACED_CELL cell = new_cell(row, row.scan_cell);
    if (is_inside_pad(row, cell)) {
        // The cell is the pad.
        point_at_last_cell(row, cell.name);
        return;
    }
    place_cell(fp, row, cell);
    if (row.pad_instance == nullptr) {
        add_at_port(fp, row, cell.name);
        return;
    }
    PAD_PIN pin = lives_in_bcm(row) ? pad_pin(row, SIDE_INPUT)
                                    : pin_behind_buffer(fp, row, SIDE_INPUT, PAD_WORD_OUTPUT);
    if (stays_at_port(fp, row, cell, pin))
        return;
    cut_pad_input(fp, row, cell, PIN_DATA_IN, PIN_DATA_OUT, pin, true);
    count_bcm_cell(cell, false);
}

void add_bidi_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    PLACED_CELL cell = new_cell(row, row.scan_cell);
    if (is_inside_pad(row, cell))
        return;
    place_cell(fp, row, cell);
    cut_pad_input(fp, row, cell, PIN_PAD_DATA_IN, PIN_PAD_DATA_OUT,
                  pin_behind_buffer(fp, row, SIDE_INPUT, PAD_WORD_BIDIRECTIONAL), false);
    PAD_PIN output = pin_behind_buffer(fp, row, SIDE_OUTPUT, PAD_WORD_BIDIRECTIONAL);
    if (cell.cell->sys_in != nullptr)
        cut_pad_output(fp, row, cell, PIN_SYS_IN, output);
    join(fp, cell, PIN_SYS_PIN, pin_operand(output));
    count_bcm_cell(cell, true);
}

void add_internal_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    PLACED_CELL cell = new_cell(row, row.scan_cell);
    place_cell(fp, row, cell);
    PAD_PIN pin = pad_pin(row, row.pad_output != nullptr ? SIDE_OUTPUT : SIDE_INPUT);
    if (cell.cell->data_out == nullptr) {
        join(fp, cell, PIN_DATA_IN, pin_operand(pin));
        return;
    }
    bool drives_core = pin.side == SIDE_OUTPUT;
    int32_t node = far_end(fp, pin);
    if (node < 0)
        vmr_fail("ERROR: pin '%s' is floating.\n", row.port_name);
    bool at_port = !is_constant_net(node) && is_port_node(node);
    if (at_port && fp->warns_of_ports)
        vmr_printf("WARNING:  '%s' connect to %s port '%s' directly.\n\n", row.port_name,
                   drives_core ? "output" : "input", node_pin_name(node));
    if (drives_core) {
        cut_pad_output(fp, row, cell, PIN_DATA_OUT, pin);
        join(fp, cell, PIN_DATA_IN, pin_operand(pin));
        return;
    }
    // The line for %DATA_IN stands first when the far end is a port.
    cut_pad_input(fp, row, cell, PIN_DATA_IN, PIN_DATA_OUT, pin, !at_port);
}
