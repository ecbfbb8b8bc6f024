#include "siblings/vhdl_writer.hh"

#include "siblings/netlist_layout.hh"
#include "siblings/tool.hh"
#include "siblings/vhdl_words.hh"

#include <algorithm>

namespace {

// How a module or cell is instantiated.
struct COMPONENT {
    std::string name;
    std::vector<std::string> ports; ///< of each group
    bool known = false;
};

// What all modules of a file share.
struct VHDL_SHARED {
    const NL_DESIGN &design;
    std::unordered_map<std::string, int32_t> module_names; ///< how many modules have a name, in small letters
    std::unordered_set<std::string_view> modules;          ///< names of all modules
    std::unordered_set<int32_t> written;                   ///< names of the modules of the file
    std::vector<COMPONENT> components;                     ///< of each module of the design
    LAYOUT_TAKEN taken{};
};

struct VHDL_WRITER {
    TEXT_SINK &text;
    VHDL_SHARED &shared;
    const NL_MODULE &module;
    LAYOUT layout;
    std::vector<std::string> item_names;
    std::vector<std::string> net_names;    // of wires of their own
    std::unordered_set<std::string> taken; ///< basic identifiers of the entity, in small letters
    std::unordered_set<std::string> texts; ///< all names of the module, once one has to be made
};

std::string extended(const NL_DESIGN &design, const NL_MODULE &module, std::string_view name) {
    std::string identifier = VHDL_extended(name);
    if (identifier.empty())
        TOOL_fail("", 0, "the name '%s' in module '%s' can't be written in VHDL.", std::string(name).c_str(),
                  NL_string(design.names, module.name).c_str());
    return identifier;
}

bool has_basic_name(const VHDL_SHARED &shared, std::string_view module) {
    auto found = shared.module_names.find(VHDL_folded(module));
    return VHDL_is_basic(module) && found != shared.module_names.end() && found->second == 1;
}

// True when a component is declared under the extended identifier of this text, which nothing beside it may
// have.
bool is_component(const VHDL_SHARED &shared, std::string_view text) {
    return !has_basic_name(shared, text) && shared.modules.contains(text);
}

// The names of a module and its ports depend on nothing that its instances do not see, so that both sides
// agree. Components are declared beside the ports of an entity, whose names must differ from theirs.
COMPONENT make_component(const VHDL_SHARED &shared, const NL_MODULE &module) {
    const NL_NAMES &names = shared.design.names;
    COMPONENT made;
    made.known = true;
    std::string_view name = NL_text(names, module.name);
    made.name = has_basic_name(shared, name) ? std::string(name) : extended(shared.design, module, name);
    std::unordered_map<std::string, int32_t> uses;
    for (const NL_GROUP &group : module.groups)
        uses[VHDL_folded(NL_text(names, group.name))]++;
    for (const NL_GROUP &group : module.groups) {
        std::string_view port = NL_text(names, group.name);
        std::string folded = VHDL_folded(port);
        if (!module.is_cell && is_component(shared, port))
            TOOL_fail(
                "", 0,
                "the port '%s' of module '%s' has the name of another module, which VHDL can't tell apart.",
                std::string(port).c_str(), NL_string(names, module.name).c_str());
        bool plain = VHDL_is_basic(port) && uses[folded] == 1 &&
                     (module.is_cell || !shared.module_names.contains(folded));
        made.ports.push_back(plain ? std::string(port) : extended(shared.design, module, port));
    }
    return made;
}

const COMPONENT &component_of(VHDL_SHARED &shared, int32_t index) {
    COMPONENT &component = shared.components[static_cast<size_t>(index)];
    if (!component.known)
        component = make_component(shared, shared.design.modules[static_cast<size_t>(index)]);
    return component;
}

std::string inner_name(VHDL_WRITER &writer, LAYOUT_NAME name) {
    std::string text = LAYOUT_text(writer.layout, name);
    std::string folded = VHDL_folded(text);
    if (VHDL_is_basic(text) && !writer.shared.module_names.contains(folded) &&
        writer.taken.insert(folded).second)
        return text;
    std::string other = text;
    if (writer.texts.empty() && is_component(writer.shared, other))
        writer.texts = LAYOUT_texts(writer.layout);
    for (int number = 1; is_component(writer.shared, other); number++) {
        std::string next = text + "_n" + std::to_string(number);
        if (!writer.texts.contains(next))
            other = next;
    }
    return extended(writer.shared.design, writer.module, other);
}

std::string type_of(bool vector, int32_t left, int32_t right) {
    if (!vector)
        return "std_logic";
    return "std_logic_vector(" + std::to_string(left) + (left >= right ? " downto " : " to ") +
           std::to_string(right) + ")";
}

void put_ports(VHDL_WRITER &writer, const COMPONENT &component, const NL_MODULE &module, const char *indent) {
    static constexpr const char *modes[] = {" : out ", " : inout ", " : in "};
    for (size_t i = 0; i < module.groups.size(); i++) {
        const NL_GROUP &group = module.groups[i];
        int32_t direction = module.ports[static_cast<size_t>(group.first)].direction;
        writer.text += std::string(indent) + (i == 0 ? "port (\n" : "");
        writer.text += (i == 0 ? std::string(indent) : "") + "  " + component.ports[i] + modes[direction];
        writer.text += type_of(group.vector, group.left, group.right);
        writer.text += i + 1 < module.groups.size() ? ";\n" : ");\n";
    }
}

void put_components(VHDL_WRITER &writer) {
    std::unordered_set<int32_t> declared;
    for (const NL_INSTANCE &instance : writer.module.instances) {
        if (!LAYOUT_is_written(instance) || !declared.insert(instance.def).second)
            continue;
        const COMPONENT &component = component_of(writer.shared, instance.def);
        writer.text += "  component " + component.name + "\n";
        put_ports(writer, component, writer.shared.design.modules[static_cast<size_t>(instance.def)], "    ");
        writer.text += "  end component;\n";
        // By the rules of 1993 a component alone does not find an entity of the same file.
        if (writer.shared.written.contains(
                writer.shared.design.modules[static_cast<size_t>(instance.def)].name))
            writer.text += "  for all : " + component.name + " use entity work." + component.name + ";\n";
    }
}

void put_signal(VHDL_WRITER &writer, const std::string &name, const std::string &type, const char *end) {
    writer.text += "  signal ";
    writer.text += name;
    writer.text += " : ";
    writer.text += type;
    writer.text += end;
}

void put_item_signals(VHDL_WRITER &writer, size_t first, size_t end) {
    for (size_t i = first; i < end; i++) {
        const LAYOUT_ITEM &item = writer.layout.items[i];
        // Nothing drives what an input is left open with.
        bool open = static_cast<int32_t>(i) == writer.layout.open_wires;
        put_signal(writer, writer.item_names[i], type_of(item.vector, item.left, item.right),
                   open ? " := (others => 'Z');\n" : ";\n");
    }
}

void put_signals(VHDL_WRITER &writer) {
    const LAYOUT &layout = writer.layout;
    put_item_signals(writer, layout.port_count, layout.vectors_end);
    for (size_t net = 0; net < layout.nets.size(); net++)
        if (layout.nets[net].item == LAYOUT_WIRE)
            put_signal(writer, writer.net_names[net], "std_logic", ";\n");
    put_item_signals(writer, layout.vectors_end, layout.items.size());
}

void put_bit(VHDL_WRITER &writer, LAYOUT_BIT bit) {
    if (LAYOUT_is_constant(bit)) {
        writer.text += bit.item == LAYOUT_GND ? "'0'" : bit.item == LAYOUT_VCC ? "'1'" : "'X'";
        return;
    }
    if (bit.item == LAYOUT_WIRE) {
        writer.text += writer.net_names[static_cast<size_t>(bit.index)];
        return;
    }
    writer.text += writer.item_names[static_cast<size_t>(bit.item)];
    if (writer.layout.items[static_cast<size_t>(bit.item)].vector)
        writer.text += "(" + std::to_string(bit.index) + ")";
}

void put_assigns(VHDL_WRITER &writer) {
    for (const LAYOUT_ASSIGN &assign : writer.layout.assigns) {
        writer.text += "  ";
        put_bit(writer, assign.target);
        writer.text += " <= ";
        put_bit(writer, assign.source);
        writer.text += ";\n";
    }
}

// True when the bits are all of one vector, in its own order.
bool is_whole(const VHDL_WRITER &writer, const NL_GROUP &group, const std::vector<LAYOUT_BIT> &bits) {
    if (!group.vector || bits[0].item < 0)
        return false;
    const LAYOUT_ITEM &item = writer.layout.items[static_cast<size_t>(bits[0].item)];
    int32_t step = item.left >= item.right ? -1 : 1;
    for (size_t i = 0; i < bits.size(); i++)
        if (bits[i].item != bits[0].item || bits[i].index != item.left + static_cast<int32_t>(i) * step)
            return false;
    return item.vector && bits.back().index == item.right;
}

void put_open(VHDL_WRITER &writer, const NL_GROUP &group, int32_t direction) {
    // An input without a default value may not be left open.
    writer.text += direction != NL_INPUT ? "open" : group.vector ? "(others => 'Z')" : "'Z'";
}

void put_pins(VHDL_WRITER &writer, const NL_INSTANCE &instance, const NL_MODULE &def, int32_t &open_used) {
    const COMPONENT &component = component_of(writer.shared, instance.def);
    std::vector<LAYOUT_BIT> bits;
    const char *separator = "";
    for (size_t pin = 0; pin < def.groups.size(); pin++) {
        const NL_GROUP &group = def.groups[pin];
        bool connected = LAYOUT_pins(writer.layout, instance, def, group, open_used, bits);
        if (!connected || !group.vector || is_whole(writer, group, bits)) {
            writer.text += separator + ("\n      " + component.ports[pin]) + " => ";
            if (!connected)
                put_open(writer, group, def.ports[static_cast<size_t>(group.first)].direction);
            else if (group.vector)
                writer.text += writer.item_names[static_cast<size_t>(bits[0].item)];
            else
                put_bit(writer, bits[0]);
            separator = ",";
            continue;
        }
        int32_t step = group.left >= group.right ? -1 : 1;
        for (size_t i = 0; i < bits.size(); i++) {
            int32_t index = group.left + static_cast<int32_t>(i) * step;
            writer.text +=
                separator + ("\n      " + component.ports[pin]) + "(" + std::to_string(index) + ") => ";
            put_bit(writer, bits[i]);
            separator = ",";
        }
    }
}

void put_instances(VHDL_WRITER &writer) {
    int32_t open_used = 0;
    for (size_t i = 0; i < writer.module.instances.size(); i++) {
        const NL_INSTANCE &instance = writer.module.instances[i];
        if (!LAYOUT_is_written(instance))
            continue;
        const NL_MODULE &def = writer.shared.design.modules[static_cast<size_t>(instance.def)];
        writer.text +=
            "  " + inner_name(writer, LAYOUT_instance_name(writer.layout, static_cast<int32_t>(i)));
        writer.text += " : " + component_of(writer.shared, instance.def).name;
        if (!def.groups.empty()) {
            writer.text += "\n    port map (";
            put_pins(writer, instance, def, open_used);
            writer.text += ")";
        }
        writer.text += ";\n";
    }
}

// Names that are taken first keep a plain form, so that the order is that of the declarations.
void name_signals(VHDL_WRITER &writer) {
    const LAYOUT &layout = writer.layout;
    auto name_items = [&](size_t first, size_t end) {
        for (size_t i = first; i < end; i++)
            writer.item_names.push_back(inner_name(writer, layout.items[i].name));
    };
    name_items(layout.port_count, layout.vectors_end);
    writer.net_names.resize(layout.nets.size());
    for (size_t net = 0; net < layout.nets.size(); net++)
        if (layout.nets[net].item == LAYOUT_WIRE)
            writer.net_names[net] = inner_name(writer, LAYOUT_net_name(layout, static_cast<int32_t>(net)));
    name_items(layout.vectors_end, layout.items.size());
}

void put_module(TEXT_SINK &text, VHDL_SHARED &shared, const NL_MODULE &module) {
    LAYOUT layout = LAYOUT_make(shared.design, module,
                                {.outputs_are_read = false, .inputs_take_any_pin = false}, shared.taken);
    COMPONENT entity = make_component(shared, module);
    VHDL_WRITER writer = {text, shared, module, std::move(layout), entity.ports, {}, {}, {}};
    for (const std::string &port : entity.ports)
        writer.taken.insert(VHDL_folded(port));
    name_signals(writer);
    text += "library ieee;\nuse ieee.std_logic_1164.all;\nuse work.all;\n\nentity " + entity.name + " is\n";
    put_ports(writer, entity, module, "  ");
    text += "end " + entity.name + ";\n\narchitecture netlist of " + entity.name + " is\n";
    put_components(writer);
    put_signals(writer);
    text += "begin\n";
    put_assigns(writer);
    put_instances(writer);
    text += "end netlist;\n";
}

} // namespace

void VHDL_write_modules(TEXT_SINK &text, const NL_DESIGN &design,
                        const std::vector<const NL_MODULE *> &modules) {
    VHDL_SHARED shared = {design, {}, {}, {}, std::vector<COMPONENT>(design.modules.size()), {}};
    for (const NL_MODULE &module : design.modules) {
        std::string_view name = NL_text(design.names, module.name);
        shared.module_names[VHDL_folded(name)]++;
        shared.modules.insert(name);
    }
    for (const NL_MODULE *module : modules)
        shared.written.insert(module->name);
    for (const NL_MODULE *module : modules) {
        text += module == modules.front() ? "" : "\n";
        put_module(text, shared, *module);
    }
}
