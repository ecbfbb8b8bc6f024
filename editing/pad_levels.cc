#include "editing/pad_levels.hh"

#include "editing/existing_tap.hh"
#include "editing/pad_sides.hh"
#include "editing/tap_hierarchy.hh"
#include "editing/tap_place.hh"
#include "editing/tap_top.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

constexpr STANDARD_PORT PORT_ORDER[] = {PORT_TDI, PORT_TMS, PORT_TCK, PORT_TDO, PORT_TRST};
/// A TAP that is no path has its ports joined to the pads in this order.
constexpr STANDARD_PORT PLAIN_PAD_ORDER[] = {PORT_TDI, PORT_TMS, PORT_TCK, PORT_TRST, PORT_TDO};

const char *tap_pin(STANDARD_PORT port) {
    return TAP_PORT[port].tap_pin;
}

/// One level of the pads' path while its file is written.
struct PAD_LEVEL {
    int32_t number; ///< 0 holds the pads
    const char *module;
    const char *child; ///< instance of the next level down, null at level 0
    const char *child_module;
};

bool tap_is_in_path() {
    return rwv_hier_same_instance_iopadG >= 0;
}

bool passes_ports_up() {
    return rwv_hier_instance_matchG == MATCH_NONE || rwv_hier_instance_matchG == MATCH_ABOVE;
}

/// A port whose signal comes from a module further up, or from the top.
bool comes_from_above(const SIGNAL_ROUTE &route, const PAD_LEVEL &level) {
    return level.number < route.start;
}

/// The signal has a port vmr_tap_<x> of its own at this level.
bool has_tap_port(const SIGNAL_ROUTE &route, int32_t level) {
    return route.stop >= 0 && level >= route.stop;
}

/// A standard port that the chip has, or that is added with the TAP, and that is to be joined to the TAP.
bool port_exists(STANDARD_PORT port) {
    return port_is_used(port) && (TAP_PORT[port].row != nullptr || option(OPT_ADD_TAP)) &&
           !design_wires_port(port);
}

/// The enable of the TDO pad needs a wire: the TAP gives it, and the pad takes it.
bool tdo_enable_exists() {
    if (TAP_TDO_EN_PIN == nullptr)
        return false;
    return tdo_enable_pin() != nullptr || TDO_EN_ROUTE.top.pin != nullptr;
}

/// The enable enters by a port of its own from the level at which it found none. A pad without an enable gets
/// the port too, which then leads to nothing.
bool has_enable_port(int32_t level) {
    const OPIN_ROW *row = TAP_PORT[PORT_TDO].row;
    if (TAP_TDO_EN_PIN == nullptr || row == nullptr || row->pad_output != nullptr)
        return false;
    int32_t from = TDO_EN_ROUTE.stop >= 0 ? TDO_EN_ROUTE.stop : TDO_EN_ROUTE.start;
    return DYNA_count(row->hier_classes) > 0 && level >= from;
}

// ---- the `add` lines of a level

void add_control_ports(const PAD_LEVEL &level) {
    for (STANDARD_PORT port : PORT_ORDER)
        if (port_exists(port) && TAP_PORT[port].row != nullptr &&
            has_tap_port(PORT_ROUTES[port], level.number))
            add_new_port(PAD_FP, tap_port_name(port).c_str(), port == PORT_TDO ? EDIT_INPUT : EDIT_OUTPUT);
    for (const char *pin : crossing_signals())
        add_new_port(PAD_FP, pin, EDIT_INPUT);
    add_new_port(PAD_FP, "chain_in", EDIT_INPUT);
    add_new_port(PAD_FP, "chain_out", EDIT_OUTPUT);
    if (option(OPT_SYNCH))
        add_new_port(PAD_FP, BCELL_TCK, EDIT_INPUT);
    if (has_enable_port(level.number))
        add_new_port(PAD_FP, TAP_TDO_EN_PIN, EDIT_INPUT);
}

/// The TAP stands in this module or below it: the standard ports enter from above.
void add_entering_ports(const PAD_LEVEL &level) {
    for (STANDARD_PORT port : PORT_ORDER) {
        if (!port_exists(port) || !comes_from_above(PORT_ROUTES[port], level))
            continue;
        add_new_port(PAD_FP, tap_pin(port), port == PORT_TDO ? EDIT_OUTPUT : EDIT_INPUT);
        // The TAP drives its TDO enable, so this signal leaves.
        if (port == PORT_TDO && tdo_enable_exists())
            add_new_port(PAD_FP, TAP_TDO_EN_PIN, EDIT_OUTPUT);
    }
}

