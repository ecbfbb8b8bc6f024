// What several rules say of places in the netlist.
#include "kit/check.hh"

#include "kit/chip.hh"
#include "kit/names.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

std::string end_text(const CHECK_CHIP &chip, const WALK_POINT &point) {
    auto instance = [&] { return chip_instance_name(node_tab[point.node].obj); };
    switch (point.end) {
    case WALK_NONE:
    case WALK_OPEN:
        return "nothing";
    case WALK_ZERO:
        return "a constant 0";
    case WALK_ONE:
        return "a constant 1";
    case WALK_PORT:
        return "port '" + chip_port_name(point.row) + "'";
    case WALK_PAD:
        return "pad '" + chip_instance_name(chip.found.walk.pads[static_cast<size_t>(point.row)].obj) + "'";
    case WALK_CELL:
        return "boundary cell '" + instance() + "'";
    case WALK_TAP:
        return "pin " + chip_pin_name(node_tab[point.node].pin) + " of the TAP";
    case WALK_CORE:
        return "'" + instance() + "' of the core";
    case WALK_MANY:
        return "two drivers";
    }
    return "";
}

namespace {

/// True for a gate that sees constants alone. One in a ring of gates is none: it may hold a state.
bool is_constant_gate(CHECK_CHIP &chip, int32_t obj, int32_t depth) {
    constexpr int32_t DEEPEST = 32;
    auto [known, is_new] = chip.constant_gates.try_emplace(obj, false);
    if (!is_new || depth > DEEPEST)
        return known->second;
    int32_t class_id = obj_tab[obj].class_id;
    bool is_constant = class_id >= 0;
    for (int32_t i = 0; is_constant && i < class_tab[class_id].pin_count; ++i) {
        int32_t node = obj_tab[obj].first_node + i;
        SDB_DIRECTION direction = chip_pin_direction(node_tab[node].pin);
        if (direction == SDB_OUTPUT || kit_is_power_name(chip_pin_name(node_tab[node].pin)))
            continue;
        WALK_POINT source = walk_back(chip.found.walk, node);
        is_constant = source.end == WALK_ZERO || source.end == WALK_ONE ||
                      (source.end == WALK_CORE && is_constant_gate(chip, source.row, depth + 1));
    }
    return chip.constant_gates[obj] = is_constant;
}

} // namespace

bool is_fixed(CHECK_CHIP &chip, const WALK_POINT &source) {
    return source.end == WALK_NONE || source.end == WALK_OPEN || source.end == WALK_ZERO ||
           source.end == WALK_ONE || (source.end == WALK_CORE && is_constant_gate(chip, source.row, 0));
}

WALK_POINT behind_single_gates(CHECK_CHIP &chip, WALK_POINT source, std::vector<int32_t> &gates) {
    constexpr size_t LONGEST = 100;
    while (source.end == WALK_CORE && gates.size() < LONGEST) {
        int32_t class_id = obj_tab[source.row].class_id, count = 0;
        WALK_POINT next;
        for (int32_t i = 0; class_id >= 0 && i < class_tab[class_id].pin_count; ++i) {
            int32_t node = obj_tab[source.row].first_node + i;
            bool is_input = chip_pin_direction(node_tab[node].pin) != SDB_OUTPUT &&
                            !kit_is_power_name(chip_pin_name(node_tab[node].pin));
            WALK_POINT point = is_input ? walk_back(chip.found.walk, node) : WALK_POINT{};
            if (is_fixed(chip, point))
                continue;
            next = point;
            ++count;
        }
        if (count != 1)
            break;
        gates.push_back(source.row);
        source = next;
    }
    return source;
}
