#include "editing/module_border.hh"

#include "planning/port_pad.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

bool row_uses_highz_buffer(const OPIN_ROW &row) {
    return row.scan_cell != nullptr && (row.control < 0 || row.oe_control < 0);
}

/// High-impedance buffers need their signal also when no cell has a %HIGHZ pin.
bool highz_buffers_exist() {
    return TAP_HIZ_PIN != nullptr && std::ranges::any_of(rows(OPIN_TAB), row_uses_highz_buffer);
}

/// The pads of mux cells may need a mode signal that no cell has a pin for.
const char *mode_pin_of_pads(int32_t mode) {
    for (const OPIN_ROW &row : rows(OPIN_TAB))
        if (row.scan_cell != nullptr && row.kind >= CELL_MUX_INPUT && mode_hangs_on_tap(row, mode))
            return without_minus(TAP_CONTR->*CONTROL_SIGNALS[MODE_SIGNALS[mode]].tap_field);
    return nullptr;
}

} // namespace

bool signal_is_used(CONTROL_SIGNAL signal) {
    return TAP_PIN[signal] != nullptr &&
           (signal == SIG_SHIFT || signal == SIG_CLOCK || BCELL_HAS[signal] != 0);
}

const char *pin_in_use(CONTROL_SIGNAL signal) {
    if (signal_is_used(signal))
        return TAP_PIN[signal];
    if (signal == SIG_HIGHZ && highz_buffers_exist())
        return TAP_HIZ_PIN;
    for (int32_t mode = 0; mode < 3; mode++)
        if (signal == MODE_SIGNALS[mode])
            return mode_pin_of_pads(mode);
    return nullptr;
}

void add_crossing_pin(std::vector<const char *> &pins, const char *pin) {
    if (pin != nullptr &&
        std::ranges::none_of(pins, [pin](const char *known) { return same_text(pin, known); }))
        pins.push_back(pin);
}

void fail_taken_port(const char *module, const char *port) {
    vmr_fail("ERROR: module '%s' has a port '%s' already, so that the signal of that name\n"
             "       can't be led into it. Please rename the port of the module or the pin of the TAP.\n\n",
             module, port);
}

void add_new_port(EDIT_FILE *fp, const char *name, EDIT_PORT direction) {
    if (SDB_nl_search_port(name) >= 0)
        fail_taken_port(FNM_break(sdb->path.c_str(), "b").c_str(), name);
    edit_add_port(fp, name, direction);
}

std::vector<const char *> crossing_signals() {
    std::vector<const char *> pins;
    for (CONTROL_SIGNAL signal : BORDER_ORDER)
        add_crossing_pin(pins, pin_in_use(signal));
    for (int32_t i = 0; i < BCELL_EXTRA && i < DYNA_count(TAP_EXTRA_PIN); i++)
        add_crossing_pin(pins, TAP_EXTRA_PIN[i]);
    return pins;
}

void lift_tap_pin(EDIT_FILE *fp, const char *pin, EDIT_PORT direction) {
    add_new_port(fp, pin, direction);
    edit_connect(fp, pin_of(fp->tap, pin), port_net(pin));
}
