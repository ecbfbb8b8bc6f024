#include "editing/pad_levels.hh"

#include "editing/existing_tap.hh"
#include "editing/module_border.hh"
#include "editing/module_copies.hh"
#include "editing/tap_top.hh"
#include "planning/open_design.hh"
#include "planning/tracing.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <utility>

namespace {

/// Where the TAP stands, seen from a level.
enum TAP_MATCH {
    TAP_HERE,  ///< in this module, or what is left of its path begins here
    TAP_BELOW, ///< deeper; its ports run down through this module
    TAP_ABOVE  ///< higher; the signals of the cells and of the pads run up through this module
};

/// One level of the pads' path while its file is written.
struct PAD_LEVEL {
    const PAD_PATH &path;
    int32_t number; ///< 0 holds the pads, the last one is the top module
    TAP_MATCH match;
    bool is_top;
    const char *child; ///< instance of the next level down, null at level 0
    EDIT_FILE *file;
};

/// The level, whose file is not there yet.
PAD_LEVEL level_of_path(const PAD_PATH &path, int32_t number) {
    TAP_MATCH match = number == path.tap_level ? TAP_HERE : number > path.tap_level ? TAP_BELOW : TAP_ABOVE;
    const char *child = number == 0 ? nullptr : path.row->hier_instances[number - 1];
    return {path, number, match, number == path.levels, child, nullptr};
}

bool tap_is_in_path(const PAD_PATH &path) {
    return path.tap_level < path.levels;
}

// ---- the ways of the standard signals

int32_t common_levels(const OPIN_ROW &a, const OPIN_ROW &b) {
    int32_t count_a = DYNA_count(a.hier_instances), count_b = DYNA_count(b.hier_instances);
    int32_t common = 0;
    while (common < count_a && common < count_b &&
           same_text(a.hier_instances[count_a - 1 - common], b.hier_instances[count_b - 1 - common]))
        common++;
    return common;
}

/// The top module may drive the pins by which the TDO signal and its enable go to their pad. A TAP among the
/// pads' modules meets the signals of their pads there.
void look_at_tdo_in_top(const PAD_PATH &path) {
    OPEN_DESIGN top(MODULE_SDB);
    for (STANDARD_SIGNAL signal : {SIGNAL_TDO, SIGNAL_TDO_EN}) {
        SIGNAL_ROUTE &route = SIGNALS[signal].route;
        int32_t found = *SIGNALS[signal].found;
        if (route.stop >= 0 || (tap_is_in_path(path) && route.start < path.levels))
            continue;
        route.top.cut = is_driven_in_top(signal, found) || (tap_is_in_path(path) && is_constant_net(found));
    }
}

/// Follows the standard signals to the pads' path, and up that.
void bs_search_standard_ports(const PAD_PATH &path) {
    const std::vector<STANDARD_SIGNAL> ports[] = {
        {SIGNAL_TDI}, {SIGNAL_TMS}, {SIGNAL_TCK}, {SIGNAL_TDO, SIGNAL_TDO_EN}, {SIGNAL_TRST}};
    for (const std::vector<STANDARD_SIGNAL> &signals : ports) {
        const OPIN_ROW *row = signal_row(signals[0]);
        if (row == nullptr || row->pad_instance == nullptr)
            continue;
        int32_t common = common_levels(*row, *path.row);
        follow(signals, *row, 0, levels_of(signals[0]) - common, LEVELS_FOREIGN);
        for (STANDARD_SIGNAL signal : signals)
            SIGNALS[signal].route.start = path.levels - common;
    }
    follow(SIGNAL_ORDER, *path.row, 0, path.levels, LEVELS_OF_PADS);
    for (STANDARD_SIGNAL signal : SIGNAL_ORDER)
        show_route_in_row(signal);
    if (TAP_PORT[PORT_TDO].row != nullptr)
        look_at_tdo_in_top(path);
}

/// A signal of a standard port that the chip has, or that is added with the TAP, and that is to be joined to
/// the TAP. The enable of the TDO pad needs a wire when the TAP gives it and the pad takes it.
bool signal_exists(STANDARD_SIGNAL signal) {
    STANDARD_PORT port = SIGNALS[signal].port;
    if (!port_is_used(port) || (TAP_PORT[port].row == nullptr && !option(OPT_ADD_TAP)) ||
        design_wires_port(port))
        return false;
    return signal != SIGNAL_TDO_EN ||
           (TAP_TDO_EN_PIN != nullptr && SIGNALS[signal].route.top.place.pin != nullptr);
}

/// The signal comes from a module further up, or from the top.
bool comes_from_above(const SIGNAL_ROUTE &route, const PAD_LEVEL &level) {
    return level.number < route.start;
}

/// The signal has a new port at this level.
bool has_new_port(STANDARD_SIGNAL signal, const PAD_LEVEL &level) {
    const SIGNAL_ROUTE &route = SIGNALS[signal].route;
    return route.stop >= 0 && level.number >= route.stop;
}

/// The enable enters by a port of its own from the level at which it found none. A pad without an enable gets
/// the port too, which then leads to nothing.
bool has_enable_port(const PAD_LEVEL &level) {
    const SIGNAL_ROUTE &route = SIGNALS[SIGNAL_TDO_EN].route;
    const OPIN_ROW *row = TAP_PORT[PORT_TDO].row;
    bool leaves = route.stop < 0 && route.start < level.path.levels && route.top.place.pin != nullptr;
    if (TAP_TDO_EN_PIN == nullptr || row == nullptr || row->pad_output != nullptr || leaves)
        return false;
    return DYNA_count(row->hier_classes) > 0 && level.number >= (route.stop >= 0 ? route.stop : route.start);
}

// ---- the `add` lines of a level

/// What crosses the border of a module with cells: its port, and the pin of the TAP.
struct CROSSING {
    const char *port;
    const char *tap_pin;
};
std::vector<CROSSING> crossings() {
    std::vector<CROSSING> all;
    for (const char *pin : crossing_signals())
        all.push_back({pin, pin});
    all.push_back({"chain_in", TAP_CONTR->first_bcell});
    all.push_back({"chain_out", TAP_CONTR->last_bcell});
    if (option(OPT_SYNCH))
        all.push_back({BCELL_TCK, BCELL_TCK});
    return all;
}

void add_control_ports(const PAD_LEVEL &level) {
    for (STANDARD_SIGNAL signal : SIGNAL_ORDER)
        if (signal != SIGNAL_TDO_EN && signal_exists(signal) && has_new_port(signal, level))
            add_new_port(level.file, new_port_name(signal).c_str(),
                         SIGNALS[signal].to_pad ? EDIT_INPUT : EDIT_OUTPUT);
    for (const CROSSING &crossing : crossings())
        add_new_port(level.file, crossing.port,
                     same_text(crossing.port, "chain_out") ? EDIT_OUTPUT : EDIT_INPUT);
    if (has_enable_port(level))
        add_new_port(level.file, TAP_TDO_EN_PIN, EDIT_INPUT);
}

/// The TAP stands in this module or below it: the standard signals enter from above, and those that the TAP
/// drives leave.
void add_entering_ports(const PAD_LEVEL &level) {
    for (STANDARD_SIGNAL signal : SIGNAL_ORDER)
        if (signal_exists(signal) && comes_from_above(SIGNALS[signal].route, level))
            add_new_port(level.file, signal_tap_pin(signal),
                         SIGNALS[signal].to_pad ? EDIT_OUTPUT : EDIT_INPUT);
}

void open_and_modify_hierarchy_sdb(PAD_LEVEL &level) {
    const PAD_PATH &path = level.path;
    // What is left of the TAP's path lies in the library directory already.
    int32_t depth = path.levels - path.tap_level;
    bool with_path = level.match == TAP_HERE && depth + 1 < DYNA_count(rwv_hier_tap_ctrl_name_tabG);
    level.file = begin_level_file(path.row->hier_classes[level.number], with_path);
    if (level.match == TAP_HERE && place_tap(level.file, depth))
        write_idcode_lines(level.file);
    if (level.match == TAP_BELOW)
        level.file->tap = level.child;
    OPEN_DESIGN module(level.file->sdb_path);
    if (level.match == TAP_ABOVE)
        add_control_ports(level);
    else
        add_entering_ports(level);
}

// ---- the wires of a level

/// The signal's wire at a level that passes it up to the TAP: where it stops it is joined to its new port.
void connect_upwards(STANDARD_SIGNAL signal, const PAD_LEVEL &level) {
    const SIGNAL_ROUTE &route = SIGNALS[signal].route;
    std::string port = new_port_name(signal);
    if (level.number == route.stop)
        free_and_join(level.file, route.steps[route.stop], port_net(port.c_str()));
    else if (has_new_port(signal, level))
        edit_connect(level.file, pin_of(level.child, port.c_str()), port_net(port.c_str()),
                     EDIT_LEADING_BLANK);
}

/// The signal's wire in the module of the TAP, or in one above it.
void connect_to_tap(STANDARD_SIGNAL signal, const PAD_LEVEL &level) {
    const SIGNAL_ROUTE &route = SIGNALS[signal].route;
    const char *pin = signal_tap_pin(signal);
    EDIT_OPERAND tap = pin_of(level.file->tap, pin);
    bool is_here = level.match == TAP_HERE;
    if (comes_from_above(route, level)) {
        edit_connect(level.file, tap, port_net(pin));
        return;
    }
    if (!is_here && level.number != route.start)
        return;
    if (is_here && route.stop >= 0 && route.stop < level.number) {
        edit_connect(level.file, pin_of(level.child, new_port_name(signal).c_str()), tap);
        return;
    }
    const ROUTE_STEP &step = level.is_top ? route.top : route.steps[level.number];
    if (step.place.pin != nullptr)
        free_and_join(level.file, step, tap, level.number == 0 || (level.is_top && !is_here));
}

void connect_signal(STANDARD_SIGNAL signal, const PAD_LEVEL &level) {
    bool is_new = signal_row(signal) == nullptr;
    if (level.match == TAP_ABOVE && !is_new)
        connect_upwards(signal, level);
    // The top module's file has joined a new port to a TAP that stands there.
    else if (level.match == TAP_BELOW || (level.match == TAP_HERE && !(is_new && level.is_top)))
        connect_to_tap(signal, level);
}

void connect_signals(const PAD_LEVEL &level) {
    bool trst_first = level.match == TAP_ABOVE && level.number == 0 && rwv_hier_tap_ctrlG == 0;
    for (STANDARD_SIGNAL signal : trst_first ? TRST_FIRST_ORDER : SIGNAL_ORDER) {
        if (signal_exists(signal))
            connect_signal(signal, level);
        else if (signal == SIGNAL_TDO_EN && signal_exists(SIGNAL_TDO) && level.is_top &&
                 level.match == TAP_HERE && has_enable_port(level))
            edit_connect(level.file, pin_of(level.child, TAP_TDO_EN_PIN),
                         pin_of(level.file->tap, TAP_TDO_EN_PIN));
    }
}

/// Control signals and chain of the child, whose border is crossed by them: they come from the TAP here, or
/// through the ports of this module.
void connect_crossings(const PAD_LEVEL &level) {
    for (const CROSSING &crossing : crossings()) {
        EDIT_OPERAND inside = pin_of(level.child, crossing.port);
        EDIT_OPERAND outside =
            level.match == TAP_HERE ? pin_of(level.file->tap, crossing.tap_pin) : port_net(crossing.port);
        // Below a TAP that stands higher in the path the port comes first.
        if (level.match == TAP_ABOVE && tap_is_in_path(level.path))
            std::swap(inside, outside);
        edit_connect(level.file, inside, outside);
    }
}

void finish_level(PAD_LEVEL &level) {
    if (level.match != TAP_BELOW)
        connect_crossings(level);
    if (level.is_top && level.match == TAP_HERE)
        rwv_do_connection_table(level.file);
    else if (level.is_top && CONNECT_TABLE != nullptr)
        vmr_printf("WARNING: the connections of %%CONNECTION_TABLE are not made, because the TAP lies\n"
                   "         in the modules of the pads.\n\n");
    edit_end_file(level.file);
}

} // namespace

EDIT_FILE *write_pad_levels(const PAD_PATH &path, EDIT_FILE *top) {
    bs_search_standard_ports(path);
    if (tap_is_in_path(path))
        top->tap = path.row->hier_instances[path.levels - 1];
    for (int32_t number = path.levels;; number--) {
        PAD_LEVEL level = level_of_path(path, number);
        if (level.is_top)
            level.file = top;
        else
            open_and_modify_hierarchy_sdb(level);
        if (level.child != nullptr)
            edit_replace(level.file, level.child, std::string(path.row->hier_classes[number - 1]) + "_bs");
        connect_signals(level);
        if (level.child == nullptr)
            return level.file;
        finish_level(level);
    }
}
