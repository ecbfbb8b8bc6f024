// Rules about the TAP and its signals: clocks, trees, the way in from the ports, TDO, power-up, opcodes.
#include "kit/check.hh"

#include "kit/chip.hh"
#include "planning/control_signals.hh"
#include "planning/tap_needs.hh"
#include "planning/tap_state.hh"
#include "rtl/tap_model.hh"
#include "sdb/navigation.hh"
#include "support/text.hh"

#include <algorithm>
#include <cctype>
#include <set>

namespace {

/// The TAP's pin of a control signal.
std::string tap_pin_of(const CHECK_CHIP &chip, int32_t signal) {
    const CONTROL_SIGNAL_INFO &info = CONTROL_SIGNALS[signal];
    return info.tap_field == nullptr ? BCELL_TCK : tap_pin_name(*chip.found.tap, info.tap_field);
}

constexpr int32_t CLOCK_SIGNALS[] = {SIG_CLOCK, SIG_UPDATE, SIG_BCLK};

/// True when the cell sees the signal turned round; a '-' before its pin in the library file turns it back.
bool is_turned(const REGISTER_CELL &cell, int32_t signal) {
    const char *pin = cell.cell->*CONTROL_SIGNALS[signal].cell_pin;
    return cell.signals[signal].is_inverted != (pin != nullptr && pin[0] == '-');
}

/// A pin of a cell that the TAP's pin of its signal does not reach. False for one that is as it must be,
/// and for one that hangs on nothing, which another rule tells.
bool has_wrong_source(const CHECK_CHIP &chip, const REGISTER_CELL &cell, int32_t signal) {
    const WALK_POINT &source = cell.signals[signal].source;
    bool is_fixed = source.end == WALK_NONE || source.end == WALK_OPEN || source.end == WALK_ZERO ||
                    source.end == WALK_ONE;
    return !is_fixed && !(source.end == WALK_TAP && same_text_no_case(cell.signals[signal].tap_pin.c_str(),
                                                                      tap_pin_of(chip, signal).c_str()));
}

/// A control signal at all cells: from the TAP's pin of that signal, and at each of the same polarity.
void check_signal_of_cells(CHECK_CHIP &chip, int32_t signal, int32_t rule) {
    size_t turned = 0, wired = 0;
    for (const REGISTER_CELL &cell : chip.found.cells) {
        bool is_wired = cell.signals[signal].source.end == WALK_TAP;
        wired += is_wired ? 1 : 0;
        turned += is_wired && is_turned(cell, signal) ? 1 : 0;
    }
    bool usual = turned * 2 > wired;
    for (const REGISTER_CELL &cell : chip.found.cells) {
        const char *pin = cell.cell->*CONTROL_SIGNALS[signal].cell_pin;
        int32_t node = walk_pin(cell.obj, pin);
        if (has_wrong_source(chip, cell, signal))
            add_check(chip, rule, {cell.obj, node, -1},
                      format_text("pin %s of the boundary cell hangs on %s, not on %s of the TAP", pin,
                                  end_text(chip, cell.signals[signal].source).c_str(),
                                  tap_pin_of(chip, signal).c_str()));
        else if (cell.signals[signal].source.end == WALK_TAP && is_turned(cell, signal) != usual)
            add_check(
                chip, rule, {cell.obj, node, -1},
                format_text("pin %s of the boundary cell sees the signal turned round, unlike most cells",
                            pin));
    }
}

/// Cells of the core behind a test clock; `own` are gates on the way to the TAP.
void check_core_behind(CHECK_CHIP &chip, int32_t node, const std::string &name, int32_t port,
                       const std::vector<int32_t> &own = {}) {
    std::set<int32_t> told(own.begin(), own.end());
    for (const WALK_POINT &point : walk_forward(chip.found.walk, node))
        if (point.end == WALK_CORE && chip_has_output(point.row) && told.insert(point.row).second)
            add_check(chip, 29, {point.row, point.node, port},
                      format_text("pin %s of the core hangs on %s",
                                  chip_pin_name(node_tab[point.node].pin).c_str(), name.c_str()));
}

/// The node from which a signal comes in to the TAP: the pad's inner pin, or the port.
WALK_POINT source_of_tap_pin(const CHECK_CHIP &chip, const char *TAP_CELL::*field) {
    return walk_back(chip.found.walk,
                     walk_pin(chip.found.tap_obj, tap_pin_name(*chip.found.tap, field).c_str()));
}

/// "'u1' of the core, which the library file does not know", for the first of the gates on a way.
std::string gate_text(const std::vector<int32_t> &gates) {
    return "'" + chip_instance_name(gates[0]) + "', a gate that the library file does not know";
}

bool is_tap_pin(const CHECK_CHIP &chip, const WALK_POINT &point, const char *TAP_CELL::*field) {
    return point.end == WALK_TAP && walk_is_pin(point.node, tap_pin_name(*chip.found.tap, field).c_str());
}

/// The port of TDO: the one that the TAP reaches, or that of the .bsc file where gates stand in the way,
/// which is told. -1 for none.
int32_t find_tdo(CHECK_CHIP &chip) {
    if (chip.found.test_ports[PORT_TDO] >= 0)
        return chip.found.test_ports[PORT_TDO];
    int32_t port = GLOBAL_TDO == nullptr ? -1 : SDB_nl_search_port(without_minus(GLOBAL_TDO));
    if (port < 0)
        return -1;
    int32_t node = port_tab[port].node;
    for (int32_t pad : chip.found.ports[static_cast<size_t>(port)].pads) {
        const WALK_PAD_ROW &row = chip.found.walk.pads[static_cast<size_t>(pad)];
        node = walk_pin(row.obj, row.core_in);
    }
    std::vector<int32_t> gates;
    WALK_POINT source = behind_single_gates(chip, walk_back(chip.found.walk, node), gates);
    if (!is_tap_pin(chip, source, &TAP_CELL::tdo))
        return -1;
    if (!gates.empty())
        add_check(chip, 11, {gates[0], node, port}, "TDO comes through " + gate_text(gates), FINDING_WARNING);
    return port;
}

/// The enable of TDO's pad. False where it is a constant.
bool check_tdo_enable(CHECK_CHIP &chip, const WALK_PAD_ROW &pad, const char *pin) {
    int32_t node = walk_pin(pad.obj, pin);
    WALK_POINT source = walk_back(chip.found.walk, node);
    if (is_fixed(chip, source))
        return false;
    std::vector<int32_t> gates;
    if (!is_tap_pin(chip, behind_single_gates(chip, source, gates), &TAP_CELL::tdo_en))
        add_check(chip, 11, {pad.obj, node, pad.port},
                  format_text("the enable of TDO's pad hangs on %s, not on the TAP's %%TDO_EN",
                              end_text(chip, source).c_str()));
    else if (!gates.empty())
        add_check(chip, 11, {pad.obj, node, pad.port}, "the enable of TDO's pad hangs on " + gate_text(gates),
                  FINDING_WARNING);
    else if (source.inverters % 2 != 0)
        add_check(chip, 11, {pad.obj, node, pad.port}, "TDO's pad is switched upside down");
    return true;
}

/// Loads and depth of one net of a tree and what hangs behind its buffers.
struct TREE_SHAPE {
    size_t loads = 0;   ///< of the widest net
    int32_t node = -1;  ///< what drives that net
    int32_t levels = 0; ///< of buffers
};

TREE_SHAPE tree_behind(const CHECK_CHIP &chip, int32_t root) {
    TREE_SHAPE shape;
    std::vector<std::pair<int32_t, int32_t>> open = {{root, 0}};
    std::set<int32_t> seen;
    while (!open.empty()) {
        auto [node, level] = open.back();
        open.pop_back();
        int32_t net = node < 0 ? -1 : node_tab[node].net;
        if (net <= SDB_NET_VCC || !seen.insert(net).second)
            continue;
        shape.levels = std::max(shape.levels, level);
        size_t loads = 0;
        for (int32_t at : chip_net_nodes(net)) {
            if (at == node)
                continue;
            ++loads;
            int32_t obj = node_tab[at].obj, class_id = obj < 0 ? -1 : obj_tab[obj].class_id;
            const WALK_CLASS *row =
                class_id < 0 ? nullptr : &chip.found.walk.classes[static_cast<size_t>(class_id)];
            if (row != nullptr && row->passes && at == obj_tab[obj].first_node + row->input)
                open.emplace_back(obj_tab[obj].first_node + row->output, level + 1);
        }
        if (loads > shape.loads) {
            shape.loads = loads;
            shape.node = node;
        }
    }
    return shape;
}

std::string upper(const char *text) {
    std::string word = text != nullptr ? text : "";
    for (char &c : word)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return word;
}

/// Registers that the standard or the TAP brings along; others are the user's.
bool has_user_register(const INSTRUCTION &row) {
    std::string name =
        row.register_name == nullptr ? "" : upper(std::string(register_base(row.register_name)).c_str());
    static const std::set<std::string> OWN = {"", "BYPASS", "BOUNDARY", "IDCODE", "USERCODE", "DEVICE_ID"};
    return !OWN.contains(name);
}

/// Pins of the TAP that an instruction may drive without being private: modes and high impedance.
bool is_standard_pin(const CHECK_CHIP &chip, const char *pin) {
    for (const TAP_PIN_ROW &row : TAP_PIN_ROWS)
        if (same_text_no_case(tap_pin_name(*chip.found.tap, row.field).c_str(), pin))
            return true;
    return false;
}

/// The serial output of a user register, where it should come into the TAP.
void check_register_of(CHECK_CHIP &chip, const INSTRUCTION &row) {
    if (!has_user_register(row))
        return;
    std::string pin = std::string(register_base(row.register_name)) + "_out";
    int32_t node = walk_pin(chip.found.tap_obj, pin.c_str());
    WALK_END end = walk_back(chip.found.walk, node).end;
    if (node >= 0 && (end == WALK_OPEN || end == WALK_ZERO || end == WALK_ONE))
        add_check(chip, 34, {chip.found.tap_obj, node, -1},
                  format_text("nothing drives the register of %s", row.name));
}

/// What comes in to the TAP.
struct TAP_INPUT {
    const char *TAP_CELL::*field;
    STANDARD_PORT port;
    const char *word;
    const char **declared; ///< the port that the .bsc file names
};
constexpr TAP_INPUT TAP_INPUTS[] = {{&TAP_CELL::tck, PORT_TCK, "TCK", &GLOBAL_TCK},
                                    {&TAP_CELL::tms, PORT_TMS, "TMS", &GLOBAL_TMS},
                                    {&TAP_CELL::tdi, PORT_TDI, "TDI", &GLOBAL_TDI},
                                    {&TAP_CELL::trst, PORT_TRST, "TRST", &GLOBAL_TRST}};

/// The port behind a walk, straight or through its pad; -1 for none.
int32_t port_behind(const CHECK_CHIP &chip, const WALK_POINT &point) {
    if (point.end == WALK_PORT)
        return point.row;
    const WALK_PAD_ROW *pad =
        point.end == WALK_PAD ? &chip.found.walk.pads[static_cast<size_t>(point.row)] : nullptr;
    return pad != nullptr && walk_is_pin(point.node, pad->core_out) ? pad->port : -1;
}

} // namespace

