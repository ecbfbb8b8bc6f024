// The nodes of a module in its SDB file, and the order in which they stand on their nets.
#include "siblings/node_order.hh"

namespace {

// How far an instance leads from a port: the walk from the port shall meet its pad first.
enum NODE_LEVEL : uint8_t {
    LEADS_INSIDE,  // on some net that has no port, as a pad with a core behind it is
    LEADS_NOWHERE, // a pad that nothing uses, a clamp whose enable is tied
    LAYOUT_ONLY,   // bond pads, clamps, diodes: no pin of one direction, or this one alone
    LEVEL_COUNT
};

// HAS_PAD: a pin that may be a pad's own; HAS_LIVE_PAD: one of an instance that leads inside.
enum NET_FLAG : uint8_t { HAS_PORT = 1, HAS_PAD = 2, HAS_LIVE_PAD = 4 };

struct NODE_ON_NET {
    int32_t node;
    int32_t net;
};

struct ORDERING {
    const NL_DESIGN &design;
    const NL_MODULE &module;
    NODE_ORDER &order;
    std::vector<uint8_t> net_flags{};
    std::vector<int32_t>
        one_way_pins{}; // of each module: pins that are no bidirectional ones, -1 not counted
    std::vector<int32_t> beside_ports{};          // instances on some port's net, in their order
    std::vector<NODE_ON_NET> late[LEVEL_COUNT]{}; // nodes that come behind those of the levels before
};

const std::vector<NL_PORT> &ports_of(const ORDERING &work, const NL_INSTANCE &instance) {
    return work.design.modules[static_cast<size_t>(instance.def)].ports;
}

const int32_t *nets_of(const ORDERING &work, const NL_INSTANCE &instance) {
    return work.module.pins.data() + instance.first_pin;
}

// Drivers stand first on a net, so that a walk from any other pin meets the driver. The sources of the
// constants are put on their nets before all else and stay first.
void put_on_net(ORDERING &work, int32_t node, int32_t net, int32_t direction, bool is_port) {
    if (net == NL_NONE)
        return;
    NODE_ORDER::LIST &list = work.order.nets[static_cast<size_t>(net)];
    std::vector<int32_t> &next = work.order.next;
    bool drives = direction == (is_port ? NL_INPUT : NL_OUTPUT);
    if (list.last < 0) {
        list.first = list.last = node;
    } else if (drives && net > NL_VCC) {
        next[static_cast<size_t>(node)] = list.first;
        list.first = node;
    } else {
        next[static_cast<size_t>(list.last)] = node;
        list.last = node;
    }
}

// Most instances have no port on any of their nets, and no walk from a port begins there.
bool on_port(const ORDERING &work, int32_t net) {
    return net > NL_VCC && (work.net_flags[static_cast<size_t>(net)] & HAS_PORT) != 0;
}

bool touches_port(const ORDERING &work, const int32_t *nets, size_t pin_count) {
    for (size_t i = 0; i < pin_count; i++)
        if (on_port(work, nets[i]))
            return true;
    return false;
}

bool leads_inside(const ORDERING &work, const int32_t *nets, size_t pin_count) {
    for (size_t i = 0; i < pin_count; i++)
        if (nets[i] > NL_VCC && !on_port(work, nets[i]))
            return true;
    return false;
}

NODE_LEVEL level_of_pin(ORDERING &work, const NL_INSTANCE &instance, bool inside, int32_t direction) {
    if (inside)
        return LEADS_INSIDE;
    int32_t &count = work.one_way_pins[static_cast<size_t>(instance.def)];
    if (count < 0) {
        count = 0;
        for (const NL_PORT &port : ports_of(work, instance))
            count += port.direction != NL_BIDI;
    }
    return count - (direction != NL_BIDI) > 0 ? LEADS_NOWHERE : LAYOUT_ONLY;
}

// What the order on the ports' nets goes by.
void find_pads(ORDERING &work) {
    work.net_flags.assign(work.module.nets.size(), 0);
    work.one_way_pins.assign(work.design.modules.size(), -1);
    for (const NL_PORT &port : work.module.ports)
        if (port.net > NL_VCC)
            work.net_flags[static_cast<size_t>(port.net)] = HAS_PORT;
    const auto &instances = work.module.instances;
    for (size_t index = 0; index < instances.size(); index++) {
        const NL_INSTANCE &instance = instances[index];
        if (instance.first_pin == NL_NONE)
            continue;
        const auto &ports = ports_of(work, instance);
        const int32_t *nets = nets_of(work, instance);
        if (!touches_port(work, nets, ports.size()))
            continue;
        work.beside_ports.push_back(static_cast<int32_t>(index));
        bool inside = leads_inside(work, nets, ports.size());
        for (size_t i = 0; i < ports.size(); i++) {
            if (!on_port(work, nets[i]) || ports[i].direction == NL_INPUT)
                continue;
            static constexpr uint8_t flags[LEVEL_COUNT] = {HAS_PAD | HAS_LIVE_PAD, HAS_PAD, 0};
            work.net_flags[static_cast<size_t>(nets[i])] |=
                flags[level_of_pin(work, instance, inside, ports[i].direction)];
        }
    }
}

// True for a pin that may hide a pad: one of a layout cell, and one of a cell that leads nowhere beside a pad
// that does. A driver keeps its place at the head of the net, but for a pull-up or keeper beside a pad.
bool may_hide_pad(uint8_t net_flags, NODE_LEVEL level, int32_t direction) {
    if ((net_flags & HAS_PORT) == 0 || level == LEADS_INSIDE)
        return false;
    if (level == LEADS_NOWHERE)
        return direction != NL_OUTPUT && (net_flags & HAS_LIVE_PAD) != 0;
    return direction != NL_OUTPUT || (net_flags & HAS_PAD) != 0;
}

void put_pins_inside(ORDERING &work, const NL_INSTANCE &instance, int32_t node) {
    const int32_t *net = nets_of(work, instance);
    for (const NL_PORT &port : ports_of(work, instance))
        put_on_net(work, node++, *net++, port.direction, false);
}

void put_pins_beside_ports(ORDERING &work, const NL_INSTANCE &instance, int32_t first_node) {
    const auto &ports = ports_of(work, instance);
    const int32_t *nets = nets_of(work, instance);
    bool inside = leads_inside(work, nets, ports.size());
    for (size_t i = 0; i < ports.size(); i++) {
        int32_t node = first_node + static_cast<int32_t>(i);
        int32_t direction = ports[i].direction;
        NODE_LEVEL level = level_of_pin(work, instance, inside, direction);
        if (!inside && on_port(work, nets[i]) &&
            may_hide_pad(work.net_flags[static_cast<size_t>(nets[i])], level, direction))
            work.late[level].push_back({node, nets[i]});
        else
            put_on_net(work, node, nets[i], direction, false);
    }
}

void put_instances(ORDERING &work, int32_t node) {
    const auto &instances = work.module.instances;
    auto beside = work.beside_ports.begin();
    for (size_t index = 0; index < instances.size(); index++) {
        const NL_INSTANCE &instance = instances[index];
        bool on_port = beside != work.beside_ports.end() && *beside == static_cast<int32_t>(index);
        beside += on_port;
        if (on_port)
            put_pins_beside_ports(work, instance, node);
        else if (instance.first_pin != NL_NONE)
            put_pins_inside(work, instance, node);
        node += static_cast<int32_t>(ports_of(work, instance).size());
    }
}

} // namespace

NODE_ORDER NL_order_nodes(const NL_DESIGN &design, const NL_MODULE &module, size_t node_count) {
    NODE_ORDER order;
    order.nets.assign(module.nets.size(), {-1, -1});
    order.next.assign(node_count, -1);
    ORDERING work{design, module, order};
    int32_t node = 0;
    for (int32_t constant : {NL_GND, NL_VCC})
        put_on_net(work, node++, constant, NL_OUTPUT, false);
    for (const NL_PORT &port : module.ports)
        put_on_net(work, node++, port.net, port.direction, true);
    find_pads(work);
    put_instances(work, node);
    for (const std::vector<NODE_ON_NET> &nodes : work.late)
        for (NODE_ON_NET late : nodes)
            put_on_net(work, late.node, late.net, NL_BIDI, false);
    return order;
}
