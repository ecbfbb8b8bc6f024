#include "editing/bcm_cells.hh"

#include "editing/cells.hh"
#include "planning/cell_choice.hh"
#include "planning/planning.hh"
#include "planning/tracing.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <unordered_set>

int32_t level_count = 0;

namespace {

/// The cells of <top>_BCM that have names so far.
struct BCM_CELLS {
    std::unordered_set<std::string> names;
    std::string last;
};
BCM_CELLS bcm_cells;

bool is_port_far_end(int32_t node) {
    return !is_constant_net(node) && is_port_node(node);
}

/// Joins a port of the cell to the pad pin.
void join(EDIT_FILE *fp, const char *suffix, const EDIT_OPERAND &pin, EDIT_BLANKS blanks = EDIT_WIDE_SECOND) {
    edit_connect(fp, bcm_port(next_bcm_cell(), suffix), pin, blanks);
}

/// A cell that is built into the pad has no place in <top>_BCM.
bool is_inside_pad(const OPIN_ROW &row, const char *name) {
    if (!is_bs_buffer(row.pad))
        return false;
    warn_of_unwired_cell(row, name);
    return true;
}

void name_row(OPIN_ROW &row, int32_t index) {
    set_order_to_last(index);
    row.scan_cell_name = SCAN_TAB[row.order].inst;
}

void make_input_clock_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    SCAN_COUNT[row.counter]++;
    const char *name = add_scan_tab(row.scan_cell, index, false, false);
    if (is_inside_pad(row, name))
        return;
    name_row(row, index);
    int32_t node = far_end_of_side(row, SIDE_OUTPUT, PAD_WORD_INPUT);
    EDIT_OPERAND far = far_operand_with_warning(fp, row, node);
    // The wire from a pad straight to a port stays as it is.
    if (is_port_far_end(node))
        return;
    take_bcm_name(name);
    if (row.scan_cell->data_out != nullptr) {
        EDIT_OPERAND data_out = bcm_port(name, "OUT");
        cut_pin(fp, row.pad_instance, row.pad_output, data_out, EDIT_WIDE);
        edit_connect(fp, data_out, far, EDIT_WIDE);
    }
    edit_connect(fp, bcm_port(name, "IN"), side_operand(row, SIDE_OUTPUT), EDIT_WIDE_SECOND);
    count_bcm_cell();
}

void make_output_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    SCAN_COUNT[row.counter]++;
    const char *name = add_scan_tab(row.scan_cell, index, false, false);
    name_row(row, index);
    if (is_inside_pad(row, name))
        return;
    int32_t node = far_end_of_side(row, SIDE_INPUT, PAD_WORD_INPUT);
    EDIT_OPERAND far = far_operand_with_warning(fp, row, node);
    if (is_port_far_end(node))
        return;
    take_bcm_name(name);
    EDIT_OPERAND data_in = bcm_port(name, "IN");
    cut_pin(fp, row.pad_instance, row.pad_input, data_in, EDIT_WIDE);
    edit_connect(fp, bcm_port(name, "OUT"), side_operand(row, SIDE_INPUT), EDIT_WIDE);
    edit_connect(fp, data_in, far, EDIT_WIDE_SECOND);
    count_bcm_cell();
}

/// Cuts the pad pin that the core drives: the far end goes to port `in`, port `out` to the pad.
void cut_pad_input(EDIT_FILE *fp, OPIN_ROW &row, const char *in, const char *out, EDIT_BLANKS out_blanks) {
    SAVED_SIDE saved = begin_side(row, SIDE_INPUT, PAD_WORD_BIDIRECTIONAL);
    int32_t node = far_end_of_side(row, SIDE_INPUT, PAD_WORD_BIDIRECTIONAL);
    EDIT_OPERAND far = node_operand(node);
    cut_pin(fp, row.pad_instance, row.pad_input, bcm_port(next_bcm_cell(), in));
    bool wide = out_blanks == EDIT_WIDE_SECOND && is_port_far_end(node);
    join(fp, in, far, wide ? EDIT_WIDE_SECOND : EDIT_PLAIN);
    join(fp, out, side_operand(row, SIDE_INPUT), out_blanks);
    end_side(row, SIDE_INPUT, saved);
}

