#include "editing/multi_ports.hh"

#include "editing/multi_modules.hh"
#include "editing/pad_sides.hh"
#include "editing/standard_ports.hh"
#include "editing/tap_top.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// The way of one signal to the top module.
struct TOP_PLACE {
    SIGNAL_PLACE place; ///< null pin: there is no such signal
    bool cut;           ///< the top module has something on the pin that the TAP is to drive
};
TOP_PLACE tdo_data, tdo_enable; ///< set by the search, read when the top module is wired

/// A signal on its way up: what it is called where it needs new ports, and which way it runs.
struct SIGNAL {
    const char *port; ///< the chip's port, for messages
    const char *word; ///< "TDI", for messages
    const char *new_port;
    bool to_pad; ///< the TAP drives it
};

/// The row of MULTI_IO_TAB of each level of the row's pad, innermost first.
std::vector<int32_t> modules_of(const OPIN_ROW &row, const char *word) {
    std::vector<int32_t> modules;
    for (int32_t module = row.io_module; module > 0; module = MULTI_IO_TAB[module].parent)
        modules.push_back(module);
    if (static_cast<int32_t>(modules.size()) != DYNA_count(row.hier_classes))
        console_fail("ERROR: Can not find the parent module for traceing %s(%s) in %s PAD.\n", word,
                     row.port_name, row.pad_instance);
    return modules;
}

/// Records the signal's new port on the modules from `level` up, and the wires between them.
void bs_add_tap_port_to_cmd_file(const OPIN_ROW &row, const std::vector<int32_t> &modules, size_t level,
                                 const SIGNAL_PLACE &place, const SIGNAL &signal) {
    SIGNAL_PLACE from = place;
    for (size_t k = level; k < modules.size(); k++) {
        record_port(modules[k], signal.new_port, signal.to_pad ? EDIT_INPUT : EDIT_OUTPUT);
        record_connection(modules[k], from.instance, from.pin, nullptr, signal.new_port);
        from = {row.hier_instances[k], signal.new_port};
    }
}

/// The signal stops at this level: it is freed of what the design has on it, and gets its ports.
void stop_at(const OPIN_ROW &row, const std::vector<int32_t> &modules, size_t level,
             const SIGNAL_PLACE &place, const SIGNAL &signal, int32_t node) {
    // A TAP that stands in the design already is wired there.
    if (!option(OPT_ADD_TAP))
        return;
    if (signal.to_pad && pin_is_driven(node)) {
        if (!is_constant_net(node_tab[node].net))
            warn_of_cut(place);
        take_pin_for_tap(IO_MODULES[modules[level]].file, modules[level], place.instance, place.pin);
    }
    bs_add_tap_port_to_cmd_file(row, modules, level, place, signal);
}

/// Leads the place up to the top module. True when it got new ports on its way.
bool lead_up(const OPIN_ROW &row, SIGNAL_PLACE &place, const SIGNAL &signal) {
    std::vector<int32_t> modules = modules_of(row, signal.word);
    for (size_t level = 0; level < modules.size(); level++) {
        open_sdb_file(IO_MODULES[modules[level]].sdb_path);
        int32_t node = find_place_node(place.instance, place.pin);
        if (node < 0)
            vmr_fail("ERROR: pin '%s' of '%s' on the way of port '%s' can't be found in module '%s'.\n\n",
                     place.pin, place.instance, signal.port, row.hier_classes[level]);
        const char *port = border_port(node, signal.to_pad);
        if (port == nullptr)
            stop_at(row, modules, level, place, signal, node);
        close_sdb_file();
        if (port == nullptr) {
            place = {row.hier_instances[modules.size() - 1], signal.new_port};
            return true;
        }
        place = {row.hier_instances[level], port};
    }
    return false;
}

