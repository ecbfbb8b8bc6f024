// Writing modules as SDB files.
#include "sdb/sdb_writer.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/sdb_marks.hh"
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

// The file in work, and where things of the module are in it.
struct WRITER {
    const NL_DESIGN &design;
    const NL_MODULE &module;
    SDB_HANDLE *file;
    std::vector<int32_t> symbol_of_name;
    std::vector<int32_t> class_of_def;
    std::vector<int32_t> last_node_of_net; // end of each net's list of nodes, -1 for an empty one
    std::vector<uint8_t> net_flags;
    std::vector<int32_t> one_way_pins; // of each module: pins that are no bidirectional ones, -1 not counted
    std::vector<NODE_ON_NET> late[LEVEL_COUNT]; // nodes that come behind those of the levels before
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

bool leads_inside(const WRITER &writer, const NL_INSTANCE &instance, size_t pin_count) {
    for (size_t i = 0; i < pin_count; i++) {
        int32_t net = writer.module.pins[static_cast<size_t>(instance.first_pin) + i];
        if (net > NL_VCC && (writer.net_flags[static_cast<size_t>(net)] & HAS_PORT) == 0)
            return true;
    }
    return false;
}

NODE_LEVEL level_of_pin(WRITER &writer, const NL_INSTANCE &instance, bool inside, int32_t direction) {
    if (inside)
        return LEADS_INSIDE;
    int32_t &count = writer.one_way_pins[static_cast<size_t>(instance.def)];
    if (count < 0) {
        count = 0;
        for (const NL_PORT &port : writer.design.modules[static_cast<size_t>(instance.def)].ports)
            count += port.direction != NL_BIDI;
    }
    return count - (direction != NL_BIDI) > 0 ? LEADS_NOWHERE : LAYOUT_ONLY;
}

// What the order on the ports' nets goes by.
void find_pads(WRITER &writer) {
    const NL_MODULE &module = writer.module;
    writer.net_flags.assign(module.nets.size(), 0);
    writer.one_way_pins.assign(writer.design.modules.size(), -1);
    for (const NL_PORT &port : module.ports)
        if (port.net > NL_VCC)
            writer.net_flags[static_cast<size_t>(port.net)] = HAS_PORT;
    for (const NL_INSTANCE &instance : module.instances) {
        if (instance.first_pin == NL_NONE)
            continue;
        const auto &ports = writer.design.modules[static_cast<size_t>(instance.def)].ports;
        bool inside = leads_inside(writer, instance, ports.size());
        for (size_t i = 0; i < ports.size(); i++) {
            int32_t net = module.pins[static_cast<size_t>(instance.first_pin) + i];
            if (net <= NL_VCC || ports[i].direction == NL_INPUT)
                continue;
            static constexpr uint8_t flags[LEVEL_COUNT] = {HAS_PAD | HAS_LIVE_PAD, HAS_PAD, 0};
            writer.net_flags[static_cast<size_t>(net)] |=
                flags[level_of_pin(writer, instance, inside, ports[i].direction)];
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

void put_pins_on_nets(WRITER &writer, const NL_INSTANCE &instance, int32_t first_node) {
    const auto &ports = writer.design.modules[static_cast<size_t>(instance.def)].ports;
    bool inside = leads_inside(writer, instance, ports.size());
    for (size_t i = 0; i < ports.size(); i++) {
        int32_t node = first_node + static_cast<int32_t>(i);
        int32_t net = writer.module.pins[static_cast<size_t>(instance.first_pin) + i];
        int32_t direction = ports[i].direction;
        uint8_t flags = net > NL_VCC ? writer.net_flags[static_cast<size_t>(net)] : uint8_t{0};
        NODE_LEVEL level = level_of_pin(writer, instance, inside, direction);
        if (may_hide_pad(flags, level, direction))
            writer.late[level].push_back({node, net});
        else
            put_on_net(writer, node, net, direction, false);
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
        put_pins_on_nets(writer, instance, SDB_obj_node(writer.file, obj, 0));
    }
    for (const std::vector<NODE_ON_NET> &nodes : writer.late)
        for (NODE_ON_NET late : nodes)
            put_on_net(writer, late.node, late.net, NL_BIDI, false);
}

} // namespace

void NL_write_sdb(const NL_DESIGN &design, const NL_MODULE &module, const std::string &path) {
    WRITER writer = {design, module, SDB_open(path.c_str(), "w", 0), {}, {}, {}, {}, {}, {}};
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
    if (!module.is_cell) {
        find_pads(writer);
        add_instances(writer);
    }
    MARKS_write(writer.file, module, [&](int32_t name) { return plain_name(writer, name); });
    ALIAS_free();
    if (SDB_save(writer.file) != 0)
        TOOL_fail(path, 0, "this file can't be written: %s.", std::strerror(errno));
    SDB_close(writer.file, 0);
}
