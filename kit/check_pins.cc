// Rules about single pins: those of pads that the core drives, and those of cells, pads and the TAP that hang
// in the air.
#include "kit/check.hh"

#include "kit/chip.hh"
#include "kit/names.hh"
#include "kit/pads.hh"
#include "planning/control_signals.hh"
#include "support/text.hh"

#include <algorithm>
#include <map>

namespace {

/// Pins of one pad cell that share a fault, and the pads that have it.
struct PIN_GROUP {
    CHECK_PLACE first{};
    std::vector<std::string> ports{};
};
struct GROUP_KEY {
    FINDING_SEVERITY severity;
    int32_t class_id;
    std::string pins;
    auto operator<=>(const GROUP_KEY &other) const = default;
};
using PIN_GROUPS = std::map<GROUP_KEY, PIN_GROUP>;

/// The pins of one pad of which `is_wrong` is true, by severity, entered in their group.
template <class TEST> void group_pins(PIN_GROUPS &groups, const WALK_PAD_ROW &pad, const TEST &is_wrong) {
    int32_t class_id = obj_tab[pad.obj].class_id;
    std::string pins[FINDING_SEVERITY_COUNT];
    int32_t first[FINDING_SEVERITY_COUNT] = {-1, -1, -1};
    for (int32_t i = 0; class_id >= 0 && i < class_tab[class_id].pin_count; ++i) {
        int32_t node = obj_tab[pad.obj].first_node + i;
        std::string pin = chip_pin_name(node_tab[node].pin);
        if (chip_pin_direction(node_tab[node].pin) != SDB_INPUT || kit_is_power_name(pin))
            continue;
        FINDING_SEVERITY severity = is_wrong(pin, node);
        if (severity == FINDING_SEVERITY_COUNT)
            continue;
        pins[severity] += (pins[severity].empty() ? "" : ", ") + pin;
        if (first[severity] < 0)
            first[severity] = node;
    }
    for (FINDING_SEVERITY severity : {FINDING_ERROR, FINDING_WARNING}) {
        if (pins[severity].empty())
            continue;
        PIN_GROUP &group = groups[{severity, class_id, pins[severity]}];
        if (group.ports.empty())
            group.first = {pad.obj, first[severity], pad.port};
        group.ports.push_back(chip_port_name(pad.port));
    }
}

void add_groups(CHECK_CHIP &chip, int32_t rule, const PIN_GROUPS &groups, const char *words) {
    for (const auto &[key, group] : groups)
        add_check(chip, rule, group.first,
                  format_text("%s %s of pad %s: %s", words, key.pins.c_str(),
                              chip_class_name(key.class_id).c_str(), few_of(group.ports).c_str()),
                  key.severity);
}

/// True when a test works with the pad.
bool is_in_use(const CHECK_CHIP &chip, const WALK_PAD_ROW &pad) {
    if (pad.port < 0)
        return false;
    const CHECKED_PORT &served = chip.ports[static_cast<size_t>(pad.port)];
    return served.is_read || served.is_driven ||
           chip.found.ports[static_cast<size_t>(pad.port)].tap_port >= 0;
}

/// True when the pad does not work without a value of the pin.
bool is_needed(const PAD_KIND *kind, const std::string &pin) {
    return kind != nullptr && (pin == kind->enable_low || pin == kind->enable_high ||
                               std::any_of(kind->gates.begin(), kind->gates.end(),
                                           [&pin](const PIN_VALUE &gate) { return gate.pin == pin; }));
}

/// A pin of a cell that must hang on a signal.
struct CELL_PIN {
    const char *SCAN_CELL::*field;
    bool is_data; ///< its constant may be the core's
};
constexpr CELL_PIN CELL_PINS[] = {
    {&SCAN_CELL::data_in, true},   {&SCAN_CELL::sys_pin, true}, {&SCAN_CELL::shift_dr, false},
    {&SCAN_CELL::clock_dr, false}, {&SCAN_CELL::tck, false},    {&SCAN_CELL::update_dr, false},
    {&SCAN_CELL::mode_1, false},   {&SCAN_CELL::mode_2, false}, {&SCAN_CELL::mode_3, false},
    {&SCAN_CELL::highz, false},    {&SCAN_CELL::rst, false},
};

/// True for a clock pin that no cell of the chain has wired: a run wires those that its TAP serves.
bool is_idle_clock(const CHECK_CHIP &chip, const char *SCAN_CELL::*field) {
    for (CONTROL_SIGNAL signal : {SIG_CLOCK, SIG_BCLK})
        if (CONTROL_SIGNALS[signal].cell_pin == field)
            return std::none_of(
                chip.found.cells.begin(), chip.found.cells.end(),
                [&](const REGISTER_CELL &cell) { return cell.signals[signal].source.end > WALK_ONE; });
    return false;
}

void check_cell_pin(CHECK_CHIP &chip, const CELL_PIN &pin) {
    bool is_idle = is_idle_clock(chip, pin.field);
    for (const REGISTER_CELL &row : chip.found.cells) {
        const char *name = row.cell->*pin.field;
        bool has_other = row.cell->clock_dr != nullptr && row.cell->tck != nullptr;
        bool is_inside_pad = chip.found.walk.pad_of_obj[static_cast<size_t>(row.obj)] >= 0;
        if (name == nullptr || (pin.is_data && is_inside_pad) || (is_idle && has_other))
            continue;
        int32_t node = walk_pin(row.obj, name);
        WALK_POINT source = walk_back(chip.found.walk, node);
        if (source.end > WALK_ONE)
            continue;
        bool is_warning = pin.is_data; // as the core left it, or the comparison with the design before tells
        add_check(
            chip, 28, {row.obj, node, -1},
            format_text("pin %s of the boundary cell hangs on %s", name, end_text(chip, source).c_str()),
            is_warning ? FINDING_WARNING : FINDING_ERROR);
    }
}

void check_tap_pins(CHECK_CHIP &chip) {
    for (const char *TAP_CELL::*field : {&TAP_CELL::tdi, &TAP_CELL::tms, &TAP_CELL::tck, &TAP_CELL::trst,
                                         &TAP_CELL::last_bcell, &TAP_CELL::tdo}) {
        std::string name = tap_pin_name(*chip.found.tap, field);
        int32_t node = walk_pin(chip.found.tap_obj, name.c_str());
        if (node < 0)
            continue; // a TAP without TRST has no such pin
        WALK_POINT source = walk_back(chip.found.walk, node);
        bool is_output = field == &TAP_CELL::tdo;
        bool is_open = is_output ? chip_is_alone(node) : source.end == WALK_OPEN;
        // TRST is low active: tied to 1 it does not disturb.
        bool is_tied = source.end == WALK_ZERO || (source.end == WALK_ONE && field != &TAP_CELL::trst);
        if (is_open || (is_tied && !is_output))
            add_check(chip, 28, {chip.found.tap_obj, node, -1},
                      format_text("pin %s of the TAP hangs on %s", name.c_str(),
                                  is_output ? "nothing" : end_text(chip, source).c_str()));
    }
}

} // namespace