/// Cuts the pad pin that drives the core: port `out` takes its place there.
void cut_pad_output(EDIT_FILE *fp, OPIN_ROW &row, const char *out, EDIT_BLANKS blanks) {
    int32_t node = far_end_of_side(row, SIDE_OUTPUT, PAD_WORD_BIDIRECTIONAL);
    EDIT_OPERAND far = node_operand(node);
    cut_pin(fp, row.pad_instance, row.pad_output, bcm_port(next_bcm_cell(), out));
    join(fp, out, far, blanks);
}

void make_bidi_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    const char *name = add_scan_tab(row.scan_cell, index, false, false);
    if (is_inside_pad(row, name))
        return;
    SCAN_COUNT[row.counter]++;
    name_row(row, index);
    cut_pad_input(fp, row, "DATA_IN", "PAD_OUT", EDIT_WIDE_SECOND);
    SAVED_SIDE saved = begin_side(row, SIDE_OUTPUT, PAD_WORD_BIDIRECTIONAL);
    if (row.scan_cell->sys_in != nullptr)
        cut_pad_output(fp, row, "DATA_OUT", EDIT_WIDE_SECOND);
    join(fp, "PAD_IN", side_operand(row, SIDE_OUTPUT));
    end_side(row, SIDE_OUTPUT, saved);
    count_bcm_cell();
}

/// Both data cells are reached as a plain input and a plain output cell: IN and OUT.
void make_in_out_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    const SCAN_CELL *in = row.input_cell.cell;
    SCAN_COUNT[row.input_cell.counter]++;
    SCAN_COUNT[row.counter]++;
    const char *out_name = add_scan_tab(row.scan_cell, index, false, false);
    const char *in_name = add_scan_tab(in, index, false, false);
    set_order_to_last(index);
    row.scan_cell_name = keep_format("%s,%s", out_name, in_name);

    SAVED_SIDE saved = begin_side(row, SIDE_OUTPUT, PAD_WORD_BIDIRECTIONAL);
    if (in->data_out != nullptr)
        cut_pad_output(fp, row, "OUT", EDIT_PLAIN);
    join(fp, "IN", side_operand(row, SIDE_OUTPUT), EDIT_PLAIN);
    end_side(row, SIDE_OUTPUT, saved);
    count_bcm_cell();

    cut_pad_input(fp, row, "IN", "OUT", EDIT_PLAIN);
    count_bcm_cell();
}

/// The mux pin's test input, driven by the cell.
void join_mux_pin(EDIT_FILE *fp, OPIN_ROW &row, MUX_PIN which, const char *suffix) {
    std::string cell = next_bcm_cell();
    mux_pin_step(fp, row, which, cell.c_str(), bcm_port(cell, suffix));
}

/// The pad's mode pin is driven through <top>_BCM, unless it stands on a working net.
void join_mode_pin(EDIT_FILE *fp, OPIN_ROW &row, int32_t mode, const char *suffix) {
    const char *pin = row.pad == nullptr ? nullptr : row.pad->*PAD_MODES[mode];
    if (pin == nullptr || row.mode_net[mode] > 1)
        return;
    free_pad_mode(fp, row, mode);
    join(fp, suffix, pin_of(row.pad_instance, pin), EDIT_PLAIN);
}