/// The TAP itself, or the top of the rest of its path.
void add_tap_here() {
    const TAP_PATH_ROW *path = rwv_hier_tap_ctrl_name_tabG;
    int32_t next = rwv_hier_same_instance_tapG + 1;
    if (next < DYNA_count(path) - 1) {
        edit_replace(PAD_FP, path[next].inst, std::string(path[next].module) + "_bs");
    } else if (option(OPT_ADD_TAP)) {
        edit_add_instance(PAD_FP, TAP_INSTANCE_NAME, TAP_MODULE_NAME);
        write_idcode_lines(PAD_FP);
    } else {
        free_existing_tap(PAD_FP);
    }
}

/// True when the level's module instantiates a module of the TAP path that lies in the library directory
/// already.
bool needs_library_path() {
    return rwv_hier_instance_matchG == MATCH_HERE &&
           rwv_hier_same_instance_tapG + 1 < DYNA_count(rwv_hier_tap_ctrl_name_tabG) - 1;
}

const char *open_and_modify_hierarchy_sdb(const PAD_LEVEL &level) {
    const char *found = find_design_file(format_text("%s.sdb", level.module));
    if (found == nullptr)
        console_fail("ERROR: Can't find file %s%s.sdb.\n\n", PATH, level.module);
    std::string edited = std::string(level.module) + "_bs";
    if (copy_file(found, edited + ".sdb") != 0)
        vmr_fail("\nERROR: can't copy file '%s' to file '%s/%s.sdb'.\n       Perhaps permission deny ...\n\n",
                 found, RIMWEAVE_OPATH, edited.c_str());
    std::string path = format_text("%s/%s.cmd", RIMWEAVE_OPATH, edited.c_str());
    PAD_FP = edit_begin_file(path, edited, needs_library_path());
    if (PAD_FP == nullptr)
        vmr_fail("ERROR: can't open command file '%s' to update SDB.\n\n", path.c_str());
    vmr_printf("    .Editing command file    %s ...\n", path.c_str());
    if (rwv_hier_instance_matchG == MATCH_HERE)
        add_tap_here();
    open_sdb_file(found);
    if (passes_ports_up())
        add_control_ports(level);
    else
        add_entering_ports(level);
    close_sdb_file();
    return found;
}

// ---- the wires of a level

EDIT_OPERAND tap_here(const char *pin) {
    return pin_of(TAP_INSTANCE_NAME, pin);
}

/// Takes the design off a pin that the TAP drives. The cells stand at level 0.
void free_place(int32_t level, const SIGNAL_PLACE &place) {
    if (level == 0)
        take_pin_for_tap(PAD_FP, -1, place.instance, place.pin);
    else
        edit_disconnect(PAD_FP, place_operand(place));
}

/// Where the signal stops it is joined to its new port, freed of what the design has on it.
void connect_stop(const SIGNAL_ROUTE &route, const std::string &port) {
    const SIGNAL_PLACE &place = route.steps[route.stop].place;
    if (route.cut)
        free_place(route.stop, place);
    edit_connect(PAD_FP, place_operand(place), port_net(port.c_str()));
}

/// The signal's wire at a level that passes it up to the TAP.
void connect_upwards(const SIGNAL_ROUTE &route, const PAD_LEVEL &level, const std::string &port) {
    if (level.number == route.stop)
        connect_stop(route, port);
    else if (has_tap_port(route, level.number))
        edit_connect(PAD_FP, pin_of(level.child, port.c_str()), port_net(port.c_str()), EDIT_LEADING_BLANK);
}

/// The signal's wire in the module of the TAP, or in one above it. `pin` is the TAP's pin, `up` the name of
/// the port by which the signal comes from below.
void connect_in_tap_module(const SIGNAL_ROUTE &route, const PAD_LEVEL &level, const char *pin,
                           const std::string &up) {
    bool is_here = rwv_hier_instance_matchG == MATCH_HERE;
    if (comes_from_above(route, level)) {
        edit_connect(PAD_FP, tap_here(pin), port_net(pin));
        return;
    }
    if (!is_here && level.number != route.start)
        return;
    if (is_here && route.stop >= 0 && route.stop < level.number) {
        edit_connect(PAD_FP, pin_of(level.child, up.c_str()), tap_here(pin));
        return;
    }
    const ROUTE_STEP &step = route.steps[level.number];
    if (step.place.pin == nullptr)
        return;
    EDIT_OPERAND pad = place_operand(step.place);
    // What comes in from above by a port is cut off: the TAP drives the pin now.
    if (step.driven || (route.cut && route.stop == level.number))
        free_place(level.number, step.place);
    if (level.number == 0)
        edit_connect(PAD_FP, tap_here(pin), pad);
    else
        edit_connect(PAD_FP, pad, tap_here(pin));
}

