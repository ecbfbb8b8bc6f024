#include "kit/test_logic.hh"

#include "kit/chip.hh"
#include "kit/names.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/verilog_words.hh"
#include "support/text.hh"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace {

/// The module while it is written.
struct LOGIC_TEXT {
    const BOUNDARY_REGISTER &found;
    std::vector<std::string> port_of_net; ///< bit of a port; empty for a wire of its own
    std::string body{};
    std::set<int32_t> wires{}; ///< nets that are to be declared
};

/// A pad that its block alone does not tell.
bool is_instance(const BUFFER_CELL &buffer) {
    return buffer.kind == BUFFER_BS || buffer.mux_in1 != nullptr || buffer.mux_in2 != nullptr ||
           buffer.mux_in3 != nullptr;
}

/// What stands for the net of a node; empty for an open pin.
std::string net_at(LOGIC_TEXT &text, int32_t node) {
    int32_t net = node < 0 ? -1 : node_tab[node].net;
    if (net < 0)
        return "";
    if (net == SDB_NET_GND || net == SDB_NET_VCC)
        return net == SDB_NET_VCC ? "1'b1" : "1'b0";
    const std::string &port = text.port_of_net[static_cast<size_t>(net)];
    if (!port.empty())
        return port;
    text.wires.insert(net);
    return format_text("n%d", net);
}

/// The ports, their vectors as the bench connects them; nets get the names of their bits.
std::string port_text(LOGIC_TEXT &text) {
    std::string list;
    for (const CHIP_PORT_GROUP &group : chip_port_groups()) {
        std::string name = VLOG_identifier(group.name);
        size_t count = group.ports.size();
        list += (list.empty() ? "" : ", ") +
                (count > 1 ? format_text("inout [%zu:0] ", count - 1) : std::string("inout ")) + name;
        for (size_t i = 0; i < count; ++i) {
            int32_t node = group.ports[i] < 0 ? -1 : port_tab[group.ports[i]].node;
            int32_t net = node < 0 ? -1 : node_tab[node].net;
            std::string bit = count > 1 ? format_text("%s[%zu]", name.c_str(), count - 1 - i) : name;
            if (net <= SDB_NET_VCC)
                continue;
            std::string &known = text.port_of_net[static_cast<size_t>(net)];
            if (known.empty())
                known = bit;
            else
                text.body += "    tran (" + known + ", " + bit + ");\n";
        }
    }
    return list;
}

/// An instance as the netlist has it.
void add_instance(LOGIC_TEXT &text, int32_t obj) {
    int32_t class_id = obj_tab[obj].class_id;
    std::map<std::string, std::map<long, std::string>> nets; // by pin, and its bits
    for (int32_t i = 0; i < class_tab[class_id].pin_count; ++i) {
        int32_t node = obj_tab[obj].first_node + i;
        KIT_BIT bit = kit_bit(chip_pin_name(node_tab[node].pin));
        nets[bit.base][bit.index] = net_at(text, node);
    }
    std::string pins;
    for (const auto &[name, bits] : nets) {
        std::string wires;
        for (auto bit = bits.rbegin(); bit != bits.rend(); ++bit)
            wires +=
                (wires.empty() ? "" : ", ") + (bit->second.empty() && bits.size() > 1 ? "1'bz" : bit->second);
        pins += (pins.empty() ? "." : ", .") + VLOG_identifier(name) + "(" +
                (bits.size() > 1 ? "{" + wires + "}" : wires) + ")";
    }
    text.body += format_text("    %s u%d (%s);\n", VLOG_identifier(chip_class_name(class_id)).c_str(), obj,
                             pins.c_str());
}

/// True when the core turns the pad on or off, which then says nothing here.
bool follows_core(const LOGIC_TEXT &text, const WALK_PAD_ROW &pad) {
    for (const char *pin : {pad.buffer->en_l, pad.buffer->en_h})
        if (WALK_END end = walk_back(text.found.walk, walk_pin(pad.obj, pin)).end;
            pin != nullptr && (end == WALK_CORE || end == WALK_OPEN || end == WALK_MANY))
            return true;
    return false;
}