void make_mux_input_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    SCAN_COUNT[row.counter]++;
    add_scan_tab(row.scan_cell, index, true, false);
    name_row(row, index);
    join_mux_pin(fp, row, MUX_IN2, "UPD_OUT");
    if (row.inverted == 0) {
        join(fp, "IN", side_operand(row, SIDE_OUTPUT), EDIT_PLAIN);
    } else {
        std::string inverter = format_text("B_PAD_INV%d", ADD_BUF_COUNT++);
        edit_add_instance(fp, inverter, INVERTER);
        edit_connect(fp, pin_of(inverter, INVERTER_INPUT), side_operand(row, SIDE_OUTPUT));
        edit_connect(fp, pin_of(inverter, INVERTER_OUTPUT), bcm_port(next_bcm_cell(), "IN"));
    }
    join_mode_pin(fp, row, 1, "MODE2");
    count_bcm_cell();
}

void make_mux_output_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    SCAN_COUNT[row.counter]++;
    add_scan_tab(row.scan_cell, index, true, false);
    name_row(row, index);
    join_mux_pin(fp, row, MUX_IN1, "UPD_OUT");
    if (row.scan_cell->data_in != nullptr)
        join(fp, "IN", side_operand(row, SIDE_INPUT), EDIT_PLAIN);
    join_mode_pin(fp, row, 0, "MODE1");
    count_bcm_cell();
}

void make_mux_bidi_scan_cell_in_cmd(EDIT_FILE *fp, int32_t index) {
    OPIN_ROW &row = OPIN_TAB[index];
    const SCAN_CELL *cell = row.scan_cell;
    SCAN_COUNT[row.counter]++;
    add_scan_tab(cell, index, true, false);
    name_row(row, index);
    if (cell->sys_in != nullptr)
        cut_pad_output(fp, row, "DATA_OUT", EDIT_PLAIN);
    join(fp, "PAD_IN", side_operand(row, SIDE_OUTPUT), EDIT_PLAIN);
    if (cell->data_in != nullptr)
        join(fp, "DATA_IN", side_operand(row, SIDE_INPUT), EDIT_PLAIN);
    join_mux_pin(fp, row, MUX_IN1, "UPD_OUT");
    if (cell->mux_data_in != nullptr && row.pad != nullptr && row.pad->mux_out != nullptr)
        join_mux_pin(fp, row, MUX_OUT, "MUX_DATA_IN");
    join_mode_pin(fp, row, 0, "MODE1");
    count_bcm_cell();
}

// Routines in the form of the dispatch table.
using CELL_ROUTINE = void (*)(EDIT_FILE *fp, int32_t row);

void add_internal_cell(EDIT_FILE *fp, int32_t row) {
    add_internal_scan_cell_in_cmd(fp, row);
}
void add_mux_output_with_control(EDIT_FILE *fp, int32_t row) {
    add_control_beside_bcm(fp, row, add_mux_output_scan_cell_in_cmd(fp, row), true);
}
void add_mux_pair_with_control(EDIT_FILE *fp, int32_t row) {
    add_control_beside_bcm(fp, row, add_mux1_in_out_scan_cell_in_cmd(fp, row), false);
}
void add_mux2_pair_with_control(EDIT_FILE *fp, int32_t row) {
    add_control_beside_bcm(fp, row, add_mux2_in_out_scan_cell_in_cmd(fp, row), false);
}

/// What follows the data cell of a kind.
enum CONTROL_STEP { NO_CONTROL, PLAIN_CONTROL, CONTROL_BY_CELL };

struct KIND_STEPS {
    CELL_ROUTINE routine; ///< null when the kind writes nothing
    CONTROL_STEP control;
    bool in_top; ///< the cells stand in the top module itself
};

