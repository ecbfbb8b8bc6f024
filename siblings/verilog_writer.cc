#include "siblings/verilog_writer.hh"

#include "siblings/netlist_layout.hh"
#include "siblings/tool.hh"
#include "siblings/verilog_words.hh"

#include <charconv>
#include <span>

namespace {

// How a name is written; a name behind a path is always escaped.
enum NAME_FORM : uint8_t { FORM_UNKNOWN, FORM_PLAIN, FORM_ESCAPED, FORM_REFUSED };

// What all modules of a file share.
struct VERILOG_SHARED {
    TEXT_SINK &text;
    const NL_DESIGN &design;
    LAYOUT_TAKEN taken{};
    std::vector<NAME_FORM> form_of_name;             // of the design's names
    std::vector<std::vector<std::string>> def_texts; // of each module: before an instance's name and its pins
};

struct VERILOG_WRITER {
    VERILOG_SHARED &shared;
    TEXT_SINK &text;
    const NL_MODULE &module;
    LAYOUT layout;
    std::vector<std::string> paths{}; // of the scopes, each with its last separator
    std::vector<LAYOUT_BIT> bits{};   // of the pins at hand
};

// An escaped name ends at a blank, so that it can hold none, and nothing that is not printed.
NAME_FORM form_of_text(std::string_view text) {
    for (char c : text)
        if (c <= ' ' || c == '\x7f')
            return FORM_REFUSED;
    return VLOG_is_plain(text) ? FORM_PLAIN : FORM_ESCAPED;
}

NAME_FORM form_of(VERILOG_WRITER &writer, int32_t name) {
    if (static_cast<size_t>(name) >= writer.shared.form_of_name.size())
        return form_of_text(LAYOUT_component(writer.layout, name));
    NAME_FORM &form = writer.shared.form_of_name[static_cast<size_t>(name)];
    if (form == FORM_UNKNOWN)
        form = form_of_text(NL_text(writer.shared.design.names, name));
    return form;
}

void check_text(const VERILOG_WRITER &writer, const std::string &text) {
    std::string module = NL_string(writer.shared.design.names, writer.module.name);
    if (form_of_text(text) == FORM_REFUSED)
        TOOL_fail("", 0, "the name '%s' in module '%s' can't be written in Verilog.", text.c_str(),
                  module.c_str());
    if (text.empty())
        TOOL_fail("", 0, "something in module '%s' has an empty name.", module.c_str());
}

std::string identifier(const VERILOG_WRITER &writer, int32_t name) {
    std::string text(LAYOUT_component(writer.layout, name));
    check_text(writer, text);
    return VLOG_identifier(text);
}

// Ends the program when the name can't be written.
void check_name(VERILOG_WRITER &writer, LAYOUT_NAME name) {
    NAME_FORM form = form_of(writer, name.name);
    if (form == FORM_PLAIN && name.scope == NL_NONE)
        return;
    bool path_is_written = name.scope == NL_NONE || !writer.paths[static_cast<size_t>(name.scope)].empty();
    if (form == FORM_REFUSED || !path_is_written || LAYOUT_component(writer.layout, name.name).empty())
        check_text(writer, LAYOUT_text(writer.layout, name));
}

void put_name(VERILOG_WRITER &writer, LAYOUT_NAME name) {
    std::string_view component = LAYOUT_component(writer.layout, name.name);
    if (name.scope == NL_NONE && form_of(writer, name.name) == FORM_PLAIN) {
        writer.text += component;
        return;
    }
    writer.text += '\\';
    if (name.scope != NL_NONE)
        writer.text += writer.paths[static_cast<size_t>(name.scope)];
    writer.text += component;
    writer.text += ' ';
}

// Paths that can't be written stay empty: the first name behind one is told.
void find_paths(VERILOG_WRITER &writer) {
    for (const NL_SCOPE &scope : writer.module.scopes) {
        std::string path = NL_full_name(writer.shared.design, writer.module, scope.name, scope.parent) + ".";
        writer.paths.push_back(form_of_text(path) == FORM_REFUSED ? std::string() : path);
    }
}

// All declared names are looked at before anything is written of a module.
void check_names(VERILOG_WRITER &writer) {
    const LAYOUT &layout = writer.layout;
    for (size_t i = 0; i < layout.vectors_end; i++)
        check_name(writer, layout.items[i].name);
    for (size_t net = 0; net < layout.nets.size(); net++)
        if (layout.nets[net].item == LAYOUT_WIRE)
            check_name(writer, LAYOUT_net_name(layout, static_cast<int32_t>(net)));
    for (size_t i = layout.vectors_end; i < layout.items.size(); i++)
        check_name(writer, layout.items[i].name);
}

void put_number(VERILOG_WRITER &writer, int32_t number) {
    char digits[16];
    writer.text += std::string_view(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

void put_range(VERILOG_WRITER &writer, const LAYOUT_ITEM &item) {
    if (!item.vector)
        return;
    writer.text += '[';
    put_number(writer, item.left);
    writer.text += ':';
    put_number(writer, item.right);
    writer.text += "] ";
}

void put_header(VERILOG_WRITER &writer) {
    static constexpr const char *words[] = {"output ", "inout ", "input "};
    writer.text += "module " + identifier(writer, writer.module.name) + " (";
    for (size_t i = 0; i < writer.layout.port_count; i++) {
        const LAYOUT_ITEM &item = writer.layout.items[i];
        writer.text += i == 0 ? "\n    " : ",\n    ";
        writer.text += words[item.direction];
        put_range(writer, item);
        put_name(writer, item.name);
    }
    writer.text += writer.layout.port_count == 0 ? ");\n" : "\n);\n";
}

void put_items(VERILOG_WRITER &writer, size_t first, size_t end) {
    for (size_t i = first; i < end; i++) {
        writer.text += "  wire ";
        put_range(writer, writer.layout.items[i]);
        put_name(writer, writer.layout.items[i].name);
        writer.text += ";\n";
    }
}

void put_wires(VERILOG_WRITER &writer) {
    const LAYOUT &layout = writer.layout;
    put_items(writer, layout.port_count, layout.vectors_end);
    for (size_t net = 0; net < layout.nets.size(); net++) {
        if (layout.nets[net].item != LAYOUT_WIRE)
            continue;
        writer.text += "  wire ";
        put_name(writer, LAYOUT_net_name(layout, static_cast<int32_t>(net)));
        writer.text += ";\n";
    }
    put_items(writer, layout.vectors_end, layout.items.size());
}

char constant_digit(int32_t item) {
    return item == LAYOUT_GND ? '0' : item == LAYOUT_VCC ? '1' : 'x';
}

// The end of the piece of a concatenation that begins at `at`: constants, a wire, or a part of one vector.
size_t piece_end(const LAYOUT &layout, std::span<const LAYOUT_BIT> bits, size_t at) {
    LAYOUT_BIT first = bits[at];
    size_t end = at + 1;
    if (LAYOUT_is_constant(first)) {
        while (end < bits.size() && LAYOUT_is_constant(bits[end]))
            end++;
        return end;
    }
    if (first.item < 0 || !layout.items[static_cast<size_t>(first.item)].vector)
        return end;
    const LAYOUT_ITEM &item = layout.items[static_cast<size_t>(first.item)];
    int32_t step = item.left >= item.right ? -1 : 1;
    while (end < bits.size() && bits[end].item == first.item && bits[end].index == bits[end - 1].index + step)
        end++;
    return end;
}

void put_piece(VERILOG_WRITER &writer, std::span<const LAYOUT_BIT> bits) {
    LAYOUT_BIT first = bits.front();
    if (first.item == LAYOUT_WIRE) {
        put_name(writer, LAYOUT_net_name(writer.layout, first.index));
        return;
    }
    if (first.item < 0) {
        put_number(writer, static_cast<int32_t>(bits.size()));
        writer.text += "'b";
        for (LAYOUT_BIT bit : bits)
            writer.text += constant_digit(bit.item);
        return;
    }
    const LAYOUT_ITEM &item = writer.layout.items[static_cast<size_t>(first.item)];
    put_name(writer, item.name);
    int32_t last = bits.back().index;
    if (!item.vector || (first.index == item.left && last == item.right))
        return;
    writer.text += '[';
    put_number(writer, first.index);
    if (last != first.index) {
        writer.text += ':';
        put_number(writer, last);
    }
    writer.text += ']';
}

void put_bits(VERILOG_WRITER &writer, std::span<const LAYOUT_BIT> bits) {
    size_t end = piece_end(writer.layout, bits, 0);
    if (end == bits.size()) {
        put_piece(writer, bits);
        return;
    }
    const char *separator = "{";
    for (size_t at = 0; at < bits.size(); at = end) {
        end = piece_end(writer.layout, bits, at);
        writer.text += separator;
        put_piece(writer, bits.subspan(at, end - at));
        separator = ", ";
    }
    writer.text += '}';
}

void put_assigns(VERILOG_WRITER &writer) {
    for (const LAYOUT_ASSIGN &assign : writer.layout.assigns) {
        writer.text += "  assign ";
        put_piece(writer, {&assign.target, 1});
        writer.text += " = ";
        put_piece(writer, {&assign.source, 1});
        writer.text += ";\n";
    }
}

bool has_lines(const NL_MODULE &def) {
    constexpr size_t PINS_ON_ONE_LINE = 5;
    return def.groups.size() > PINS_ON_ONE_LINE;
}

// What stands before the name of an instance and before each of its pins, made once.
const std::vector<std::string> &texts_of_def(VERILOG_WRITER &writer, int32_t index) {
    const NL_MODULE &def = writer.shared.design.modules[static_cast<size_t>(index)];
    std::vector<std::string> &texts = writer.shared.def_texts[static_cast<size_t>(index)];
    if (!texts.empty())
        return texts;
    texts.push_back("  " + identifier(writer, def.name) + " ");
    for (const NL_GROUP &group : def.groups) {
        std::string before = texts.size() == 1 ? " (" : "),";
        before += has_lines(def) ? "\n    ." : texts.size() == 1 ? "." : " .";
        texts.push_back(before + identifier(writer, group.name) + "(");
    }
    return texts;
}

void put_pin(VERILOG_WRITER &writer, const NL_INSTANCE &instance, const NL_MODULE &def, const NL_GROUP &group,
             int32_t &open_used) {
    if (group.count > 1) {
        if (LAYOUT_pins(writer.layout, instance, def, group, open_used, writer.bits))
            put_bits(writer, writer.bits);
        return;
    }
    int32_t net = writer.module.pins[static_cast<size_t>(instance.first_pin + group.first)];
    LAYOUT_BIT bit = LAYOUT_pin(writer.layout, net, def.ports[static_cast<size_t>(group.first)].direction);
    if (bit.item != LAYOUT_OPEN)
        put_piece(writer, {&bit, 1});
}

void put_instance(VERILOG_WRITER &writer, int32_t index, int32_t &open_used) {
    const NL_INSTANCE &instance = writer.module.instances[static_cast<size_t>(index)];
    const NL_MODULE &def = writer.shared.design.modules[static_cast<size_t>(instance.def)];
    const std::vector<std::string> &texts = texts_of_def(writer, instance.def);
    LAYOUT_NAME name = LAYOUT_instance_name(writer.layout, index);
    check_name(writer, name);
    writer.text += texts[0];
    put_name(writer, name);
    for (size_t pin = 0; pin < def.groups.size(); pin++) {
        writer.text += texts[pin + 1];
        put_pin(writer, instance, def, def.groups[pin], open_used);
    }
    writer.text += def.groups.empty() ? " ();\n" : has_lines(def) ? ")\n  );\n" : "));\n";
}

void put_module(VERILOG_SHARED &shared, const NL_MODULE &module) {
    LAYOUT layout = LAYOUT_make(shared.design, module,
                                {.outputs_are_read = true, .inputs_take_any_pin = true}, shared.taken);
    VERILOG_WRITER writer = {shared, shared.text, module, std::move(layout)};
    find_paths(writer);
    check_names(writer);
    put_header(writer);
    put_wires(writer);
    put_assigns(writer);
    int32_t open_used = 0;
    for (size_t i = 0; i < module.instances.size(); i++)
        if (LAYOUT_is_written(module.instances[i]))
            put_instance(writer, static_cast<int32_t>(i), open_used);
    writer.text += "endmodule\n";
}

} // namespace

void VLOG_write_modules(TEXT_SINK &text, const NL_DESIGN &design,
                        const std::vector<const NL_MODULE *> &modules) {
    VERILOG_SHARED shared = {text, design, {}, {}, {}};
    shared.form_of_name.resize(design.names.texts.size());
    shared.def_texts.resize(design.modules.size());
    for (const NL_MODULE *module : modules) {
        text += module == modules.front() ? "" : "\n";
        put_module(shared, *module);
    }
}
