#include "kit/ports.hh"

#include "kit/chip.hh"
#include "kit/clocks.hh"
#include "kit/names.hh"
#include "kit/pads.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

/// A pad's pin on a port's net.
struct PAD_PLACE {
    int32_t node = -1;
    const PAD_KIND *kind = nullptr;
};

/// The kinds of the cells that have been asked for; of a cell without a Liberty entry, one per pin on a port.
struct PAD_KINDS {
    CHIP_PLAN &plan;
    const LIBERTY &library;
    const std::unordered_map<std::string, VERILOG_MODEL> &models;
    std::unordered_map<std::string, const PAD_KIND *> known{};
    std::unordered_map<int32_t, const PAD_KIND *> of_pin{}; ///< by pin id: a supply has a million nodes
};

const PAD_KIND *find_kind(PAD_KINDS &kinds, int32_t node) {
    int32_t class_id = obj_tab[node_tab[node].obj].class_id;
    if (class_id < 0)
        return nullptr;
    std::string cell = chip_class_name(class_id), pin = chip_pin_name(node_tab[node].pin);
    auto is_on = [&pin](const PAD_KIND &kind) {
        return same_text_no_case(kind.pad.c_str(), pin.c_str()) ||
               (!kind.pad_minus.empty() && same_text_no_case(kind.pad_minus.c_str(), pin.c_str()));
    };
    auto entry = kinds.library.cells.find(cell);
    // Which pin of a cell is the pad is told by Liberty, or by the port that stands on it.
    auto [known, is_new] =
        kinds.known.try_emplace(entry != kinds.library.cells.end() ? cell : cell + "/" + pin, nullptr);
    if (!is_new)
        return known->second != nullptr && is_on(*known->second) ? known->second : nullptr;
    PAD_KIND kind;
    if (entry != kinds.library.cells.end())
        kind = pad_kind_of_liberty(kinds.library, entry->second);
    else if (looks_like_pad(class_id, pin))
        kind = guessed_pad_kind(class_id, pin, kinds.models);
    if (kind.use == USE_UNKNOWN)
        return nullptr;
    kinds.plan.pads.push_back(kind);
    known->second = &kinds.plan.pads.back();
    return is_on(kind) ? known->second : nullptr;
}

/// What the cell at a node does as a pad whose pin this is; null when it is no pad, or the pin another one.
const PAD_KIND *kind_of_node(PAD_KINDS &kinds, int32_t node) {
    auto [known, is_new] = kinds.of_pin.try_emplace(node_tab[node].pin, nullptr);
    if (is_new)
        known->second = find_kind(kinds, node);
    return known->second;
}

bool is_signal_pad(const PAD_KIND *kind) {
    return kind != nullptr && kind->use != USE_POWER && kind->use != USE_ANALOG;
}

/// The pad on the port's net: one for signals before one for power.
PAD_PLACE find_pad(PAD_KINDS &kinds, int32_t port, int32_t &signal_pads) {
    PAD_PLACE place;
    signal_pads = 0;
    int32_t own = port_tab[port].node;
    for (int32_t node : chip_net_nodes(own < 0 ? -1 : node_tab[own].net)) {
        if (node_tab[node].obj < 0)
            continue;
        const PAD_KIND *kind = kind_of_node(kinds, node);
        if (kind == nullptr)
            continue;
        if (is_signal_pad(kind))
            ++signal_pads;
        if (place.kind == nullptr || (is_signal_pad(kind) && !is_signal_pad(place.kind)))
            place = {node, kind};
    }
    return place;
}

void skip(PORT_PLAN &plan, const std::string &reason, const char *direction) {
    plan.use = PORT_SKIPPED;
    plan.reason = reason;
    plan.direction = direction;
}

const char *direction_words(SDB_DIRECTION direction) {
    return direction == SDB_INPUT ? "IN" : direction == SDB_OUTPUT ? "OUT" : "BI";
}

