// Declared names, instances and assigns of a module's body.
#include "siblings/netlist_sdb.hh"
#include "siblings/tool.hh"
#include "siblings/verilog_reader.hh"
#include "siblings/verilog_words.hh"

#include <algorithm>

namespace {

void add_nets(VLOG &reader, VLOG_DECLARATION &declaration) {
    NL_MODULE &module = *reader.module;
    VLOG_check_count(reader, module.nets.size() + static_cast<size_t>(VLOG_width(declaration)), "nets",
                     reader.scan.token.line);
    declaration.first_net = static_cast<int32_t>(module.nets.size());
    if (!declaration.vector) {
        NL_BIT bit;
        bool whole = NL_parse_bit(NL_text(reader.design.names, declaration.name), bit);
        NL_add_net(module, declaration.name, NL_NONE, whole ? NL_MARK_WHOLE : 0);
        return;
    }
    std::string base = VLOG_shown_name(reader, declaration.name);
    int32_t step = declaration.left >= declaration.right ? -1 : 1;
    for (int32_t index = declaration.left;; index += step) {
        NL_add_net(module, NL_bit_name(reader.design.names, base, index));
        if (index == declaration.right)
            break;
    }
}

// Instances of one module mostly name their pins in one order.
int32_t pin_before(const VLOG &reader, const VLOG_INSTANCE *before, size_t place) {
    if (before == nullptr || place >= static_cast<size_t>(before->connection_count))
        return NL_NONE;
    return reader.record->connections[static_cast<size_t>(before->first_connection) + place].pin;
}

void add_connection(VLOG &reader, const VLOG_INSTANCE &instance, int32_t pin) {
    VLOG_MODULE &record = *reader.record;
    size_t first = record.bits.size();
    bool sized = true;
    if (!VLOG_is_symbol(reader, ')') && !VLOG_is_symbol(reader, ','))
        sized = VLOG_expression(reader, record.bits);
    VLOG_check_count(reader, record.bits.size(), "connected bits", reader.scan.token.line);
    record.connections.push_back({pin, static_cast<int32_t>(first) - instance.first_bit,
                                  static_cast<int32_t>(record.bits.size() - first), sized});
}

// The net of one bit that stands as a plain name between brackets, from the first of them on, and where the
// text goes on behind them; NL_NONE for all else.
int32_t plain_net(VLOG &reader, const char *&at) {
    const char *open = VSCAN_behind_blanks(at);
    if (*open != '(')
        return NL_NONE;
    std::string_view text = VSCAN_name_at(VSCAN_behind_blanks(open + 1));
    const char *close = VSCAN_behind_blanks(text.data() + text.size());
    if (text.empty() || text.size() > VSCAN_NAME_LIMIT || *close != ')')
        return NL_NONE;
    int32_t name = NL_name_in_place(reader.design.names, text);
    const VLOG_DECLARATION *found = name < VLOG_word_count ? nullptr : VLOG_find_declaration(reader, name);
    if (found == nullptr || found->vector)
        return NL_NONE;
    at = close + 1;
    return found->first_net;
}

// Passes over the ',' and the '.' of the next connection, and ends of lines between; false when others
// follow.
bool pass_to_pin(const VSCAN_SOURCE &source, const char *&at, int &line) {
    at = VSCAN_behind_blanks(at);
    if (*at++ != ',')
        return false;
    for (; at = VSCAN_behind_blanks(at), *at == '\n'; at++)
        line += source.counts;
    return *at++ == '.';
}

// Reads connections in the text itself, as most of a netlist consists of them: those from a '.' on that name
// the pins of the instance before, from that place on, and declared nets of one bit. The token is then the
// one behind them. Gives their number.
size_t plain_connections(VLOG &reader, const VLOG_INSTANCE &instance, const VLOG_INSTANCE *before,
                         size_t place) {
    VLOG_MODULE &record = *reader.record;
    VSCAN_SOURCE &source = reader.scan.sources.back();
    const char *at = source.at;
    int line = source.line;
    size_t first = place;
    do {
        int32_t pin = pin_before(reader, before, place);
        std::string_view text = VSCAN_name_at(at);
        if (pin < VLOG_word_count || !NL_same_text(NL_text(reader.design.names, pin), text) ||
            record.bits.size() >= NL_COUNT_LIMIT)
            break;
        at += text.size();
        int32_t net = plain_net(reader, at);
        if (net == NL_NONE)
            break;
        record.connections.push_back(
            {pin, static_cast<int32_t>(record.bits.size()) - instance.first_bit, 1, true});
        record.bits.push_back(net);
        source.at = at;
        source.line = line;
        place++;
    } while (pass_to_pin(source, at, line));
    if (place > first)
        VSCAN_next(reader.scan);
    return place - first;
}

void named_connection(VLOG &reader, const VLOG_INSTANCE &instance, const VLOG_INSTANCE *before,
                      size_t place) {
    VSCAN &scan = reader.scan;
    if (VLOG_is_symbol(reader, '.'))
        scan.guess = pin_before(reader, before, place);
    VLOG_expect_symbol(reader, '.', "a connection by name");
    int32_t pin = VLOG_take_name(reader, "a pin");
    VLOG_expect_symbol(reader, '(', "a connection by name");
    add_connection(reader, instance, pin);
    VLOG_expect_symbol(reader, ')', "a connection by name");
}

void connection_list(VLOG &reader, const VLOG_INSTANCE &instance, const VLOG_INSTANCE *before) {
    VSCAN &scan = reader.scan;
    bool by_name = VLOG_is_symbol(reader, '.');
    for (size_t place = 0;; VSCAN_next(scan)) {
        bool may_be_plain = by_name && VLOG_is_symbol(reader, '.');
        size_t plain = may_be_plain ? plain_connections(reader, instance, before, place) : 0;
        place += plain;
        if (plain == 0 && by_name)
            named_connection(reader, instance, before, place++);
        else if (plain == 0)
            add_connection(reader, instance, NL_NONE);
        if (!VLOG_is_symbol(reader, ','))
            return;
    }
}

// Takes the connections that were just read back where those of the instance before are the same.
void share_connections(VLOG &reader, VLOG_INSTANCE &instance, const VLOG_INSTANCE *before) {
    auto &connections = reader.record->connections;
    auto first = connections.begin() + instance.first_connection;
    instance.connection_count = static_cast<int32_t>(connections.end() - first);
    if (before == nullptr || before->connection_count != instance.connection_count ||
        !std::equal(first, connections.end(), connections.begin() + before->first_connection))
        return;
    connections.erase(first, connections.end());
    instance.first_connection = before->first_connection;
}

void connections(VLOG &reader, VLOG_INSTANCE &instance, const VLOG_INSTANCE *before) {
    VLOG_expect_symbol(reader, '(', "the connections of an instance");
    if (VLOG_is_symbol(reader, ')')) {
        VSCAN_next(reader.scan);
        return;
    }
    connection_list(reader, instance, before);
    VLOG_expect_symbol(reader, ')', "the connections of an instance");
    share_connections(reader, instance, before);
}

// The instance of that module that was read last in the present module, or null.
const VLOG_INSTANCE *last_instance_of(const VLOG &reader, int32_t def) {
    const auto &instance_of_def = reader.scratch.instance_of_def;
    const auto &instances = reader.module->instances;
    size_t place = static_cast<size_t>(def) < instance_of_def.size()
                       ? static_cast<size_t>(instance_of_def[static_cast<size_t>(def)])
                       : instances.size();
    return place < instances.size() && instances[place].def == def ? &reader.record->instances[place]
                                                                   : nullptr;
}

// The instance of that name in the module, or NL_NONE.
int32_t find_instance(const VLOG &reader, int32_t name) {
    const auto &instance_of_name = reader.scratch.instance_of_name;
    const auto &instances = reader.module->instances;
    int32_t place = static_cast<size_t>(name) < instance_of_name.size()
                        ? instance_of_name[static_cast<size_t>(name)]
                        : NL_NONE;
    bool found = place >= 0 && static_cast<size_t>(place) < instances.size() &&
                 instances[static_cast<size_t>(place)].name == name;
    return found ? place : NL_NONE;
}

void add_instance(VLOG &reader, int32_t name, int32_t def, const VLOG_INSTANCE &record) {
    if (find_instance(reader, name) != NL_NONE)
        TOOL_fail(VSCAN_file(reader.scan), record.line, "two instances have the name '%s'.",
                  VLOG_shown_name(reader, name).c_str());
    VLOG_check_count(reader, reader.module->instances.size() + 1, "instances", reader.scan.token.line);
    auto &instance_of_name = reader.scratch.instance_of_name;
    if (static_cast<size_t>(name) >= instance_of_name.size())
        instance_of_name.resize(reader.design.names.texts.size() * 2, -1);
    instance_of_name[static_cast<size_t>(name)] = static_cast<int32_t>(reader.module->instances.size());
    auto &instance_of_def = reader.scratch.instance_of_def;
    if (static_cast<size_t>(def) >= instance_of_def.size())
        instance_of_def.resize(reader.design.modules.size() * 2);
    instance_of_def[static_cast<size_t>(def)] = instance_of_name[static_cast<size_t>(name)];
    reader.record->instances.push_back(record);
    reader.module->instances.push_back({name, NL_NONE, def, NL_NONE});
}

// The leftmost instance stands first, as the bits of a vector do.
void add_instance_array(VLOG &reader, int32_t name, int32_t def, VLOG_INSTANCE record, int32_t left,
                        int32_t right) {
    std::string base = VLOG_shown_name(reader, name);
    record.array_size = (left > right ? left - right : right - left) + 1;
    for (record.place = record.array_size - 1; record.place >= 0; record.place--) {
        int32_t index = left > right ? right + record.place : right - record.place;
        add_instance(reader, NL_bit_name(reader.design.names, base, index), def, record);
    }
}

[[noreturn]] void refuse_parameters(const VLOG &reader, const std::string &whose) {
    VSCAN_fail(reader.scan,
               "%s has parameters, which a netlist can't hold; -drop_parameters leaves them away.",
               whose.c_str());
}

// Passes over "#(...)" or "#value" behind the name of a cell.
bool skip_parameters(VLOG &reader, int32_t cell) {
    VSCAN &scan = reader.scan;
    if (!VLOG_is_symbol(reader, '#'))
        return false;
    if (!reader.drop_parameters)
        refuse_parameters(reader, "an instance of '" + VLOG_shown_name(reader, cell) + "'");
    VSCAN_next(scan);
    int depth = 0;
    do {
        depth += VLOG_is_symbol(reader, '(') - VLOG_is_symbol(reader, ')');
        if (scan.token.kind == TOKEN_END || VLOG_is_symbol(reader, ';'))
            VSCAN_fail(scan, "found %s within the parameters of an instance of '%s'.",
                       VSCAN_shown(scan).c_str(), VLOG_shown_name(reader, cell).c_str());
        VSCAN_next(scan);
    } while (depth > 0);
    return true;
}

} // namespace