void check_pad_pins(CHECK_CHIP &chip) {
    PIN_GROUPS groups;
    KNOWN_PADS kinds;
    for (const WALK_PAD_ROW &pad : chip.found.walk.pads) {
        if (!is_in_use(chip, pad) || pad.buffer->kind == BUFFER_BS)
            continue;
        const PAD_KIND *kind =
            known_pad_kind(kinds, chip.library, chip_class_name(obj_tab[pad.obj].class_id));
        group_pins(groups, pad, [&](const std::string &pin, int32_t node) {
            WALK_POINT source = walk_back(chip.found.walk, node);
            bool is_held = source.end == WALK_CELL || source.end == WALK_TAP || is_fixed(chip, source);
            if (is_held || pad_describes(*pad.buffer, pin))
                return FINDING_SEVERITY_COUNT;
            return is_needed(kind, pin) ? FINDING_ERROR : FINDING_WARNING;
        });
    }
    add_groups(chip, 27, groups, "the core drives");
}

void check_open_pins(CHECK_CHIP &chip) {
    for (const CELL_PIN &pin : CELL_PINS)
        check_cell_pin(chip, pin);
    check_control_pins(chip);
    check_mux_pins(chip);
    check_tap_pins(chip);
    PIN_GROUPS groups;
    for (const WALK_PAD_ROW &pad : chip.found.walk.pads)
        if (is_in_use(chip, pad) && pad.buffer->kind != BUFFER_BS)
            group_pins(groups, pad, [&](const std::string &pin, int32_t node) {
                bool is_port = walk_is_pin(node, pad.pin);
                WALK_END end = is_port ? WALK_PORT : walk_back(chip.found.walk, node).end;
                bool low = same_text_no_case(pad.buffer->en_l, pin.c_str());
                bool high = same_text_no_case(pad.buffer->en_h, pin.c_str());
                bool is_off = (low && end == WALK_ONE) || (high && end == WALK_ZERO);
                return end == WALK_OPEN || is_off ? FINDING_WARNING : FINDING_SEVERITY_COUNT;
            });
    add_groups(chip, 28, groups, "open, or tied to the value that turns the pad off:");
    add_faults(chip, 28, {"the cell's pin"});
}
