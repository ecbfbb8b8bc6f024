#include "kit/chip.hh"

#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "siblings/netlist_sdb.hh"

namespace {

std::string text_of(int32_t symbol) {
    const char *text = SYM_get(sym_tab, symbol);
    return text != nullptr ? text : "";
}

} // namespace

std::string chip_port_name(int32_t port) {
    return text_of(port_tab[port].name);
}

std::string chip_pin_name(int32_t pin) {
    return text_of(pin_tab[pin].name);
}

std::string chip_class_name(int32_t class_id) {
    return class_id < 0 ? "" : text_of(class_tab[class_id].name);
}

std::string chip_instance_name(int32_t obj) {
    const char *name = SDB_obj_name(sdb, obj);
    return name != nullptr ? name : "";
}

SDB_DIRECTION chip_pin_direction(int32_t pin) {
    return static_cast<SDB_DIRECTION>(pin_tab[pin].direction & SDB_DIRECTION_MASK);
}

SDB_DIRECTION chip_port_direction(int32_t port) {
    return static_cast<SDB_DIRECTION>(port_tab[port].flags & SDB_DIRECTION_MASK);
}

std::vector<int32_t> chip_net_nodes(int32_t net) {
    std::vector<int32_t> nodes;
    if (net >= 0)
        for (int32_t node = net_tab[net].first_node; node >= 0; node = node_tab[node].next)
            nodes.push_back(node);
    return nodes;
}

int32_t chip_pin_node(int32_t obj, const std::string &pin) {
    return find_pin_node(obj, pin.c_str());
}

CHIP_SOURCE chip_source(int32_t node) {
    int32_t net = node < 0 ? -1 : node_tab[node].net;
    if (net == SDB_NET_GND)
        return SOURCE_ZERO;
    if (net == SDB_NET_VCC)
        return SOURCE_ONE;
    if (chip_is_alone(node))
        return SOURCE_OPEN;
    CHIP_SOURCE source = SOURCE_CORE;
    for (int32_t at = net_tab[net].first_node; at >= 0; at = node_tab[at].next) {
        int32_t obj = node_tab[at].obj;
        if (obj < 0)
            source = SOURCE_PORT;
        else if (chip_pin_direction(node_tab[at].pin) == SDB_OUTPUT)
            return !chip_class_has(obj_tab[obj].class_id, SDB_INPUT) ? SOURCE_TIE_CELL : SOURCE_CORE;
    }
    return source;
}

bool chip_is_alone(int32_t node) {
    return node < 0 || find_adjacent_node(node) < 0;
}

bool chip_class_has(int32_t class_id, SDB_DIRECTION direction) {
    for (int32_t i = 0; class_id >= 0 && i < class_tab[class_id].pin_count; ++i)
        if (chip_pin_direction(class_tab[class_id].first_pin + i) == direction)
            return true;
    return false;
}

bool chip_has_output(int32_t obj) {
    int32_t class_id = obj_tab[obj].class_id;
    return class_id < 0 || chip_class_has(class_id, SDB_OUTPUT) ||
           chip_class_has(class_id, SDB_BIDIRECTIONAL);
}

bool chip_has_input(int32_t obj) {
    int32_t class_id = obj_tab[obj].class_id;
    return class_id < 0 || chip_class_has(class_id, SDB_INPUT) || chip_class_has(class_id, SDB_BIDIRECTIONAL);
}

std::vector<CHIP_PORT_GROUP> chip_port_groups() {
    NL_DESIGN design;
    NL_MODULE &module = design.modules.emplace_back();
    NL_take_sdb_ports(design, module, sdb);
    if (int32_t twice = NL_NONE; module.groups.empty())
        NL_close_ports(design, module, twice);
    std::unordered_map<std::string, int32_t> id_of_name;
    for (int32_t port = 0; port < port_count; ++port)
        id_of_name.emplace(chip_port_name(port), port);
    std::vector<CHIP_PORT_GROUP> groups;
    for (const NL_GROUP &group : module.groups) {
        CHIP_PORT_GROUP row{NL_string(design.names, group.name), group.vector, group.left, group.right, {}};
        for (int32_t i = 0; i < group.count; ++i) {
            auto at = id_of_name.find(
                NL_string(design.names, module.ports[static_cast<size_t>(group.first + i)].name));
            row.ports.push_back(at != id_of_name.end() ? at->second : -1);
        }
        groups.push_back(std::move(row));
    }
    return groups;
}
