// Instances meet their modules, connections their pins.
#include "siblings/tool.hh"
#include "siblings/verilog_reader.hh"

#include <algorithm>

namespace {

struct PLACE {
    const VLOG &reader;
    const NL_MODULE &module;
    const VLOG_INSTANCE &record;
    const NL_INSTANCE &instance;
};

std::string shown_name(const PLACE &place, int32_t name) {
    return NL_string(place.reader.design.names, name);
}

[[noreturn]] void fail_at(const PLACE &place, const std::string &text) {
    const std::string &file = place.reader.scan.files[static_cast<size_t>(place.record.file)];
    TOOL_fail(file, place.record.line, "%s", text.c_str());
}

std::string of_instance(const PLACE &place, const NL_MODULE &def) {
    return " of instance '" + shown_name(place, place.instance.name) + "' (" + shown_name(place, def.name) +
           ")";
}

// The ports that a connection speaks of.
NL_GROUP connected_ports(const PLACE &place, const NL_MODULE &def, const VLOG_CONNECTION &connection,
                         int32_t index) {
    if (connection.pin == NL_NONE) {
        if (static_cast<size_t>(index) >= def.groups.size())
            fail_at(place, "there are more connections than ports" + of_instance(place, def) + ".");
        return def.groups[static_cast<size_t>(index)];
    }
    int32_t port = NL_find_port(def, connection.pin);
    if (port != NL_NONE)
        return {connection.pin, port, 1, false, 0, 0};
    auto group = def.group_of_name.find(connection.pin);
    if (group == def.group_of_name.end())
        fail_at(place, "there is no pin '" + shown_name(place, connection.pin) + "'" +
                           of_instance(place, def) + ".");
    return def.groups[static_cast<size_t>(group->second)];
}

void connect(const PLACE &place, const NL_MODULE &def, const NL_GROUP &group,
             const VLOG_CONNECTION &connection, const std::vector<int32_t> &bits, int32_t *pins) {
    if (connection.count == 0)
        return;
    if (connection.count < group.count || (connection.count > group.count && connection.sized))
        fail_at(place, "the pin '" + shown_name(place, group.name) + "'" + of_instance(place, def) + " has " +
                           std::to_string(group.count) + " bits, its connection " +
                           std::to_string(connection.count) + ".");
    // What is too long is a number without a size; its low bits stand last.
    const int32_t *nets = &bits[static_cast<size_t>(connection.first_bit + connection.count - group.count)];
    for (int32_t i = 0; i < group.count; i++) {
        int32_t port = group.first + i;
        if (pins[port] != NL_NONE)
            fail_at(place, "the pin '" + shown_name(place, group.name) + "'" + of_instance(place, def) +
                               " is connected twice.");
        pins[port] = nets[i];
    }
}

void link_instance(VLOG &reader, NL_MODULE &module, const VLOG_MODULE &record, size_t index,
                   const std::function<bool(NL_MODULE &)> &find_cell) {
    NL_INSTANCE &instance = module.instances[index];
    PLACE place = {reader, module, record.instances[index], instance};
    NL_MODULE &def = reader.design.modules[static_cast<size_t>(instance.def)];
    if (!def.defined && !find_cell(def))
        fail_at(place, "the cell '" + shown_name(place, def.name) + "' of instance '" +
                           shown_name(place, instance.name) +
                           "' is unknown: no module of that name and no '" + shown_name(place, def.name) +
                           ".sdb' on the search path.");
    instance.first_pin = static_cast<int32_t>(module.pins.size());
    module.pins.resize(module.pins.size() + def.ports.size(), NL_NONE);
    const VLOG_INSTANCE &raw = place.record;
    for (int32_t i = 0; i < raw.connection_count; i++) {
        const VLOG_CONNECTION &connection = record.connections[static_cast<size_t>(raw.first_connection + i)];
        NL_GROUP group = connected_ports(place, def, connection, i);
        connect(place, def, group, connection, record.bits, module.pins.data() + instance.first_pin);
    }
}

// Nets that an assign makes one become one once the pins are on them.
void join_nets(VLOG &reader, NL_MODULE &module, const VLOG_MODULE &record) {
    if (record.joined.empty())
        return;
    NL_UNION sets;
    NL_union_init(sets, module.nets.size());
    for (auto [a, b] : record.joined)
        NL_union_join(sets, a, b);
    auto refuse = [&](const char *what) {
        TOOL_fail(reader.scan.files[static_cast<size_t>(record.file)], record.line,
                  "the assigns of module '%s' %s.", NL_string(reader.design.names, module.name).c_str(),
                  what);
    };
    if (NL_union_find(sets, NL_VCC) == NL_GND)
        refuse("join the constants 0 and 1");
    std::unordered_map<int32_t, int32_t> sources;
    for (const NL_PORT &port : module.ports) {
        int32_t root = NL_union_find(sets, port.net);
        if (port.direction != NL_OUTPUT && (root <= NL_VCC || sources[root]++ > 0))
            refuse(root <= NL_VCC ? "join an input with a constant" : "join two inputs");
    }
    NL_merge_nets(module, sets);
    NL_name_port_nets(reader.design, module);
}

void check_outputs(VLOG &reader, const NL_MODULE &module, const VLOG_MODULE &record) {
    for (size_t i = 0; i < module.instances.size(); i++) {
        const NL_INSTANCE &instance = module.instances[i];
        const NL_MODULE &def = reader.design.modules[static_cast<size_t>(instance.def)];
        const int32_t *pins = module.pins.data() + instance.first_pin;
        for (size_t port = 0; port < def.ports.size(); port++) {
            if (pins[port] == NL_NONE || pins[port] > NL_VCC || def.ports[port].direction != NL_OUTPUT)
                continue;
            PLACE place = {reader, module, record.instances[i], instance};
            fail_at(place, "the output '" + shown_name(place, def.ports[port].name) + "'" +
                               of_instance(place, def) + " is connected to a constant.");
        }
    }
}

} // namespace

void VLOG_link(VLOG &reader, const std::function<bool(NL_MODULE &)> &find_cell) {
    for (VLOG_MODULE &record : reader.modules) {
        NL_MODULE &module = reader.design.modules[static_cast<size_t>(record.module)];
        for (size_t i = 0; i < module.instances.size(); i++)
            link_instance(reader, module, record, i, find_cell);
        join_nets(reader, module, record);
        check_outputs(reader, module, record);
        record.bits = {};
        record.connections = {};
    }
}