void check_control_pins(CHECK_CHIP &chip) {
    for (int32_t signal : {SIG_SHIFT, SIG_HIGHZ, SIG_MODE1, SIG_MODE2, SIG_MODE3, SIG_RST})
        check_signal_of_cells(chip, signal, 28);
}

void check_mux_pins(CHECK_CHIP &chip) {
    for (const WALK_PAD_ROW &pad : chip.found.walk.pads) {
        const char *tested = pad.buffer->kind == BUFFER_BS ? nullptr : pad.buffer->mux_in2;
        WALK_POINT source = walk_back(chip.found.walk, walk_pin(pad.obj, tested));
        if (tested != nullptr && source.end != WALK_CELL && !is_fixed(chip, source))
            add_check(chip, 28, {pad.obj, walk_pin(pad.obj, tested), pad.port},
                      format_text("pin %s of the pad hangs on %s, not on a boundary cell", tested,
                                  end_text(chip, source).c_str()));
        for (size_t i = 0; i < std::size(PAD_MODES) && pad.buffer->kind != BUFFER_BS; ++i) {
            const char *pin = pad.buffer->*PAD_MODES[i];
            source = walk_back(chip.found.walk, walk_pin(pad.obj, pin));
            if (pin != nullptr && !is_fixed(chip, source) &&
                !is_tap_pin(chip, source, CONTROL_SIGNALS[MODE_SIGNALS[i]].tap_field))
                add_check(chip, 28, {pad.obj, walk_pin(pad.obj, pin), pad.port},
                          format_text("mode pin %s of the pad hangs on %s, not on the TAP's", pin,
                                      end_text(chip, source).c_str()));
        }
    }
}

