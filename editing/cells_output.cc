// Output cells, bidirectional cells and cells in the core.
#include "description/lookups.hh"
#include "editing/added_pads.hh"
#include "editing/cell_routines.hh"
#include "planning/cell_choice.hh"
#include "planning/planning.hh"
#include "planning/tracing.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// The cell stands between the core and the pad pin that the core drives. The joins are written in one of the
/// two orders that the cells have.
void cut_pad_input(EDIT_FILE *fp, OPIN_ROW &row, const char *name, PAD_WORD word, bool data_out_first) {
    SAVED_SIDE saved = begin_side(row, SIDE_INPUT, word);
    int32_t node = far_end_of_side(row, SIDE_INPUT, word);
    EDIT_OPERAND data_in = pin_of(name, row.scan_cell->data_in);
    EDIT_OPERAND data_out = pin_of(name, row.scan_cell->data_out);
    EDIT_OPERAND far = node_operand(node);
    EDIT_OPERAND pad_pin = side_operand(row, SIDE_INPUT);
    cut_pin(fp, row.pad_instance, row.pad_input, data_in);
    if (data_out_first)
        edit_connect(fp, data_out, pad_pin);
    edit_connect(fp, data_in, far);
    if (!data_out_first)
        edit_connect(fp, data_out, pad_pin);
    end_side(row, SIDE_INPUT, saved);
}

/// A two-state output on a pad with an enable: the pad drives always.
void enable_added_pad(EDIT_FILE *fp, const OPIN_ROW &row, const ADDED_PAD &pad) {
    const BUFFER_CELL *buffer = get_buffer(pad.cell);
    bool is_low = false;
    const char *enable =
        buffer == nullptr ? nullptr : chosen_enable_pin(buffer, PIN_TABLE[row.pin_index], &is_low);
    if (enable != nullptr)
        edit_connect(fp, pin_of(row.pad_instance, enable), is_low ? constant_zero() : constant_one());
    note_added_pad(pad.cell, {pad.input, pad.output, enable});
}

/// Between the core and the port, with a pad of its own when one is to be added.
void add_at_port(EDIT_FILE *fp, OPIN_ROW &row, const char *name) {
    EDIT_OPERAND data_in = pin_of(name, row.scan_cell->data_in);
    EDIT_OPERAND far = port_far_operand(row);
    EDIT_OPERAND driven = port_net(row.port_name);
    if (option(OPT_ADD_PAD)) {
        ADDED_PAD pad = output_pad_cell(row);
        const char *instance = keep_format("B_PAD%d", ADD_BUF_COUNT++);
        edit_add_instance(fp, instance, pad.cell);
        cut_port(fp, row, data_in);
        edit_connect(fp, pin_of(instance, pad.output), port_net(row.port_name));
        row.pad_instance = instance;
        row.pad_input = pad.input;
        driven = side_operand(row, SIDE_INPUT);
        enable_added_pad(fp, row, pad);
    } else {
        cut_port(fp, row, data_in);
    }
    edit_connect(fp, pin_of(name, row.scan_cell->data_out), driven);
    edit_connect(fp, data_in, far);
}

} // namespace

const char *add_output_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    SCAN_COUNT[row.counter]++;
    const char *name = add_scan_tab(row.scan_cell, index, false, false);
    if (is_bs_buffer(row.pad)) {
        // The cell is the pad.
        set_order_to_last(index);
        row.scan_cell_name = name;
        return name;
    }
    place_cell(fp, index, name, row.scan_cell);
    if (row.pad_instance != nullptr)
        cut_pad_input(fp, row, name, PAD_WORD_OUTPUT, true);
    else
        add_at_port(fp, row, name);
    return name;
}

const char *add_bidi_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    const SCAN_CELL *cell = row.scan_cell;
    const char *name = add_scan_tab(cell, index, false, false);
    if (is_bs_buffer(row.pad))
        return name;
    SCAN_COUNT[row.counter]++;
    place_cell(fp, index, name, cell);
    cut_pad_input(fp, row, name, PAD_WORD_BIDIRECTIONAL, false);

    SAVED_SIDE saved = begin_side(row, SIDE_OUTPUT, PAD_WORD_BIDIRECTIONAL);
    if (cell->sys_in != nullptr) {
        int32_t node = far_end_of_side(row, SIDE_OUTPUT, PAD_WORD_BIDIRECTIONAL);
        EDIT_OPERAND sys_in = pin_of(name, cell->sys_in);
        cut_pin(fp, row.pad_instance, row.pad_output, sys_in);
        edit_connect(fp, sys_in, node_operand(node));
    }
    edit_connect(fp, pin_of(name, cell->sys_pin), side_operand(row, SIDE_OUTPUT));
    end_side(row, SIDE_OUTPUT, saved);
    return name;
}

const char *add_internal_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    const SCAN_CELL *cell = row.scan_cell;
    SCAN_COUNT[row.counter]++;
    const char *name = add_scan_tab(cell, index, false, false);
    place_cell(fp, index, name, cell);
    PAD_SIDE side = row.pad_output != nullptr ? SIDE_OUTPUT : SIDE_INPUT;
    EDIT_OPERAND pin = side_operand(row, side);
    EDIT_OPERAND data_in = pin_of(name, cell->data_in);
    if (cell->data_out == nullptr) {
        edit_connect(fp, data_in, pin);
        return name;
    }
    EDIT_OPERAND data_out = pin_of(name, cell->data_out);
    int32_t node =
        far_end(row.pad_instance, side_pin(row, side), side == SIDE_OUTPUT ? SDB_OUTPUT : SDB_INPUT);
    if (node < 0)
        vmr_fail("ERROR: pin '%s' is floating.\n", row.port_name);
    bool at_port = !is_constant_net(node) && is_port_node(node);
    EDIT_OPERAND far = node_operand(node);
    cut_pin(fp, row.pad_instance, side_pin(row, side), side == SIDE_OUTPUT ? data_out : data_in);
    if (at_port && fp->warns_of_ports)
        vmr_printf("WARNING:  '%s' connect to %s port '%s' directly.\n\n", row.port_name,
                   side == SIDE_OUTPUT ? "output" : "input", node_pin_name(node));
    if (side == SIDE_OUTPUT) {
        edit_connect(fp, data_out, far);
        edit_connect(fp, data_in, pin);
        return name;
    }
    // The line for %DATA_IN stands first when the far end is a port.
    if (at_port)
        edit_connect(fp, data_in, far);
    edit_connect(fp, data_out, pin);
    if (!at_port)
        edit_connect(fp, data_in, far);
    return name;
}
