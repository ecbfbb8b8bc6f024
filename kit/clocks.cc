#include "kit/clocks.hh"

#include "kit/chip.hh"
#include "kit/names.hh"

#include <deque>
#include <unordered_set>

namespace {

constexpr size_t MOST_NODES = 200000; // of one search

const LIBERTY_CELL *entry_of(const CLOCK_SEARCH &search, int32_t class_id) {
    auto found = search.library.cells.find(chip_class_name(class_id));
    return found != search.library.cells.end() ? &found->second : nullptr;
}

/// The only output pin of a cell with one input, supplies aside; -1 for any other cell.
int32_t output_of_buffer(CLOCK_SEARCH &search, int32_t class_id) {
    auto [known, is_new] = search.through.try_emplace(class_id, -1);
    if (!is_new)
        return known->second;
    int32_t inputs = 0, outputs = 0, output = -1;
    for (int32_t i = 0; i < class_tab[class_id].pin_count; ++i) {
        int32_t pin = class_tab[class_id].first_pin + i;
        if (kit_is_power_name(chip_pin_name(pin)))
            continue;
        inputs += chip_pin_direction(pin) != SDB_OUTPUT ? 1 : 0;
        if (chip_pin_direction(pin) == SDB_OUTPUT) {
            ++outputs;
            output = pin;
        }
    }
    const LIBERTY_CELL *entry = entry_of(search, class_id);
    bool is_buffer = inputs == 1 && outputs == 1 && (entry == nullptr || !entry->is_sequential);
    return known->second = is_buffer ? output : -1;
}

/// Whether the pin is a clock pin; `by_name` tells that its name says so.
bool is_clock_pin(const CLOCK_SEARCH &search, int32_t class_id, const std::string &pin, bool &by_name) {
    const LIBERTY_CELL *entry = entry_of(search, class_id);
    by_name = entry == nullptr;
    if (entry == nullptr)
        return kit_is_clock_pin_name(pin);
    for (const LIBERTY_PIN &row : entry->pins)
        if (row.name == pin)
            return row.is_clock;
    return false;
}

} // namespace

CLOCK_FOUND find_clock(CLOCK_SEARCH &search, int32_t node) {
    CLOCK_FOUND named;
    std::deque<int32_t> nets;
    std::unordered_set<int32_t> seen;
    size_t nodes = 0;
    auto follow = [&](int32_t at) {
        if (at >= 0 && node_tab[at].net > SDB_NET_VCC && seen.insert(node_tab[at].net).second)
            nets.push_back(node_tab[at].net);
    };
    for (follow(node); !nets.empty() && nodes < MOST_NODES; nets.pop_front())
        for (int32_t at = net_tab[nets.front()].first_node; at >= 0 && nodes < MOST_NODES;
             at = node_tab[at].next, ++nodes) {
            int32_t obj = node_tab[at].obj, class_id = obj < 0 ? -1 : obj_tab[obj].class_id;
            if (class_id < 0 || chip_pin_direction(node_tab[at].pin) == SDB_OUTPUT)
                continue;
            bool by_name = false;
            std::string pin = chip_pin_name(node_tab[at].pin);
            int32_t output = output_of_buffer(search, class_id);
            if (output >= 0)
                follow(obj_tab[obj].first_node + (output - class_tab[class_id].first_pin));
            else if (is_clock_pin(search, class_id, pin, by_name) && (named.pin.empty() || !by_name))
                named = {true, by_name, chip_instance_name(obj) + "{" + pin + "}"};
            if (named.is_clock && !named.by_name)
                return named;
        }
    return named;
}
