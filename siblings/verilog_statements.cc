// Declared names, instances and assigns of a module's body.
#include "siblings/tool.hh"
#include "siblings/verilog_reader.hh"
#include "siblings/verilog_words.hh"

namespace {

std::string shown_name(const VLOG &reader, int32_t name) {
    return NL_string(reader.design.names, name);
}

void add_nets(VLOG &reader, VLOG_DECLARATION &declaration) {
    NL_MODULE &module = *reader.module;
    declaration.first_net = static_cast<int32_t>(module.nets.size());
    if (!declaration.vector) {
        NL_add_net(module, declaration.name);
        return;
    }
    std::string base = shown_name(reader, declaration.name);
    int32_t step = declaration.left >= declaration.right ? -1 : 1;
    for (int32_t index = declaration.left;; index += step) {
        NL_add_net(module, NL_bit_name(reader.design.names, base, index));
        if (index == declaration.right)
            break;
    }
}

void add_connection(VLOG &reader, int32_t pin, char close) {
    VLOG_MODULE &record = *reader.record;
    VLOG_CONNECTION connection = {pin, static_cast<int32_t>(record.bits.size()), 0, true};
    if (!VLOG_is_symbol(reader, close) && !VLOG_is_symbol(reader, ','))
        connection.sized = VLOG_expression(reader, record.bits);
    connection.count = static_cast<int32_t>(record.bits.size()) - connection.first_bit;
    record.connections.push_back(connection);
}

void connections(VLOG &reader) {
    VSCAN &scan = reader.scan;
    VLOG_expect_symbol(reader, '(', "the connections of an instance");
    if (VLOG_is_symbol(reader, ')')) {
        VSCAN_next(scan);
        return;
    }
    bool named = VLOG_is_symbol(reader, '.');
    for (;;) {
        if (named) {
            VLOG_expect_symbol(reader, '.', "a connection by name");
            int32_t pin = VLOG_take_name(reader, "a pin");
            VLOG_expect_symbol(reader, '(', "a connection by name");
            add_connection(reader, pin, ')');
            VLOG_expect_symbol(reader, ')', "a connection by name");
        } else {
            add_connection(reader, NL_NONE, ')');
        }
        if (!VLOG_is_symbol(reader, ','))
            break;
        VSCAN_next(scan);
    }
    VLOG_expect_symbol(reader, ')', "the connections of an instance");
}

// Marks the name as that of the instance that is about to be added.
void check_instance_name(VLOG &reader, int32_t name) {
    auto &instance_of_name = reader.scratch.instance_of_name;
    auto &instances = reader.module->instances;
    if (static_cast<size_t>(name) >= instance_of_name.size())
        instance_of_name.resize(reader.design.names.texts.size() * 2, -1);
    int32_t &place = instance_of_name[static_cast<size_t>(name)];
    if (place >= 0 && static_cast<size_t>(place) < instances.size() &&
        instances[static_cast<size_t>(place)].name == name)
        VSCAN_fail(reader.scan, "two instances have the name '%s'.", shown_name(reader, name).c_str());
    place = static_cast<int32_t>(instances.size());
}

} // namespace

VLOG_DECLARATION *VLOG_find_declaration(VLOG &reader, int32_t name) {
    VLOG_SCRATCH &scratch = reader.scratch;
    if (static_cast<size_t>(name) >= scratch.declaration_of_name.size())
        return nullptr;
    int32_t place = scratch.declaration_of_name[static_cast<size_t>(name)];
    if (place < 0 || static_cast<size_t>(place) >= scratch.declarations.size() ||
        scratch.declarations[static_cast<size_t>(place)].name != name)
        return nullptr;
    return &scratch.declarations[static_cast<size_t>(place)];
}

// A port is often declared twice, for its direction and as a wire; both have to agree. In a library cell only
// the ports matter, and what stands beside them is not looked at.
VLOG_DECLARATION &VLOG_declare(VLOG &reader, int32_t name, bool vector, int32_t left, int32_t right,
                               bool implicit) {
    VLOG_SCRATCH &scratch = reader.scratch;
    if (VLOG_DECLARATION *found = VLOG_find_declaration(reader, name)) {
        if (found->vector != vector || found->left != left || found->right != right)
            VSCAN_fail(reader.scan, "'%s' is declared or used twice, with different bounds.",
                       shown_name(reader, name).c_str());
        found->implicit = false;
        return *found;
    }
    if (static_cast<size_t>(name) >= scratch.declaration_of_name.size())
        scratch.declaration_of_name.resize(reader.design.names.texts.size() * 2, -1);
    scratch.declaration_of_name[static_cast<size_t>(name)] =
        static_cast<int32_t>(scratch.declarations.size());
    scratch.declarations.push_back({name, NL_NONE, 0, vector, implicit, left, right, reader.scan.token.line});
    VLOG_DECLARATION &declaration = scratch.declarations.back();
    add_nets(reader, declaration);
    return declaration;
}

