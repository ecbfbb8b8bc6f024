#include "editing/standard_signals.hh"

#include "editing/module_copies.hh"
#include "planning/open_design.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

STANDARD_SIGNAL_ROW SIGNALS[STANDARD_SIGNAL_COUNT] = {
    {PORT_TDI, false, nullptr, {}},  {PORT_TDO, true, &TAP_FLAG.tdo, {}},
    {PORT_TMS, false, nullptr, {}},  {PORT_TCK, false, nullptr, {}},
    {PORT_TRST, false, nullptr, {}}, {PORT_TDO, true, &TAP_FLAG.tdo_en, {}},
};

namespace {

bool drives_its_net(int32_t node) {
    if (is_port_node(node))
        return (port_tab[node_tab[node].pin].flags & SDB_DIRECTION_MASK) == SDB_INPUT;
    return (pin_tab[node_tab[node].pin].direction & SDB_DIRECTION_MASK) == SDB_OUTPUT;
}

/// True when something in the open module drives the net of a pin that the TAP is to drive.
bool pin_is_driven(int32_t node) {
    int32_t net = node_tab[node].net;
    if (net < 0)
        return false;
    for (int32_t other = net_tab[net].first_node; other >= 0; other = node_tab[other].next)
        if (other != node && drives_its_net(other))
            return true;
    return false;
}

/// The port by which the signal of a pin passes the border of the open module, or null.
const char *border_port(int32_t node, bool to_pad) {
    int32_t net = node_tab[node].net;
    if (net < 0 || is_constant_net(net))
        return nullptr;
    int32_t wanted = to_pad ? SDB_INPUT : SDB_OUTPUT;
    const char *found = nullptr;
    for (int32_t other = net_tab[net].first_node; other >= 0; other = node_tab[other].next) {
        int32_t direction =
            is_port_node(other) ? port_tab[node_tab[other].pin].flags & SDB_DIRECTION_MASK : -1;
        bool passes = direction == wanted || direction == SDB_BIDIRECTIONAL;
        if (passes && found == nullptr)
            found = node_pin_name(other);
        else if (to_pad && other != node)
            return nullptr;
    }
    return keep_text_or_null(found);
}

void warn_of_cut(const SIGNAL_PLACE &place) {
    if (place.instance != nullptr)
        vmr_printf("WARNING: Pin '%s' of '%s' is driven by the design.\n", place.pin, place.instance);
    else
        vmr_printf("WARNING: Port '%s' is driven by the design.\n", place.pin);
    vmr_printf("         It will be disconnected and reconnected to TAP.\n");
}

/// One level of one signal, whose module is open: it goes up, or stops.
void climb(STANDARD_SIGNAL_ROW &signal, const OPIN_ROW &row, int32_t level, LEVEL_USE use) {
    SIGNAL_ROUTE &route = signal.route;
    SIGNAL_PLACE &place = route.top.place;
    if (route.stop >= 0 || place.pin == nullptr || (use != LEVELS_FOREIGN && level < route.start))
        return;
    const char *port = TAP_PORT[signal.port].row->port_name;
    const char *module = row.hier_classes[level];
    bool tied = use == LEVELS_OF_PADS && signal.found != nullptr && is_constant_net(*signal.found);
    int32_t node = find_place_node(place.instance, place.pin);
    if (node < 0 && !tied)
        vmr_fail("ERROR: pin '%s' of '%s' on the way of port '%s' can't be found in module '%s'.\n\n",
                 place.pin, place.instance, port, module);
    const char *exit = tied ? nullptr : border_port(node, signal.to_pad);
    if (exit == nullptr && use == LEVELS_FOREIGN)
        vmr_fail(
            "ERROR: the %s of port '%s' does not leave module '%s', which is not on the way to the pads\n"
            "       of the boundary cells, so that it can't be joined to the TAP.\n\n",
            &signal == &SIGNALS[SIGNAL_TDO_EN] ? "enable" : "signal", port, module);
    bool driven = use != LEVELS_LOOKED && signal.to_pad && node >= 0 && pin_is_driven(node);
    if (use != LEVELS_FOREIGN)
        route.steps[level] = {place, driven || tied};
    if (exit != nullptr) {
        place = {row.hier_instances[level], exit};
        return;
    }
    route.stop = level;
    // The user has been told of a constant.
    if (driven && !tied && !is_constant_net(node_tab[node].net))
        warn_of_cut(place);
}

/// The enable pin of the TDO pad as the pin file chooses it, or null.
const char *tdo_enable_pin() {
    const OPIN_ROW *row = TAP_PORT[PORT_TDO].row;
    if (row == nullptr || row->pad == nullptr)
        return nullptr;
    return chosen_enable_pin(row->pad, PIN_TABLE[row->pin_index], nullptr);
}

/// The pad's pin, or the bare port.
SIGNAL_PLACE start_place(STANDARD_SIGNAL signal) {
    const OPIN_ROW &row = *signal_row(signal);
    if (signal == SIGNAL_TDO_EN)
        return {row.pad_instance, TAP_TDO_EN_PIN != nullptr ? tdo_enable_pin() : nullptr};
    if (row.pad_instance == nullptr)
        return {nullptr, row.port_name};
    return {row.pad_instance, SIGNALS[signal].to_pad ? row.pad_input : row.pad_output};
}

} // namespace

