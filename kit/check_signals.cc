// Rules about the TAP and its signals: clocks, trees, the way in from the ports, TDO, power-up, opcodes.
#include "kit/check.hh"

#include "kit/chip.hh"
#include "planning/control_signals.hh"
#include "planning/tap_needs.hh"
#include "planning/tap_state.hh"
#include "rtl/tap_model.hh"
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
                chip, 29, {cell.obj, node, -1},
                format_text("clock pin %s of the boundary cell sees the other edge than most cells", pin));
    }
}

/// Cells of the core behind a test clock.
void check_core_behind(CHECK_CHIP &chip, int32_t node, const std::string &name, int32_t port) {
    std::set<int32_t> told;
    for (const WALK_POINT &point : walk_forward(chip.found.walk, node))
        if (point.end == WALK_CORE && has_output(point.row) && told.insert(point.row).second)
            add_check(chip, 29, {point.row, point.node, port},
                      format_text("pin %s of the core hangs on %s",
                                  chip_pin_name(node_tab[point.node].pin).c_str(), name.c_str()));
}

/// The node from which a signal comes in to the TAP: the pad's inner pin, or the port.
WALK_POINT source_of_tap_pin(const CHECK_CHIP &chip, const char *TAP_CELL::*field) {
    return walk_back(chip.found.walk,
                     walk_pin(chip.found.tap_obj, tap_pin_name(*chip.found.tap, field).c_str()));
}

/// True for a gate of the core that sees nothing but the TAP's TDO enable.
bool reads_tap_alone(CHECK_CHIP &chip, const WALK_POINT &gate) {
    int32_t class_id = gate.end == WALK_CORE ? obj_tab[gate.row].class_id : -1;
    bool reads_tap = false;
    for (int32_t i = 0; class_id >= 0 && i < class_tab[class_id].pin_count; ++i) {
        int32_t node = obj_tab[gate.row].first_node + i;
        if (chip_pin_direction(node_tab[node].pin) == SDB_OUTPUT)
            continue;
        WALK_POINT source = walk_back(chip.found.walk, node);
        if (source.end == WALK_TAP &&
            walk_is_pin(source.node, tap_pin_name(*chip.found.tap, &TAP_CELL::tdo_en).c_str()))
            reads_tap = true;
        else if (!is_fixed(chip, source))
            return false;
    }
    return reads_tap;
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

} // namespace

void check_control_pins(CHECK_CHIP &chip) {
    for (int32_t signal : {SIG_SHIFT, SIG_HIGHZ, SIG_MODE1, SIG_MODE2, SIG_MODE3, SIG_RST})
        check_signal_of_cells(chip, signal, 28);
}

void check_power_up(CHECK_CHIP &chip) {
    std::string name = tap_pin_name(*chip.found.tap, &TAP_CELL::trst);
    int32_t node = walk_pin(chip.found.tap_obj, name.c_str());
    WALK_END end = walk_back(chip.found.walk, node).end;
    if (end == WALK_NONE || end == WALK_OPEN || end == WALK_ZERO || end == WALK_ONE)
        add_check(chip, 4, {chip.found.tap_obj, node, -1}, "the TAP has neither TRST nor a power-on reset");
}

void check_tdo_release(CHECK_CHIP &chip) {
    int32_t port = chip.found.test_ports[PORT_TDO];
    if (port < 0) {
        add_check(chip, 11, {chip.found.tap_obj, -1, -1}, "TDO of the TAP reaches no port");
        return;
    }
    for (int32_t at : chip.found.ports[static_cast<size_t>(port)].pads) {
        const WALK_PAD_ROW &pad = chip.found.walk.pads[static_cast<size_t>(at)];
        for (const char *pin : {pad.buffer->en_l, pad.buffer->en_h}) {
            int32_t node = walk_pin(pad.obj, pin);
            WALK_POINT source = walk_back(chip.found.walk, node);
            std::string tap_pin = source.end == WALK_TAP ? chip_pin_name(node_tab[source.node].pin) : "";
            if (pin == nullptr)
                continue;
            if (same_text_no_case(tap_pin.c_str(),
                                  tap_pin_name(*chip.found.tap, &TAP_CELL::tdo_en).c_str())) {
                if (source.inverters % 2 != 0)
                    add_check(chip, 11, {pad.obj, node, port}, "TDO's pad is switched upside down");
                return;
            }
            if (!is_fixed(chip, source)) {
                bool is_through = reads_tap_alone(chip, source);
                add_check(chip, 11, {pad.obj, node, port},
                          format_text("the enable of TDO's pad hangs on %s, %s",
                                      end_text(chip, source).c_str(),
                                      is_through ? "a gate that the library file does not know"
                                                 : "not on the TAP's %TDO_EN"),
                          is_through ? FINDING_WARNING : FINDING_ERROR);
                return;
            }
        }
    }
    add_check(chip, 11, {chip.found.tap_obj, -1, port}, "TDO drives all the time", FINDING_WARNING);
}

void check_clocks(CHECK_CHIP &chip) {
    for (int32_t signal : CLOCK_SIGNALS) {
        check_signal_of_cells(chip, signal, 29);
        std::string pin = tap_pin_of(chip, signal);
        check_core_behind(chip, walk_pin(chip.found.tap_obj, pin.c_str()), pin + " of the TAP", -1);
    }
    WALK_POINT tck = source_of_tap_pin(chip, &TAP_CELL::tck);
    if (tck.end == WALK_PAD || tck.end == WALK_PORT)
        check_core_behind(chip, tck.node, "TCK", chip.found.test_ports[PORT_TCK]);
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
    const struct {
        const char *TAP_CELL::*field;
        STANDARD_PORT port;
    } INPUTS[] = {{&TAP_CELL::tck, PORT_TCK},
                  {&TAP_CELL::tms, PORT_TMS},
                  {&TAP_CELL::tdi, PORT_TDI},
                  {&TAP_CELL::trst, PORT_TRST}};
    for (const auto &input : INPUTS) {
        WALK_POINT source = source_of_tap_pin(chip, input.field);
        // A cell that nothing goes into may reset the TAP at power-up.
        bool is_reset = input.port == PORT_TRST && source.end == WALK_CORE && !has_input(source.row);
        if ((source.end == WALK_CORE && !is_reset) || source.end == WALK_CELL || source.end == WALK_MANY)
            add_check(chip, 32,
                      {source.end == WALK_MANY ? chip.found.tap_obj : source.row, source.node,
                       chip.found.test_ports[input.port]},
                      format_text("%s of the TAP hangs on %s",
                                  tap_pin_name(*chip.found.tap, input.field).c_str(),
                                  end_text(chip, source).c_str()));
    }
    add_faults(chip, 32, {"tap"});
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