/// A port that stands on no signal pad.
void skip_without_pad(PORT_PLAN &plan, int32_t port, const PAD_KIND *kind) {
    int32_t own = port_tab[port].node;
    bool is_power = kit_is_power_name(plan.name) || (kind != nullptr && kind->use == USE_POWER);
    if (is_power)
        skip(plan, "power or ground", "PWR");
    else if (kind != nullptr)
        skip(plan, "an analog pad, " + kind->cell, "AN");
    else if (chip_is_alone(own))
        skip(plan, "nothing is connected to the port", direction_words(chip_port_direction(port)));
    else
        skip(plan, "no pad stands on the port; with `rimweave -no_pad` it could have a cell all the same",
             direction_words(chip_port_direction(port)));
}

/// True when the pad's pin leads somewhere in the core.
bool lives(const PORT_PLAN &plan, const std::string &pin) {
    int32_t node = pin.empty() ? -1 : chip_pin_node(plan.pad_obj, pin);
    return node >= 0 && node_tab[node].net >= 0 && !chip_is_alone(node);
}

void take_enable(PORT_PLAN &plan, const PAD_KIND &kind) {
    auto works = [&plan](const std::string &enable) {
        return !enable.empty() && chip_is_driven(chip_pin_node(plan.pad_obj, enable));
    };
    bool low_works = works(kind.enable_low), high_works = works(kind.enable_high);
    plan.enable_works = low_works || high_works;
    if (kind.enable_low.empty() || kind.enable_high.empty())
        return;
    plan.pad_word = low_works || !high_works ? "PAD_EN_L" : "PAD_EN_H";
    if (low_works && high_works)
        plan.doubt = "both enables of the pad work: " + kind.enable_low + " gets the control cell, " +
                     kind.enable_high + " has to be on in test";
}

void take_direction(PORT_PLAN &plan, const PAD_KIND &kind, int32_t port) {
    SDB_DIRECTION declared = chip_port_direction(port);
    switch (kind.use) {
    case USE_INPUT:
        plan.direction = "IN";
        plan.read_as = declared == SDB_BIDIRECTIONAL ? READ_AS_INPUT : READ_AS_DECLARED;
        break;
    case USE_OUTPUT:
    case USE_THREE_STATE:
        plan.direction = "OUT";
        plan.read_as = declared == SDB_BIDIRECTIONAL ? READ_AS_OUTPUT : READ_AS_DECLARED;
        break;
    default:
        plan.direction = direction_words(declared);
    }
}

/// A port whose pad leads nowhere inside has nothing that a cell could stand in front of.
bool skip_unused(PORT_PLAN &plan, const PAD_KIND &kind) {
    bool reads = lives(plan, kind.output);
    // The data pin may be tied: the cell then stands in front of the constant.
    int32_t data = kind.input.empty() ? -1 : chip_pin_node(plan.pad_obj, kind.input);
    bool drives = data >= 0 && node_tab[data].net >= 0;
    bool is_input = std::string_view(plan.direction) == "IN",
         is_output = std::string_view(plan.direction) == "OUT";
    if ((is_input && !reads) || (is_output && !drives) || (!reads && !drives)) {
        skip(plan,
             is_output  ? "unused: the data pin of its pad is open"
             : is_input ? "unused: its pad drives nothing in the core"
                        : "unused: both sides of its pad lead nowhere",
             plan.direction);
        return true;
    }
    return false;
}