void connect_port(STANDARD_PORT port, const PAD_LEVEL &level) {
    bool up = passes_ports_up();
    const SIGNAL_ROUTE &route = PORT_ROUTES[port];
    if (up && TAP_PORT[port].row != nullptr)
        connect_upwards(route, level, tap_port_name(port));
    else if (!up)
        connect_in_tap_module(route, level, tap_pin(port), tap_port_name(port));
    if (port != PORT_TDO || !tdo_enable_exists())
        return;
    if (up && TAP_PORT[port].row != nullptr)
        connect_upwards(TDO_EN_ROUTE, level, TAP_TDO_EN_PIN);
    else if (!up)
        connect_in_tap_module(TDO_EN_ROUTE, level, TAP_TDO_EN_PIN, TAP_TDO_EN_PIN);
}

void connect_ports(const PAD_LEVEL &level) {
    bool plain_order = passes_ports_up() && level.number == 0 && rwv_hier_tap_ctrlG == 0;
    for (STANDARD_PORT port : plain_order ? PLAIN_PAD_ORDER : PORT_ORDER)
        if (port_exists(port))
            connect_port(port, level);
}

/// Control signals and chain of the child, whose boundary is crossed by them.
void connect_control(EDIT_FILE *fp, const char *inst, const char *tap) {
    for (const char *pin : crossing_signals())
        edit_connect(fp, pin_of(inst, pin), pin_of(tap, pin));
    edit_connect(fp, pin_of(inst, "chain_in"), pin_of(tap, TAP_CONTR->first_bcell));
    edit_connect(fp, pin_of(inst, "chain_out"), pin_of(tap, TAP_CONTR->last_bcell));
    if (option(OPT_SYNCH))
        edit_connect(fp, pin_of(inst, BCELL_TCK), pin_of(tap, BCELL_TCK));
}

/// The same through the ports of this module. Below a TAP that stands higher in the path the port comes
/// first.
void pass_control_up(const char *inst) {
    std::vector<const char *> pins = crossing_signals();
    pins.push_back("chain_in");
    pins.push_back("chain_out");
    if (option(OPT_SYNCH))
        pins.push_back(BCELL_TCK);
    for (const char *pin : pins)
        if (rwv_hier_instance_matchG == MATCH_ABOVE)
            edit_connect(PAD_FP, port_net(pin), pin_of(inst, pin));
        else
            edit_connect(PAD_FP, pin_of(inst, pin), port_net(pin));
}

void replace_cell_in_pad(const PAD_LEVEL &level) {
    edit_replace(PAD_FP, level.child, std::string(level.child_module) + "_bs");
    connect_ports(level);
    if (rwv_hier_instance_matchG == MATCH_HERE)
        connect_control(PAD_FP, level.child, TAP_INSTANCE_NAME);
    else if (passes_ports_up())
        pass_control_up(level.child);
    edit_end_file(PAD_FP);
}

void set_level_match(const PAD_LEVEL &level) {
    int32_t tap_level = rwv_hier_same_instance_iopadG;
    if (tap_level < 0) {
        rwv_hier_instance_matchG = MATCH_NONE;
        return;
    }
    if (level.number == tap_level) {
        // The TAP itself, or what is left of its path below the shared part.
        rwv_hier_instance_matchG = MATCH_HERE;
        TAP_INSTANCE_NAME = rwv_hier_tap_ctrl_name_tabG[rwv_hier_same_instance_tapG + 1].inst;
        return;
    }
    rwv_hier_instance_matchG = level.number > tap_level ? MATCH_BELOW : MATCH_ABOVE;
    if (level.child != nullptr)
        TAP_INSTANCE_NAME = level.child;
}

// ---- the top module

