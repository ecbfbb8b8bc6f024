#include "siblings/verilog_writer.hh"

#include "siblings/netlist_layout.hh"
#include "siblings/tool.hh"
#include "siblings/verilog_words.hh"

namespace {

struct WRITER {
    std::string &text;
    const NL_DESIGN &design;
    const NL_MODULE &module;
    LAYOUT layout;
    std::vector<std::string> item_names;
};

// An escaped name ends at a blank, so that it can hold none, and nothing that is not printed.
std::string identifier(const WRITER &writer, std::string_view name) {
    for (char c : name)
        if (c <= ' ' || c == '\x7f')
            TOOL_fail("", 0, "the name '%s' in module '%s' can't be written in Verilog.",
                      std::string(name).c_str(), NL_string(writer.design.names, writer.module.name).c_str());
    if (name.empty())
        TOOL_fail("", 0, "something in module '%s' has an empty name.",
                  NL_string(writer.design.names, writer.module.name).c_str());
    return VLOG_identifier(name);
}

void put_range(WRITER &writer, const LAYOUT_ITEM &item) {
    if (item.vector)
        writer.text += "[" + std::to_string(item.left) + ":" + std::to_string(item.right) + "] ";
}

void put_header(WRITER &writer) {
    static constexpr const char *words[] = {"output ", "inout ", "input "};
    writer.text += "module " + identifier(writer, NL_text(writer.design.names, writer.module.name)) + " (";
    for (size_t i = 0; i < writer.layout.port_count; i++) {
        const LAYOUT_ITEM &item = writer.layout.items[i];
        writer.text += i == 0 ? "\n    " : ",\n    ";
        writer.text += words[item.direction];
        put_range(writer, item);
        writer.text += writer.item_names[i];
    }
    writer.text += writer.layout.port_count == 0 ? ");\n" : "\n);\n";
}

void put_wires(WRITER &writer) {
    for (size_t i = writer.layout.port_count; i < writer.layout.items.size(); i++) {
        writer.text += "  wire ";
        put_range(writer, writer.layout.items[i]);
        writer.text += writer.item_names[i] + ";\n";
    }
}

char constant_digit(int32_t item) {
    return item == LAYOUT_GND ? '0' : item == LAYOUT_VCC ? '1' : 'x';
}

// One piece of a concatenation: the constants or the part of one vector that begin at `at`. Returns its
// length.
size_t put_piece(WRITER &writer, const std::vector<LAYOUT_BIT> &bits, size_t at) {
    LAYOUT_BIT first = bits[at];
    size_t end = at + 1;
    if (first.item < 0) {
        std::string digits(1, constant_digit(first.item));
        for (; end < bits.size() && bits[end].item < 0; end++)
            digits += constant_digit(bits[end].item);
        writer.text += std::to_string(digits.size()) + "'b" + digits;
        return end - at;
    }
    const LAYOUT_ITEM &item = writer.layout.items[static_cast<size_t>(first.item)];
    writer.text += writer.item_names[static_cast<size_t>(first.item)];
    if (!item.vector)
        return 1;
    int32_t step = item.left >= item.right ? -1 : 1;
    while (end < bits.size() && bits[end].item == first.item && bits[end].index == bits[end - 1].index + step)
        end++;
    int32_t last = bits[end - 1].index;
    if (first.index == item.left && last == item.right)
        return end - at;
    writer.text += "[" + std::to_string(first.index);
    if (last != first.index)
        writer.text += ":" + std::to_string(last);
    writer.text += "]";
    return end - at;
}

void put_bits(WRITER &writer, const std::vector<LAYOUT_BIT> &bits) {
    size_t start = writer.text.size();
    size_t done = put_piece(writer, bits, 0);
    if (done == bits.size())
        return;
    writer.text.insert(start, 1, '{');
    while (done < bits.size()) {
        writer.text += ", ";
        done += put_piece(writer, bits, done);
    }
    writer.text += "}";
}

void put_assigns(WRITER &writer) {
    for (const LAYOUT_ASSIGN &assign : writer.layout.assigns) {
        writer.text += "  assign ";
        put_bits(writer, {assign.target});
        writer.text += " = ";
        put_bits(writer, {assign.source});
        writer.text += ";\n";
    }
}

void put_instances(WRITER &writer) {
    constexpr size_t PINS_ON_ONE_LINE = 5;
    // Names of cells and pins are made once.
    std::unordered_map<int32_t, std::vector<std::string>> names_of_def;
    std::vector<LAYOUT_BIT> bits;
    int32_t open_used = 0;
    for (size_t i = 0; i < writer.module.instances.size(); i++) {
        const NL_INSTANCE &instance = writer.module.instances[i];
        if (!LAYOUT_is_written(instance))
            continue;
        const NL_MODULE &def = writer.design.modules[static_cast<size_t>(instance.def)];
        std::vector<std::string> &names = names_of_def[instance.def];
        if (names.empty()) {
            names.push_back(identifier(writer, NL_text(writer.design.names, def.name)));
            for (const NL_GROUP &group : def.groups)
                names.push_back(identifier(writer, NL_text(writer.design.names, group.name)));
        }
        writer.text += "  " + names[0] + " ";
        writer.text += identifier(writer, NL_text(writer.layout.names, writer.layout.instances[i]));
        writer.text += " (";
        bool lines = def.groups.size() > PINS_ON_ONE_LINE;
        for (size_t pin = 0; pin < def.groups.size(); pin++) {
            writer.text += pin == 0 ? "" : ",";
            writer.text += lines ? "\n    ." : pin == 0 ? "." : " .";
            writer.text += names[pin + 1] + "(";
            if (LAYOUT_pins(writer.layout, writer.module, instance, def, def.groups[pin], open_used, bits))
                put_bits(writer, bits);
            writer.text += ")";
        }
        writer.text += lines ? "\n  );\n" : ");\n";
    }
}

void put_module(std::string &text, const NL_DESIGN &design, const NL_MODULE &module) {
    LAYOUT layout = LAYOUT_make(design, module, {.outputs_are_read = true, .inputs_take_any_pin = true});
    WRITER writer = {text, design, module, std::move(layout), {}};
    for (const LAYOUT_ITEM &item : writer.layout.items)
        writer.item_names.push_back(identifier(writer, NL_text(writer.layout.names, item.name)));
    put_header(writer);
    put_wires(writer);
    put_assigns(writer);
    put_instances(writer);
    text += "endmodule\n";
}

} // namespace

void VLOG_write_modules(std::string &text, const NL_DESIGN &design,
                        const std::vector<const NL_MODULE *> &modules) {
    for (const NL_MODULE *module : modules) {
        text += text.empty() ? "" : "\n";
        put_module(text, design, *module);
    }
}
