#include "siblings/netlist.hh"

int32_t NL_module(NL_DESIGN &design, int32_t name) {
    auto [place, is_new] =
        design.module_of_name.try_emplace(name, static_cast<int32_t>(design.modules.size()));
    if (is_new) {
        NL_MODULE &module = design.modules.emplace_back();
        module.name = name;
        NL_add_net(module, NL_name(design.names, "GND"));
        NL_add_net(module, NL_name(design.names, "VCC"));
    }
    return place->second;
}

int32_t NL_add_net(NL_MODULE &module, int32_t name, int32_t scope, uint8_t marks) {
    module.nets.push_back({name, scope, marks});
    return static_cast<int32_t>(module.nets.size()) - 1;
}

namespace {

// The run of ports from `first` on that reads as one vector; a run of one bit is a vector as well.
NL_GROUP group_at(NL_DESIGN &design, const NL_MODULE &module, int32_t first) {
    const NL_PORT &port = module.ports[static_cast<size_t>(first)];
    NL_GROUP group = {port.name, first, 1, false, 0, 0};
    NL_BIT bit;
    auto is_bit = [&](const NL_PORT &row) {
        return (row.marks & NL_MARK_WHOLE) == 0 && NL_parse_bit(NL_text(design.names, row.name), bit);
    };
    if (!is_bit(port))
        return group;
    std::string base(bit.base);
    group.vector = true;
    group.name = NL_name(design.names, base);
    group.left = group.right = bit.index;
    int32_t step = 0;
    for (size_t i = static_cast<size_t>(first) + 1; i < module.ports.size(); i++) {
        const NL_PORT &next = module.ports[i];
        if (next.direction != port.direction || !is_bit(next) || bit.base != base)
            break;
        int32_t this_step = bit.index - group.right;
        if ((this_step != 1 && this_step != -1) || (step != 0 && this_step != step))
            break;
        step = this_step;
        group.right = bit.index;
        group.count++;
    }
    return group;
}

// A base name that is used twice cannot be one vector: its bits stay single ports.
void split_group(const NL_MODULE &module, const NL_GROUP &group, std::vector<NL_GROUP> &groups) {
    for (int32_t i = 0; i < group.count; i++) {
        int32_t port = group.first + i;
        groups.push_back({module.ports[static_cast<size_t>(port)].name, port, 1, false, 0, 0});
    }
}

} // namespace

bool NL_close_ports(NL_DESIGN &design, NL_MODULE &module, int32_t &twice) {
    module.port_of_name.clear();
    module.group_of_name.clear();
    module.groups.clear();
    for (size_t i = 0; i < module.ports.size(); i++) {
        if (!module.port_of_name.try_emplace(module.ports[i].name, static_cast<int32_t>(i)).second) {
            twice = module.ports[i].name;
            return false;
        }
    }
    std::vector<NL_GROUP> found;
    std::unordered_map<int32_t, int32_t> uses;
    for (int32_t i = 0; i < static_cast<int32_t>(module.ports.size()); i += found.back().count) {
        found.push_back(group_at(design, module, i));
        uses[found.back().name]++;
    }
    for (const NL_GROUP &group : found) {
        if (group.vector && uses[group.name] > 1) {
            split_group(module, group, module.groups);
            continue;
        }
        if (group.vector)
            module.group_of_name[group.name] = static_cast<int32_t>(module.groups.size());
        module.groups.push_back(group);
    }
    return true;
}

int32_t NL_find_port(const NL_MODULE &module, int32_t name) {
    auto found = module.port_of_name.find(name);
    return found == module.port_of_name.end() ? NL_NONE : found->second;
}

std::string NL_full_name(const NL_DESIGN &design, const NL_MODULE &module, int32_t name, int32_t scope) {
    std::vector<int32_t> path;
    for (; scope != NL_NONE; scope = module.scopes[static_cast<size_t>(scope)].parent)
        path.push_back(module.scopes[static_cast<size_t>(scope)].name);
    std::string text;
    for (size_t i = path.size(); i-- > 0;) {
        text += NL_text(design.names, path[i]);
        text += '.';
    }
    text += NL_text(design.names, name);
    return text;
}

void NL_union_init(NL_UNION &sets, size_t count) {
    sets.parent.resize(count);
    for (size_t i = 0; i < count; i++)
        sets.parent[i] = static_cast<int32_t>(i);
}

int32_t NL_union_find(NL_UNION &sets, int32_t net) {
    auto &parent = sets.parent;
    while (parent[static_cast<size_t>(net)] != net) {
        int32_t up = parent[static_cast<size_t>(net)];
        parent[static_cast<size_t>(net)] = parent[static_cast<size_t>(up)];
        net = parent[static_cast<size_t>(net)];
    }
    return net;
}