void plan_scanned(PORT_PLAN &plan, const PAD_KIND &kind, int32_t port, CLOCK_SEARCH &clocks) {
    plan.use = PORT_SCANNED;
    take_direction(plan, kind, port);
    if (!kit_port_name_fits(plan.name)) {
        skip(plan, "a pin file can't hold its name", plan.direction);
        plan.doubt = "the port has no boundary cell: rename it in the netlist";
        return;
    }
    if (skip_unused(plan, kind))
        return;
    take_enable(plan, kind);
    if (!kind.output.empty() && std::string_view(plan.direction) == "IN") {
        CLOCK_FOUND found = find_clock(clocks, chip_pin_node(plan.pad_obj, kind.output));
        plan.is_clock = found.is_clock;
        if (plan.is_clock) {
            plan.direction = "CLK";
            plan.reason = "reaches " + found.pin;
            plan.doubt = found.by_name
                             ? "a clock by the name of pin " + found.pin + ", which no Liberty file describes"
                             : plan.doubt;
        }
    }
}

/// Counts what the further input pins of a pad are tied to.
void note_pin_states(CHIP_PLAN &chip, const PORT_PLAN &plan) {
    const PAD_KIND &kind = *plan.pad;
    std::vector<PIN_STATE> &states = chip.pin_states[kind.cell];
    if (states.empty())
        for (const std::string &pin : kind.others)
            states.push_back({pin});
    for (PIN_STATE &state : states)
        switch (chip_source(chip_pin_node(plan.pad_obj, state.pin))) {
        case SOURCE_ZERO:
            ++state.zero;
            break;
        case SOURCE_ONE:
            ++state.one;
            break;
        case SOURCE_OPEN:
            ++state.open;
            break;
        case SOURCE_TIE_CELL:
            ++state.tied;
            break;
        case SOURCE_PORT:
        case SOURCE_CORE:
            state.driven.push_back(plan.name);
        }
}

} // namespace

void plan_ports(CHIP_PLAN &chip, const LIBERTY &library,
                const std::unordered_map<std::string, VERILOG_MODEL> &models) {
    chip.ports.clear();
    chip.pads.clear();
    chip.port_of_name.clear();
    PAD_KINDS kinds = {chip, library, models};
    CLOCK_SEARCH clocks(library);
    std::unordered_map<int32_t, std::string> taken; // pads by object: one port each
    for (int32_t port = 0; port < port_count; ++port) {
        PORT_PLAN plan;
        plan.name = chip_port_name(port);
        int32_t signal_pads = 0;
        PAD_PLACE place = find_pad(kinds, port, signal_pads);
        if (!is_signal_pad(place.kind)) {
            skip_without_pad(plan, port, place.kind);
        } else {
            plan.pad = place.kind;
            plan.pad_obj = node_tab[place.node].obj;
            plan.pad_instance = chip_instance_name(plan.pad_obj);
            plan_scanned(plan, *place.kind, port, clocks);
            bool is_minus = !place.kind->pad_minus.empty() &&
                            same_text_no_case(chip_pin_name(node_tab[place.node].pin).c_str(),
                                              place.kind->pad_minus.c_str());
            auto [other, is_first] = taken.try_emplace(plan.pad_obj, plan.name);
            if (!is_first && place.kind->pad_minus.empty())
                skip(plan, "stands on one net with port " + other->second, plan.direction);
            else if (signal_pads > 1)
                plan.doubt = format_text("%d pads stand on the port: %s has the cell", signal_pads,
                                         plan.pad_instance.c_str());
            else if (is_minus) // the plus leg has the cell
                plan.doubt.clear();
        }
        chip.port_of_name.emplace(plan.name, static_cast<int32_t>(chip.ports.size()));
        chip.ports.push_back(std::move(plan));
    }
}

void plan_pin_states(CHIP_PLAN &chip) {
    chip.pin_states.clear();
    std::vector<const PORT_PLAN *> ports;
    for (const PORT_PLAN &port : chip.ports)
        if (port.use == PORT_SCANNED)
            ports.push_back(&port);
    std::sort(ports.begin(), ports.end(),
              [](const PORT_PLAN *a, const PORT_PLAN *b) { return kit_counts_before(a->name, b->name); });
    for (const PORT_PLAN *port : ports)
        note_pin_states(chip, *port);
}