/// True when the top module has something on a pin or port that the TAP is to drive: the pin is taken then.
/// `net` is what planning found on the pad.
bool take_in_top(const SIGNAL_PLACE &place, int32_t net) {
    if (!option(OPT_ADD_TAP))
        return false;
    open_sdb_file(MODULE_SDB);
    bool taken = is_constant_net(net) || tdo_has_driver(place, net);
    close_sdb_file();
    if (taken)
        note_pin_of_tap(0, place.instance, place.pin);
    return taken;
}

/// The chip's words for the ports, in the order of STANDARD_PORT.
constexpr const char *TAP_WORDS[STANDARD_PORT_COUNT] = {"TDI", "TDO", "TMS", "TCK", "TRST"};

SIGNAL_PLACE search_port(STANDARD_PORT port, OPIN_ROW &row) {
    SIGNAL_PLACE place = {row.pad_instance, row_pin(row, port)};
    SIGNAL signal = {row.port_name, TAP_WORDS[port], keep_text(tap_port_name(port)), port == PORT_TDO};
    bool is_new = lead_up(row, place, signal);
    if (port == PORT_TDO)
        tdo_data = {place, !is_new && take_in_top(place, TAP_FLAG.tdo)};
    return place;
}

/// The enable of the TDO pad takes a way of its own; both ways lead through the same instances.
void search_tdo_enable(OPIN_ROW &row) {
    const char *enable = TAP_TDO_EN_PIN == nullptr ? nullptr : tdo_enable_pin();
    if (enable == nullptr)
        return;
    SIGNAL_PLACE place = {row.pad_instance, enable};
    bool in_module = DYNA_count(row.hier_classes) > 0;
    bool is_new = lead_up(row, place, {row.port_name, TAP_WORDS[PORT_TDO], TAP_TDO_EN_PIN, true});
    // A pad in the top has been looked at by planning.
    bool cut = !is_new && (in_module ? take_in_top(place, TAP_FLAG.tdo_en) : TAP_FLAG.tdo_en != -1);
    if (cut && !in_module)
        note_pin_of_tap(0, place.instance, place.pin);
    tdo_enable = {place, cut};
    if (in_module)
        row.pad_output = place.pin;
}

EDIT_OPERAND tap_pin(const char *pin) {
    return pin_of(TAP_INSTANCE_NAME, pin);
}

void connect_to_pad(const TOP_PLACE &top, const char *pin) {
    if (top.cut)
        edit_disconnect(TAP_FP, place_operand(top.place));
    edit_connect(TAP_FP, place_operand(top.place), tap_pin(pin));
}

} // namespace

void bs_hier_search_tap_ports() {
    tdo_data = tdo_enable = {};
    for (STANDARD_PORT port : {PORT_TDI, PORT_TMS, PORT_TCK, PORT_TDO, PORT_TRST}) {
        OPIN_ROW *row = TAP_PORT[port].row;
        if (row != nullptr && row->pad_instance == nullptr && port == PORT_TDO) {
            SIGNAL_PLACE bare = {nullptr, row->port_name};
            tdo_data = {bare, take_in_top(bare, TAP_FLAG.tdo)};
        }
        if (row == nullptr || row->pad_instance == nullptr || row_pin(*row, port) == nullptr)
            continue;
        SIGNAL_PLACE top = search_port(port, *row);
        if (port == PORT_TDO)
            search_tdo_enable(*row);
        row->pad_instance = top.instance;
        row_pin(*row, port) = top.pin;
    }
}

void connect_standard_ports_in_top() {
    for (STANDARD_PORT port : {PORT_TDI, PORT_TMS, PORT_TCK, PORT_TRST, PORT_TDO}) {
        if (!port_is_used(port))
            continue;
        if (TAP_PORT[port].row == nullptr)
            add_standard_port(port);
        else if (port == PORT_TDO && tdo_data.place.pin != nullptr)
            connect_to_pad(tdo_data, TAP_PORT[port].tap_pin);
        else
            edit_connect(TAP_FP, row_operand(port), tap_pin(TAP_PORT[port].tap_pin));
    }
    if (tdo_enable.place.pin != nullptr)
        connect_to_pad(tdo_enable, TAP_TDO_EN_PIN);
}
