// Modules, their ports and declarations.
#include "siblings/tool.hh"
#include "siblings/verilog_reader.hh"
#include "siblings/verilog_words.hh"

#include <cstdlib>
#include <numeric>

namespace {

bool is_direction_word(const VLOG &reader) {
    return VLOG_is_word(reader, WORD_INPUT) || VLOG_is_word(reader, WORD_OUTPUT) ||
           VLOG_is_word(reader, WORD_INOUT);
}

int32_t take_direction(VLOG &reader) {
    int32_t direction = VLOG_is_word(reader, WORD_INPUT)    ? NL_INPUT
                        : VLOG_is_word(reader, WORD_OUTPUT) ? NL_OUTPUT
                                                            : NL_BIDI;
    VSCAN_next(reader.scan);
    return direction;
}

// What may stand between a direction and a range.
void skip_net_words(VLOG &reader) {
    for (;;) {
        bool net = VLOG_is_word(reader, WORD_WIRE) || VLOG_is_word(reader, WORD_TRI) ||
                   VLOG_is_word(reader, WORD_SIGNED);
        bool variable = VLOG_is_word(reader, WORD_REG) || VLOG_is_word(reader, WORD_INTEGER);
        if (!net && !(variable && reader.library))
            return;
        VSCAN_next(reader.scan);
    }
}

void give_direction(VLOG &reader, VLOG_DECLARATION &declaration, int32_t direction) {
    if (declaration.direction != NL_NONE)
        VSCAN_fail(reader.scan, "the port '%s' has two directions.",
                   VLOG_shown_name(reader, declaration.name).c_str());
    declaration.direction = direction;
}

// The value that a variable of a library cell starts with. It holds no comma but in brackets.
void skip_first_value(VLOG &reader) {
    if (!reader.library || !VLOG_is_symbol(reader, '='))
        return;
    for (int depth = 0; reader.scan.token.kind != TOKEN_END; VSCAN_next(reader.scan)) {
        char symbol = reader.scan.token.symbol;
        if (depth == 0 && (symbol == ',' || symbol == ';' || symbol == ')'))
            return;
        depth += (symbol == '(' || symbol == '{' || symbol == '[') -
                 (symbol == ')' || symbol == '}' || symbol == ']');
    }
}

// Ports declared in the header, with their directions; a direction holds until the next one.
void ansi_ports(VLOG &reader) {
    for (;;) {
        if (!is_direction_word(reader))
            VSCAN_fail(reader.scan, "found %s where the direction of a port was expected.",
                       VSCAN_shown(reader.scan).c_str());
        int32_t direction = take_direction(reader);
        skip_net_words(reader);
        int32_t left = 0, right = 0;
        bool vector = VLOG_range(reader, left, right);
        for (;;) {
            int32_t name = VLOG_take_name(reader, "a port");
            give_direction(reader, VLOG_declare(reader, name, vector, left, right, false), direction);
            reader.scratch.port_order.push_back(name);
            reader.scratch.header_names.insert(name);
            skip_first_value(reader);
            if (VLOG_is_symbol(reader, ')'))
                return;
            VLOG_expect_symbol(reader, ',', "the list of ports");
            if (is_direction_word(reader))
                break;
        }
    }
}

void header_ports(VLOG &reader) {
    if (!VLOG_is_symbol(reader, '('))
        return;
    VSCAN_next(reader.scan);
    if (is_direction_word(reader)) {
        ansi_ports(reader);
    } else {
        while (!VLOG_is_symbol(reader, ')')) {
            if (VLOG_is_symbol(reader, '.') || VLOG_is_symbol(reader, '{'))
                VSCAN_fail(reader.scan, "a port that is an expression can't be read.");
            reader.scratch.port_order.push_back(VLOG_take_name(reader, "a port"));
            reader.scratch.header_names.insert(reader.scratch.port_order.back());
            if (VLOG_is_symbol(reader, '['))
                VSCAN_fail(reader.scan, "a port that is a part of a vector can't be read.");
            if (!VLOG_is_symbol(reader, ','))
                break;
            VSCAN_next(reader.scan);
        }
    }
    VLOG_expect_symbol(reader, ')', "the list of ports");
}

// Small numbers alone matter: they are the bounds of ranges.
bool small_number(std::string_view text, int64_t &value) {
    std::string digits;
    for (char c : text)
        if (c != '_' && c != ' ')
            digits += c;
    int radix = 10;
    size_t tick = digits.find('\'');
    if (tick != std::string::npos) {
        std::string based = digits.substr(tick + 1);
        char base = based.empty() ? '?' : static_cast<char>(based[0] | 0x20);
        radix = base == 'h' ? 16 : base == 'o' ? 8 : base == 'b' ? 2 : 10;
        digits = based.empty() ? based : based.substr(1);
    }
    char *end = nullptr;
    value = std::strtoll(digits.c_str(), &end, radix);
    return !digits.empty() && *end == '\0' && digits.size() < 10;
}

// Parameters up to the symbol that ends their list. A value that is no plain number stays unknown.
void parameters(VLOG &reader, char close) {
    int depth = 0;
    int32_t name = NL_NONE;
    while (depth > 0 || !VLOG_is_symbol(reader, close)) {
        VSCAN &scan = reader.scan;
        if (scan.token.kind == TOKEN_END)
            VSCAN_fail(scan, "the file ends within a list of parameters.");
        char symbol = scan.token.symbol;
        depth += (symbol == '(' || symbol == '{' || symbol == '[') -
                 (symbol == ')' || symbol == '}' || symbol == ']');
        if (VLOG_is_name(reader))
            name = scan.token.id;
        bool is_value = symbol == '=' && depth == 0 && name != NL_NONE;
        VSCAN_next(scan);
        if (!is_value || scan.token.kind != TOKEN_NUMBER)
            continue;
        int64_t value = 0;
        bool small = small_number(scan.token.text, value);
        VSCAN_next(scan);
        if (small && (VLOG_is_symbol(reader, ',') || VLOG_is_symbol(reader, close)))
            reader.scratch.parameters[name] = value;
    }
    VSCAN_next(reader.scan);
}

// A port declaration in the body.
void port_declaration(VLOG &reader) {
    int32_t direction = take_direction(reader);
    skip_net_words(reader);
    int32_t left = 0, right = 0;
    bool vector = VLOG_range(reader, left, right);
    for (;;) {
        int32_t name = VLOG_take_name(reader, "a port");
        VLOG_DECLARATION *earlier = VLOG_find_declaration(reader, name);
        bool is_new = earlier == nullptr || earlier->direction == NL_NONE;
        if (is_new && !reader.scratch.header_names.contains(name))
            VSCAN_fail(reader.scan, "'%s' is not in the list of ports.",
                       VLOG_shown_name(reader, name).c_str());
        give_direction(reader, VLOG_declare(reader, name, vector, left, right, false), direction);
        skip_first_value(reader);
        if (!VLOG_is_symbol(reader, ','))
            break;
        VSCAN_next(reader.scan);
    }
    VLOG_expect_symbol(reader, ';', "a port declaration");
}

void net_declaration(VLOG &reader) {
    int32_t constant = VLOG_is_word(reader, WORD_SUPPLY0)   ? NL_GND
                       : VLOG_is_word(reader, WORD_SUPPLY1) ? NL_VCC
                                                            : NL_NONE;
    // Modules that a tool cut a chip into declare the same names in the same order.
    if (!reader.scratch.declarations.empty())
        reader.scan.guess = reader.scratch.declarations.back().name + 1;
    VSCAN_next(reader.scan);
    skip_net_words(reader);
    int32_t left = 0, right = 0;
    bool vector = VLOG_range(reader, left, right);
    for (;;) {
        int line = reader.scan.token.line;
        int32_t name = VLOG_take_name(reader, "a net");
        VLOG_DECLARATION declaration = VLOG_declare(reader, name, vector, left, right, false);
        if (constant != NL_NONE)
            for (int32_t i = 0; i < VLOG_width(declaration); i++)
                VLOG_join_nets(reader, declaration.first_net + i, constant, line);
        if (VLOG_is_symbol(reader, '=')) {
            VSCAN_next(reader.scan);
            std::vector<int32_t> nets(static_cast<size_t>(VLOG_width(declaration)));
            std::iota(nets.begin(), nets.end(), declaration.first_net);
            std::vector<int32_t> value;
            bool sized = VLOG_expression(reader, value);
            VLOG_join(reader, nets, value, sized, line);
        }
        if (!VLOG_is_symbol(reader, ','))
            break;
        VSCAN_next(reader.scan);
    }
    if (constant == NL_NONE)
        reader.scan.guess = WORD_WIRE;
    VLOG_expect_symbol(reader, ';', "a declaration of nets");
}

void design_statement(VLOG &reader) {
    VSCAN &scan = reader.scan;
    if (VLOG_is_name(reader))
        VLOG_instances(reader);
    else if (is_direction_word(reader))
        port_declaration(reader);
    else if (VLOG_is_word(reader, WORD_WIRE) || VLOG_is_word(reader, WORD_TRI) ||
             VLOG_is_word(reader, WORD_SUPPLY0) || VLOG_is_word(reader, WORD_SUPPLY1))
        net_declaration(reader);
    else if (VLOG_is_word(reader, WORD_ASSIGN))
        VLOG_assign(reader);
    else if (VLOG_is_word(reader, WORD_PARAMETER) || VLOG_is_word(reader, WORD_LOCALPARAM))
        parameters(reader, ';');
    else if (VLOG_is_word(reader, WORD_DEFPARAM))
        VLOG_defparam(reader);
    else if (VLOG_is_symbol(reader, ';'))
        VSCAN_next(scan);
    else if (scan.token.kind == TOKEN_END)
        VSCAN_fail(scan, "the file ends within module '%s', which begins on line %d.",
                   VLOG_shown_name(reader, reader.module->name).c_str(), reader.record->line);
    else
        VSCAN_fail(scan,
                   "%s has no place in a netlist: it holds declarations, instances and assigns of nets.",
                   VSCAN_shown(scan).c_str());
}

// Passes a block over, from its first word to the word that ends it.
void skip_block(VLOG &reader, int32_t last) {
    int line = reader.scan.token.line;
    while (!VLOG_is_word(reader, last)) {
        if (reader.scan.token.kind == TOKEN_END)
            TOOL_fail(VSCAN_file(reader.scan), line, "the file ends within a block that begins here.");
        VSCAN_next(reader.scan);
    }
    VSCAN_next(reader.scan);
}

struct BLOCK {
    int32_t first;
    int32_t last;
};
// Blocks of a library cell whose own inputs and outputs are no ports of the cell.
constexpr BLOCK blocks[] = {
    {WORD_FUNCTION, WORD_ENDFUNCTION}, {WORD_TASK, WORD_ENDTASK}, {WORD_SPECIFY, WORD_ENDSPECIFY}};

void library_statement(VLOG &reader) {
    for (const BLOCK &block : blocks) {
        if (VLOG_is_word(reader, block.first)) {
            skip_block(reader, block.last);
            return;
        }
    }
    if (is_direction_word(reader))
        port_declaration(reader);
    else if (VLOG_is_word(reader, WORD_PARAMETER) || VLOG_is_word(reader, WORD_LOCALPARAM))
        parameters(reader, ';');
    else if (reader.scan.token.kind == TOKEN_END || VLOG_is_word(reader, WORD_MODULE))
        VSCAN_fail(reader.scan, "found %s within module '%s', which begins on line %d and has no endmodule.",
                   VSCAN_shown(reader.scan).c_str(), VLOG_shown_name(reader, reader.module->name).c_str(),
                   reader.record->line);
    else
        VSCAN_next(reader.scan);
}

void make_ports(VLOG &reader) {
    NL_MODULE &module = *reader.module;
    int line = reader.record->line;
    for (int32_t name : reader.scratch.port_order) {
        VLOG_DECLARATION *declaration = VLOG_find_declaration(reader, name);
        if (declaration == nullptr || declaration->direction == NL_NONE)
            TOOL_fail(VSCAN_file(reader.scan), line, "the port '%s' of module '%s' has no direction.",
                      VLOG_shown_name(reader, name).c_str(), VLOG_shown_name(reader, module.name).c_str());
        for (int32_t i = 0; i < VLOG_width(*declaration); i++) {
            int32_t net = declaration->first_net + i;
            const NL_NET &row = module.nets[static_cast<size_t>(net)];
            module.ports.push_back({row.name, declaration->direction, net, row.marks});
        }
    }
    int32_t twice = NL_NONE;
    if (!NL_close_ports(reader.design, module, twice))
        TOOL_fail(VSCAN_file(reader.scan), line, "the port '%s' of module '%s' stands twice.",
                  VLOG_shown_name(reader, twice).c_str(), VLOG_shown_name(reader, module.name).c_str());
}

template <class ROW> void reserve_as(std::vector<ROW> &rows, const std::vector<ROW> &before) {
    rows.reserve(before.size() + before.size() / 16);
}

// Makes room for a module as large as the one before: those that a tool cuts a chip into are much alike.
void reserve_rows(VLOG &reader, NL_MODULE &module, VLOG_MODULE &record) {
    if (reader.module == nullptr)
        return;
    reserve_as(module.nets, reader.module->nets);
    reserve_as(module.instances, reader.module->instances);
    reserve_as(record.instances, reader.record->instances);
    reserve_as(record.connections, reader.record->connections);
    reserve_as(record.bits, reader.record->bits);
}

// Gives room back that is not used.
void release_rows(NL_MODULE &module, VLOG_MODULE &record) {
    auto release = [](auto &rows) {
        if (rows.capacity() / 2 > rows.size())
            rows.shrink_to_fit();
    };
    release(module.nets);
    release(module.instances);
    release(record.instances);
    release(record.connections);
    release(record.bits);
}

void parse_module(VLOG &reader) {
    VSCAN &scan = reader.scan;
    int line = scan.token.line;
    VSCAN_next(scan);
    int32_t name = VLOG_take_name(reader, "the name of a module");
    int32_t index = NL_module(reader.design, name);
    NL_MODULE &module = reader.design.modules[static_cast<size_t>(index)];
    if (module.defined)
        TOOL_fail(VSCAN_file(scan), line, "module '%s' is defined twice.",
                  VLOG_shown_name(reader, name).c_str());
    VLOG_MODULE &record = reader.modules.emplace_back();
    record.module = index;
    record.file = scan.sources.empty() ? 0 : scan.sources.back().file;
    record.line = line;
    reserve_rows(reader, module, record);
    reader.module = &module;
    reader.record = &record;
    VLOG_SCRATCH &scratch = reader.scratch;
    scratch.declarations.clear();
    scratch.port_order.clear();
    scratch.header_names.clear();
    scratch.parameters.clear();
    scratch.assigned.clear();
    scratch.defparams.clear();
    module.defined = true;
    module.is_cell = reader.library;
    if (VLOG_is_symbol(reader, '#')) {
        VSCAN_next(scan);
        VLOG_expect_symbol(reader, '(', "the parameters of a module");
        parameters(reader, ')');
    }
    header_ports(reader);
    VLOG_expect_symbol(reader, ';', "the header of a module");
    while (!VLOG_is_word(reader, WORD_ENDMODULE))
        reader.library ? library_statement(reader) : design_statement(reader);
    make_ports(reader);
    VLOG_close_defparams(reader);
    release_rows(module, record);
    VSCAN_next(scan);
}

} // namespace