void NL_union_join(NL_UNION &sets, int32_t a, int32_t b) {
    a = NL_union_find(sets, a);
    b = NL_union_find(sets, b);
    if (a < b)
        sets.parent[static_cast<size_t>(b)] = a;
    else
        sets.parent[static_cast<size_t>(a)] = b;
}

void NL_join_constants(const NL_MODULE &module, NL_UNION &sets) {
    for (bool changed = true; changed;) { // an assign may lead on to the next one
        changed = false;
        for (const NL_ASSIGN &assign : module.assigns) {
            int32_t left = NL_union_find(sets, assign.left), right = NL_union_find(sets, assign.right);
            if (left == right || (left > NL_VCC && right > NL_VCC))
                continue;
            NL_union_join(sets, left, right);
            changed = true;
        }
    }
}

namespace {

// Where the nets stand once each set is its root.
std::vector<int32_t> merged_places(NL_MODULE &module, NL_UNION &sets) {
    std::vector<int32_t> place(module.nets.size());
    size_t kept = 0;
    // A root is the lowest of its set, so that its new place is known before any member is met.
    for (size_t i = 0; i < module.nets.size(); i++) {
        int32_t root = NL_union_find(sets, static_cast<int32_t>(i));
        if (root == static_cast<int32_t>(i)) {
            place[i] = static_cast<int32_t>(kept);
            module.nets[kept++] = module.nets[i];
        } else {
            place[i] = place[static_cast<size_t>(root)];
        }
    }
    module.nets.resize(kept);
    return place;
}

void move_nets(NL_MODULE &module, const std::vector<int32_t> &place) {
    for (NL_PORT &port : module.ports)
        if (port.net != NL_NONE)
            port.net = place[static_cast<size_t>(port.net)];
    for (int32_t &net : module.pins)
        if (net != NL_NONE)
            net = place[static_cast<size_t>(net)];
    for (NL_ASSIGN &assign : module.assigns)
        assign = {place[static_cast<size_t>(assign.left)], place[static_cast<size_t>(assign.right)]};
}

} // namespace

void NL_merge_nets(NL_MODULE &module, NL_UNION &sets) {
    size_t nets = module.nets.size();
    std::vector<int32_t> place = merged_places(module, sets);
    if (module.nets.size() < nets)
        move_nets(module, place);
    std::unordered_set<int64_t> made;
    std::erase_if(module.assigns, [&](const NL_ASSIGN &assign) {
        return assign.left == assign.right || !made.insert(int64_t{assign.left} << 32 | assign.right).second;
    });
}

void NL_name_port_nets(NL_DESIGN &design, NL_MODULE &module) {
    std::unordered_map<int32_t, const NL_PORT *> port_of_net;
    std::unordered_map<int32_t, int32_t> net_of_name;
    for (const NL_PORT &port : module.ports) {
        net_of_name[port.name] = NL_NONE;
        if (port.net <= NL_VCC)
            continue;
        port_of_net.try_emplace(port.net, &port);
    }
    for (auto [net, port] : port_of_net)
        net_of_name[port->name] = net;
    std::unordered_set<int32_t> taken;
    for (size_t i = NL_VCC + 1; i < module.nets.size(); i++) {
        NL_NET &net = module.nets[i];
        auto found = net_of_name.find(net.name);
        if (net.scope == NL_NONE && found != net_of_name.end() && found->second != static_cast<int32_t>(i))
            net = {NL_new_name(design, module, taken, NL_string(design.names, net.name)), NL_NONE,
                   static_cast<uint8_t>(net.marks & ~NL_MARK_WHOLE)};
    }
    for (auto [net, port] : port_of_net)
        module.nets[static_cast<size_t>(net)] = {port->name, NL_NONE,
                                                 static_cast<uint8_t>(port->marks & NL_MARK_WHOLE)};
}

int32_t NL_new_name(NL_DESIGN &design, const NL_MODULE &module, std::unordered_set<int32_t> &taken,
                    std::string_view stem) {
    if (taken.empty()) {
        for (const NL_PORT &port : module.ports)
            taken.insert(port.name);
        for (const NL_NET &net : module.nets)
            taken.insert(net.name);
        for (const NL_INSTANCE &instance : module.instances)
            taken.insert(instance.name);
    }
    std::string base(stem);
    // An index would make the new name a bit of a vector again.
    for (char &c : base)
        if (c == '[' || c == ']')
            c = '_';
    for (int number = 1;; number++) {
        int32_t name = NL_name(design.names, base + "_n" + std::to_string(number));
        if (taken.insert(name).second)
            return name;
    }
}
