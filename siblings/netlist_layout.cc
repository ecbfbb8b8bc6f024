#include "siblings/netlist_layout.hh"

#include "siblings/tool.hh"

#include <algorithm>

namespace {

// What the pins of instances do to a net.
enum NET_USE : uint8_t { USE_DRIVEN = 1, USE_READ = 2, USE_BOTH_WAYS = 4 };

// Bits of one base name among the wires.
struct WIRE_VECTOR {
    int32_t low;
    int32_t high;
    int64_t count = 0;
    int32_t item = NL_NONE;
};

struct MAKER {
    const NL_DESIGN &design;
    const NL_MODULE &module;
    const LAYOUT_RULES &rules;
    LAYOUT layout{};
    std::vector<uint8_t> uses{};         // NET_USE of each net
    std::vector<LAYOUT_BIT> port_bits{}; // of each port
    std::vector<int32_t> first_port{};   // on each net
    std::vector<int32_t> next_port{};    // on the same net
    std::vector<int32_t> port_of_net{};  // the port that stands for the net
    std::vector<bool> taken{};           // names in use
};

constexpr LAYOUT_BIT NO_BIT = {LAYOUT_OPEN, 0};

bool is_free(const MAKER &maker, int32_t name) {
    return static_cast<size_t>(name) >= maker.taken.size() || !maker.taken[static_cast<size_t>(name)];
}

bool take(MAKER &maker, int32_t name) {
    if (!is_free(maker, name))
        return false;
    if (static_cast<size_t>(name) >= maker.taken.size())
        maker.taken.resize(maker.layout.names.texts.size());
    maker.taken[static_cast<size_t>(name)] = true;
    return true;
}

int32_t full_name(MAKER &maker, int32_t name, int32_t scope) {
    if (scope == NL_NONE)
        return NL_name_in_place(maker.layout.names, NL_text(maker.design.names, name));
    return NL_name(maker.layout.names, NL_full_name(maker.design, maker.module, name, scope));
}

// A name that nothing has: `stem` is taken, and all names of the module are in the table by now.
int32_t new_name(MAKER &maker, int32_t stem) {
    std::string base(NL_text(maker.layout.names, stem));
    for (char &c : base)
        if (c == '[' || c == ']')
            c = '_';
    for (int32_t &number = maker.layout.next_number[stem];;) {
        std::string text = base + "_n" + std::to_string(++number);
        if (NL_find_name(maker.layout.names, text) >= 0)
            continue;
        int32_t name = NL_name(maker.layout.names, text);
        take(maker, name);
        return name;
    }
}

int32_t helper_name(MAKER &maker, std::string_view stem) {
    int32_t name = NL_name(maker.layout.names, stem);
    return take(maker, name) ? name : new_name(maker, name);
}

void lay_ports(MAKER &maker) {
    LAYOUT &layout = maker.layout;
    maker.port_bits.assign(maker.module.ports.size(), NO_BIT);
    for (const NL_GROUP &group : maker.module.groups) {
        int32_t item = static_cast<int32_t>(layout.items.size());
        int32_t name = full_name(maker, group.name, NL_NONE);
        take(maker, name);
        int32_t first = group.first;
        layout.items.push_back({name, maker.module.ports[static_cast<size_t>(first)].direction, group.vector,
                                group.left, group.right});
        int32_t step = group.left >= group.right ? -1 : 1;
        for (int32_t i = 0; i < group.count; i++) {
            size_t port = static_cast<size_t>(first + i);
            maker.port_bits[port] = {item, group.left + i * step};
            take(maker, full_name(maker, maker.module.ports[port].name, NL_NONE));
        }
    }
    layout.port_count = layout.items.size();
    maker.first_port.assign(maker.module.nets.size(), NL_NONE);
    maker.next_port.assign(maker.module.ports.size(), NL_NONE);
    for (size_t i = maker.module.ports.size(); i-- > 0;) {
        int32_t net = maker.module.ports[i].net;
        if (net == NL_NONE)
            continue;
        maker.next_port[i] = maker.first_port[static_cast<size_t>(net)];
        maker.first_port[static_cast<size_t>(net)] = static_cast<int32_t>(i);
    }
}

void find_uses(MAKER &maker) {
    static constexpr uint8_t use_of_direction[] = {USE_DRIVEN, USE_BOTH_WAYS, USE_READ};
    maker.uses.assign(maker.module.nets.size(), 0);
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
    return (maker.module.nets[at].marks & NL_MARK_DONT_CARE) != 0 && maker.first_port[at] == NL_NONE &&
           (maker.uses[at] & (USE_DRIVEN | USE_BOTH_WAYS)) == 0;
}

// The port that a net is written as, or NL_NONE when it has to be a wire of its own.
int32_t choose_port(const MAKER &maker, int32_t net) {
    // By direction: the number of ports, and the one with the net's name or else the first.
    int32_t counts[3] = {0, 0, 0};
    int32_t best[3] = {NL_NONE, NL_NONE, NL_NONE};
    for (int32_t port = maker.first_port[static_cast<size_t>(net)]; port != NL_NONE;
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
    LAYOUT &layout = maker.layout;
    layout.instances.assign(maker.module.instances.size(), NL_NONE);
    std::vector<size_t> twice;
    for (size_t i = 0; i < layout.instances.size(); i++) {
        const NL_INSTANCE &instance = maker.module.instances[i];
        if (!LAYOUT_is_written(instance))
            continue;
        layout.instances[i] = full_name(maker, instance.name, instance.scope);
        // A name of the top itself is its own; one that only its path makes equal is changed.
        if (instance.scope == NL_NONE && !take(maker, layout.instances[i]))
            twice.push_back(i);
    }
    for (size_t i = 0; i < layout.instances.size(); i++)
        if (layout.instances[i] != NL_NONE && maker.module.instances[i].scope != NL_NONE &&
            !take(maker, layout.instances[i]))
            twice.push_back(i);
    for (const NL_NET &net : maker.module.nets) // names that are made must differ from these as well
        full_name(maker, net.name, net.scope);
    for (size_t i : twice)
        layout.instances[i] = new_name(maker, layout.instances[i]);
}

void lay_wire_vectors(MAKER &maker, const std::vector<int32_t> &wires, const std::vector<int32_t> &names,
                      std::vector<bool> &placed) {
    LAYOUT &layout = maker.layout;
    std::unordered_map<int32_t, WIRE_VECTOR> vectors;
    std::vector<int32_t> bases(wires.size(), NL_NONE);
    std::vector<int32_t> indexes(wires.size());
    for (size_t i = 0; i < wires.size(); i++) {
        NL_BIT bit;
        bool whole = (maker.module.nets[static_cast<size_t>(wires[i])].marks & NL_MARK_WHOLE) != 0;
        if (names[i] == NL_NONE || whole || !NL_parse_bit(NL_text(layout.names, names[i]), bit))
            continue;
        bases[i] = NL_name_in_place(layout.names, bit.base);
        indexes[i] = bit.index;
        auto [place, is_new] = vectors.try_emplace(bases[i], WIRE_VECTOR{bit.index, bit.index});
        WIRE_VECTOR &vector = place->second;
        vector.low = std::min(vector.low, bit.index);
        vector.high = std::max(vector.high, bit.index);
        vector.count++;
    }
    for (size_t i = 0; i < wires.size(); i++) {
        if (bases[i] == NL_NONE)
            continue;
        WIRE_VECTOR &vector = vectors.find(bases[i])->second;
        if (vector.count != int64_t{vector.high} - vector.low + 1)
            continue;
        if (vector.item == NL_NONE) {
            if (!take(maker, bases[i])) {
                vector.count = -1;
                continue;
            }
            vector.item = static_cast<int32_t>(layout.items.size());
            layout.items.push_back({bases[i], NL_NONE, true, vector.high, vector.low});
        }
        layout.nets[static_cast<size_t>(wires[i])] = {vector.item, indexes[i]};
        placed[i] = true;
    }
}

void lay_wires(MAKER &maker, const std::vector<int32_t> &wires) {
    LAYOUT &layout = maker.layout;
    std::vector<int32_t> names(wires.size(), NL_NONE);
    for (size_t i = 0; i < wires.size(); i++) {
        const NL_NET &net = maker.module.nets[static_cast<size_t>(wires[i])];
        int32_t name = full_name(maker, net.name, net.scope);
        if (take(maker, name))
            names[i] = name;
    }
    std::vector<bool> placed(wires.size());
    lay_wire_vectors(maker, wires, names, placed);
    for (size_t i = 0; i < wires.size(); i++) {
        if (placed[i])
            continue;
        const NL_NET &net = maker.module.nets[static_cast<size_t>(wires[i])];
        int32_t name =
            names[i] != NL_NONE ? names[i] : new_name(maker, full_name(maker, net.name, net.scope));
        layout.nets[static_cast<size_t>(wires[i])] = {static_cast<int32_t>(layout.items.size()), 0};
        layout.items.push_back({name, NL_NONE, false, 0, 0});
    }
}

void lay_nets(MAKER &maker) {
    LAYOUT &layout = maker.layout;
    layout.nets.assign(maker.module.nets.size(), NO_BIT);
    maker.port_of_net.assign(maker.module.nets.size(), NL_NONE);
    layout.nets[NL_GND] = {LAYOUT_GND, 0};
    layout.nets[NL_VCC] = {LAYOUT_VCC, 0};
    std::vector<int32_t> wires;
    for (int32_t net = NL_VCC + 1; net < static_cast<int32_t>(maker.module.nets.size()); net++) {
        size_t at = static_cast<size_t>(net);
        if (is_unknown_net(maker, net)) {
            layout.nets[at] = {LAYOUT_UNKNOWN, 0};
            continue;
        }
        int32_t port = maker.first_port[at] != NL_NONE ? choose_port(maker, net) : NL_NONE;
        maker.port_of_net[at] = port;
        if (port != NL_NONE)
            layout.nets[at] = maker.port_bits[static_cast<size_t>(port)];
        else
            wires.push_back(net);
    }
    lay_wires(maker, wires);
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

void lay_assigns(MAKER &maker) {
    LAYOUT &layout = maker.layout;
    for (size_t i = 0; i < maker.module.ports.size(); i++) {
        const NL_PORT &port = maker.module.ports[i];
        if (port.net == NL_NONE ||
            maker.port_of_net[static_cast<size_t>(port.net)] == static_cast<int32_t>(i))
            continue;
        LAYOUT_BIT net = layout.nets[static_cast<size_t>(port.net)];
        if (port.direction == NL_OUTPUT || (port.direction == NL_BIDI && net.item < 0))
            layout.assigns.push_back({maker.port_bits[i], net});
        else if (port.direction == NL_BIDI)
            refuse_joined(maker, maker.port_of_net[static_cast<size_t>(port.net)], static_cast<int32_t>(i));
        else if (net.item >= 0)
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
                    LAYOUT_pins(layout, maker.module, instance, def, group, open_used, bits);
    }
    if (open_used == 0)
        return;
    layout.open_wires = static_cast<int32_t>(layout.items.size());
    layout.items.push_back({helper_name(maker, "open_pins"), NL_NONE, true, 0, open_used - 1});
}

} // namespace

LAYOUT LAYOUT_make(const NL_DESIGN &design, const NL_MODULE &module, const LAYOUT_RULES &rules) {
    MAKER maker{design, module, rules};
    lay_ports(maker);
    find_uses(maker);
    lay_instances(maker);
    lay_nets(maker);
    lay_assigns(maker);
    lay_helpers(maker);
    return std::move(maker.layout);
}

LAYOUT_BIT LAYOUT_pin(const LAYOUT &layout, int32_t net, int32_t direction) {
    if (net == NL_NONE)
        return NO_BIT;
    LAYOUT_BIT bit = layout.nets[static_cast<size_t>(net)];
    if (net <= NL_VCC && direction == NL_OUTPUT)
        return NO_BIT;
    if (net <= NL_VCC && direction == NL_BIDI)
        return {layout.constant_wires[net], 0};
    return bit;
}

bool LAYOUT_pins(const LAYOUT &layout, const NL_MODULE &module, const NL_INSTANCE &instance,
                 const NL_MODULE &def, const NL_GROUP &group, int32_t &open_used,
                 std::vector<LAYOUT_BIT> &bits) {
    bits.clear();
    int32_t open = 0;
    for (int32_t port = group.first; port < group.first + group.count; port++) {
        int32_t net = module.pins[static_cast<size_t>(instance.first_pin + port)];
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
