#include "siblings/netlist_layout.hh"

#include "siblings/path_clashes.hh"
#include "siblings/tool.hh"

#include <algorithm>

namespace {

// What is on a net: pins of instances by what they do to it, and ports.
enum NET_USE : uint8_t { USE_DRIVEN = 1, USE_READ = 2, USE_BOTH_WAYS = 4, USE_PORT = 8 };

// Bits of one base name among the wires.
struct WIRE_VECTOR {
    LAYOUT_NAME base;
    int32_t low;
    int32_t high;
    int64_t count = 0;
    int32_t item = NL_NONE;
};

// A wire that may be a bit of a vector.
struct WIRE_BIT {
    int32_t net;
    int32_t index;
    size_t vector;
};

struct MAKER {
    const NL_DESIGN &design;
    const NL_MODULE &module;
    const LAYOUT_RULES &rules;
    LAYOUT_TAKEN &taken;
    bool paths_clash; // a path may read like another, or like a name
    LAYOUT layout{};
    std::vector<uint8_t> uses{};                        // NET_USEs of each net
    std::vector<LAYOUT_BIT> port_bits{};                // of each port
    std::unordered_map<int32_t, int32_t> first_port{};  // on each net that has any
    std::vector<int32_t> next_port{};                   // on the same net
    std::unordered_map<int32_t, int32_t> port_of_net{}; // the port that stands for the net
    std::vector<WIRE_BIT> wire_bits{};
    std::vector<WIRE_VECTOR> wire_vectors{};
    std::unordered_set<int32_t> known{};                // all names of the module, once a name is made
    std::unordered_map<int32_t, int32_t> next_number{}; // of the next name made of a name that is taken
};

constexpr LAYOUT_BIT NO_BIT = {LAYOUT_OPEN, 0};

int32_t name_of_text(MAKER &maker, std::string_view text) {
    int32_t name = NL_find_name(maker.design.names, text);
    if (name >= 0)
        return name;
    return static_cast<int32_t>(maker.design.names.texts.size()) + NL_name(maker.layout.own_names, text);
}

// What a name is compared by: itself, or its whole text where paths may clash.
LAYOUT_NAME compared_name(MAKER &maker, LAYOUT_NAME name) {
    if (name.scope == NL_NONE || !maker.paths_clash)
        return name;
    return {name_of_text(maker, LAYOUT_text(maker.layout, name))};
}

// False when something has the name already. A path that cannot clash is always free.
bool take(MAKER &maker, LAYOUT_NAME name) {
    name = compared_name(maker, name);
    if (name.scope != NL_NONE)
        return true;
    std::vector<int32_t> &rounds = maker.taken.round_of_name;
    if (static_cast<size_t>(name.name) >= rounds.size())
        rounds.resize(maker.design.names.texts.size() + maker.layout.own_names.texts.size());
    int32_t &round = rounds[static_cast<size_t>(name.name)];
    if (round == maker.taken.round)
        return false;
    round = maker.taken.round;
    return true;
}

void know(MAKER &maker, LAYOUT_NAME name) {
    name = compared_name(maker, name);
    if (name.scope == NL_NONE)
        maker.known.insert(name.name);
}

void know_vectors(MAKER &maker) {
    for (const WIRE_VECTOR &vector : maker.wire_vectors)
        know(maker, vector.base);
}

// All that a new name must differ from. It holds no separator but those of the name that it is made of, so
// that paths matter only where they may clash.
void find_known(MAKER &maker) {
    for (const NL_GROUP &group : maker.module.groups)
        know(maker, {group.name});
    for (const NL_PORT &port : maker.module.ports)
        know(maker, {port.name});
    for (const NL_INSTANCE &instance : maker.module.instances)
        if (LAYOUT_is_written(instance))
            know(maker, {instance.name, instance.scope});
    for (const NL_NET &net : maker.module.nets)
        know(maker, {net.name, net.scope});
    know_vectors(maker);
}

// A name that nothing has, for one that is taken.
LAYOUT_NAME new_name(MAKER &maker, LAYOUT_NAME stem) {
    if (maker.known.empty())
        find_known(maker);
    std::string base = LAYOUT_text(maker.layout, stem);
    for (char &c : base)
        if (c == '[' || c == ']')
            c = '_';
    for (int32_t &number = maker.next_number[compared_name(maker, stem).name];;) {
        LAYOUT_NAME name = {name_of_text(maker, base + "_n" + std::to_string(++number))};
        if (!maker.known.insert(name.name).second)
            continue;
        take(maker, name);
        return name;
    }
}

LAYOUT_NAME helper_name(MAKER &maker, std::string_view stem) {
    LAYOUT_NAME name = {name_of_text(maker, stem)};
    return take(maker, name) ? name : new_name(maker, name);
}

void lay_ports(MAKER &maker) {
    LAYOUT &layout = maker.layout;
    maker.port_bits.assign(maker.module.ports.size(), NO_BIT);
    for (const NL_GROUP &group : maker.module.groups) {
        int32_t item = static_cast<int32_t>(layout.items.size());
        int32_t first = group.first;
        take(maker, {group.name});
        layout.items.push_back({{group.name},
                                maker.module.ports[static_cast<size_t>(first)].direction,
                                group.vector,
                                group.left,
                                group.right});
        int32_t step = group.left >= group.right ? -1 : 1;
        for (int32_t i = 0; i < group.count; i++) {
            size_t port = static_cast<size_t>(first + i);
            maker.port_bits[port] = {item, group.left + i * step};
            take(maker, {maker.module.ports[port].name});
        }
    }
    layout.port_count = layout.items.size();
    maker.next_port.assign(maker.module.ports.size(), NL_NONE);
    for (size_t i = maker.module.ports.size(); i-- > 0;) {
        int32_t net = maker.module.ports[i].net;
        if (net == NL_NONE)
            continue;
        auto [place, is_new] = maker.first_port.try_emplace(net, NL_NONE);
        maker.next_port[i] = place->second;
        place->second = static_cast<int32_t>(i);
    }
}

void find_uses(MAKER &maker) {
    static constexpr uint8_t use_of_direction[] = {USE_DRIVEN, USE_BOTH_WAYS, USE_READ};
    maker.uses.assign(maker.module.nets.size(), 0);
    for (const NL_PORT &port : maker.module.ports)
        if (port.net != NL_NONE)
            maker.uses[static_cast<size_t>(port.net)] |= USE_PORT;
    for (const NL_INSTANCE &instance : maker.module.instances) {
        const auto &ports = maker.design.modules[static_cast<size_t>(instance.def)].ports;
        for (size_t i = 0; LAYOUT_is_written(instance) && i < ports.size(); i++) {
            int32_t net = maker.module.pins[static_cast<size_t>(instance.first_pin) + i];
            if (net != NL_NONE)
                maker.uses[static_cast<size_t>(net)] |= use_of_direction[ports[i].direction];
        }
    }
}

// A don't-care net that no edit has given a driver or a port.
bool is_unknown_net(const MAKER &maker, int32_t net) {
    size_t at = static_cast<size_t>(net);
    return (maker.module.nets[at].marks & NL_MARK_DONT_CARE) != 0 &&
           (maker.uses[at] & (USE_DRIVEN | USE_BOTH_WAYS | USE_PORT)) == 0;
}

// The port that a net with ports is written as, or NL_NONE when it has to be a wire of its own.
int32_t choose_port(const MAKER &maker, int32_t net) {
    // By direction: the number of ports, and the one with the net's name or else the first.
    int32_t counts[3] = {0, 0, 0};
    int32_t best[3] = {NL_NONE, NL_NONE, NL_NONE};
    for (int32_t port = maker.first_port.at(net); port != NL_NONE;
         port = maker.next_port[static_cast<size_t>(port)]) {
        const NL_PORT &row = maker.module.ports[static_cast<size_t>(port)];
        bool same_name = row.name == maker.module.nets[static_cast<size_t>(net)].name;
        if (counts[row.direction]++ == 0 || same_name)
            best[row.direction] = port;
    }
    uint8_t use = maker.uses[static_cast<size_t>(net)];
    if (counts[NL_BIDI] > 0)
        return best[NL_BIDI];
    // Two sources stay two drivers of a wire.
    if (counts[NL_INPUT] > 0) {
        bool read_only = (use & (USE_DRIVEN | USE_BOTH_WAYS)) == 0;
        return counts[NL_INPUT] == 1 && (read_only || maker.rules.inputs_take_any_pin) ? best[NL_INPUT]
                                                                                       : NL_NONE;
    }
    bool read = counts[NL_OUTPUT] > 1 || (use & (USE_READ | USE_BOTH_WAYS)) != 0;
    return read && !maker.rules.outputs_are_read ? NL_NONE : best[NL_OUTPUT];
}

void lay_instances(MAKER &maker) {
    std::vector<int32_t> twice;
    // A name of the top itself is its own; one that only its path makes equal is changed.
    for (bool at_top : {true, false}) {
        if (!at_top && !maker.paths_clash)
            break;
        for (size_t i = 0; i < maker.module.instances.size(); i++) {
            const NL_INSTANCE &instance = maker.module.instances[i];
            if (LAYOUT_is_written(instance) && (instance.scope == NL_NONE) == at_top &&
                !take(maker, {instance.name, instance.scope}))
                twice.push_back(static_cast<int32_t>(i));
        }
    }
    for (int32_t i : twice) {
        LAYOUT_NAME name = new_name(maker, LAYOUT_instance_name(maker.layout, i));
        maker.layout.new_instance_names.emplace(i, name);
    }
}

// Collects the wire `net` if its name is that of a vector's bit.
void find_wire_bit(MAKER &maker, int32_t net, std::unordered_map<int64_t, size_t> &vector_of_base) {
    LAYOUT_NAME name = LAYOUT_net_name(maker.layout, net);
    if (!LAYOUT_component(maker.layout, name.name).ends_with(']'))
        return;
    name = compared_name(maker, name);
    NL_BIT bit;
    bool whole = (maker.module.nets[static_cast<size_t>(net)].marks & NL_MARK_WHOLE) != 0;
    if (whole || !NL_parse_bit(LAYOUT_component(maker.layout, name.name), bit))
        return;
    LAYOUT_NAME base = {name_of_text(maker, bit.base), name.scope};
    auto [place, is_new] =
        vector_of_base.try_emplace(int64_t{base.scope} << 32 | base.name, maker.wire_vectors.size());
    if (is_new)
        maker.wire_vectors.push_back({base, bit.index, bit.index});
    WIRE_VECTOR &vector = maker.wire_vectors[place->second];
    vector.low = std::min(vector.low, bit.index);
    vector.high = std::max(vector.high, bit.index);
    vector.count++;
    maker.wire_bits.push_back({net, bit.index, place->second});
}

void lay_wire_vectors(MAKER &maker) {
    LAYOUT &layout = maker.layout;
    for (const WIRE_BIT &bit : maker.wire_bits) {
        WIRE_VECTOR &vector = maker.wire_vectors[bit.vector];
        if (vector.count != int64_t{vector.high} - vector.low + 1)
            continue;
        if (vector.item == NL_NONE) {
            if (!take(maker, vector.base)) {
                vector.count = -1;
                continue;
            }
            vector.item = static_cast<int32_t>(layout.items.size());
            layout.items.push_back({vector.base, NL_NONE, true, vector.high, vector.low});
        }
        layout.nets[static_cast<size_t>(bit.net)] = {vector.item, bit.index};
    }
}

void lay_wires(MAKER &maker) {
    LAYOUT &layout = maker.layout;
    std::vector<int32_t> nameless;
    std::unordered_map<int64_t, size_t> vector_of_base;
    for (int32_t net = NL_VCC + 1; net < static_cast<int32_t>(layout.nets.size()); net++) {
        if (layout.nets[static_cast<size_t>(net)].item != LAYOUT_WIRE)
            continue;
        if (take(maker, LAYOUT_net_name(layout, net)))
            find_wire_bit(maker, net, vector_of_base);
        else
            nameless.push_back(net);
    }
    lay_wire_vectors(maker);
    layout.vectors_end = layout.items.size();
    if (!maker.known.empty())
        know_vectors(maker);
    for (int32_t net : nameless)
        layout.new_net_names.emplace(net, new_name(maker, LAYOUT_net_name(layout, net)));
}

void lay_nets(MAKER &maker) {
    LAYOUT &layout = maker.layout;
    layout.nets.assign(maker.module.nets.size(), NO_BIT);
    layout.nets[NL_GND] = {LAYOUT_GND, 0};
    layout.nets[NL_VCC] = {LAYOUT_VCC, 0};
    for (int32_t net = NL_VCC + 1; net < static_cast<int32_t>(maker.module.nets.size()); net++) {
        size_t at = static_cast<size_t>(net);
        if (is_unknown_net(maker, net)) {
            layout.nets[at] = {LAYOUT_UNKNOWN, 0};
            continue;
        }
        int32_t port = (maker.uses[at] & USE_PORT) != 0 ? choose_port(maker, net) : NL_NONE;
        if (port != NL_NONE) {
            maker.port_of_net.emplace(net, port);
            layout.nets[at] = maker.port_bits[static_cast<size_t>(port)];
        } else {
            layout.nets[at] = {LAYOUT_WIRE, net};
        }
    }
    lay_wires(maker);
}

[[noreturn]] void refuse_joined(const MAKER &maker, int32_t a, int32_t b) {
    auto name = [&](int32_t port) {
        return NL_string(maker.design.names, maker.module.ports[static_cast<size_t>(port)].name);
    };
    TOOL_fail(
        "", 0,
        "the bidirectional ports '%s' and '%s' of module '%s' are one net, which a netlist can't say. If "
        "both are power, name them with kalmverin -power.",
        name(std::min(a, b)).c_str(), name(std::max(a, b)).c_str(),
        NL_string(maker.design.names, maker.module.name).c_str());
}

// The port that stands for a net, or NL_NONE.
int32_t port_for(const MAKER &maker, int32_t net) {
    auto found = maker.port_of_net.find(net);
    return found != maker.port_of_net.end() ? found->second : NL_NONE;
}

void lay_assigns(MAKER &maker) {
    LAYOUT &layout = maker.layout;
    auto is_given = [](LAYOUT_BIT bit) { return bit.item >= 0 || bit.item == LAYOUT_WIRE; };
    for (size_t i = 0; i < maker.module.ports.size(); i++) {
        const NL_PORT &port = maker.module.ports[i];
        if (port.net == NL_NONE || port_for(maker, port.net) == static_cast<int32_t>(i))
            continue;
        LAYOUT_BIT net = layout.nets[static_cast<size_t>(port.net)];
        if (port.direction == NL_OUTPUT || (port.direction == NL_BIDI && !is_given(net)))
            layout.assigns.push_back({maker.port_bits[i], net});
        else if (port.direction == NL_BIDI)
            refuse_joined(maker, port_for(maker, port.net), static_cast<int32_t>(i));
        else if (is_given(net))
            layout.assigns.push_back({net, maker.port_bits[i]});
    }
    for (const NL_ASSIGN &assign : maker.module.assigns)
        layout.assigns.push_back(
            {layout.nets[static_cast<size_t>(assign.left)], layout.nets[static_cast<size_t>(assign.right)]});
}

// Wires for pins of both directions on a constant, and for what is open in a vector.
void lay_helpers(MAKER &maker) {
    LAYOUT &layout = maker.layout;
    static constexpr const char *stems[] = {"GND", "VCC"};
    for (int32_t constant : {NL_GND, NL_VCC}) {
        if ((maker.uses[static_cast<size_t>(constant)] & USE_BOTH_WAYS) == 0)
            continue;
        layout.constant_wires[constant] = static_cast<int32_t>(layout.items.size());
        layout.items.push_back({helper_name(maker, stems[constant]), NL_NONE, false, 0, 0});
        layout.assigns.push_back(
            {{layout.constant_wires[constant], 0}, layout.nets[static_cast<size_t>(constant)]});
    }
    int32_t open_used = 0;
    std::vector<LAYOUT_BIT> bits;
    for (const NL_INSTANCE &instance : maker.module.instances) {
        const NL_MODULE &def = maker.design.modules[static_cast<size_t>(instance.def)];
        if (LAYOUT_is_written(instance))
            for (const NL_GROUP &group : def.groups)
                if (group.count > 1)
                    LAYOUT_pins(layout, instance, def, group, open_used, bits);
    }
    if (open_used == 0)
        return;
    layout.open_wires = static_cast<int32_t>(layout.items.size());
    layout.items.push_back({helper_name(maker, "open_pins"), NL_NONE, true, 0, open_used - 1});
}

// The name of a row of the module: its own, or the new one that it got.
template <class ROW>
LAYOUT_NAME written_name(const std::unordered_map<int32_t, LAYOUT_NAME> &new_names,
                         const std::vector<ROW> &rows, int32_t id) {
    if (!new_names.empty())
        if (auto found = new_names.find(id); found != new_names.end())
            return found->second;
    const ROW &row = rows[static_cast<size_t>(id)];
    return {row.name, row.scope};
}

} // namespace

