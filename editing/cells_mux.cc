// Cells on mux pads: the pad's own multiplexers stand in the data path, and the cells drive their test
// inputs.
#include "editing/cell_routines.hh"
#include "planning/planning.hh"
#include "support/text.hh"

namespace {

/// Appends the output and the input cell of a mux pad with two cells; the output cell comes first in the
/// chain.
struct MUX_PAIR {
    const SCAN_CELL *in, *out;
    const char *in_name, *out_name;
};

MUX_PAIR place_mux_pair(EDIT_FILE *fp, int32_t index, bool mux_is_input) {
    OPIN_ROW &row = OPIN_TAB[index];
    MUX_PAIR pair = {row.input_cell.cell, row.scan_cell, nullptr, nullptr};
    pair.out_name = add_scan_tab(pair.out, index, !mux_is_input, false);
    pair.in_name = add_scan_tab(pair.in, index, mux_is_input, false);
    SCAN_COUNT[row.counter]++;
    SCAN_COUNT[row.input_cell.counter]++;
    set_order_to_last(index);
    row.scan_cell_name = keep_format("%s,%s", pair.out_name, pair.in_name);
    edit_add_instance(fp, pair.out_name, pair.out->name);
    edit_add_instance(fp, pair.in_name, pair.in->name);
    return pair;
}

void connect_pair_data(EDIT_FILE *fp, OPIN_ROW &row, const MUX_PAIR &pair) {
    edit_connect(fp, pin_of(pair.in_name, pair.in->data_in), side_operand(row, SIDE_OUTPUT));
    if (pair.out->data_in != nullptr)
        edit_connect(fp, pin_of(pair.out_name, pair.out->data_in), side_operand(row, SIDE_INPUT));
    mux_pin_step(fp, row, MUX_IN1, pair.out_name, pair.out->update_dr_out);
}

} // namespace

const char *add_mux_input_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    SCAN_COUNT[row.counter]++;
    const char *name = add_scan_tab(row.scan_cell, index, true, false);
    place_cell(fp, index, name, row.scan_cell);
    mux_pin_step(fp, row, MUX_IN2, name, row.scan_cell->update_dr_out);
    connect_data_in(fp, row, name, row.scan_cell->data_in);
    return name;
}

const char *add_mux_output_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    SCAN_COUNT[row.counter]++;
    const char *name = add_scan_tab(row.scan_cell, index, true, false);
    place_cell(fp, index, name, row.scan_cell);
    mux_pin_step(fp, row, MUX_IN1, name, row.scan_cell->update_dr_out);
    if (row.scan_cell->data_in != nullptr)
        edit_connect(fp, pin_of(name, row.scan_cell->data_in), side_operand(row, SIDE_INPUT));
    return name;
}

const char *add_mux_bidi_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    const SCAN_CELL *cell = row.scan_cell;
    SCAN_COUNT[row.counter]++;
    const char *name = add_scan_tab(cell, index, true, false);
    place_cell(fp, index, name, cell);
    if (cell->sys_in != nullptr) {
        EDIT_OPERAND far = node_operand(far_end_of_side(row, SIDE_OUTPUT, PAD_WORD_BIDIRECTIONAL));
        EDIT_OPERAND sys_in = pin_of(name, cell->sys_in);
        cut_pin(fp, row.pad_instance, row.pad_output, sys_in);
        edit_connect(fp, sys_in, far);
    }
    edit_connect(fp, pin_of(name, cell->sys_pin), side_operand(row, SIDE_OUTPUT));
    if (cell->data_in != nullptr)
        edit_connect(fp, pin_of(name, cell->data_in), side_operand(row, SIDE_INPUT));
    mux_pin_step(fp, row, MUX_IN1, name, cell->update_dr_out);
    if (cell->mux_data_in != nullptr && row.pad != nullptr && row.pad->mux_out != nullptr)
        mux_pin_step(fp, row, MUX_OUT, name, cell->mux_data_in);
    return name;
}

const char *add_mux1_in_out_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    MUX_PAIR pair = place_mux_pair(fp, index, true);
    connect_pair_data(fp, row, pair);
    return pair.out_name;
}

const char *add_mux2_in_out_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    MUX_PAIR pair = place_mux_pair(fp, index, false);
    if (pair.in->update_dr_out != nullptr)
        mux_pin_step(fp, row, MUX_IN2, pair.in_name, pair.in->update_dr_out);
    connect_pair_data(fp, row, pair);
    return pair.out_name;
}
