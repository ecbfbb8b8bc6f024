// Output ports: 2-state or 3-state, the core net that drives the pad, the cell, and the enable's control.
#include "planning/planning.hh"

#include "description/lookups.hh"
#include "planning/cell_choice.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

enum PAD_STATE { STATE_2, STATE_3, STATE_ENABLE_ONLY };

/// Kind by state, without and with a multiplexer in the pad.
constexpr int32_t OUTPUT_KIND[2][3] = {{CELL_OUTPUT2, CELL_OUTPUT3, CELL_OUTPUT_EN},
                                       {CELL_MUX_OUTPUT2, CELL_MUX_OUTPUT3, CELL_MUX_OUTPUT_EN}};

PAD_STATE plain_pad_state(OPIN_ROW &row) {
    BUFFER_CELL *pad = row.pad;
    const PIN_ENTRY *pin = PIN_TABLE[row.pin_index];
    bool has_enable = pad->en_l != nullptr || pad->en_h != nullptr;
    if (pad->input == nullptr && !has_enable)
        vmr_fail("ERROR: (%s) can't find %%INPUT in %%BUFFER  %s.\n\n", JTAG_LIB_FILE, row.pad_class);
    PAD_STATE state = !has_enable ? STATE_2 : pad->input != nullptr ? STATE_3 : STATE_ENABLE_ONLY;
    const char *data_pin = state == STATE_ENABLE_ONLY ? chosen_enable_pin(pad, pin, nullptr) : pad->input;
    // An enable that is the data pin itself makes the pad 2-state, unless the other enable is a true one that
    // this pin may use.
    if (state == STATE_3 && clear_false_enables(pad, pin->pad_enable, pad->input)) {
        bool other_enable = pin->pad_enable < 0 && (pad->en_l != nullptr || pad->en_h != nullptr);
        state = other_enable ? STATE_3 : STATE_2;
    }
    take_pad_input(row, data_pin);
    return state;
}

/// False for the minus leg: one differential output has one cell, on its plus leg.
bool differential_pad_state(OPIN_ROW &row, int32_t port, PAD_STATE *state) {
    BUFFER_CELL *pad = row.pad;
    if (pad->input == nullptr)
        vmr_fail("ERROR: (%s) can't find %%INPUT in DIFFERENTIAL BUFFER %s.\n\n", JTAG_LIB_FILE,
                 row.pad_class);
    if (pad->output == nullptr || pad->output_m == nullptr)
        vmr_fail("ERROR: (%s) can't find %%OUTPUT_P or %%OUTPUT_M in DIFFERENTIAL BUFFER %s. \n\n",
                 JTAG_LIB_FILE, row.pad_class);
    if (same_text_no_case(pad->output, pad->output_m))
        clear_false_enables(pad, -1, pad->output);
    *state = pad->en_l == nullptr && pad->en_h == nullptr ? STATE_2 : STATE_3;
    if (!is_plus_leg(row, port, pad->output, pad->output_m))
        return false;
    take_pad_input(row, pad->input, "DIFFERENTIAL BUFFER");
    return true;
}

CHOSEN_CELL choose_output_cell(const OPIN_ROW &row) {
    CHOSEN_CELL chosen = named_cell(row, COUNT_OUTPUT);
    if (chosen.cell == nullptr)
        chosen.cell = is_bs_buffer(row.pad) ? builtin_cell(row) : declared_cell(COUNT_OUTPUT).cell;
    return required_cell(row, chosen, {"%OUTPUT_SCAN", "OUTPUT SCAN", "output"});
}

CHOSEN_CELL choose_mux_output_cell(const OPIN_ROW &row) {
    CHOSEN_CELL chosen = named_cell(row, COUNT_OUTPUT_MUX);
    if (chosen.cell == nullptr)
        chosen = declared_cell(COUNT_OUTPUT_MUX);
    return required_cell(row, chosen, {"%OUTPUT_MUX_SCAN", "OUTPUT_MUX_SCAN", "output"});
}

} // namespace

void save_output_scan_tab(OPIN_ROW &row, int32_t port) {
    PAD_STATE state = STATE_2;
    if (row.pad == nullptr) {
        if (option(OPT_ADD_PAD) && OUTPUT_BUFFER == nullptr)
            fail_add_pad("%OUTPUT_BUFFER");
    } else if (!is_differential(row.pad)) {
        state = plain_pad_state(row);
    } else if (!differential_pad_state(row, port, &state)) {
        return;
    }
    bool is_mux = row.pad != nullptr && has_mux(row, PAD_MUX_1, "output");
    take_cell(row, OUTPUT_KIND[is_mux][state],
              is_mux ? choose_mux_output_cell(row) : choose_output_cell(row));
    if (is_mux)
        trace_mux(row, PAD_MUX_1);
    if (state == STATE_3)
        save_enable_control(row);
}