/// The pin or port in the top module that carries the signal, freed of what the design has on it.
void connect_in_top(const SIGNAL_ROUTE &route, const EDIT_OPERAND &tap) {
    if (route.cut_in_top)
        edit_disconnect(TAP_FP, place_operand(route.top));
    edit_connect(TAP_FP, place_operand(route.top), tap);
}

void connect_top_port(STANDARD_PORT port, const char *inst) {
    const SIGNAL_ROUTE &route = PORT_ROUTES[port];
    EDIT_OPERAND tap = pin_of(TAP_INSTANCE_NAME, tap_pin(port));
    if (route.stop >= 0) {
        edit_connect(TAP_FP, pin_of(inst, tap_port_name(port).c_str()), tap);
        return;
    }
    connect_in_top(route, tap);
}

void connect_top_enable(const char *inst) {
    const OPIN_ROW &row = *TAP_PORT[PORT_TDO].row;
    EDIT_OPERAND tap = pin_of(TAP_INSTANCE_NAME, TAP_TDO_EN_PIN);
    if (TDO_EN_ROUTE.stop >= 0)
        edit_connect(TAP_FP, pin_of(inst, TAP_TDO_EN_PIN), tap);
    else if (TDO_EN_ROUTE.top.pin != nullptr)
        connect_in_top(TDO_EN_ROUTE, tap);
    else if (has_enable_port(DYNA_count(row.hier_classes)))
        edit_connect(TAP_FP, pin_of(inst, TAP_TDO_EN_PIN), tap);
}

/// The TAP lies down the pads' path: its pins are those of the outermost instance.
void connect_port_into_path(const SIGNAL_ROUTE &route, const char *inst, const char *pin, int32_t flag,
                            bool to_pad) {
    EDIT_OPERAND chip = place_operand(route.top);
    if (to_pad && (is_constant_net(flag) || route.cut_in_top))
        edit_disconnect(TAP_FP, chip);
    edit_connect(TAP_FP, pin_of(inst, pin), chip);
}

void connect_ports_into_path(int32_t levels, const char *inst) {
    for (STANDARD_PORT port : PORT_ORDER) {
        if (!port_exists(port) || PORT_ROUTES[port].start < levels)
            continue;
        bool is_tdo = port == PORT_TDO;
        connect_port_into_path(PORT_ROUTES[port], inst, tap_pin(port), TAP_FLAG.tdo, is_tdo);
        if (is_tdo && tdo_enable_exists())
            connect_port_into_path(TDO_EN_ROUTE, inst, TAP_TDO_EN_PIN, TAP_FLAG.tdo_en, true);
    }
}

} // namespace

void replace_cell_in_top(int32_t index) {
    const OPIN_ROW &path = OPIN_TAB[index];
    int32_t levels = DYNA_count(path.hier_classes);
    const char *inst = path.hier_instances[levels - 1];
    edit_replace(TAP_FP, inst, std::string(path.hier_classes[levels - 1]) + "_bs");
    if (tap_is_in_path()) {
        connect_ports_into_path(levels, inst);
    } else {
        for (STANDARD_PORT port : PORT_ORDER) {
            if (!port_exists(port) || TAP_PORT[port].row == nullptr)
                continue;
            connect_top_port(port, inst);
            if (port == PORT_TDO && TAP_TDO_EN_PIN != nullptr)
                connect_top_enable(inst);
        }
    }
    if (rwv_hier_same_instance_tapG < 0) {
        connect_control(TAP_FP, inst, TAP_INSTANCE_NAME);
        rwv_do_connection_table(TAP_FP);
    } else if (CONNECT_TABLE != nullptr) {
        vmr_printf("WARNING: the connections of %%CONNECTION_TABLE are not made, because the TAP lies\n"
                   "         in the modules of the pads.\n\n");
    }
    edit_end_file(TAP_FP);
}

const char *write_pad_levels(int32_t index) {
    const OPIN_ROW &path = OPIN_TAB[index];
    const char *sdb_path = nullptr;
    for (int32_t k = DYNA_count(path.hier_classes) - 1; k >= 0; k--) {
        PAD_LEVEL level = {k, path.hier_classes[k], nullptr, nullptr};
        if (k > 0) {
            level.child = path.hier_instances[k - 1];
            level.child_module = path.hier_classes[k - 1];
        }
        set_level_match(level);
        sdb_path = open_and_modify_hierarchy_sdb(level);
        if (k > 0)
            replace_cell_in_pad(level);
        else
            connect_ports(level);
    }
    return sdb_path;
}