/// Indexed by CELL_KIND.
constexpr KIND_STEPS STEPS[CELL_KIND_COUNT] = {
    /* CELL_CLOCK         */ {make_input_clock_cell_in_cmd, NO_CONTROL, false},
    /* CELL_INPUT         */ {make_input_clock_cell_in_cmd, NO_CONTROL, false},
    /* CELL_OUTPUT2       */ {make_output_scan_cell_in_cmd, NO_CONTROL, false},
    /* CELL_OUTPUT3       */ {make_output_scan_cell_in_cmd, CONTROL_BY_CELL, false},
    /* CELL_OUTPUT_EN     */ {make_output_scan_cell_in_cmd, NO_CONTROL, false},
    /* CELL_BIDIR         */ {make_bidi_scan_cell_in_cmd, CONTROL_BY_CELL, false},
    /* CELL_INOUT         */ {make_in_out_scan_cell_in_cmd, PLAIN_CONTROL, false},
    /* CELL_INTERNAL      */ {add_internal_cell, NO_CONTROL, true},
    /* CELL_MUX_CLOCK     */ {nullptr, NO_CONTROL, false},
    /* CELL_MUX_INPUT     */ {make_mux_input_cell_in_cmd, NO_CONTROL, false},
    /* CELL_MUX_OUTPUT2   */ {make_mux_output_scan_cell_in_cmd, NO_CONTROL, false},
    /* CELL_MUX_OUTPUT3   */ {add_mux_output_with_control, NO_CONTROL, true},
    /* CELL_MUX_OUTPUT_EN */ {nullptr, NO_CONTROL, false},
    /* CELL_MUX_BIDIR     */ {make_mux_bidi_scan_cell_in_cmd, CONTROL_BY_CELL, false},
    /* CELL_MUX2_BIDIR    */ {make_mux_bidi_scan_cell_in_cmd, CONTROL_BY_CELL, false},
    /* CELL_MUX_INOUT     */ {add_mux_pair_with_control, NO_CONTROL, true},
    /* CELL_MUX2_INOUT    */ {add_mux2_pair_with_control, NO_CONTROL, true},
};

} // namespace

std::string bcm_name() {
    return format_text("%s_BCM", TOP_MODULE);
}

EDIT_OPERAND bcm_port(const std::string &cell, const char *suffix) {
    return pin_of(bcm_name(), (cell + "_" + suffix).c_str());
}

std::string next_bcm_cell() {
    // A cell that is left alone has a row in SCAN_TAB and no number here, so the two may drift apart.
    while (bcm_cells.names.contains(format_text("BCELL%d", level_count)))
        level_count++;
    return format_text("BCELL%d", level_count);
}

void take_bcm_name(const std::string &cell) {
    bcm_cells.names.insert(cell);
}

void count_bcm_cell() {
    bcm_cells.last = format_text("BCELL%d", level_count);
    bcm_cells.names.insert(bcm_cells.last);
    level_count++;
}

std::string last_bcm_cell() {
    return bcm_cells.last;
}

void warn_of_unwired_cell(const OPIN_ROW &row, const char *name) {
    vmr_printf("WARNING: cell '%s' of port '%s' does not stand in %s:\n"
               "         option -add_bcm leaves its chain and control pins unconnected.\n\n",
               name, row.port_name, bcm_name().c_str());
}

void begin_bcm_cells() {
    bcm_cells = {};
    level_count = 0;
}

void make_scan_cells_in_cmd_file(EDIT_FILE *fp, int32_t index) {
    const OPIN_ROW &row = OPIN_TAB[index];
    if (row.kind < 0 || row.kind >= CELL_KIND_COUNT || STEPS[row.kind].routine == nullptr)
        return;
    const KIND_STEPS &steps = STEPS[row.kind];
    int32_t before = DYNA_count(SCAN_TAB);
    steps.routine(fp, index);
    for (int32_t cell = before; steps.in_top && cell < DYNA_count(SCAN_TAB); cell++)
        warn_of_unwired_cell(row, SCAN_TAB[cell].inst);
    bool is_oe = row.scan_cell->oe_mode != nullptr;
    if (steps.control == CONTROL_BY_CELL && is_oe)
        make_oe_control_scan_cell_in_cmd(fp, index);
    else if (steps.control != NO_CONTROL)
        make_control_scan_cell_in_cmd(fp, index);
}