void VLOG_check_count(const VLOG &reader, size_t count, const char *what, int line) {
    if (count > NL_COUNT_LIMIT)
        TOOL_fail(VSCAN_file(reader.scan), line, "a module has more than %zu %s. %s", NL_COUNT_LIMIT, what,
                  NL_SMALLER_DESIGN);
}

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
                       VLOG_shown_name(reader, name).c_str());
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

int32_t VLOG_unknown_net(NL_DESIGN &design, NL_MODULE &module) {
    return NL_add_net(module, NL_name(design.names, NL_UNKNOWN_NET), NL_NONE, NL_MARK_DONT_CARE);
}

int32_t VLOG_own_net(NL_DESIGN &design, NL_MODULE &module, int32_t net) {
    bool unknown = net > NL_VCC && (module.nets[static_cast<size_t>(net)].marks & NL_MARK_DONT_CARE) != 0;
    return unknown ? VLOG_unknown_net(design, module) : net;
}

void VLOG_instances(VLOG &reader) {
    VSCAN &scan = reader.scan;
    if (!reader.module->instances.empty()) // they count on in many a netlist, and in each module anew
        scan.guess = reader.module->instances.back().name + 1;
    int32_t cell = VLOG_take_name(reader, "a cell");
    bool parameters = skip_parameters(reader, cell);
    int32_t def = NL_module(reader.design, cell);
    for (;;) {
        VLOG_INSTANCE record = {static_cast<int32_t>(reader.record->connections.size()),
                                0,
                                static_cast<int32_t>(reader.record->bits.size()),
                                scan.sources.back().file,
                                scan.token.line,
                                parameters,
                                0,
                                0};
        int32_t name = VLOG_take_name(reader, "the name of an instance");
        int32_t left = 0, right = 0;
        bool array = VLOG_range(reader, left, right);
        connections(reader, record, last_instance_of(reader, def));
        if (array)
            add_instance_array(reader, name, def, record, left, right);
        else
            add_instance(reader, name, def, record);
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
        int line = reader.scan.token.line;
        VLOG_expression(reader, left);
        if (!VLOG_is_symbol(reader, '='))
            VSCAN_fail(reader.scan, "found %s where '=' of an assign was expected.",
                       VSCAN_shown(reader.scan).c_str());
        VSCAN_next(reader.scan);
        bool sized = VLOG_expression(reader, right);
        VLOG_join(reader, left, right, sized, line);
        if (!VLOG_is_symbol(reader, ','))
            break;
        VSCAN_next(reader.scan);
    }
    VLOG_expect_symbol(reader, ';', "an assign");
}