LAYOUT LAYOUT_make(const NL_DESIGN &design, const NL_MODULE &module, const LAYOUT_RULES &rules,
                   LAYOUT_TAKEN &taken) {
    taken.round++;
    MAKER maker{design, module, rules, taken, PATHS_may_clash(design, module)};
    maker.layout.design = &design;
    maker.layout.module = &module;
    lay_ports(maker);
    find_uses(maker);
    lay_instances(maker);
    lay_nets(maker);
    lay_assigns(maker);
    lay_helpers(maker);
    return std::move(maker.layout);
}

LAYOUT_NAME LAYOUT_net_name(const LAYOUT &layout, int32_t net) {
    return written_name(layout.new_net_names, layout.module->nets, net);
}

LAYOUT_NAME LAYOUT_instance_name(const LAYOUT &layout, int32_t instance) {
    return written_name(layout.new_instance_names, layout.module->instances, instance);
}

std::string_view LAYOUT_component(const LAYOUT &layout, int32_t name) {
    auto own = static_cast<size_t>(name) - layout.design->names.texts.size();
    return static_cast<size_t>(name) < layout.design->names.texts.size() ? NL_text(layout.design->names, name)
                                                                         : layout.own_names.texts[own];
}

std::string LAYOUT_text(const LAYOUT &layout, LAYOUT_NAME name) {
    return name.scope == NL_NONE ? std::string(LAYOUT_component(layout, name.name))
                                 : NL_full_name(*layout.design, *layout.module, name.name, name.scope);
}

