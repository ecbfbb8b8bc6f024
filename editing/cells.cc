// The dispatch over the cell kinds, and what the cell routines share.
#include "editing/cells.hh"

#include "description/lookups.hh"
#include "editing/bcm_cells.hh"
#include "editing/cell_routines.hh"
#include "planning/cell_choice.hh"
#include "planning/planning.hh"
#include "planning/tracing.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// What follows the data cell of a kind.
enum CONTROL_STEP { NO_CONTROL, PLAIN_CONTROL, CONTROL_BY_CELL };

struct KIND_STEPS {
    void (*routine)(EDIT_FILE *fp, OPIN_ROW &row); ///< null when the kind writes nothing
    CONTROL_STEP control;
    bool in_bcm; ///< with -add_bcm the cells stand in <top>_BCM; else in the top module all the same
};

/// Indexed by CELL_KIND. A mux clock and a mux output with an enable alone keep their rows and get no cell;
/// the pair of input and output cells has its control cell between the two.
constexpr KIND_STEPS STEPS[CELL_KIND_COUNT] = {
    /* CELL_CLOCK         */ {add_input_clock_cell_in_cmd, NO_CONTROL, true},
    /* CELL_INPUT         */ {add_input_clock_cell_in_cmd, NO_CONTROL, true},
    /* CELL_OUTPUT2       */ {add_output_scan_cell_in_cmd, NO_CONTROL, true},
    /* CELL_OUTPUT3       */ {add_output_scan_cell_in_cmd, CONTROL_BY_CELL, true},
    /* CELL_OUTPUT_EN     */ {add_output_scan_cell_in_cmd, NO_CONTROL, true},
    /* CELL_BIDIR         */ {add_bidi_scan_cell_in_cmd, CONTROL_BY_CELL, true},
    /* CELL_INOUT         */ {add_in_out_scan_cell_in_cmd, NO_CONTROL, true},
    /* CELL_INTERNAL      */ {add_internal_scan_cell_in_cmd, NO_CONTROL, false},
    /* CELL_MUX_CLOCK     */ {nullptr, NO_CONTROL, true},
    /* CELL_MUX_INPUT     */ {add_mux_input_cell_in_cmd, NO_CONTROL, true},
    /* CELL_MUX_OUTPUT2   */ {add_mux_output_scan_cell_in_cmd, NO_CONTROL, true},
    /* CELL_MUX_OUTPUT3   */ {add_mux_output_scan_cell_in_cmd, CONTROL_BY_CELL, false},
    /* CELL_MUX_OUTPUT_EN */ {nullptr, NO_CONTROL, true},
    /* CELL_MUX_BIDIR     */ {add_mux_bidi_scan_cell_in_cmd, CONTROL_BY_CELL, true},
    /* CELL_MUX2_BIDIR    */ {add_mux_bidi_scan_cell_in_cmd, CONTROL_BY_CELL, true},
    /* CELL_MUX_INOUT     */ {add_mux1_in_out_scan_cell_in_cmd, PLAIN_CONTROL, false},
    /* CELL_MUX2_INOUT    */ {add_mux2_in_out_scan_cell_in_cmd, PLAIN_CONTROL, false},
};

struct CELL_PIN_INFO {
    const char *SCAN_CELL::*pin;
    const char *bcm_suffix; ///< of the port of <top>_BCM
};
/// Indexed by CELL_PIN.
constexpr CELL_PIN_INFO CELL_PINS[] = {
    {&SCAN_CELL::data_in, "IN"},
    {&SCAN_CELL::data_out, "OUT"},
    {&SCAN_CELL::data_in, "DATA_IN"},
    {&SCAN_CELL::data_out, "PAD_OUT"},
    {&SCAN_CELL::sys_in, "DATA_OUT"},
    {&SCAN_CELL::sys_pin, "PAD_IN"},
    {&SCAN_CELL::update_dr_out, "UPD_OUT"},
    {&SCAN_CELL::mux_data_in, "MUX_DATA_IN"},
};

