// What several rules say of places in the netlist.
#include "kit/check.hh"

#include "kit/chip.hh"
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

std::string few_of(const std::vector<std::string> &names) {
    constexpr size_t SHOWN = 5;
    std::string text;
    for (size_t i = 0; i < names.size() && i < SHOWN; ++i)
        text += (i == 0 ? "" : ", ") + names[i];
    return names.size() > SHOWN ? text + format_text(" and %zu more", names.size() - SHOWN) : text;
}

namespace {

bool has_pin_beside(int32_t obj, SDB_DIRECTION direction) {
    int32_t class_id = obj_tab[obj].class_id;
    for (int32_t i = 0; class_id >= 0 && i < class_tab[class_id].pin_count; ++i)
        if (chip_pin_direction(class_tab[class_id].first_pin + i) != direction)
            return true;
    return class_id < 0; // what nobody has described may be anything
}

} // namespace

bool has_output(int32_t obj) {
    return has_pin_beside(obj, SDB_INPUT);
}

bool has_input(int32_t obj) {
    return has_pin_beside(obj, SDB_OUTPUT);
}
