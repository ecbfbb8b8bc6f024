// Writing modules as SDB files.
#include "sdb/sdb_writer.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/tool.hh"

#include "support/dyna.hh"

#include <cerrno>
#include <cstring>

namespace {

struct CONSTANT_SOURCE {
    const char *class_name;
    const char *object;
};
// In the order of the constant nets.
constexpr CONSTANT_SOURCE constant_sources[] = {{NL_SOURCE_CLASS_0, "_FORCED_0"},
                                                {NL_SOURCE_CLASS_1, "_FORCED_1"}};

// The file in work, and where things of the module are in it.
struct WRITER {
    const NL_DESIGN &design;
    const NL_MODULE &module;
    SDB_HANDLE *file;
    std::vector<int32_t> symbol_of_name;
    std::vector<int32_t> class_of_def;
    std::vector<int32_t> last_node_of_net; // end of each net's list of nodes, -1 for an empty one
};

int32_t plain_name(WRITER &writer, int32_t name) {
    int32_t &symbol = writer.symbol_of_name[static_cast<size_t>(name)];
    if (symbol < 0)
        symbol = SDB_plain_name(writer.file, NL_text(writer.design.names, name));
    return symbol;
}

int32_t name_entry(WRITER &writer, int32_t name, int32_t scope) {
    if (scope == NL_NONE)
        return plain_name(writer, name);
    return SDB_prefix_name(SDB_add_prefix(writer.file, NL_text(writer.design.names, name), scope));
}

int32_t add_class(WRITER &writer, const NL_MODULE &def) {
    std::vector<SDB_NEW_PIN> pins;
    for (const NL_PORT &port : def.ports)
        pins.push_back({NL_text(writer.design.names, port.name), port.direction});
    return SDB_add_class(writer.file, NL_text(writer.design.names, def.name),
                         def.is_cell ? SDB_KIND_CELL : SDB_KIND_DESIGN, pins);
}

// Drivers stand first on a net, so that a walk from any other pin meets the driver. The sources of the
// constants are put on their nets before all else and stay first.
void put_on_net(WRITER &writer, int32_t node, int32_t net, int32_t direction, bool is_port) {
    if (net == NL_NONE)
        return;
    SDB_NODE *nodes = SDB_table<SDB_NODE>(writer.file, SDB_NODE_TAB);
    SDB_NET &row = SDB_table<SDB_NET>(writer.file, SDB_NET_TAB)[net];
    int32_t &last = writer.last_node_of_net[static_cast<size_t>(net)];
    nodes[node].net = net;
    bool drives = direction == (is_port ? NL_INPUT : NL_OUTPUT);
    if (last < 0) {
        row.first_node = last = node;
        nodes[node].next = -1;
    } else if (drives && net > NL_VCC) {
        nodes[node].next = row.first_node;
        row.first_node = node;
    } else {
        nodes[node].next = -1;
        nodes[last].next = node;
        last = node;
    }
}

void add_constants(WRITER &writer) {
    for (const CONSTANT_SOURCE &source : constant_sources) {
        int32_t class_id =
            SDB_add_class(writer.file, source.class_name, SDB_find_class_kind("FUNCT"), {{"Q", SDB_OUTPUT}});
        SDB_add_obj(writer.file, SDB_plain_name(writer.file, source.object), class_id);
    }
}

void add_scopes(WRITER &writer) {
    // The rows stand in front of all others, so that a scope is its row.
    for (const NL_SCOPE &scope : writer.module.scopes)
        SDB_add_prefix(writer.file, NL_text(writer.design.names, scope.name), scope.parent);
}

void add_nets(WRITER &writer) {
    for (const NL_NET &net : writer.module.nets)
        SDB_add_net(writer.file, name_entry(writer, net.name, net.scope));
    writer.last_node_of_net.assign(writer.module.nets.size(), -1);
    for (int32_t constant : {NL_GND, NL_VCC})
        put_on_net(writer, SDB_obj_node(writer.file, constant, 0), constant, NL_OUTPUT, false);
}

void add_ports(WRITER &writer) {
    SDB_TABLE &order = writer.file->tables[SDB_XPORT_TAB];
    for (const NL_PORT &port : writer.module.ports) {
        int32_t id = SDB_add_port(writer.file, NL_text(writer.design.names, port.name), port.direction);
        if (!writer.module.is_cell)
            put_on_net(writer, SDB_port_node(writer.file, id), port.net, port.direction, true);
        int32_t *symbols = static_cast<int32_t *>(order.data);
        append_row(symbols, plain_name(writer, port.name));
        order.data = symbols;
        order.count = DYNA_count(symbols);
    }
}

void add_instances(WRITER &writer) {
    const NL_MODULE &module = writer.module;
    // A scope's instance is named by the scope's row.
    std::vector<int32_t> scope_of_instance(module.instances.size(), NL_NONE);
    for (size_t i = 0; i < module.scopes.size(); i++)
        scope_of_instance[static_cast<size_t>(module.scopes[i].instance)] = static_cast<int32_t>(i);
    for (size_t i = 0; i < module.instances.size(); i++) {
        const NL_INSTANCE &instance = module.instances[i];
        const NL_MODULE &def = writer.design.modules[static_cast<size_t>(instance.def)];
        int32_t &class_id = writer.class_of_def[static_cast<size_t>(instance.def)];
        if (class_id < 0)
            class_id = add_class(writer, def);
        int32_t scope = scope_of_instance[i];
        int32_t entry =
            scope != NL_NONE ? SDB_prefix_name(scope) : name_entry(writer, instance.name, instance.scope);
        int32_t obj = SDB_add_obj(writer.file, entry, class_id);
        if (instance.first_pin == NL_NONE || def.ports.empty())
            continue;
        int32_t node = SDB_obj_node(writer.file, obj, 0);
        for (size_t port = 0; port < def.ports.size(); port++)
            put_on_net(writer, node + static_cast<int32_t>(port),
                       module.pins[static_cast<size_t>(instance.first_pin) + port], def.ports[port].direction,
                       false);
    }
}

} // namespace

void NL_write_sdb(const NL_DESIGN &design, const NL_MODULE &module, const std::string &path) {
    WRITER writer = {design, module, SDB_open(path.c_str(), "w", 0), {}, {}, {}};
    if (writer.file == nullptr)
        TOOL_fail(path, 0, "this file can't be written: %s.", std::strerror(errno));
    writer.symbol_of_name.assign(design.names.texts.size(), -1);
    writer.class_of_def.assign(design.modules.size(), -1);
    if (module.is_cell) {
        add_class(writer, module);
    } else {
        add_constants(writer);
        add_scopes(writer);
        add_nets(writer);
    }
    add_ports(writer);
    if (!module.is_cell)
        add_instances(writer);
    ALIAS_free();
    if (SDB_save(writer.file) != 0)
        TOOL_fail(path, 0, "this file can't be written: %s.", std::strerror(errno));
    SDB_close(writer.file, 0);
}
