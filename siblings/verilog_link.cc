// Instances meet their modules, connections their pins.
#include "siblings/tool.hh"
#include "siblings/verilog_reader.hh"

#include <algorithm>

namespace {

struct PLACE {
    const VLOG &reader;
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

// The first of a connection's bits that are for this instance. An array takes a connection that is as wide as
// one of its instances for each, or one as wide as all of them in slices.
int32_t first_bit(const PLACE &place, const NL_MODULE &def, const NL_GROUP &group,
                  const VLOG_CONNECTION &connection, const std::vector<int32_t> &bits) {
    const VLOG_INSTANCE &record = place.record;
    bool sliced = record.array_size > 0 && connection.count == int64_t{record.array_size} * group.count &&
                  connection.sized;
    if (sliced)
        return record.first_bit + connection.first_bit + (record.array_size - 1 - record.place) * group.count;
    auto all_alike = [&] {
        auto first = bits.begin() + record.first_bit + connection.first_bit;
        return std::all_of(first, first + connection.count, [&](int32_t net) { return net == *first; });
    };
    if (connection.count < group.count || (connection.count > group.count && connection.sized) ||
        (!connection.sized && record.array_size > 1 && !all_alike()))
        fail_at(place, "the pin '" + shown_name(place, group.name) + "'" + of_instance(place, def) + " has " +
                           std::to_string(group.count) + " bits, its connection " +
                           std::to_string(connection.count) + ".");
    // What is too long is a number without a size; its low bits stand last.
    return record.first_bit + connection.first_bit + connection.count - group.count;
}

void connect(const PLACE &place, NL_MODULE &module, const NL_MODULE &def, const NL_GROUP &group,
             const VLOG_CONNECTION &connection, const std::vector<int32_t> &bits) {
    if (connection.count == 0)
        return;
    size_t first = static_cast<size_t>(first_bit(place, def, group, connection, bits));
    for (int32_t i = 0; i < group.count; i++) {
        int32_t net = bits[first + static_cast<size_t>(i)];
        int32_t &pin = module.pins[static_cast<size_t>(place.instance.first_pin + group.first + i)];
        if (pin != NL_NONE)
            fail_at(place, "the pin '" + shown_name(place, group.name) + "'" + of_instance(place, def) +
                               " is connected twice.");
        pin = place.record.place == 0 ? net : VLOG_own_net(place.reader.design, module, net);
    }
}

void check_parameters(const PLACE &place, const NL_MODULE &def, std::unordered_set<int32_t> &warned) {
    if (!place.record.parameters)
        return;
    if (!def.is_cell)
        fail_at(place, "the parameters" + of_instance(place, def) + " can't be left away: it is no cell.");
    if (warned.insert(def.name).second)
        TOOL_warn(place.reader.scan.files[static_cast<size_t>(place.record.file)], place.record.line,
                  "the parameters of the instances of '%s' are left away.",
                  shown_name(place, def.name).c_str());
}

// The work on one module. Instances that share connections have one module, so that the ports of these are
// looked up once.
struct LINKER {
    VLOG &reader;
    NL_MODULE &module;
    const VLOG_MODULE &record;
    const std::function<bool(NL_MODULE &)> &find_cell;
    std::unordered_set<int32_t> &warned;
    std::vector<NL_GROUP> ports_of_connection{}; // no ports in one that has not been met
};

void link_instance(LINKER &linker, size_t index) {
    VLOG &reader = linker.reader;
    NL_MODULE &module = linker.module;
    const VLOG_MODULE &record = linker.record;
    NL_INSTANCE &instance = module.instances[index];
    PLACE place = {reader, record.instances[index], instance};
    NL_MODULE &def = reader.design.modules[static_cast<size_t>(instance.def)];
    if (!def.defined && !linker.find_cell(def))
        fail_at(place, "the cell '" + shown_name(place, def.name) + "' of instance '" +
                           shown_name(place, instance.name) +
                           "' is unknown: no module of that name and no '" + shown_name(place, def.name) +
                           ".sdb' on the search path.");
    check_parameters(place, def, linker.warned);
    VLOG_check_count(reader, module.pins.size() + def.ports.size(), "pins", place.record.line);
    instance.first_pin = static_cast<int32_t>(module.pins.size());
    module.pins.resize(module.pins.size() + def.ports.size(), NL_NONE);
    const VLOG_INSTANCE &raw = place.record;
    for (int32_t i = 0; i < raw.connection_count; i++) {
        auto row = static_cast<size_t>(raw.first_connection + i);
        const VLOG_CONNECTION &connection = record.connections[row];
        NL_GROUP &group = linker.ports_of_connection[row];
        if (group.count == 0)
            group = connected_ports(place, def, connection, i);
        connect(place, module, def, group, connection, record.bits);
    }
}

void link_instances(LINKER linker) {
    linker.ports_of_connection.resize(linker.record.connections.size());
    linker.module.pins.reserve(linker.record.bits.size());
    for (size_t i = 0; i < linker.module.instances.size(); i++)
        link_instance(linker, i);
}

// Nets that are being made one, each set with the port that drives it from outside.
struct JOINER {
    const VLOG &reader;
    const NL_MODULE &module;
    NL_UNION sets{};
    std::vector<int32_t> source{};    // by root: a port that is no output, or NL_NONE
    std::vector<NL_ASSIGN> assigns{}; // between power ports
};

const NL_PORT &source_port(const JOINER &joiner, int32_t port) {
    return joiner.module.ports[static_cast<size_t>(port)];
}

const char *kind_of(const NL_PORT &port) {
    return port.direction == NL_BIDI ? "inout" : "input";
}

[[noreturn]] void refuse_join(const JOINER &joiner, const VLOG_JOIN &join, const std::string &what) {
    TOOL_fail(joiner.reader.scan.files[static_cast<size_t>(join.file)], join.line,
              "the assigns of module '%s' join %s",
              NL_string(joiner.reader.design.names, joiner.module.name).c_str(), what.c_str());
}

// Two ports that drive one net from outside must both be power.
void check_sources(const JOINER &joiner, const VLOG_JOIN &join, const NL_PORT &a, const NL_PORT &b) {
    if ((a.marks & b.marks & NL_MARK_POWER) != 0)
        return;
    const NL_NAMES &names = joiner.reader.design.names;
    std::string kinds = a.direction == b.direction
                            ? std::string("two ") + kind_of(a) + "s"
                            : std::string("an ") + kind_of(a) + " and an " + kind_of(b);
    bool inout = a.direction == NL_BIDI || b.direction == NL_BIDI;
    std::string name_a = NL_string(names, a.name), name_b = NL_string(names, b.name);
    refuse_join(joiner, join,
                kinds + ", '" + name_a + "' and '" + name_b + "'." +
                    (inout ? " If both are power: -power " + name_a + "," + name_b + "." : ""));
}

void join_pair(JOINER &joiner, const VLOG_JOIN &join) {
    int32_t a = NL_union_find(joiner.sets, join.left);
    int32_t b = NL_union_find(joiner.sets, join.right);
    if (a == b)
        return;
    int32_t source_a = joiner.source[static_cast<size_t>(a)];
    int32_t source_b = joiner.source[static_cast<size_t>(b)];
    int32_t source = source_a != NL_NONE ? source_a : source_b;
    if (a <= NL_VCC && b <= NL_VCC)
        refuse_join(joiner, join, "the constants 0 and 1.");
    if ((a <= NL_VCC || b <= NL_VCC) && source != NL_NONE)
        refuse_join(joiner, join,
                    std::string("an ") + kind_of(source_port(joiner, source)) + " with a constant, '" +
                        NL_string(joiner.reader.design.names, source_port(joiner, source).name) + "'.");
    if (source_a != NL_NONE && source_b != NL_NONE) {
        check_sources(joiner, join, source_port(joiner, source_a), source_port(joiner, source_b));
        joiner.assigns.push_back({join.left, join.right});
        return;
    }
    NL_union_join(joiner.sets, a, b);
    joiner.source[static_cast<size_t>(NL_union_find(joiner.sets, a))] = source;
}

// Nets that an assign makes one become one once the pins are on them.
void join_nets(VLOG &reader, NL_MODULE &module, const VLOG_MODULE &record) {
    if (record.joined.empty())
        return;
    JOINER joiner{reader, module};
    NL_union_init(joiner.sets, module.nets.size());
    joiner.source.assign(module.nets.size(), NL_NONE);
    for (size_t i = 0; i < module.ports.size(); i++)
        if (module.ports[i].direction != NL_OUTPUT)
            joiner.source[static_cast<size_t>(module.ports[i].net)] = static_cast<int32_t>(i);
    for (const VLOG_JOIN &join : record.joined)
        join_pair(joiner, join);
    module.assigns = std::move(joiner.assigns);
    NL_merge_nets(module, joiner.sets);
    NL_name_port_nets(reader.design, module);
}

void name_unknown_nets(NL_DESIGN &design, NL_MODULE &module) {
    std::unordered_set<int32_t> taken;
    for (NL_NET &net : module.nets)
        if ((net.marks & NL_MARK_DONT_CARE) != 0)
            net.name = NL_new_name(design, module, taken, NL_UNKNOWN_NET);
}

void check_outputs(VLOG &reader, const NL_MODULE &module, const VLOG_MODULE &record) {
    for (size_t i = 0; i < module.instances.size(); i++) {
        const NL_INSTANCE &instance = module.instances[i];
        const NL_MODULE &def = reader.design.modules[static_cast<size_t>(instance.def)];
        const int32_t *pins = module.pins.data() + instance.first_pin;
        for (size_t port = 0; port < def.ports.size(); port++) {
            if (pins[port] == NL_NONE || pins[port] > NL_VCC || def.ports[port].direction != NL_OUTPUT)
                continue;
            PLACE place = {reader, record.instances[i], instance};
            fail_at(place, "the output '" + shown_name(place, def.ports[port].name) + "'" +
                               of_instance(place, def) + " is connected to a constant.");
        }
    }
}

} // namespace

void VLOG_link(VLOG &reader, const std::function<bool(NL_MODULE &)> &find_cell) {
    std::unordered_set<int32_t> warned;
    reader.scratch = {}; // all is read
    for (VLOG_MODULE &record : reader.modules) {
        NL_MODULE &module = reader.design.modules[static_cast<size_t>(record.module)];
        link_instances({reader, module, record, find_cell, warned});
        record.bits = {};
        record.connections = {};
        join_nets(reader, module, record);
        name_unknown_nets(reader.design, module);
        check_outputs(reader, module, record);
        record.instances = {};
    }
}
