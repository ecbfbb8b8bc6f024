// Reading SDB files into modules.
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/sdb_marks.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <span>
#include <unordered_map>

namespace {

// A file that is being read, and the names that its symbols are in the design.
struct READER {
    NL_DESIGN &design;
    NL_MODULE &module;
    const std::string &path;
    const SDB_HANDLE *handle;
    std::vector<int32_t> names; // by symbol; NL_NONE where it has not been asked for
};

template <class T> std::span<const T> rows(const READER &reader, int32_t table) {
    return {SDB_table<T>(reader.handle, table), static_cast<size_t>(SDB_table_count(reader.handle, table))};
}

READER start_reading(NL_DESIGN &design, NL_MODULE &module, const std::string &path,
                     const SDB_HANDLE *handle) {
    auto symbols = static_cast<size_t>(SYM_count(handle->symbols));
    return {design, module, path, handle, std::vector<int32_t>(symbols, NL_NONE)};
}

SDB_HANDLE *open_file(const std::string &path) {
    SDB_HANDLE *handle = SDB_open(path.c_str(), "r", 0);
    if (handle == nullptr)
        TOOL_fail(path, 0, "this SDB file can't be read.");
    return handle;
}

// Looks up every name of the file at once, which is faster than one by one where most of them are needed.
void read_symbols(READER &reader) {
    NL_reserve_names(reader.design.names, reader.names.size());
    std::string_view texts[NL_NAMES_AT_ONCE];
    for (size_t from = 0; from < reader.names.size(); from += NL_NAMES_AT_ONCE) {
        size_t count = std::min(NL_NAMES_AT_ONCE, reader.names.size() - from);
        for (size_t i = 0; i < count; i++)
            texts[i] = SYM_get(reader.handle->symbols, static_cast<int32_t>(from + i));
        NL_name_all(reader.design.names, {texts, count}, {reader.names.data() + from, count});
    }
}

// The name of a symbol, or NL_NONE.
int32_t name_of_symbol(READER &reader, int32_t symbol) {
    if (symbol < 0 || static_cast<size_t>(symbol) >= reader.names.size())
        return NL_NONE;
    int32_t &name = reader.names[static_cast<size_t>(symbol)];
    if (name == NL_NONE)
        name = NL_name(reader.design.names, SYM_get(reader.handle->symbols, symbol));
    return name;
}

int32_t needed_name(READER &reader, int32_t symbol) {
    int32_t name = name_of_symbol(reader, symbol);
    if (name == NL_NONE)
        TOOL_fail(reader.path, 0, "the SDB file holds a port, pin or class without a name.");
    return name;
}

// The name of object or net `id`; names with a path are composed by `text_of`. NL_NONE when there is none.
int32_t name_of_entry(READER &reader, int32_t table, int32_t id,
                      const char *(*text_of)(const SDB_HANDLE *, int32_t)) {
    auto entries = rows<int32_t>(reader, table);
    if (static_cast<size_t>(id) < entries.size() && entries[static_cast<size_t>(id)] >= 0)
        return name_of_symbol(reader, entries[static_cast<size_t>(id)]);
    const char *text = text_of(reader.handle, id);
    return text != nullptr ? NL_name(reader.design.names, text) : NL_NONE;
}

NL_PORT port_of(READER &reader, const SDB_PORT &port) {
    int32_t direction = port.flags & SDB_DIRECTION_MASK;
    if (direction == SDB_DIRECTION_MASK)
        TOOL_fail(reader.path, 0, "the SDB file holds a port without a direction.");
    int32_t net = port.node < 0 ? NL_NONE : SDB_table<SDB_NODE>(reader.handle, SDB_NODE_TAB)[port.node].net;
    return {needed_name(reader, port.name), direction, net};
}

// The ports in the order of the list that the writer keeps, where it names every port.
void read_ports(READER &reader) {
    const SDB_HANDLE *handle = reader.handle;
    NL_MODULE &module = reader.module;
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
            module.ports.push_back(port_of(reader, ports[i]));
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
    if (!NL_close_ports(reader.design, module, twice))
        TOOL_fail(reader.path, 0, "the SDB file holds two ports '%s'.",
                  NL_string(reader.design.names, twice).c_str());
}

void read_nets(READER &reader) {
    NL_MODULE &module = reader.module;
    int32_t count = SDB_table_count(reader.handle, SDB_NET_TAB);
    module.nets.reserve(static_cast<size_t>(std::max(count, 2)));
    for (int32_t i = NL_VCC + 1; i < count; i++) {
        int32_t name = name_of_entry(reader, SDB_SNET_TAB, i, SDB_net_name);
        if (name == NL_NONE)
            name = NL_name(reader.design.names, "net_" + std::to_string(i));
        NL_add_net(module, name);
    }
    int32_t left = NL_NONE;
    MARKS_read(reader.handle, [&](MARK_KIND kind, int32_t id, uint8_t marks) {
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
    size_t port_count = 0; // of the module
    int32_t first_pin = 0; // of the class
    std::vector<int32_t> port_of_pin;
};

void take_class_ports(READER &reader, const SDB_CLASS &row, NL_MODULE &def) {
    const SDB_PIN *pins = SDB_table<SDB_PIN>(reader.handle, SDB_PIN_TAB);
    for (int32_t i = 0; i < row.pin_count; i++) {
        const SDB_PIN &pin = pins[row.first_pin + i];
        def.ports.push_back({needed_name(reader, pin.name), pin.direction & SDB_DIRECTION_MASK, NL_NONE});
    }
    def.defined = true;
    def.is_cell = row.type != SDB_KIND_DESIGN;
    int32_t twice = NL_NONE;
    if (!NL_close_ports(reader.design, def, twice))
        TOOL_fail(reader.path, 0, "the class '%s' holds two pins '%s'.",
                  NL_string(reader.design.names, def.name).c_str(),
                  NL_string(reader.design.names, twice).c_str());
}

CLASS_MAP map_class(READER &reader, const SDB_CLASS &row, const std::function<int32_t(int32_t)> &find_def) {
    CLASS_MAP map;
    map.def = find_def(needed_name(reader, row.name));
    NL_MODULE &def = reader.design.modules[static_cast<size_t>(map.def)];
    if (!def.defined)
        take_class_ports(reader, row, def);
    map.port_count = def.ports.size();
    const SDB_PIN *pins = SDB_table<SDB_PIN>(reader.handle, SDB_PIN_TAB);
    for (int32_t i = 0; i < row.pin_count; i++) {
        int32_t name = needed_name(reader, pins[row.first_pin + i].name);
        int32_t port = NL_find_port(def, name);
        if (port == NL_NONE)
            TOOL_fail(reader.path, 0, "'%s' has no port '%s', which its instances here have as a pin.",
                      NL_string(reader.design.names, def.name).c_str(),
                      NL_string(reader.design.names, name).c_str());
        map.port_of_pin.push_back(port);
    }
    map.first_pin = row.first_pin;
    return map;
}

// The sources stand first of all objects.
bool is_constant_source(const SDB_HANDLE *handle, int32_t obj) {
    const char *class_name = obj < 2 ? SDB_obj_class_name(handle, obj) : nullptr;
    return class_name != nullptr &&
           (same_text(class_name, NL_SOURCE_CLASS_0) || same_text(class_name, NL_SOURCE_CLASS_1));
}

void read_instance(READER &reader, int32_t obj, int32_t name, const CLASS_MAP &map) {
    NL_MODULE &module = reader.module;
    auto first_pin = static_cast<int32_t>(module.pins.size());
    module.pins.resize(module.pins.size() + map.port_count, NL_NONE);
    const SDB_NODE *nodes = SDB_table<SDB_NODE>(reader.handle, SDB_NODE_TAB);
    int32_t first_node = SDB_table<SDB_OBJ>(reader.handle, SDB_OBJ_TAB)[obj].first_node;
    for (int32_t node = first_node; node >= 0 && nodes[node].obj == obj; node++) {
        int64_t number = int64_t{nodes[node].pin} - map.first_pin;
        if (number < 0 || number >= static_cast<int64_t>(map.port_of_pin.size()))
            continue;
        int32_t port = map.port_of_pin[static_cast<size_t>(number)];
        module.pins[static_cast<size_t>(first_pin + port)] = nodes[node].net;
    }
    module.instances.push_back({name, NL_NONE, map.def, first_pin});
}

void read_instances(READER &reader, const std::function<int32_t(int32_t)> &find_def) {
    auto objects = rows<SDB_OBJ>(reader, SDB_OBJ_TAB);
    auto classes = rows<SDB_CLASS>(reader, SDB_CLASS_TAB);
    reader.module.instances.reserve(objects.size());
    // Each pin has its node.
    reader.module.pins.reserve(rows<SDB_NODE>(reader, SDB_NODE_TAB).size());
    std::vector<CLASS_MAP> maps(classes.size());
    for (int32_t obj = 0; obj < static_cast<int32_t>(objects.size()); obj++) {
        int32_t class_id = objects[static_cast<size_t>(obj)].class_id;
        if (class_id < 0 || is_constant_source(reader.handle, obj))
            continue;
        int32_t name = name_of_entry(reader, SDB_SOBJ_TAB, obj, SDB_obj_name);
        if (name == NL_NONE)
            continue;
        CLASS_MAP &map = maps[static_cast<size_t>(class_id)];
        if (map.def == NL_NONE)
            map = map_class(reader, classes[static_cast<size_t>(class_id)], find_def);
        read_instance(reader, obj, name, map);
    }
}

void take_ports(READER &reader) {
    read_ports(reader);
    reader.module.defined = true;
    reader.module.is_cell = SDB_table_count(reader.handle, SDB_OBJ_TAB) == 0;
}

} // namespace

void NL_take_sdb_ports(NL_DESIGN &design, NL_MODULE &module, const SDB_HANDLE *handle) {
    READER reader = start_reading(design, module, handle->path, handle);
    take_ports(reader);
    for (NL_PORT &port : module.ports)
        port.net = NL_NONE;
}

void NL_read_sdb_ports(NL_DESIGN &design, NL_MODULE &module, const std::string &path) {
    SDB_HANDLE *handle = open_file(path);
    NL_take_sdb_ports(design, module, handle);
    SDB_close(handle, 0);
}

void NL_read_sdb(NL_DESIGN &design, NL_MODULE &module, const std::string &path,
                 const std::function<int32_t(int32_t name)> &find_def) {
    SDB_HANDLE *handle = open_file(path);
    READER reader = start_reading(design, module, path, handle);
    take_ports(reader);
    if (!module.is_cell) {
        read_symbols(reader);
        read_nets(reader);
        read_instances(reader, find_def);
    }
    SDB_close(handle, 0);
}