void VLOG_read(VLOG &reader, const std::string &path) {
    VSCAN &scan = reader.scan;
    VSCAN_open(scan, path);
    VSCAN_next(scan);
    while (scan.token.kind != TOKEN_END) {
        if (VLOG_is_word(reader, WORD_MODULE) || VLOG_is_word(reader, WORD_MACROMODULE))
            parse_module(reader);
        else if (VLOG_is_word(reader, WORD_PRIMITIVE) && reader.library)
            skip_block(reader, WORD_ENDPRIMITIVE);
        else if (VLOG_is_word(reader, WORD_CONFIG) && reader.library)
            skip_block(reader, WORD_ENDCONFIG);
        else
            VSCAN_fail(scan, "found %s where a module was expected.", VSCAN_shown(scan).c_str());
    }
    scan.line_count += scan.sources.back().line;
    scan.sources.clear();
}

void VLOG_expect_symbol(VLOG &reader, char symbol, const char *where) {
    if (!VLOG_is_symbol(reader, symbol))
        VSCAN_fail(reader.scan, "found %s where '%c' of %s was expected.", VSCAN_shown(reader.scan).c_str(),
                   symbol, where);
    VSCAN_next(reader.scan);
}

std::string VLOG_shown_name(const VLOG &reader, int32_t name) {
    return NL_string(reader.design.names, name);
}

int32_t VLOG_take_name(VLOG &reader, const char *what) {
    if (!VLOG_is_name(reader))
        VSCAN_fail(reader.scan, "found %s where %s was expected.", VSCAN_shown(reader.scan).c_str(), what);
    int32_t name = reader.scan.token.id;
    VSCAN_next(reader.scan);
    return name;
}