void VLOG_defparam(VLOG &reader) {
    VSCAN &scan = reader.scan;
    do {
        int line = scan.token.line;
        VSCAN_next(scan);
        int32_t name = VLOG_take_name(reader, "an instance");
        if (!reader.drop_parameters)
            refuse_parameters(reader, "the instance '" + VLOG_shown_name(reader, name) + "'");
        reader.scratch.defparams.emplace_back(name, line);
        for (int depth = 0; depth > 0 || (!VLOG_is_symbol(reader, ',') && !VLOG_is_symbol(reader, ';'));) {
            char symbol = scan.token.symbol;
            depth += (symbol == '(' || symbol == '{' || symbol == '[') -
                     (symbol == ')' || symbol == '}' || symbol == ']');
            if (scan.token.kind == TOKEN_END)
                VSCAN_fail(scan, "the file ends within a defparam.");
            VSCAN_next(scan);
        }
    } while (VLOG_is_symbol(reader, ','));
    VLOG_expect_symbol(reader, ';', "a defparam");
}

void VLOG_close_defparams(VLOG &reader) {
    for (auto [name, line] : reader.scratch.defparams) {
        int32_t instance = find_instance(reader, name);
        if (instance == NL_NONE)
            TOOL_fail(VSCAN_file(reader.scan), line, "there is no instance '%s' for this defparam.",
                      VLOG_shown_name(reader, name).c_str());
        reader.record->instances[static_cast<size_t>(instance)].parameters = true;
    }
}