struct MUX_PIN_INFO {
    const char *keyword;
    const char *BUFFER_CELL::*pin;
    int32_t OPIN_ROW::*net;
};
constexpr MUX_PIN_INFO MUX_PINS[] = {
    {"%MUX_IN1", &BUFFER_CELL::mux_in1, &OPIN_ROW::mux_in1_net},
    {"%MUX_IN2", &BUFFER_CELL::mux_in2, &OPIN_ROW::mux_in2_net},
    {"%MUX_OUT", &BUFFER_CELL::mux_out, &OPIN_ROW::mux_out_net},
};

} // namespace

bool lives_in_bcm(const OPIN_ROW &row) {
    return option(OPT_ADD_BCM) && STEPS[row.kind].in_bcm;
}

void add_scan_cells_in_cmd_file(EDIT_FILE *fp, OPIN_ROW &row) {
    if (row.kind < 0 || row.kind >= CELL_KIND_COUNT || STEPS[row.kind].routine == nullptr)
        return;
    // The report leaves out a bidirectional cell inside its pad.
    if (row.kind != CELL_BIDIR || !is_bs_buffer(row.pad))
        SCAN_COUNT[row.counter]++;
    if (row.input_cell.cell != nullptr)
        SCAN_COUNT[row.input_cell.counter]++;
    int32_t before = DYNA_count(SCAN_TAB);
    STEPS[row.kind].routine(fp, row);
    if (STEPS[row.kind].control == CONTROL_BY_CELL)
        add_control_of_row(fp, row);
    else if (STEPS[row.kind].control == PLAIN_CONTROL)
        add_control_scan_cell_in_cmd(fp, row);
    for (int32_t cell = before; option(OPT_ADD_BCM) && !lives_in_bcm(row) && cell < DYNA_count(SCAN_TAB);
         cell++)
        warn_of_unwired_cell(row, SCAN_TAB[cell].inst);
}

void add_control_of_row(EDIT_FILE *fp, OPIN_ROW &row) {
    if (row.scan_cell->oe_mode != nullptr)
        add_oe_control_scan_cell_in_cmd(fp, row);
    else
        add_control_scan_cell_in_cmd(fp, row);
}

PLACED_CELL new_cell(OPIN_ROW &row, const SCAN_CELL *cell, bool mux) {
    PLACED_CELL placed = {cell, add_scan_tab(cell, row, mux, false), ""};
    if (!lives_in_bcm(row))
        return placed;
    placed.bcm = keeps_scan_name(row) ? placed.name : next_bcm_cell();
    if (row.kind <= CELL_BIDIR)
        placed.blanks = placed.out_blanks = EDIT_WIDE_SECOND;
    if (keeps_scan_name(row))
        placed.out_blanks = EDIT_WIDE;
    return placed;
}

void place_cell(EDIT_FILE *fp, OPIN_ROW &row, const PLACED_CELL &cell) {
    if (cell.bcm.empty())
        edit_add_instance(fp, cell.name, cell.cell->name);
    point_at_last_cell(row, cell.name);
}

void point_at_last_cell(OPIN_ROW &row, const char *names) {
    row.order = DYNA_count(SCAN_TAB) - 1;
    row.scan_cell_name = names;
}

bool is_inside_pad(const OPIN_ROW &row, const PLACED_CELL &cell) {
    if (!is_bs_buffer(row.pad))
        return false;
    if (lives_in_bcm(row))
        warn_of_unwired_cell(row, cell.name);
    return true;
}

EDIT_OPERAND cell_pin(const PLACED_CELL &cell, CELL_PIN pin) {
    const CELL_PIN_INFO &info = CELL_PINS[pin];
    return cell.bcm.empty() ? pin_of(cell.name, cell.cell->*info.pin) : bcm_port(cell.bcm, info.bcm_suffix);
}