/// "en_h && !en_l" of what the pad has; empty for one that is always on.
std::string enable_text(LOGIC_TEXT &text, const WALK_PAD_ROW &pad) {
    std::string enable;
    for (const auto &[pin, turn] : {std::pair{pad.buffer->en_l, "!"}, std::pair{pad.buffer->en_h, ""}})
        if (pin != nullptr)
            enable += (enable.empty() ? "" : " && ") + (turn + net_at(text, walk_pin(pad.obj, pin)));
    return enable;
}

/// A pad as its block says.
void add_pad(LOGIC_TEXT &text, const WALK_PAD_ROW &pad) {
    const BUFFER_CELL &buffer = *pad.buffer;
    std::string pin = net_at(text, walk_pin(pad.obj, pad.pin)),
                data = net_at(text, walk_pin(pad.obj, pad.core_in));
    std::string core = net_at(text, walk_pin(pad.obj, pad.core_out)), on = enable_text(text, pad);
    std::string minus = net_at(text, walk_pin(pad.obj, buffer.output_m));
    if (data.empty() && !on.empty())
        data = "1'b0"; // an open drain or source: which one the block does not tell
    for (const auto &[leg, turn] : {std::pair{pin, ""}, std::pair{minus, "!"}})
        if (!data.empty() && !leg.empty() && !follows_core(text, pad))
            text.body += "    assign " + leg + " = " + (on.empty() ? "" : "(" + on + ") ? ") + turn + data +
                         (on.empty() ? "" : " : 1'bz") + ";\n";
    if (!core.empty() && !pin.empty())
        text.body += "    buf (" + core + ", " + pin + ");\n";
    bool up = buffer.pull_1 != 0 || buffer.weak_1 != 0, down = buffer.pull_0 != 0 || buffer.weak_0 != 0;
    if (up != down && !pin.empty())
        text.body += std::string(up ? "    pullup (" : "    pulldown (") + pin + ");\n";
}

} // namespace

std::string test_logic_text(const BOUNDARY_REGISTER &found, const std::string &design) {
    LOGIC_TEXT text{.found = found, .port_of_net = std::vector<std::string>(static_cast<size_t>(net_count))};
    std::string ports = port_text(text);
    for (int32_t obj = 0; obj < obj_count; ++obj) {
        int32_t class_id = obj_tab[obj].class_id, row = found.walk.pad_of_obj[static_cast<size_t>(obj)];
        if (class_id < 0)
            continue;
        const WALK_CLASS &kind = found.walk.classes[static_cast<size_t>(class_id)];
        int32_t first = obj_tab[obj].first_node;
        if (row >= 0 && !is_instance(*found.walk.pads[static_cast<size_t>(row)].buffer))
            add_pad(text, found.walk.pads[static_cast<size_t>(row)]);
        else if (row >= 0 || kind.is_tap || kind.cell != nullptr)
            add_instance(text, obj);
        else if (std::string in = kind.passes ? net_at(text, first + kind.input) : "",
                 out = kind.passes ? net_at(text, first + kind.output) : "";
                 !in.empty() && !out.empty())
            text.body +=
                format_text("    %s (%s, %s);\n", kind.inverts ? "not" : "buf", out.c_str(), in.c_str());
    }
    std::string wires;
    for (int32_t net : text.wires)
        wires += format_text("    wire n%d;\n", net);
    return "`timescale 1ns / 1ps\nmodule " + VLOG_identifier(design + "_jtag") + " (" + ports + ");\n" +
           wires + text.body + "endmodule\n";
}

std::vector<std::string> test_logic_lacks(const BOUNDARY_REGISTER &found, const VERILOG_MODULES &modules) {
    std::set<std::string> names;
    for (const REGISTER_CELL &cell : found.cells)
        names.insert(cell.class_name);
    for (const WALK_PAD_ROW &pad : found.walk.pads)
        if (is_instance(*pad.buffer))
            names.insert(chip_class_name(obj_tab[pad.obj].class_id));
    std::erase_if(names, [&modules](const std::string &name) { return has_model(modules, name); });
    return {names.begin(), names.end()};
}