void check_power_up(CHECK_CHIP &chip) {
    std::string name = tap_pin_name(*chip.found.tap, &TAP_CELL::trst);
    int32_t node = walk_pin(chip.found.tap_obj, name.c_str());
    WALK_END end = walk_back(chip.found.walk, node).end;
    if (end == WALK_NONE || end == WALK_OPEN || end == WALK_ZERO || end == WALK_ONE)
        add_check(chip, 4, {chip.found.tap_obj, node, -1}, "the TAP has neither TRST nor a power-on reset");
}

void check_tdo_release(CHECK_CHIP &chip) {
    int32_t port = find_tdo(chip);
    if (port < 0) {
        add_check(chip, 11, {chip.found.tap_obj, -1, -1}, "TDO of the TAP does not reach its port");
        return;
    }
    for (int32_t at : chip.found.ports[static_cast<size_t>(port)].pads) {
        const WALK_PAD_ROW &pad = chip.found.walk.pads[static_cast<size_t>(at)];
        for (const char *pin : {pad.buffer->en_l, pad.buffer->en_h})
            if (pin != nullptr && check_tdo_enable(chip, pad, pin))
                return;
    }
    add_check(chip, 11, {chip.found.tap_obj, -1, port}, "TDO drives all the time", FINDING_WARNING);
}

