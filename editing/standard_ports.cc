#include "editing/standard_ports.hh"

#include "editing/tap_place.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <vector>

SIGNAL_ROUTE PORT_ROUTES[STANDARD_PORT_COUNT];
SIGNAL_ROUTE TDO_EN_ROUTE;

namespace {

/// The order in which the ports are followed.
constexpr STANDARD_PORT SEARCH_ORDER[] = {PORT_TDI, PORT_TMS, PORT_TCK, PORT_TDO, PORT_TRST};

/// Opens the SDB of a module and returns the handle that was current before.
SDB_HANDLE *open_module(const char *class_name) {
    SDB_HANDLE *before = sdb;
    const char *found = find_design_file(format_text("%s.sdb", class_name));
    if (found == nullptr)
        console_fail("ERROR: Can't find file %s%s.sdb.\n\n", PATH, class_name);
    open_sdb_file(found);
    return before;
}

void close_module(SDB_HANDLE *before) {
    close_sdb_file();
    if (before != nullptr)
        SDB_setup(before);
}

bool drives_its_net(int32_t node) {
    if (is_port_node(node))
        return (port_tab[node_tab[node].pin].flags & SDB_DIRECTION_MASK) == SDB_INPUT;
    return (pin_tab[node_tab[node].pin].direction & SDB_DIRECTION_MASK) == SDB_OUTPUT;
}

int32_t common_levels(const OPIN_ROW &a, const OPIN_ROW &b) {
    int32_t count_a = DYNA_count(a.hier_instances), count_b = DYNA_count(b.hier_instances);
    int32_t common = 0;
    while (common < count_a && common < count_b &&
           same_text(a.hier_instances[count_a - 1 - common], b.hier_instances[count_b - 1 - common]))
        common++;
    return common;
}

[[noreturn]] void fail_no_way(const char *signal, const char *port, const char *module) {
    vmr_fail("ERROR: the %s of port '%s' does not leave module '%s', which is not on the way to the pads\n"
             "       of the boundary cells, so that it can't be joined to the TAP.\n\n",
             signal, port, module);
}

/// Takes a place one level up through a port of the open module; false when there is none.
bool leave_module(SIGNAL_PLACE &place, bool to_pad, const char *instance, const char *port,
                  const char *module) {
    int32_t node = find_place_node(place.instance, place.pin);
    if (node < 0)
        vmr_fail("ERROR: pin '%s' of '%s' on the way of port '%s' can't be found in module '%s'.\n\n",
                 place.pin, place.instance, port, module);
    const char *exit = border_port(node, to_pad);
    if (exit != nullptr)
        place = {instance, exit};
    return exit != nullptr;
}

void start_route(SIGNAL_ROUTE &route, int32_t levels, int32_t start) {
    // The place in the top is kept: a port that is new has it already.
    route = {start, -1, nullptr, route.top, false, false};
    route.steps = DYNA_init<ROUTE_STEP>();
    for (int32_t k = 0; k < levels; k++)
        append_row(route.steps);
}

/// Leads a pad that stands beside the path, in a module below it, up to the path.
void walk_foreign_levels(STANDARD_PORT port, int32_t levels, SIGNAL_PLACE &place, SIGNAL_PLACE &enable) {
    const OPIN_ROW &row = *TAP_PORT[port].row;
    bool to_pad = port == PORT_TDO;
    for (int32_t k = 0; k < levels; k++) {
        SDB_HANDLE *before = open_module(row.hier_classes[k]);
        if (!leave_module(place, to_pad, row.hier_instances[k], row.port_name, row.hier_classes[k]))
            fail_no_way("signal", row.port_name, row.hier_classes[k]);
        if (enable.pin != nullptr &&
            !leave_module(enable, true, row.hier_instances[k], row.port_name, row.hier_classes[k]))
            fail_no_way("enable", row.port_name, row.hier_classes[k]);
        close_module(before);
    }
}

/// One level of one signal: it goes up, or stops. `tied` tells that the design has a constant on the pin that
/// the TAP is to drive, `to_pad` that the TAP drives the signal.
void follow_level(SIGNAL_ROUTE &route, SIGNAL_PLACE &place, int32_t level, const OPIN_ROW &path, bool tied,
                  bool to_pad, const char *port) {
    if (route.stop >= 0 || level < route.start || place.pin == nullptr)
        return;
    int32_t node = find_place_node(place.instance, place.pin);
    bool driven = to_pad && node >= 0 && pin_is_driven(node);
    route.steps[level] = {place, driven};
    if (!tied && leave_module(place, to_pad, path.hier_instances[level], port, path.hier_classes[level]))
        return;
    route.stop = level;
    route.cut = tied || driven;
    if (driven && !tied)
        warn_of_cut(place);
}

SIGNAL_PLACE start_place(STANDARD_PORT port) {
    OPIN_ROW &row = *TAP_PORT[port].row;
    return {row.pad_instance, row_pin(row, port)};
}

/// The top module may drive the pins by which the TDO signal and its enable go to their pad. A TAP among the
/// pads' modules meets the signals of their pads there.
void look_at_tdo_in_top(int32_t levels) {
    if (!option(OPT_ADD_TAP) || TAP_PORT[PORT_TDO].row == nullptr ||
        (rwv_hier_same_instance_iopadG >= 0 && PORT_ROUTES[PORT_TDO].start < levels))
        return;
    SDB_HANDLE *before = sdb;
    open_sdb_file(MODULE_SDB);
    SIGNAL_ROUTE &data = PORT_ROUTES[PORT_TDO];
    data.cut_in_top = data.stop < 0 && tdo_has_driver(data.top, TAP_FLAG.tdo);
    TDO_EN_ROUTE.cut_in_top = TDO_EN_ROUTE.stop < 0 && TDO_EN_ROUTE.top.pin != nullptr &&
                              tdo_has_driver(TDO_EN_ROUTE.top, TAP_FLAG.tdo_en);
    close_module(before);
}

} // namespace

