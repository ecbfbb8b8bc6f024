#include "siblings/edit_netlist.hh"

#include "siblings/netlist_sdb.hh"
#include "siblings/tool.hh"

#include <strings.h>

namespace {

NL_MODULE &edited(EDIT_NETLIST &edit) {
    return edit.design.modules[static_cast<size_t>(edit.module)];
}

const NL_MODULE &def_of(const EDIT_NETLIST &edit, const NL_INSTANCE &instance) {
    return edit.design.modules[static_cast<size_t>(instance.def)];
}

// The row of that name, or NL_NONE.
int32_t row_of(const EDIT_INDEX &index, int32_t name) {
    bool known = name >= 0 && static_cast<size_t>(name) < index.row_of_name.size();
    return known ? index.row_of_name[static_cast<size_t>(name)] : NL_NONE;
}

// False when a row has the name already, and keeps it.
bool enter(EDIT_INDEX &index, int32_t name, size_t row) {
    if (static_cast<size_t>(name) >= index.row_of_name.size())
        index.row_of_name.resize(static_cast<size_t>(name) + 1, NL_NONE);
    int32_t &place = index.row_of_name[static_cast<size_t>(name)];
    if (place != NL_NONE)
        return false;
    place = static_cast<int32_t>(row);
    return true;
}

int32_t root_of(EDIT_NETLIST &edit, int32_t net) {
    return net == NL_NONE ? NL_NONE : NL_union_find(edit.sets, net);
}

int32_t new_net(EDIT_NETLIST &edit, int32_t name) {
    int32_t net = NL_add_net(edited(edit), name);
    edit.sets.parent.push_back(net);
    edit.drivers.push_back(0);
    enter(edit.nets, name, static_cast<size_t>(net));
    return net;
}

// A name for a net that starts between two pins: that of the first pin, made unlike every other net's.
int32_t name_of_new_net(EDIT_NETLIST &edit, const EDIT_PLACE &a, const EDIT_PLACE &b) {
    std::string stem = NL_string(edit.design.names, a.name != NL_NONE ? a.name : b.name);
    std::string name = stem;
    for (int32_t n = 1;; n++) {
        int32_t id = NL_name(edit.design.names, name);
        if (row_of(edit.nets, id) == NL_NONE)
            return id;
        name = stem + "_" + std::to_string(n);
    }
}

void put_on(EDIT_NETLIST &edit, const EDIT_PLACE &place, int32_t net) {
    *place.net = net;
    edit.drivers[static_cast<size_t>(root_of(edit, net))] += place.drives ? 1 : 0;
}

// What a pin named name{pin} calls the net that it starts.
int32_t pin_net_name(EDIT_NETLIST &edit, const NL_INSTANCE &instance, int32_t pin) {
    return NL_name(edit.design.names,
                   NL_string(edit.design.names, instance.name) + "_" + NL_string(edit.design.names, pin));
}

// The commands may hold the spelling of a library description, which knows pins without regard to case. Two
// pins that differ by case alone are told apart by their exact names only.
int32_t only_port_in_other_case(const EDIT_NETLIST &edit, const NL_MODULE &def, std::string_view pin) {
    std::string wanted(pin);
    int32_t found = NL_NONE;
    for (size_t port = 0; port < def.ports.size(); port++) {
        std::string name(NL_string(edit.design.names, def.ports[port].name));
        if (strcasecmp(name.c_str(), wanted.c_str()) != 0)
            continue;
        if (found != NL_NONE)
            return NL_NONE;
        found = static_cast<int32_t>(port);
    }
    return found;
}

void index_names(EDIT_NETLIST &edit) {
    const NL_MODULE &module = edited(edit);
    NL_union_init(edit.sets, module.nets.size());
    edit.drivers.assign(module.nets.size(), 0);
    for (size_t i = NL_VCC + 1; i < module.nets.size(); i++)
        enter(edit.nets, module.nets[i].name, i);
    auto count = [&](int32_t net, bool drives) {
        if (net != NL_NONE && drives)
            edit.drivers[static_cast<size_t>(net)]++;
    };
    for (const NL_PORT &port : module.ports)
        count(port.net, port.direction == NL_INPUT);
    for (size_t i = 0; i < module.instances.size(); i++) {
        const NL_INSTANCE &instance = module.instances[i];
        enter(edit.instances, instance.name, i);
        const NL_MODULE &def = def_of(edit, instance);
        for (size_t port = 0; port < def.ports.size(); port++)
            count(module.pins[static_cast<size_t>(instance.first_pin) + port],
                  def.ports[port].direction == NL_OUTPUT);
    }
}

} // namespace

