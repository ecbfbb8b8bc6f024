// Output ports: 2-state or 3-state, the core net that drives the pad, the cell, and the enable's control.
#include "planning/planning.hh"

#include "description/lookups.hh"
#include "planning/cell_choice.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

enum PAD_STATE { STATE_2, STATE_3, STATE_ENABLE_ONLY };

constexpr MUX_PIN_PAIR OUTPUT_MUX = {"%MODE_1", "%MUX_IN1", "mux output pad", "Mux output pad"};

/// Kind by state, without and with a multiplexer in the pad.
constexpr int32_t OUTPUT_KIND[2][3] = {{CELL_OUTPUT2, CELL_OUTPUT3, CELL_OUTPUT_EN},
                                       {CELL_MUX_OUTPUT2, CELL_MUX_OUTPUT3, CELL_MUX_OUTPUT_EN}};

/// Takes the net on the pad's data pin. `words` is the pad's keyword in the message.
void take_data_net(OPIN_ROW &row, const char *data_pin, const char *words) {
    const char *net = verify_obj_pin_name(row.pad_obj, data_pin, DIR_INPUT);
    if (net == nullptr)
        vmr_fail("ERROR: (%s) %%INPUT %s specified in %s %s\n"
                 "       can't be found in file '%s' while tracing port '%s'.\n\n",
                 JTAG_LIB_FILE, text_or_undefined(data_pin), words, row.pad_class, MODULE_C_SDB,
                 row.port_name);
    row.net_name = keep_text(net);
    row.pad_input = data_pin;
}

PAD_STATE plain_pad_state(OPIN_ROW &row, BUFFER_CELL *pad) {
    const PIN_ENTRY *pin = PIN_TABLE[row.pin_index];
    bool has_enable = pad->en_l != nullptr || pad->en_h != nullptr;
    if (pad->input == nullptr && !has_enable)
        vmr_fail("ERROR: (%s) can't find %%INPUT in %%BUFFER  %s.\n\n", JTAG_LIB_FILE, row.pad_class);
    PAD_STATE state = !has_enable ? STATE_2 : pad->input != nullptr ? STATE_3 : STATE_ENABLE_ONLY;
    const char *data_pin = state == STATE_ENABLE_ONLY ? chosen_enable_pin(pad, pin, nullptr) : pad->input;
    // An enable that is the data pin itself makes the pad 2-state, unless the other enable is a true one that
    // this pin may use.
    if (state == STATE_3 && clear_false_enables(pad, pin, pad->input)) {
        bool other_enable = pin->pad_enable < 0 && (pad->en_l != nullptr || pad->en_h != nullptr);
        state = other_enable ? STATE_3 : STATE_2;
    }
    take_data_net(row, data_pin, "%BUFFER");
    return state;
}

/// False for the minus leg: one differential output has one cell, on its plus leg.
bool differential_pad_state(OPIN_ROW &row, BUFFER_CELL *pad, int32_t port, PAD_STATE *state) {
    if (pad->input == nullptr)
        vmr_fail("ERROR: (%s) can't find %%INPUT in DIFFERENTIAL BUFFER %s.\n\n", JTAG_LIB_FILE,
                 row.pad_class);
    if (pad->output == nullptr || pad->output_m == nullptr)
        vmr_fail("ERROR: (%s) can't find %%OUTPUT_P or %%OUTPUT_M in DIFFERENTIAL BUFFER %s. \n\n",
                 JTAG_LIB_FILE, row.pad_class);
    const char *leg = differential_leg(row, port);
    bool one_leg_name = same_text_no_case(pad->output, pad->output_m);
    if (one_leg_name)
        for (const char **enable : {&pad->en_l, &pad->en_h})
            if (same_text_no_case(*enable, pad->output))
                *enable = nullptr;
    *state = pad->en_l == nullptr && pad->en_h == nullptr ? STATE_2 : STATE_3;
    if (same_text_no_case(leg, pad->output)) {
        take_data_net(row, pad->input, "DIFFERENTIAL BUFFER");
        return true;
    }
    if (same_text_no_case(leg, pad->output_m))
        return false;
    fail_third_leg(row, leg);
}

CHOSEN_CELL choose_output_cell(OPIN_ROW &row, const BUFFER_CELL *pad) {
    CHOSEN_CELL chosen = named_cell(row, COUNT_OUTPUT);
    if (chosen.cell == nullptr && is_bs_buffer(pad))
        return {builtin_cell(row), COUNT_OUTPUT};
    if (chosen.cell == nullptr)
        chosen = declared_cell(COUNT_OUTPUT);
    if (chosen.cell == nullptr)
        vmr_fail("ERROR: can't find %%OUTPUT_SCAN in file '%s'.\n"
                 "       Need OUTPUT SCAN to connect to output port '%s'.\n\n",
                 JTAG_BSC_FILE, row.port_name);
    return chosen;
}

CHOSEN_CELL choose_mux_output_cell(OPIN_ROW &row, const BUFFER_CELL *pad) {
    CHOSEN_CELL chosen = named_cell(row, COUNT_OUTPUT_MUX);
    if (chosen.cell == nullptr)
        chosen = declared_cell(COUNT_OUTPUT_MUX);
    if (chosen.cell == nullptr)
        vmr_fail("ERROR: can't find %%OUTPUT_MUX_SCAN in file '%s'.\n"
                 "       Need OUTPUT_MUX_SCAN to connect to output port '%s'.\n\n",
                 JTAG_BSC_FILE, row.port_name);
    row.mode_net[0] = search_inet_connected_to_obj(row.pad_obj, pad->mode_1, DIR_INPUT);
    row.mux_in1_net = search_inet_connected_to_obj(row.pad_obj, pad->mux_in1, DIR_INPUT);
    return chosen;
}

} // namespace

void save_output_scan_tab(BUFFER_CELL *pad, int32_t row_index, int32_t port) {
    OPIN_ROW &row = OPIN_TAB[row_index];
    PAD_STATE state = STATE_2;
    if (pad == nullptr) {
        if (option(OPT_ADD_PAD) && OUTPUT_BUFFER == nullptr)
            vmr_fail("ERROR: option -add_pad requires to declare %%OUTPUT_BUFFER\n       in file '%s'.\n\n",
                     JTAG_BSC_FILE);
    } else if (!is_differential(pad)) {
        state = plain_pad_state(row, pad);
    } else if (!differential_pad_state(row, pad, port, &state)) {
        return;
    }
    bool is_mux = pad != nullptr && has_mux(row, pad->mode_1, pad->mux_in1, OUTPUT_MUX);
    take_cell(row, OUTPUT_KIND[is_mux][state],
              is_mux ? choose_mux_output_cell(row, pad) : choose_output_cell(row, pad));
    if (state == STATE_3)
        save_enable_control(pad, row_index);
}