const char *border_port(int32_t node, bool to_pad) {
    int32_t net = node_tab[node].net;
    if (net < 0 || is_constant_net(net))
        return nullptr;
    int32_t wanted = to_pad ? DIR_INPUT : DIR_OUTPUT;
    const char *found = nullptr;
    for (int32_t other = net_tab[net].first_node; other >= 0; other = node_tab[other].next) {
        int32_t direction =
            is_port_node(other) ? port_tab[node_tab[other].pin].flags & SDB_DIRECTION_MASK : -1;
        bool passes = direction == wanted || direction == DIR_BIDIR;
        if (passes && found == nullptr)
            found = node_pin_name(other);
        else if (to_pad && other != node)
            return nullptr;
    }
    return keep_text_or_null(found);
}

bool pin_is_driven(int32_t node) {
    int32_t net = node_tab[node].net;
    if (net < 0)
        return false;
    for (int32_t other = net_tab[net].first_node; other >= 0; other = node_tab[other].next)
        if (other != node && drives_its_net(other))
            return true;
    return false;
}

void warn_of_cut(const SIGNAL_PLACE &place) {
    if (place.instance != nullptr)
        vmr_printf("WARNING: Pin '%s' of '%s' is driven by the design.\n", place.pin, place.instance);
    else
        vmr_printf("WARNING: Port '%s' is driven by the design.\n", place.pin);
    vmr_printf("         It will be disconnected and reconnected to TAP.\n");
}

std::string tap_port_name(STANDARD_PORT port) {
    return std::string("vmr_tap_") + TAP_PORT[port].word;
}

const char *chip_port_name(STANDARD_PORT port) {
    return without_minus(*TAP_PORT[port].global_name);
}

const char *&row_pin(OPIN_ROW &row, STANDARD_PORT port) {
    return port == PORT_TDO ? row.pad_input : row.pad_output;
}

EDIT_OPERAND place_operand(const SIGNAL_PLACE &place) {
    return place.instance == nullptr ? port_net(place.pin) : pin_of(place.instance, place.pin);
}

EDIT_OPERAND row_operand(STANDARD_PORT port) {
    OPIN_ROW &row = *TAP_PORT[port].row;
    return row.pad_instance == nullptr ? port_net(row.port_name)
                                       : pin_of(row.pad_instance, row_pin(row, port));
}