OPIN_ROW *signal_row(STANDARD_SIGNAL signal) {
    return TAP_PORT[SIGNALS[signal].port].row;
}

const char *signal_tap_pin(STANDARD_SIGNAL signal) {
    const char *pin = signal == SIGNAL_TDO_EN ? TAP_TDO_EN_PIN : TAP_PORT[signal].tap_pin;
    return option(OPT_ADD_BCM) ? keep_format("BCM_%s", pin == nullptr ? "" : pin) : pin;
}

std::string new_port_name(STANDARD_SIGNAL signal) {
    return signal == SIGNAL_TDO_EN ? TAP_TDO_EN_PIN : std::string("vmr_tap_") + TAP_PORT[signal].word;
}

const char *chip_port_name(STANDARD_PORT port) {
    return without_minus(*TAP_PORT[port].global_name);
}

bool port_is_used(STANDARD_PORT port) {
    return port != PORT_TRST || GLOBAL_TRST != nullptr;
}

EDIT_OPERAND place_operand(const SIGNAL_PLACE &place) {
    return place.instance == nullptr ? port_net(place.pin) : pin_of(place.instance, place.pin);
}

void take_pin_for_tap(EDIT_FILE *fp, const SIGNAL_PLACE &place) {
    edit_disconnect(fp, place_operand(place));
    fp->taken_pins.push_back(place);
}

int32_t levels_of(STANDARD_SIGNAL signal) {
    const OPIN_ROW *row = signal_row(signal);
    return row == nullptr || row->pad_instance == nullptr ? 0 : DYNA_count(row->hier_classes);
}

void begin_routes(int32_t levels) {
    for (STANDARD_SIGNAL signal : SIGNAL_ORDER) {
        ROUTE_STEP top = SIGNALS[signal].route.top;
        if (signal_row(signal) != nullptr)
            top = {start_place(signal), false};
        SIGNALS[signal].route = {levels, -1, std::vector<ROUTE_STEP>(levels), top};
    }
}

void follow(std::span<const STANDARD_SIGNAL> signals, const OPIN_ROW &row, int32_t from, int32_t to,
            LEVEL_USE use) {
    for (int32_t level = from; level < to; level++) {
        OPEN_DESIGN module(found_level_file(row.hier_classes[level]));
        for (STANDARD_SIGNAL signal : signals)
            climb(SIGNALS[signal], row, level, use);
    }
}

void show_route_in_row(STANDARD_SIGNAL signal) {
    OPIN_ROW *row = signal_row(signal);
    if (row != nullptr && row->pad_instance != nullptr && signal != SIGNAL_TDO_EN)
        row->shown_pad = {true, SIGNALS[signal].route.top.place.instance, nullptr};
}

bool is_driven_in_top(STANDARD_SIGNAL signal, int32_t found) {
    const SIGNAL_PLACE &place = SIGNALS[signal].route.top.place;
    if ((!option(OPT_ADD_TAP) && !option(OPT_ADD_BCM)) || !SIGNALS[signal].to_pad || place.pin == nullptr)
        return false;
    int32_t node = find_place_node(place.instance, place.pin);
    if (node < 0 || !pin_is_driven(node))
        return false;
    if (!is_constant_net(node_tab[node].net) || !is_constant_net(found))
        warn_of_cut(place);
    return true;
}

bool is_taken_in_top(STANDARD_SIGNAL signal, int32_t found) {
    if (!SIGNALS[signal].to_pad || SIGNALS[signal].route.top.place.pin == nullptr)
        return false;
    bool any_net = signal == SIGNAL_TDO_EN && levels_of(signal) == 0;
    return (any_net ? found != -1 : is_constant_net(found)) || is_driven_in_top(signal, found);
}

void free_and_join(EDIT_FILE *fp, const ROUTE_STEP &step, const EDIT_OPERAND &tap, bool tap_first) {
    EDIT_OPERAND chip = place_operand(step.place);
    if (step.cut)
        take_pin_for_tap(fp, step.place);
    edit_connect(fp, tap_first ? tap : chip, tap_first ? chip : tap);
}