void VLOG_join_nets(VLOG &reader, int32_t left, int32_t right, int line) {
    reader.record->joined.push_back({left, right, reader.scan.sources.back().file, line});
}

void VLOG_join(VLOG &reader, const std::vector<int32_t> &left, std::vector<int32_t> &right, bool sized,
               int line) {
    VLOG_SCRATCH &scratch = reader.scratch;
    reader.record->assign_count++;
    if (right.size() > left.size() && sized)
        VSCAN_fail(reader.scan, "an assign of %zu bits to %zu bits.", right.size(), left.size());
    if (right.size() > left.size())
        right.erase(right.begin(), right.end() - static_cast<std::ptrdiff_t>(left.size()));
    right.insert(right.begin(), left.size() - right.size(), NL_GND);
    for (size_t i = 0; i < left.size(); i++) {
        bool is_net = left[i] > NL_VCC &&
                      (reader.module->nets[static_cast<size_t>(left[i])].marks & NL_MARK_DONT_CARE) == 0;
        if (!is_net)
            VSCAN_fail(reader.scan, "the left side of an assign is no net.");
        size_t net = static_cast<size_t>(left[i]);
        if (net >= scratch.assigned.size())
            scratch.assigned.resize(reader.module->nets.size());
        if (scratch.assigned[net])
            VSCAN_fail(reader.scan, "the net '%s' is assigned twice.",
                       VLOG_shown_name(reader, reader.module->nets[net].name).c_str());
        scratch.assigned[net] = true;
        if (right[i] != NL_NONE)
            VLOG_join_nets(reader, left[i], right[i], line);
    }
}