void check_clocks(CHECK_CHIP &chip) {
    for (int32_t signal : CLOCK_SIGNALS) {
        check_signal_of_cells(chip, signal, 29);
        std::string pin = tap_pin_of(chip, signal);
        check_core_behind(chip, walk_pin(chip.found.tap_obj, pin.c_str()), pin + " of the TAP", -1);
    }
    std::vector<int32_t> gates;
    WALK_POINT near = source_of_tap_pin(chip, &TAP_CELL::tck), far = behind_single_gates(chip, near, gates);
    if (far.end != WALK_PAD && far.end != WALK_PORT)
        return;
    int32_t port = port_behind(chip, far);
    check_core_behind(chip, far.node, "TCK", port, gates);
    if (!gates.empty())
        check_core_behind(chip, near.node, "TCK", port, gates);
}

void check_edges(CHECK_CHIP &chip) {
    for (const REGISTER_CELL &cell : chip.found.cells) {
        const REGISTER_SIGNAL &update = cell.signals[SIG_UPDATE];
        for (int32_t signal : {SIG_CLOCK, SIG_BCLK}) {
            const REGISTER_SIGNAL &capture = cell.signals[signal];
            bool same = update.source.end == WALK_TAP && capture.source.end == WALK_TAP &&
                        update.source.node == capture.source.node &&
                        is_turned(cell, SIG_UPDATE) == is_turned(cell, signal);
            if (same)
                add_check(
                    chip, 30, {cell.obj, walk_pin(cell.obj, cell.cell->update_dr), -1},
                    format_text("%s of the TAP both updates and captures the cell", capture.tap_pin.c_str()));
        }
    }
}

