// Reading SDB files into modules.
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/sdb_marks.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <unordered_map>

namespace {

SDB_HANDLE *open_file(const std::string &path) {
    SDB_HANDLE *handle = SDB_open(path.c_str(), "r", 0);
    if (handle == nullptr)
        TOOL_fail(path, 0, "this SDB file can't be read.");
    return handle;
}

int32_t symbol_name(NL_DESIGN &design, const SDB_HANDLE *handle, int32_t symbol, const std::string &path) {
    const char *text = SYM_get(handle->symbols, symbol);
    if (text == nullptr)
        TOOL_fail(path, 0, "the SDB file holds a port, pin or class without a name.");
    return NL_name(design.names, text);
}

NL_PORT port_of(NL_DESIGN &design, const SDB_HANDLE *handle, const SDB_PORT &port, const std::string &path) {
    int32_t direction = port.flags & SDB_DIRECTION_MASK;
    if (direction == SDB_DIRECTION_MASK)
        TOOL_fail(path, 0, "the SDB file holds a port without a direction.");
    int32_t net = port.node < 0 ? NL_NONE : SDB_table<SDB_NODE>(handle, SDB_NODE_TAB)[port.node].net;
    return {symbol_name(design, handle, port.name, path), direction, net};
}

// The ports in the order of the list that the writer keeps, where it names every port.
void read_ports(NL_DESIGN &design, const SDB_HANDLE *handle, NL_MODULE &module, const std::string &path) {
    int32_t count = SDB_table_count(handle, SDB_PORT_TAB);
    const SDB_PORT *ports = SDB_table<SDB_PORT>(handle, SDB_PORT_TAB);
    const int32_t *order = SDB_table<int32_t>(handle, SDB_XPORT_TAB);
    std::unordered_map<int32_t, int32_t> port_of_symbol;
    for (int32_t i = 0; i < count; i++)
        if (ports[i].name >= 0)
            port_of_symbol.try_emplace(ports[i].name, i);
    std::vector<bool> placed(static_cast<size_t>(count));
    std::vector<uint8_t> marks(static_cast<size_t>(count));
    MARKS_read(handle, [&](MARK_KIND kind, int32_t symbol, uint8_t port_marks) {
        auto found = port_of_symbol.find(symbol);
        if (kind == MARK_OF_PORT && found != port_of_symbol.end())
            marks[static_cast<size_t>(found->second)] = port_marks;
    });
    module.ports.clear();
    auto place = [&](int32_t i) {
        if (!placed[static_cast<size_t>(i)] && ports[i].name >= 0) {
            module.ports.push_back(port_of(design, handle, ports[i], path));
            module.ports.back().marks = marks[static_cast<size_t>(i)];
        }
        placed[static_cast<size_t>(i)] = true;
    };
    for (int32_t i = 0; i < SDB_table_count(handle, SDB_XPORT_TAB); i++) {
        auto found = port_of_symbol.find(order[i]);
        if (found != port_of_symbol.end())
            place(found->second);
    }
    for (int32_t i = 0; i < count; i++)
        place(i);
    int32_t twice = NL_NONE;
    if (!NL_close_ports(design, module, twice))
        TOOL_fail(path, 0, "the SDB file holds two ports '%s'.", NL_string(design.names, twice).c_str());
}

void read_nets(NL_DESIGN &design, const SDB_HANDLE *handle, NL_MODULE &module) {
    for (int32_t i = NL_VCC + 1; i < SDB_table_count(handle, SDB_NET_TAB); i++) {
        const char *name = SDB_net_name(handle, i);
        NL_add_net(module, NL_name(design.names, name != nullptr ? name : "net_" + std::to_string(i)));
    }
    int32_t left = NL_NONE;
    MARKS_read(handle, [&](MARK_KIND kind, int32_t id, uint8_t marks) {
        bool is_net = id > NL_VCC && static_cast<size_t>(id) < module.nets.size();
        if (kind == MARK_OF_NET && is_net)
            module.nets[static_cast<size_t>(id)].marks = marks;
        if (kind == MARK_ASSIGN_RIGHT && is_net && left != NL_NONE)
            module.assigns.push_back({left, id});
        left = kind == MARK_ASSIGN_LEFT && is_net ? id : NL_NONE;
    });
}

// A class of the file and how its pins lie in the module that it stands for.
struct CLASS_MAP {
    int32_t def = NL_NONE;
    std::vector<int32_t> port_of_pin;
};

void take_class_ports(NL_DESIGN &design, const SDB_HANDLE *handle, const SDB_CLASS &row, NL_MODULE &def,
                      const std::string &path) {
    const SDB_PIN *pins = SDB_table<SDB_PIN>(handle, SDB_PIN_TAB);
    for (int32_t i = 0; i < row.pin_count; i++) {
        const SDB_PIN &pin = pins[row.first_pin + i];
        def.ports.push_back(
            {symbol_name(design, handle, pin.name, path), pin.direction & SDB_DIRECTION_MASK, NL_NONE});
    }
    def.defined = true;
    def.is_cell = row.type != SDB_KIND_DESIGN;
    int32_t twice = NL_NONE;
    if (!NL_close_ports(design, def, twice))
        TOOL_fail(path, 0, "the class '%s' holds two pins '%s'.", NL_string(design.names, def.name).c_str(),
                  NL_string(design.names, twice).c_str());
}

CLASS_MAP map_class(NL_DESIGN &design, const SDB_HANDLE *handle, int32_t class_id, const std::string &path,
                    const std::function<int32_t(int32_t)> &find_def) {
    const SDB_CLASS &row = SDB_table<SDB_CLASS>(handle, SDB_CLASS_TAB)[class_id];
    CLASS_MAP map;
    map.def = find_def(symbol_name(design, handle, row.name, path));
    NL_MODULE &def = design.modules[static_cast<size_t>(map.def)];
    if (!def.defined)
        take_class_ports(design, handle, row, def, path);
    const SDB_PIN *pins = SDB_table<SDB_PIN>(handle, SDB_PIN_TAB);
    for (int32_t i = 0; i < row.pin_count; i++) {
        int32_t name = symbol_name(design, handle, pins[row.first_pin + i].name, path);
        int32_t port = NL_find_port(def, name);
        if (port == NL_NONE)
            TOOL_fail(path, 0, "'%s' has no port '%s', which its instances here have as a pin.",
                      NL_string(design.names, def.name).c_str(), NL_string(design.names, name).c_str());
        map.port_of_pin.push_back(port);
    }
    return map;
}

// The sources stand first of all objects.
bool is_constant_source(const SDB_HANDLE *handle, int32_t obj) {
    const char *class_name = obj < 2 ? SDB_obj_class_name(handle, obj) : nullptr;
    return class_name != nullptr &&
           (same_text(class_name, NL_SOURCE_CLASS_0) || same_text(class_name, NL_SOURCE_CLASS_1));
}

void read_instance(NL_DESIGN &design, const SDB_HANDLE *handle, NL_MODULE &module, int32_t obj,
                   const CLASS_MAP &map, int32_t first_pin_of_class) {
    const SDB_OBJ &row = SDB_table<SDB_OBJ>(handle, SDB_OBJ_TAB)[obj];
    const SDB_NODE *nodes = SDB_table<SDB_NODE>(handle, SDB_NODE_TAB);
    const NL_MODULE &def = design.modules[static_cast<size_t>(map.def)];
    const char *name = SDB_obj_name(handle, obj);
    NL_INSTANCE instance = {NL_name(design.names, name), NL_NONE, map.def,
                            static_cast<int32_t>(module.pins.size())};
    module.pins.resize(module.pins.size() + def.ports.size(), NL_NONE);
    for (int32_t node = row.first_node; node >= 0 && nodes[node].obj == obj; node++) {
        int64_t number = int64_t{nodes[node].pin} - first_pin_of_class;
        if (number >= 0 && number < static_cast<int64_t>(map.port_of_pin.size()))
            module.pins[static_cast<size_t>(instance.first_pin +
                                            map.port_of_pin[static_cast<size_t>(number)])] = nodes[node].net;
    }
    module.instances.push_back(instance);
}

void read_instances(NL_DESIGN &design, const SDB_HANDLE *handle, NL_MODULE &module, const std::string &path,
                    const std::function<int32_t(int32_t)> &find_def) {
    const SDB_OBJ *objects = SDB_table<SDB_OBJ>(handle, SDB_OBJ_TAB);
    const SDB_CLASS *classes = SDB_table<SDB_CLASS>(handle, SDB_CLASS_TAB);
    std::vector<CLASS_MAP> maps(static_cast<size_t>(SDB_table_count(handle, SDB_CLASS_TAB)));
    for (int32_t obj = 0; obj < SDB_table_count(handle, SDB_OBJ_TAB); obj++) {
        int32_t class_id = objects[obj].class_id;
        if (class_id < 0 || is_constant_source(handle, obj) || SDB_obj_name(handle, obj) == nullptr)
            continue;
        CLASS_MAP &map = maps[static_cast<size_t>(class_id)];
        if (map.def == NL_NONE)
            map = map_class(design, handle, class_id, path, find_def);
        read_instance(design, handle, module, obj, map, classes[class_id].first_pin);
    }
}

} // namespace

void NL_take_sdb_ports(NL_DESIGN &design, NL_MODULE &module, const SDB_HANDLE *handle) {
    read_ports(design, handle, module, handle->path);
    for (NL_PORT &port : module.ports)
        port.net = NL_NONE;
    module.defined = true;
    module.is_cell = SDB_table_count(handle, SDB_OBJ_TAB) == 0;
}

void NL_read_sdb_ports(NL_DESIGN &design, NL_MODULE &module, const std::string &path) {
    SDB_HANDLE *handle = open_file(path);
    NL_take_sdb_ports(design, module, handle);
    SDB_close(handle, 0);
}

void NL_read_sdb(NL_DESIGN &design, NL_MODULE &module, const std::string &path,
                 const std::function<int32_t(int32_t name)> &find_def) {
    SDB_HANDLE *handle = open_file(path);
    read_ports(design, handle, module, path);
    module.defined = true;
    module.is_cell = SDB_table_count(handle, SDB_OBJ_TAB) == 0;
    if (!module.is_cell) {
        read_nets(design, handle, module);
        read_instances(design, handle, module, path, find_def);
    }
    SDB_close(handle, 0);
}