void join(EDIT_FILE *fp, const PLACED_CELL &cell, CELL_PIN pin, const EDIT_OPERAND &other) {
    bool is_out = pin == PIN_DATA_OUT || pin == PIN_PAD_DATA_OUT;
    bool narrow = pin == PIN_PAD_DATA_IN && other.kind != EDIT_OPERAND::NET;
    edit_connect(fp, cell_pin(cell, pin), other,
                 narrow   ? EDIT_PLAIN
                 : is_out ? cell.out_blanks
                          : cell.blanks);
}

void warn_of_port_at_pad(const PAD_PIN &pin, int32_t node) {
    if (!is_constant_net(node) && is_port_node(node))
        vmr_printf("WARNING: Input Pad '%s' connect to output port '%s' directly.\n\n", pin.instance,
                   node_pin_name(node));
}

void warn_of_chip_port(const EDIT_FILE *fp, const PAD_PIN &pin, int32_t node) {
    if (fp->warns_of_ports)
        warn_of_port_at_pad(pin, node);
}

void connect_data_in(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell, const PAD_PIN &pin) {
    if (row.inverted == 0) {
        join(fp, cell, PIN_DATA_IN, pin_operand(pin));
        return;
    }
    std::string inverter = format_text("B_PAD_INV%d", ADD_BUF_COUNT++);
    edit_add_instance(fp, inverter, INVERTER);
    edit_connect(fp, pin_of(inverter, INVERTER_INPUT), pin_operand(pin));
    edit_connect(fp, pin_of(inverter, INVERTER_OUTPUT), cell_pin(cell, PIN_DATA_IN));
}

void cut_pad_input(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell, CELL_PIN in, CELL_PIN out,
                   const PAD_PIN &pin, bool out_first) {
    EDIT_OPERAND far = node_operand(fp, far_end_of_pad(fp, row, pin));
    cut_pin(fp, pin, cell_pin(cell, in), cell.out_blanks);
    if (out_first)
        join(fp, cell, out, pin_operand(pin));
    join(fp, cell, in, far);
    if (!out_first)
        join(fp, cell, out, pin_operand(pin));
}

int32_t cut_pad_output(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell, CELL_PIN out,
                       const PAD_PIN &pin) {
    int32_t node = far_end_of_pad(fp, row, pin);
    cut_pin(fp, pin, cell_pin(cell, out), cell.out_blanks);
    join(fp, cell, out, node_operand(fp, node));
    return node;
}

void mux_pin_step(EDIT_FILE *fp, const OPIN_ROW &row, MUX_PIN which, const PLACED_CELL &cell,
                  CELL_PIN cell_side) {
    const MUX_PIN_INFO &info = MUX_PINS[which];
    const char *pin = row.pad == nullptr ? nullptr : row.pad->*info.pin;
    int32_t net = row.*info.net;
    if (net > 1)
        return;
    EDIT_OPERAND pad_pin = pin_of(row.pad_instance, pin);
    if (is_constant_net(net)) {
        vmr_printf("WARNING: Pin %s of pad '%s'(%s) connected to %s.\n"
                   "         %s '%s' will be disconnected and reconnected\n"
                   "         to scan cell '%s'.\n",
                   info.keyword, row.pad_instance, row.pad_class, net == 0 ? "GND" : "VCC", info.keyword,
                   text_or_undefined(pin), cell.bcm.empty() ? cell.name : cell.bcm.c_str());
        edit_disconnect(fp, pad_pin);
    }
    join(fp, cell, cell_side, pad_pin);
}

void free_pad_mode(EDIT_FILE *fp, const OPIN_ROW &row, int32_t mode) {
    int32_t net = row.mode_net[mode];
    if (!is_constant_net(net))
        return;
    const char *pin = row.pad->*PAD_MODES[mode];
    vmr_printf("WARNING: Pin %%MODE_%d of pad '%s'(%s) connected to %s.\n"
               "         %%MODE_%d '%s' will be disconnected and reconnected to TAP.\n",
               mode + 1, row.pad_instance, row.pad_class, net == 0 ? "GND" : "VCC", mode + 1, pin);
    edit_disconnect(fp, pin_of(row.pad_instance, pin));
}