void EDIT_open(EDIT_NETLIST &edit, const std::string &name) {
    std::string path = name + ".sdb";
    edit.module = NL_module(edit.design, NL_name(edit.design.names, name));
    // Ports of the modules and cells that stand in the design are those of its own classes.
    NL_read_sdb(edit.design, edited(edit), path,
                [&](int32_t class_name) { return NL_module(edit.design, class_name); });
    if (edited(edit).is_cell)
        TOOL_fail(path, 0, "this is a library cell; it holds nothing to edit.");
    index_names(edit);
}

int32_t EDIT_find_instance(const EDIT_NETLIST &edit, std::string_view name) {
    return row_of(edit.instances, NL_find_name(edit.design.names, name));
}

bool EDIT_find_pin(EDIT_NETLIST &edit, int32_t instance_index, std::string_view pin, EDIT_PLACE &place) {
    const NL_INSTANCE &instance = edited(edit).instances[static_cast<size_t>(instance_index)];
    const NL_MODULE &def = def_of(edit, instance);
    int32_t name = NL_find_name(edit.design.names, pin);
    int32_t port = name == NL_NONE ? NL_NONE : NL_find_port(def, name);
    if (port == NL_NONE)
        port = only_port_in_other_case(edit, def, pin);
    if (port == NL_NONE)
        return false;
    name = def.ports[static_cast<size_t>(port)].name;
    place.net = &edited(edit).pins[static_cast<size_t>(instance.first_pin + port)];
    place.drives = def.ports[static_cast<size_t>(port)].direction == NL_OUTPUT;
    place.name = pin_net_name(edit, instance, name);
    return true;
}

bool EDIT_find_port(EDIT_NETLIST &edit, std::string_view text, EDIT_PLACE &place) {
    int32_t name = NL_find_name(edit.design.names, text);
    int32_t port = name == NL_NONE ? NL_NONE : NL_find_port(edited(edit), name);
    if (port == NL_NONE)
        return false;
    NL_PORT &row = edited(edit).ports[static_cast<size_t>(port)];
    place.net = &row.net;
    place.drives = row.direction == NL_INPUT;
    place.name = name;
    return true;
}

bool EDIT_find_net(EDIT_NETLIST &edit, std::string_view text, EDIT_PLACE &place) {
    if (text == "GND" || text == "VCC") {
        place.fixed = text == "GND" ? NL_GND : NL_VCC;
        return true;
    }
    int32_t name = NL_name(edit.design.names, text);
    place.fixed = row_of(edit.nets, name);
    if (place.fixed == NL_NONE && text == NL_UNKNOWN_NET) {
        place.fixed = new_net(edit, name);
        edited(edit).nets.back().marks = NL_MARK_DONT_CARE;
    }
    return place.fixed != NL_NONE;
}

bool EDIT_add_instance(EDIT_NETLIST &edit, std::string_view text, int32_t def) {
    int32_t name = NL_name(edit.design.names, text);
    NL_MODULE &module = edited(edit);
    if (!enter(edit.instances, name, module.instances.size()))
        return false;
    auto first_pin = static_cast<int32_t>(module.pins.size());
    module.pins.resize(module.pins.size() + edit.design.modules[static_cast<size_t>(def)].ports.size(),
                       NL_NONE);
    module.instances.push_back({name, NL_NONE, def, first_pin});
    return true;
}

bool EDIT_add_port(EDIT_NETLIST &edit, std::string_view text, int32_t direction) {
    int32_t name = NL_name(edit.design.names, text);
    NL_MODULE &module = edited(edit);
    if (NL_find_port(module, name) != NL_NONE)
        return false;
    module.port_of_name[name] = static_cast<int32_t>(module.ports.size());
    module.ports.push_back({name, direction, NL_NONE});
    return true;
}

