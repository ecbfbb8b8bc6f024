#include "editing/existing_tap.hh"

#include "editing/module_border.hh"
#include "editing/tap_hierarchy.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

constexpr STANDARD_PORT PORT_ORDER[] = {PORT_TDI, PORT_TMS, PORT_TCK, PORT_TDO, PORT_TRST};

void free_pin(EDIT_FILE *fp, int32_t net, const char *pin) {
    if (pin != nullptr && is_constant_net(net))
        edit_disconnect(fp, pin_of(fp->tap, pin));
}

bool run_wires_port(STANDARD_PORT port) {
    // Without a pad module, and with several, the wires of the standard ports are the design's own affair.
    return path_of_pads().levels > 0 && port_is_used(port) && TAP_PORT[port].row != nullptr &&
           !design_wires_port(port);
}

/// A constant on a pin that the run joins to its port.
void free_standard_pin(EDIT_FILE *fp, STANDARD_PORT port) {
    const STANDARD_PORT_STATE &state = TAP_PORT[port];
    if (state.tap_constant < 0 || !run_wires_port(port))
        return;
    vmr_printf("WARNING: Pin '%s' of TAP '%s' was connected to %s.\n"
               "         '%s' will be disconnected.\n",
               state.tap_pin, fp->tap, state.tap_constant == 0 ? "GND" : "VCC", state.tap_pin);
    edit_disconnect(fp, pin_of(fp->tap, state.tap_pin));
}

} // namespace

bool design_wires_port(STANDARD_PORT port) {
    const STANDARD_PORT_STATE &state = TAP_PORT[port];
    if (option(OPT_ADD_TAP) || state.tap_net == nullptr)
        return false;
    return rwv_hier_tap_ctrlG != 0 ||
           (state.row != nullptr && !same_text(state.tap_net, state.row->net_name));
}

void warn_of_unwired_ports() {
    for (STANDARD_PORT port : PORT_ORDER)
        if (port_is_used(port) && TAP_PORT[port].tap_pin != nullptr && TAP_PORT[port].tap_net == nullptr &&
            !run_wires_port(port))
            vmr_printf("WARNING: Pin '%s' of TAP '%s' is not connected in the design.\n"
                       "         It won't be connected to port '%s'.\n",
                       TAP_PORT[port].tap_pin, org_tap_instance_nameG, chip_port_name(port));
}

void free_existing_tap(EDIT_FILE *fp) {
    for (STANDARD_PORT port : PORT_ORDER)
        free_standard_pin(fp, port);
    for (CONTROL_SIGNAL signal : BORDER_ORDER) {
        bool is_command = signal == SIG_HIGHZ && !signal_is_used(signal);
        free_pin(fp, is_command ? TAP_FLAG.hiz : TAP_FLAG.control[signal], pin_in_use(signal));
    }
    for (int32_t i = 0; i < BCELL_EXTRA && i < DYNA_count(TAP_EXTRA_PIN); i++)
        if (i < DYNA_count(TAP_FLAG.extras))
            free_pin(fp, TAP_FLAG.extras[i], TAP_EXTRA_PIN[i]);
    free_pin(fp, TAP_FLAG.first_bcell, TAP_CONTR->first_bcell);
    free_pin(fp, TAP_FLAG.last_bcell, TAP_CONTR->last_bcell);
}

void lift_existing_tap_ports(EDIT_FILE *fp) {
    for (STANDARD_PORT port : PORT_ORDER)
        if (run_wires_port(port))
            lift_tap_pin(fp, TAP_PORT[port].tap_pin, port == PORT_TDO ? EDIT_OUTPUT : EDIT_INPUT);
    for (const char *pin : crossing_signals())
        lift_tap_pin(fp, pin, EDIT_OUTPUT);
    if (option(OPT_SYNCH))
        lift_tap_pin(fp, BCELL_TCK, EDIT_OUTPUT);
    lift_tap_pin(fp, TAP_CONTR->first_bcell, EDIT_OUTPUT);
    lift_tap_pin(fp, TAP_CONTR->last_bcell, EDIT_INPUT);
}