int32_t VLOG_width(const VLOG_DECLARATION &declaration) {
    int32_t span = declaration.left - declaration.right;
    return (span < 0 ? -span : span) + 1;
}

int32_t VLOG_unknown_net(VLOG &reader) {
    VLOG_SCRATCH &scratch = reader.scratch;
    if (scratch.unknown_net == NL_NONE) {
        int32_t name = NL_name(reader.design.names, NL_UNKNOWN_NET);
        VLOG_DECLARATION *found = VLOG_find_declaration(reader, name);
        if (found == nullptr)
            found = &VLOG_declare(reader, name, false, 0, 0, true);
        scratch.unknown_net = found->first_net;
    }
    return scratch.unknown_net;
}

void VLOG_instances(VLOG &reader) {
    VSCAN &scan = reader.scan;
    int32_t cell = VLOG_take_name(reader, "a cell");
    if (VLOG_is_symbol(reader, '#'))
        VSCAN_fail(scan, "an instance of '%s' has parameters; a netlist can't hold them.",
                   shown_name(reader, cell).c_str());
    int32_t def = NL_module(reader.design, cell);
    for (;;) {
        VLOG_INSTANCE record = {static_cast<int32_t>(reader.record->connections.size()), 0,
                                scan.sources.back().file, scan.token.line};
        int32_t name = VLOG_take_name(reader, "the name of an instance");
        if (VLOG_is_symbol(reader, '['))
            VSCAN_fail(scan, "'%s' is an array of instances, which can't be read.",
                       shown_name(reader, name).c_str());
        check_instance_name(reader, name);
        connections(reader);
        record.connection_count =
            static_cast<int32_t>(reader.record->connections.size()) - record.first_connection;
        reader.record->instances.push_back(record);
        reader.module->instances.push_back({name, NL_NONE, def, NL_NONE});
        if (!VLOG_is_symbol(reader, ','))
            break;
        VSCAN_next(scan);
    }
    VLOG_expect_symbol(reader, ';', "an instance");
}

void VLOG_assign(VLOG &reader) {
    VSCAN_next(reader.scan);
    for (;;) {
        std::vector<int32_t> left, right;
        VLOG_expression(reader, left);
        if (!VLOG_is_symbol(reader, '='))
            VSCAN_fail(reader.scan, "found %s where '=' of an assign was expected.",
                       VSCAN_shown(reader.scan).c_str());
        VSCAN_next(reader.scan);
        bool sized = VLOG_expression(reader, right);
        VLOG_join(reader, left, right, sized);
        if (!VLOG_is_symbol(reader, ','))
            break;
        VSCAN_next(reader.scan);
    }
    VLOG_expect_symbol(reader, ';', "an assign");
}

void VLOG_join(VLOG &reader, const std::vector<int32_t> &left, std::vector<int32_t> &right, bool sized) {
    VLOG_SCRATCH &scratch = reader.scratch;
    reader.record->assign_count++;
    if (right.size() > left.size() && sized)
        VSCAN_fail(reader.scan, "an assign of %zu bits to %zu bits.", right.size(), left.size());
    if (right.size() > left.size())
        right.erase(right.begin(), right.end() - static_cast<std::ptrdiff_t>(left.size()));
    right.insert(right.begin(), left.size() - right.size(), NL_GND);
    for (size_t i = 0; i < left.size(); i++) {
        if (left[i] <= NL_VCC)
            VSCAN_fail(reader.scan, "the left side of an assign is no net.");
        size_t net = static_cast<size_t>(left[i]);
        if (net >= scratch.assigned.size())
            scratch.assigned.resize(reader.module->nets.size());
        if (scratch.assigned[net])
            VSCAN_fail(reader.scan, "the net '%s' is assigned twice.",
                       shown_name(reader, reader.module->nets[net].name).c_str());
        scratch.assigned[net] = true;
        if (right[i] != NL_NONE)
            scratch.joined.emplace_back(left[i], right[i]);
    }
}