const char *tdo_enable_pin() {
    const OPIN_ROW *row = TAP_PORT[PORT_TDO].row;
    if (row == nullptr || row->pad == nullptr)
        return nullptr;
    bool is_low;
    return chosen_enable_pin(row->pad, PIN_TABLE[row->pin_index], &is_low);
}

bool port_is_used(STANDARD_PORT port) {
    return port != PORT_TRST || GLOBAL_TRST != nullptr;
}

void walk_to_top(STANDARD_PORT port, SIGNAL_PLACE &enable) {
    OPIN_ROW &row = *TAP_PORT[port].row;
    SIGNAL_PLACE place = start_place(port);
    enable = {row.pad_instance, port == PORT_TDO && TAP_TDO_EN_PIN != nullptr ? tdo_enable_pin() : nullptr};
    int32_t levels = DYNA_count(row.hier_classes);
    if (place.instance == nullptr || levels == 0)
        return;
    walk_foreign_levels(port, levels, place, enable);
    row.pad_instance = place.instance;
    row_pin(row, port) = place.pin;
}

bool tdo_has_driver(const SIGNAL_PLACE &place, int32_t told) {
    if (!option(OPT_ADD_TAP) || place.pin == nullptr)
        return false;
    int32_t node = find_place_node(place.instance, place.pin);
    if (node < 0 || !pin_is_driven(node))
        return false;
    if (!is_constant_net(node_tab[node].net) || !is_constant_net(told))
        warn_of_cut(place);
    return true;
}

void bs_search_standard_ports(int32_t index) {
    const OPIN_ROW &path = OPIN_TAB[index];
    int32_t levels = DYNA_count(path.hier_classes);
    SIGNAL_PLACE place[STANDARD_PORT_COUNT] = {};
    SIGNAL_PLACE enable = {};
    start_route(TDO_EN_ROUTE, levels, levels);
    for (STANDARD_PORT port : SEARCH_ORDER) {
        start_route(PORT_ROUTES[port], levels, levels);
        OPIN_ROW *row = TAP_PORT[port].row;
        if (row == nullptr || row->pad_instance == nullptr)
            continue;
        int32_t common = common_levels(*row, path);
        place[port] = start_place(port);
        SIGNAL_PLACE port_enable = {};
        if (port == PORT_TDO && TAP_TDO_EN_PIN != nullptr)
            port_enable = {row->pad_instance, tdo_enable_pin()};
        walk_foreign_levels(port, DYNA_count(row->hier_classes) - common, place[port], port_enable);
        PORT_ROUTES[port].start = levels - common;
        if (port == PORT_TDO) {
            enable = port_enable;
            TDO_EN_ROUTE.start = levels - common;
        }
    }
    for (int32_t k = 0; k < levels; k++) {
        SDB_HANDLE *before = open_module(path.hier_classes[k]);
        for (STANDARD_PORT port : SEARCH_ORDER) {
            const OPIN_ROW *row = TAP_PORT[port].row;
            if (row == nullptr || place[port].pin == nullptr)
                continue;
            bool to_pad = port == PORT_TDO;
            follow_level(PORT_ROUTES[port], place[port], k, path, to_pad && is_constant_net(TAP_FLAG.tdo),
                         to_pad, row->port_name);
            if (to_pad)
                follow_level(TDO_EN_ROUTE, enable, k, path, is_constant_net(TAP_FLAG.tdo_en), true,
                             row->port_name);
        }
        close_module(before);
    }
    for (STANDARD_PORT port : SEARCH_ORDER) {
        OPIN_ROW *row = TAP_PORT[port].row;
        if (row == nullptr)
            continue;
        PORT_ROUTES[port].top =
            place[port].pin != nullptr ? place[port] : SIGNAL_PLACE{nullptr, row->port_name};
        if (place[port].pin == nullptr)
            continue;
        row->pad_instance = place[port].instance;
        row_pin(*row, port) = place[port].pin;
    }
    if (enable.pin != nullptr)
        TDO_EN_ROUTE.top = enable;
    look_at_tdo_in_top(levels);
    if (TDO_EN_ROUTE.stop < 0 && TDO_EN_ROUTE.start < levels && enable.pin != nullptr)
        TAP_PORT[PORT_TDO].row->pad_output = enable.pin;
}