std::unordered_set<std::string> LAYOUT_texts(const LAYOUT &layout) {
    std::unordered_set<std::string> texts;
    auto add = [&](LAYOUT_NAME name) { texts.insert(LAYOUT_text(layout, name)); };
    for (const LAYOUT_ITEM &item : layout.items)
        add(item.name);
    for (const NL_PORT &port : layout.module->ports)
        add({port.name});
    for (int32_t i = 0; i < static_cast<int32_t>(layout.module->instances.size()); i++) {
        const NL_INSTANCE &instance = layout.module->instances[static_cast<size_t>(i)];
        if (!LAYOUT_is_written(instance))
            continue;
        add({instance.name, instance.scope});
        add(LAYOUT_instance_name(layout, i));
    }
    for (int32_t net = 0; net < static_cast<int32_t>(layout.nets.size()); net++) {
        const NL_NET &row = layout.module->nets[static_cast<size_t>(net)];
        std::string name = LAYOUT_text(layout, LAYOUT_net_name(layout, net));
        NL_BIT bit;
        // A vector that lacks a bit has its name all the same.
        if (layout.nets[static_cast<size_t>(net)].item == LAYOUT_WIRE && (row.marks & NL_MARK_WHOLE) == 0 &&
            NL_parse_bit(name, bit))
            texts.emplace(bit.base);
        texts.insert(std::move(name));
        add({row.name, row.scope});
    }
    return texts;
}

bool LAYOUT_pins(const LAYOUT &layout, const NL_INSTANCE &instance, const NL_MODULE &def,
                 const NL_GROUP &group, int32_t &open_used, std::vector<LAYOUT_BIT> &bits) {
    bits.clear();
    int32_t open = 0;
    for (int32_t port = group.first; port < group.first + group.count; port++) {
        int32_t net = layout.module->pins[static_cast<size_t>(instance.first_pin + port)];
        bits.push_back(LAYOUT_pin(layout, net, def.ports[static_cast<size_t>(port)].direction));
        open += bits.back().item == LAYOUT_OPEN;
    }
    if (open == group.count)
        return false;
    for (LAYOUT_BIT &bit : bits)
        if (bit.item == LAYOUT_OPEN)
            bit = {layout.open_wires, open_used++};
    return true;
}
