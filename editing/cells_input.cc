// Input and clock cells.
#include "editing/added_pads.hh"
#include "editing/bcm_cells.hh"
#include "planning/cell_choice.hh"
#include "planning/planning.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// The cell stands between the pad's output and the core. A cell without %DATA_OUT only observes.
void add_behind_pad(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell) {
    bool in_bcm = lives_in_bcm(row);
    PAD_PIN pin =
        in_bcm ? pad_pin(row, SIDE_OUTPUT) : pin_behind_buffer(fp, row, SIDE_OUTPUT, PAD_WORD_INPUT);
    if (stays_at_port(fp, row, cell, pin))
        return;
    if (cell.cell->data_out != nullptr)
        warn_of_chip_port(fp, pin, cut_pad_output(fp, row, cell, PIN_DATA_OUT, pin));
    if (in_bcm)
        join(fp, cell, PIN_DATA_IN, pin_operand(pin));
    else
        connect_data_in(fp, row, cell, pin);
    count_bcm_cell(cell, false);
}

/// The port gets a pad of its own, and the cell stands between that and what the port fed.
void add_behind_new_pad(EDIT_FILE *fp, OPIN_ROW &row, const char *name) {
    ADDED_PAD pad = added_pad_cell(PAD_INPUT, PIN_TABLE[row.pin_index]);
    std::string instance = format_text("B_PAD%d", ADD_BUF_COUNT++);
    const char *data_out = row.scan_cell->data_out;
    EDIT_OPERAND source = pin_of(instance, pad.buffer->output);
    edit_add_instance(fp, instance, pad.cell);
    note_added_pad(pad.cell, {pad.buffer->input, pad.buffer->output});
    EDIT_OPERAND far = port_far_operand(fp, row);
    // The inverter of an added pad takes the pad's number.
    std::string inverter = format_text("B_PAD_INV%d", ADD_BUF_COUNT - 1);
    EDIT_OPERAND behind = row.inverted != 0 ? pin_of(inverter, INVERTER_OUTPUT) : source;
    EDIT_OPERAND core_side = data_out != nullptr ? pin_of(name, data_out) : behind;
    cut_port(fp, row, core_side);
    edit_connect(fp, pin_of(instance, pad.buffer->input), port_net(row.port_name));
    if (row.inverted != 0) {
        edit_add_instance(fp, inverter, INVERTER);
        edit_connect(fp, source, pin_of(inverter, INVERTER_INPUT));
    }
    row.shown_pad = {true, keep_text(behind.instance), nullptr};
    edit_connect(fp, far, core_side);
    edit_connect(fp, pin_of(name, row.scan_cell->data_in), behind);
}

/// Without pads the cell stands directly behind the port.
void add_behind_port(EDIT_FILE *fp, const OPIN_ROW &row, const char *name) {
    if (row.scan_cell->data_out != nullptr) {
        EDIT_OPERAND data_out = pin_of(name, row.scan_cell->data_out);
        EDIT_OPERAND far = port_far_operand(fp, row);
        cut_port(fp, row, data_out);
        edit_connect(fp, data_out, far);
    }
    edit_connect(fp, pin_of(name, row.scan_cell->data_in), port_net(row.port_name));
}

} // namespace

void add_input_clock_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    PLACED_CELL cell = new_cell(row, row.scan_cell);
    if (is_inside_pad(row, cell))
        return;
    place_cell(fp, row, cell);
    if (row.pad_instance == nullptr && option(OPT_ADD_PAD))
        add_behind_new_pad(fp, row, cell.name);
    else if (option(OPT_NO_PAD) && cell.bcm.empty())
        add_behind_port(fp, row, cell.name);
    else
        add_behind_pad(fp, row, cell);
}