void check_trees(CHECK_CHIP &chip) {
    const TAP_CELL &tap = *chip.found.tap;
    int32_t most = std::max(tap.group_size, tap.df_group_size);
    if (most <= 0 || (tap.signal_buffer == nullptr && tap.df_signal_buffer == nullptr))
        return;
    for (int32_t signal = 0; signal < SIGNAL_COUNT; ++signal) {
        std::string pin = tap_pin_of(chip, signal);
        TREE_SHAPE shape = tree_behind(chip, walk_pin(chip.found.tap_obj, pin.c_str()));
        if (shape.loads > static_cast<size_t>(most))
            add_check(chip, 31, {node_tab[shape.node].obj, shape.node, -1},
                      format_text("%s goes to %zu pins at one place, %d levels deep; %%GROUP_SIZE is %d",
                                  pin.c_str(), shape.loads, shape.levels, most));
    }
}

void check_tap_inputs(CHECK_CHIP &chip) {
    std::set<std::string> told;
    if (chip.found.test_ports[PORT_TDO] < 0)
        told.insert("TDO"); // by rule 11
    for (const TAP_INPUT &input : TAP_INPUTS) {
        WALK_POINT near = source_of_tap_pin(chip, input.field);
        std::vector<int32_t> gates;
        WALK_POINT far = behind_single_gates(chip, near, gates);
        // A cell that nothing goes into may reset the TAP at power-up.
        bool is_reset = input.port == PORT_TRST && near.end == WALK_CORE && !chip_has_input(near.row);
        bool is_wrong = far.end == WALK_CORE || far.end == WALK_CELL || far.end == WALK_MANY;
        int32_t port = port_behind(chip, far);
        std::string declared = text_or_empty(without_minus(*input.declared));
        bool is_through =
            !gates.empty() && port >= 0 && (declared.empty() || chip_port_name(port) == declared);
        CHECK_PLACE place = {near.end == WALK_CORE ? near.row : chip.found.tap_obj, near.node, port};
        if (is_through)
            add_check(chip, 32, place,
                      format_text("%s comes through %s", input.word, gate_text(gates).c_str()),
                      FINDING_WARNING);
        else if (is_wrong && !is_reset)
            add_check(chip, 32, place,
                      format_text("%s of the TAP hangs on %s", input.word, end_text(chip, near).c_str()));
        if (is_through || is_reset || is_wrong)
            told.insert(input.word);
    }
    for (const REGISTER_FAULT &fault : chip.found.faults)
        if (fault.rule == std::string_view("tap") &&
            !told.contains(fault.text.substr(0, fault.text.find(' '))))
            add_fault(chip, 32, fault);
}

void check_opcodes(CHECK_CHIP &chip) {
    std::set<std::string> privates, names;
    for (const char *name : rows(INST_PRIVATE))
        privates.insert(upper(name));
    for (const INSTRUCTION &row : rows(INSTRUCTIONS)) {
        names.insert(upper(row.name));
        for (std::string pattern : rows(row.patterns))
            if (pattern.find_first_of("xX") != pattern.npos)
                add_check(chip, 34, {},
                          format_text("no value of the register decodes to %s: opcode %s has an X", row.name,
                                      pattern.c_str()));
        check_register_of(chip, row);
        if (privates.contains(upper(row.name)))
            continue;
        for (const char *pin : rows(row.enable_pins))
            if (!is_standard_pin(chip, pin))
                add_check(chip, 34, {chip.found.tap_obj, walk_pin(chip.found.tap_obj, pin), -1},
                          format_text("%s drives %s of the TAP, and is not declared private", row.name, pin));
    }
    for (const std::string &name : privates)
        if (!names.contains(name))
            add_check(chip, 34, {},
                      format_text("%%INSTRUCTION_PRIVATE names %s, which is no instruction", name.c_str()));
    for (const REGISTER_CELL &cell : chip.found.cells)
        for (size_t i = 0; i < cell.extras.size(); ++i)
            if (cell.cell->extras[i] != nullptr &&
                (cell.extras[i].source.end == WALK_OPEN || cell.extras[i].source.end == WALK_NONE))
                add_check(chip, 34, {cell.obj, walk_pin(cell.obj, cell.cell->extras[i]), -1},
                          format_text("extra pin %s of the boundary cell is open", cell.cell->extras[i]));
}
