// The dispatch over the cell kinds, and what the cell routines share.
#include "editing/cells.hh"

#include "description/lookups.hh"
#include "editing/cell_routines.hh"
#include "planning/planning.hh"
#include "planning/tracing.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

using NAMED_ROUTINE = const char *(*)(EDIT_FILE *fp, int32_t row);

/// What follows the data cell of a kind.
enum CONTROL_STEP { NO_CONTROL, PLAIN_CONTROL, CONTROL_BY_CELL };

struct KIND_STEPS {
    NAMED_ROUTINE routine; ///< null when the kind writes nothing
    CONTROL_STEP control;
};

/// Indexed by CELL_KIND. A mux clock and a mux output with an enable alone keep their rows and get no cell;
/// the pair of input and output cells has its control cell between the two.
constexpr KIND_STEPS STEPS[CELL_KIND_COUNT] = {
    /* CELL_CLOCK         */ {add_input_clock_cell_in_cmd, NO_CONTROL},
    /* CELL_INPUT         */ {add_input_clock_cell_in_cmd, NO_CONTROL},
    /* CELL_OUTPUT2       */ {add_output_scan_cell_in_cmd, NO_CONTROL},
    /* CELL_OUTPUT3       */ {add_output_scan_cell_in_cmd, CONTROL_BY_CELL},
    /* CELL_OUTPUT_EN     */ {add_output_scan_cell_in_cmd, NO_CONTROL},
    /* CELL_BIDIR         */ {add_bidi_scan_cell_in_cmd, CONTROL_BY_CELL},
    /* CELL_INOUT         */ {add_in_out_scan_cell_in_cmd, NO_CONTROL},
    /* CELL_INTERNAL      */ {add_internal_scan_cell_in_cmd, NO_CONTROL},
    /* CELL_MUX_CLOCK     */ {nullptr, NO_CONTROL},
    /* CELL_MUX_INPUT     */ {add_mux_input_cell_in_cmd, NO_CONTROL},
    /* CELL_MUX_OUTPUT2   */ {add_mux_output_scan_cell_in_cmd, NO_CONTROL},
    /* CELL_MUX_OUTPUT3   */ {add_mux_output_scan_cell_in_cmd, CONTROL_BY_CELL},
    /* CELL_MUX_OUTPUT_EN */ {nullptr, NO_CONTROL},
    /* CELL_MUX_BIDIR     */ {add_mux_bidi_scan_cell_in_cmd, CONTROL_BY_CELL},
    /* CELL_MUX2_BIDIR    */ {add_mux_bidi_scan_cell_in_cmd, CONTROL_BY_CELL},
    /* CELL_MUX_INOUT     */ {add_mux1_in_out_scan_cell_in_cmd, PLAIN_CONTROL},
    /* CELL_MUX2_INOUT    */ {add_mux2_in_out_scan_cell_in_cmd, PLAIN_CONTROL},
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

void add_scan_cells_in_cmd_file(EDIT_FILE *fp, int32_t row) {
    int32_t kind = OPIN_TAB[row].kind;
    if (kind < 0 || kind >= CELL_KIND_COUNT || STEPS[kind].routine == nullptr)
        return;
    const char *name = STEPS[kind].routine(fp, row);
    if (STEPS[kind].control == CONTROL_BY_CELL)
        add_control_of_row(fp, row, name);
    else if (STEPS[kind].control == PLAIN_CONTROL)
        add_control_scan_cell_in_cmd(fp, row);
}

void add_control_of_row(EDIT_FILE *fp, int32_t row, const char *name) {
    if (OPIN_TAB[row].scan_cell->oe_mode != nullptr)
        add_oe_control_scan_cell_in_cmd(fp, row, name);
    else
        add_control_scan_cell_in_cmd(fp, row);
}

void place_cell(EDIT_FILE *fp, int32_t row, const char *name, const SCAN_CELL *cell) {
    edit_add_instance(fp, name, cell->name);
    set_order_to_last(row);
    OPIN_TAB[row].scan_cell_name = SCAN_TAB[OPIN_TAB[row].order].inst;
}

void set_order_to_last(int32_t row) {
    OPIN_TAB[row].order = DYNA_count(SCAN_TAB) - 1;
}

void warn_of_port_at_pad(const OPIN_ROW &row, int32_t node) {
    if (!is_constant_net(node) && is_port_node(node))
        vmr_printf("WARNING: Input Pad '%s' connect to output port '%s' directly.\n\n", row.pad_instance,
                   node_pin_name(node));
}

EDIT_OPERAND far_operand_with_warning(const EDIT_FILE *fp, const OPIN_ROW &row, int32_t node) {
    if (fp->warns_of_ports)
        warn_of_port_at_pad(row, node);
    return node_operand(node);
}

void connect_data_in(EDIT_FILE *fp, OPIN_ROW &row, const char *name, const char *data_in) {
    EDIT_OPERAND pad_pin = side_operand(row, SIDE_OUTPUT);
    if (row.inverted == 0) {
        edit_connect(fp, pin_of(name, data_in), pad_pin);
        return;
    }
    std::string inverter = format_text("B_PAD_INV%d", ADD_BUF_COUNT++);
    edit_add_instance(fp, inverter, INVERTER);
    edit_connect(fp, pin_of(inverter, INVERTER_INPUT), pad_pin);
    edit_connect(fp, pin_of(inverter, INVERTER_OUTPUT), pin_of(name, data_in));
}

void mux_pin_step(EDIT_FILE *fp, OPIN_ROW &row, MUX_PIN which, const char *name, const char *cell_pin) {
    mux_pin_step(fp, row, which, name, pin_of(name, cell_pin));
}

void mux_pin_step(EDIT_FILE *fp, OPIN_ROW &row, MUX_PIN which, const char *name,
                  const EDIT_OPERAND &cell_pin) {
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
                   pin == nullptr ? "*UNDEF*" : pin, name);
        edit_disconnect(fp, pad_pin);
    }
    edit_connect(fp, cell_pin, pad_pin);
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
