// Cells on mux pads: the pad's own multiplexers stand in the data path, and the cells drive their test
// inputs.
#include "editing/bcm_cells.hh"
#include "planning/planning.hh"
#include "support/text.hh"

namespace {

/// Appends the output and the input cell of a mux pad with two cells; the output cell comes first in the
/// chain.
struct MUX_PAIR {
    PLACED_CELL out, in;
};

MUX_PAIR place_mux_pair(EDIT_FILE *fp, OPIN_ROW &row, bool mux_is_input) {
    PLACED_CELL out = new_cell(row, row.scan_cell, !mux_is_input);
    PLACED_CELL in = new_cell(row, row.input_cell.cell, mux_is_input);
    point_at_last_cell(row, keep_format("%s,%s", out.name, in.name));
    edit_add_instance(fp, out.name, out.cell->name);
    edit_add_instance(fp, in.name, in.cell->name);
    return {out, in};
}

void join_pad_input(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell, CELL_PIN pin) {
    if (cell.cell->data_in != nullptr)
        join(fp, cell, pin, pin_operand(pad_pin(row, SIDE_INPUT)));
}

void connect_pair_data(EDIT_FILE *fp, const OPIN_ROW &row, const MUX_PAIR &pair) {
    join(fp, pair.in, PIN_DATA_IN, pin_operand(pad_pin(row, SIDE_OUTPUT)));
    join_pad_input(fp, row, pair.out, PIN_DATA_IN);
    mux_pin_step(fp, row, MUX_IN1, pair.out, PIN_UPDATE_OUT);
}

PLACED_CELL place_mux_cell(EDIT_FILE *fp, OPIN_ROW &row) {
    PLACED_CELL cell = new_cell(row, row.scan_cell, true);
    place_cell(fp, row, cell);
    return cell;
}

} // namespace

void add_mux_input_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    PLACED_CELL cell = place_mux_cell(fp, row);
    mux_pin_step(fp, row, MUX_IN2, cell, PIN_UPDATE_OUT);
    connect_data_in(fp, row, cell, pad_pin(row, SIDE_OUTPUT));
    join_bcm_mode(fp, row, cell, 1);
    count_bcm_cell(cell, true);
}

void add_mux_output_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    PLACED_CELL cell = place_mux_cell(fp, row);
    mux_pin_step(fp, row, MUX_IN1, cell, PIN_UPDATE_OUT);
    join_pad_input(fp, row, cell, PIN_DATA_IN);
    join_bcm_mode(fp, row, cell, 0);
    count_bcm_cell(cell, true);
}

void add_mux_bidi_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    PLACED_CELL cell = place_mux_cell(fp, row);
    PAD_PIN output = pad_pin(row, SIDE_OUTPUT, PAD_WORD_BIDIRECTIONAL);
    if (cell.cell->sys_in != nullptr)
        cut_pad_output(fp, row, cell, PIN_SYS_IN, output);
    join(fp, cell, PIN_SYS_PIN, pin_operand(output));
    join_pad_input(fp, row, cell, PIN_PAD_DATA_IN);
    mux_pin_step(fp, row, MUX_IN1, cell, PIN_UPDATE_OUT);
    if (cell.cell->mux_data_in != nullptr && row.pad != nullptr && row.pad->mux_out != nullptr)
        mux_pin_step(fp, row, MUX_OUT, cell, PIN_MUX_DATA_IN);
    join_bcm_mode(fp, row, cell, 0);
    count_bcm_cell(cell, true);
}

void add_mux1_in_out_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    MUX_PAIR pair = place_mux_pair(fp, row, true);
    connect_pair_data(fp, row, pair);
}

void add_mux2_in_out_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row) {
    MUX_PAIR pair = place_mux_pair(fp, row, false);
    if (pair.in.cell->update_dr_out != nullptr)
        mux_pin_step(fp, row, MUX_IN2, pair.in, PIN_UPDATE_OUT);
    connect_pair_data(fp, row, pair);
}