void EDIT_disconnect(EDIT_NETLIST &edit, EDIT_PLACE place) {
    int32_t root = root_of(edit, *place.net);
    if (root != NL_NONE && place.drives)
        edit.drivers[static_cast<size_t>(root)]--;
    *place.net = NL_NONE;
}

const char *EDIT_connect(EDIT_NETLIST &edit, EDIT_PLACE a, EDIT_PLACE b) {
    int32_t net_a = root_of(edit, a.net != nullptr ? *a.net : a.fixed);
    int32_t net_b = root_of(edit, b.net != nullptr ? *b.net : b.fixed);
    if (net_a == net_b && net_a != NL_NONE)
        return nullptr;
    auto drivers = [&](const EDIT_PLACE &place, int32_t net) {
        return net == NL_NONE ? static_cast<int32_t>(place.drives)
                              : edit.drivers[static_cast<size_t>(net)] + (net <= NL_VCC ? 1 : 0);
    };
    // A net with several drivers is a bus of 3-state drivers; one more may join it. Two single drivers may
    // not meet.
    if (drivers(a, net_a) == 1 && drivers(b, net_b) == 1)
        return net_a != NL_NONE && net_b != NL_NONE && net_a <= NL_VCC && net_b <= NL_VCC
                   ? "this joins the constants 0 and 1."
                   : "this joins two drivers.";
    if (net_a == NL_NONE && net_b == NL_NONE) {
        int32_t net = new_net(edit, name_of_new_net(edit, a, b));
        put_on(edit, a, net);
        put_on(edit, b, net);
    } else if (net_a == NL_NONE) {
        put_on(edit, a, net_b);
    } else if (net_b == NL_NONE) {
        put_on(edit, b, net_a);
    } else {
        int32_t sum = edit.drivers[static_cast<size_t>(net_a)] + edit.drivers[static_cast<size_t>(net_b)];
        NL_union_join(edit.sets, net_a, net_b);
        edit.drivers[static_cast<size_t>(root_of(edit, net_a))] = sum;
    }
    return nullptr;
}

void EDIT_replace(EDIT_NETLIST &edit, int32_t instance_index, int32_t def_index) {
    NL_MODULE &module = edited(edit);
    NL_INSTANCE &instance = module.instances[static_cast<size_t>(instance_index)];
    const NL_MODULE &before = def_of(edit, instance);
    const NL_MODULE &def = edit.design.modules[static_cast<size_t>(def_index)];
    auto first_pin = static_cast<int32_t>(module.pins.size());
    module.pins.resize(module.pins.size() + def.ports.size(), NL_NONE);
    for (size_t port = 0; port < before.ports.size(); port++) {
        int32_t &old_net = module.pins[static_cast<size_t>(instance.first_pin) + port];
        int32_t kept = NL_find_port(def, before.ports[port].name);
        int32_t net = old_net;
        EDIT_disconnect(edit, {&old_net, NL_NONE, before.ports[port].direction == NL_OUTPUT, NL_NONE});
        if (kept == NL_NONE || net == NL_NONE)
            continue;
        bool drives = def.ports[static_cast<size_t>(kept)].direction == NL_OUTPUT;
        put_on(edit, {&module.pins[static_cast<size_t>(first_pin + kept)], NL_NONE, drives, NL_NONE}, net);
    }
    instance.def = def_index;
    instance.first_pin = first_pin;
}

void EDIT_save(EDIT_NETLIST &edit, const std::string &name) {
    NL_MODULE &module = edited(edit);
    NL_join_constants(module, edit.sets);
    if (NL_union_find(edit.sets, NL_VCC) == NL_GND)
        TOOL_fail(name + ".sdb", 0, "the edited design joins the constants 0 and 1.");
    NL_merge_nets(module, edit.sets);
    NL_name_port_nets(edit.design, module);
    NL_write_sdb(edit.design, module, name + ".sdb");
}
