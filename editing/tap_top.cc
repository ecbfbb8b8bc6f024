#include "editing/tap_top.hh"

#include "editing/added_pads.hh"
#include "editing/existing_tap.hh"
#include "editing/module_copies.hh"
#include "support/console.hh"
#include "support/run_state.hh"

namespace {

/// Joins the chip's side of a signal that is new to the TAP. Where the top module does not know the TAP yet,
/// because it lies in the modules of the pads, the wire is left to the `replace` line of these.
void join_new_signal(EDIT_FILE *top, STANDARD_SIGNAL signal, const SIGNAL_PLACE &chip_side) {
    ROUTE_STEP &step = SIGNALS[signal].route.top;
    step = {chip_side, false};
    if (top->tap != nullptr)
        free_and_join(top, step, pin_of(top->tap, signal_tap_pin(signal)));
}

/// The enable of an added TDO pad: driven by the TAP, else tied so that the pad drives.
void connect_added_tdo_enable(EDIT_FILE *top, const char *instance, const ADDED_PAD &pad) {
    if (TAP_TDO_EN_PIN != nullptr && pad.enable == nullptr)
        vmr_printf("WARNING: TDO pin use 2-output PAD.\n");
    else if (TAP_TDO_EN_PIN != nullptr)
        join_new_signal(top, SIGNAL_TDO_EN, {instance, pad.enable});
    else if (pad.enable != nullptr)
        edit_connect(top, pin_of(instance, pad.enable), pad.is_low ? constant_zero() : constant_one());
}

/// The chip has the port: its signals leave the modules that its pad stands in, and meet the TAP in the top.
void join_signals(EDIT_FILE *top, std::span<const STANDARD_SIGNAL> signals) {
    int32_t levels = levels_of(signals[0]);
    follow(signals, *signal_row(signals[0]), 0, levels, LEVELS_FOREIGN);
    for (STANDARD_SIGNAL signal : signals) {
        STANDARD_SIGNAL_ROW &row = SIGNALS[signal];
        if (signal == SIGNAL_TDO_EN && row.route.top.place.pin == nullptr)
            continue;
        // What planning has found on the pad is no longer what is on the pin in the top.
        row.route.top.cut = is_taken_in_top(signal, row.found == nullptr || levels > 0 ? -1 : *row.found);
        free_and_join(top, row.route.top, pin_of(top->tap, signal_tap_pin(signal)));
    }
    show_route_in_row(signals[0]);
}

/// A port that the design does not have, with a pad. Its cell is the one that the pin file names for the
/// port, else the default one.
void add_port_with_pad(EDIT_FILE *top, STANDARD_SIGNAL signal, const char *name) {
    constexpr const char *names[STANDARD_PORT_COUNT] = {"TDI_PAD", "TDO_PAD", "TMS_PAD", "TCK_PAD",
                                                        "TRST_PAD"};
    const char *instance = names[SIGNALS[signal].port];
    bool is_output = signal == SIGNAL_TDO;
    int32_t index = TAP_PORT[SIGNALS[signal].port].pin_index;
    OPIN_ROW *row = index < 0 || index >= DYNA_count(OPIN_TAB) ? nullptr : &OPIN_TAB[index];
    const PIN_ENTRY *pin = row == nullptr ? nullptr : PIN_TABLE[row->pin_index];
    ADDED_PAD pad = added_pad_cell(is_output ? PAD_OUTPUT : PAD_INPUT, pin);
    if (row != nullptr)
        row->shown_pad = {true, instance, pad.cell};
    edit_add_port(top, name, is_output ? EDIT_OUTPUT : EDIT_INPUT);
    edit_add_instance(top, instance, pad.cell);
    const char *input = pad.buffer->input, *output = pad.buffer->output;
    edit_connect(top, pin_of(instance, is_output ? output : input), port_net(name));
    join_new_signal(top, signal, {instance, is_output ? input : output});
    note_added_pad(pad.cell, {input, output, is_output ? pad.enable : nullptr});
    if (is_output)
        connect_added_tdo_enable(top, instance, pad);
}

} // namespace

void add_standard_port(EDIT_FILE *top, STANDARD_SIGNAL signal) {
    const char *name = chip_port_name(SIGNALS[signal].port);
    if (option(OPT_ADD_PAD) && !option(OPT_ADD_BCM)) {
        add_port_with_pad(top, signal, name);
        return;
    }
    edit_add_port(top, name, signal == SIGNAL_TDO ? EDIT_OUTPUT : EDIT_INPUT);
    join_new_signal(top, signal, {nullptr, name});
}

void write_standard_ports(EDIT_FILE *top, bool pads_in_top) {
    constexpr STANDARD_SIGNAL tdo_signals[] = {SIGNAL_TDO, SIGNAL_TDO_EN};
    for (STANDARD_SIGNAL signal : SIGNAL_ORDER) {
        if (signal == SIGNAL_TDO_EN || !port_is_used(SIGNALS[signal].port))
            continue;
        if (signal_row(signal) == nullptr)
            add_standard_port(top, signal);
        else if (pads_in_top && signal == SIGNAL_TDO)
            join_signals(top, tdo_signals);
        else if (pads_in_top)
            join_signals(top, {&signal, 1});
    }
}

void rwv_do_connection_table(EDIT_FILE *fp) {
    auto side = [](const char *instance, const char *port) {
        return instance == nullptr ? port_net(port) : pin_of(instance, port);
    };
    for (const CONNECT_ENTRY *entry = CONNECT_TABLE; entry != nullptr; entry = entry->next)
        edit_connect(fp, side(entry->from_instance, entry->from_port),
                     side(entry->to_instance, entry->to_port));
}

EDIT_FILE *open_and_modify_top_sdb(const PAD_PATH &pads) {
    EDIT_FILE *top = begin_top_file(true);
    top->warns_of_ports = pads.levels == 0;
    bool is_new = pads.tap_level == pads.levels && place_tap(top, 0);
    if (!option(OPT_ADD_TAP)) {
        warn_of_unwired_ports();
        return top;
    }
    write_standard_ports(top, pads.levels == 0);
    if (is_new)
        write_idcode_lines(top);
    return top;
}
