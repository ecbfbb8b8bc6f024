// The same question to Yosys, as a cross-check of the comparison: both flat designs are written as Verilog in
// which each instance that stands in both is opened up. What it drives is an input, what it reads is a point
// to be proven; the boundary cells have their models, inserted buffers theirs from the library file, and the
// TAP's outputs are its values at rest, or free. Registers of the cells may hold anything.
#include "kit/engines.hh"
#include "kit/prove.hh"
#include "kit/yosys.hh"
#include "planning/open_design.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <sstream>

namespace {

/// One design as Verilog: inputs and points with names that both designs give them.
struct OPENED_DESIGN {
    std::string wires, instances;
    std::map<std::string, std::string> points; ///< the net of each pin that reads, by its name
    std::map<std::string, std::string> inputs; ///< the net of each driver, by its name
    std::string obstacle;
};

/// Objects of both designs have the same name in both, whatever levels a name has.
std::string common_name(const DESIGN_VIEW &view, int32_t node) {
    const SDB_NODE &row = view.nodes[node];
    std::string name =
        row.obj < 0 ? "port " + std::string(view_port_name(view, row.pin))
                    : view_obj_name(view, row.obj) + "{" + std::string(view_pin_name(view, row.pin)) + "}";
    std::erase(name, '\\');
    return name;
}

/// " (NAND2)": a gate of another class is another point.
std::string class_text(const DESIGN_VIEW &view, int32_t node) {
    int32_t obj = view.nodes[node].obj;
    return obj < 0 ? "" : " (" + std::string(view_class_name(view, view.objs[obj].class_id)) + ")";
}

/// What stands for a net that no opened instance alone drives: all that touch it without only reading.
std::string shared_net_name(const DESIGN_VIEW &view, const std::vector<int32_t> &drivers) {
    std::vector<std::string> names;
    for (int32_t node : drivers)
        names.push_back(common_name(view, node));
    std::sort(names.begin(), names.end());
    std::string text;
    for (const std::string &name : names)
        text += name + " ";
    return text.empty() ? "nothing" : text;
}

class DESIGN_OPENER {
  public:
    /// `letter` begins the names of the nets. Yosys takes what two designs call alike for equal, so it is
    /// another one in each.
    DESIGN_OPENER(const DESIGN_VIEW &design, char letter_of_nets, std::vector<REST_ROLE> of_objects,
                  const REST_VALUES &at_rest, const VERILOG_MODULES &known_models)
        : view(design), letter(letter_of_nets), roles(std::move(of_objects)), values(at_rest),
          models(known_models), drivers(static_cast<size_t>(design.net_count)),
          is_made(static_cast<size_t>(design.net_count)) {}
    /// Without the points of `let_pass`; what `reading` names drives nothing.
    OPENED_DESIGN open(const std::set<std::string> &let_pass, const std::set<std::string> &reading);

  private:
    REST_ROLE role_at(int32_t node) const {
        int32_t obj = view.nodes[node].obj;
        return obj < 0 ? REST_KEPT : roles[static_cast<size_t>(obj)];
    }
    SDB_DIRECTION direction(int32_t node) const {
        int32_t flags = view.nodes[node].obj < 0 ? view.ports[view.nodes[node].pin].flags
                                                 : view.pins[view.nodes[node].pin].direction;
        return static_cast<SDB_DIRECTION>(flags & SDB_DIRECTION_MASK);
    }
    bool is_driver(int32_t node) const;
    void take_node(int32_t node, const std::set<std::string> &let_pass);
    void take_inserted(int32_t obj);

    std::string net_name(int32_t net) const {
        return net == SDB_NET_GND ? "1'b0" : net == SDB_NET_VCC ? "1'b1" : format_text("%c%d", letter, net);
    }

    const DESIGN_VIEW &view;
    char letter;
    std::vector<REST_ROLE> roles;
    const REST_VALUES &values;
    const VERILOG_MODULES &models;
    OPENED_DESIGN opened;
    std::vector<std::vector<int32_t>> drivers; ///< of each net
    std::vector<bool> is_made;                 ///< an inserted instance drives the net
};

/// A port counts the other way round. What goes both ways drives a net that it does not only read.
bool DESIGN_OPENER::is_driver(int32_t node) const {
    bool is_port = view.nodes[node].obj < 0;
    return direction(node) == SDB_BIDIRECTIONAL || direction(node) == (is_port ? SDB_INPUT : SDB_OUTPUT);
}

void DESIGN_OPENER::take_inserted(int32_t obj) {
    int32_t class_id = view.objs[obj].class_id;
    std::string name(view_class_name(view, class_id)), pins;
    REST_ROLE role = roles[static_cast<size_t>(obj)];
    const WALK_CLASS &row = view.walk->classes[static_cast<size_t>(class_id)];
    if (role == REST_CELL && !has_model(models, name))
        opened.obstacle = "no file of --cells has a model of " + name;
    if (role == REST_PAD)
        opened.obstacle = "the run gave ports pads of their own: " + view_obj_name(view, obj);
    std::string ends[2];
    for (int32_t i = 0; i < view.classes[class_id].pin_count; ++i) {
        int32_t node = view.objs[obj].first_node + i, net = view.nodes[node].net;
        std::string pin(view_pin_name(view, view.nodes[node].pin));
        if (net < 0)
            continue;
        if (role == REST_TAP && direction(node) == SDB_OUTPUT) {
            auto value = values.find(pin);
            opened.instances +=
                value != values.end()
                    ? format_text("  assign %s = 1'b%d;\n", net_name(net).c_str(), value->second ? 1 : 0)
                    : "";
            if (value == values.end())
                opened.inputs["TAP " + pin] += " " + net_name(net);
        }
        if (i == row.input || i == row.output)
            ends[i == row.output ? 1 : 0] = net_name(net);
        pins += (pins.empty() ? ".\\" : ", .\\") + pin + " (" + net_name(net) + ")";
    }
    if (role == REST_BUFFER && !ends[1].empty() && !ends[0].empty())
        opened.instances += "  assign " + ends[1] + " = " + (row.inverts ? "~" : "") + ends[0] + ";\n";
    if (role == REST_CELL)
        opened.instances += format_text("  \\%s u%d (", name.c_str(), obj) + pins + ");\n";
}

void DESIGN_OPENER::take_node(int32_t node, const std::set<std::string> &let_pass) {
    int32_t net = view.nodes[node].net;
    if (role_at(node) != REST_KEPT || net < 0 || let_pass.contains(common_name(view, node)))
        return;
    bool drives_alone = net > SDB_NET_VCC && is_driver(node) && direction(node) != SDB_BIDIRECTIONAL;
    bool is_driven =
        net <= SDB_NET_VCC || is_made[static_cast<size_t>(net)] || !drivers[static_cast<size_t>(net)].empty();
    if (!drives_alone && is_driven)
        opened.points[common_name(view, node) + class_text(view, node)] = net_name(net);
}

OPENED_DESIGN DESIGN_OPENER::open(const std::set<std::string> &let_pass,
                                  const std::set<std::string> &reading) {
    for (int32_t node = 0; node < view.node_count; ++node)
        if (int32_t net = view.nodes[node].net; net > SDB_NET_VCC && is_driver(node)) {
            bool is_box = role_at(node) == REST_KEPT || role_at(node) == REST_ALIEN;
            if (is_box && !reading.contains(common_name(view, node)))
                drivers[static_cast<size_t>(net)].push_back(node);
            else if (!is_box)
                is_made[static_cast<size_t>(net)] = true;
        }
    for (int32_t node = 0; node < view.node_count; ++node)
        take_node(node, let_pass);
    for (int32_t net = SDB_NET_VCC + 1; net < view.net_count; ++net) {
        opened.wires += "  wire " + net_name(net) + ";\n";
        if (!is_made[static_cast<size_t>(net)])
            opened.inputs[shared_net_name(view, drivers[static_cast<size_t>(net)])] += " " + net_name(net);
    }
    for (int32_t obj = 0; obj < view.obj_count; ++obj)
        if (roles[static_cast<size_t>(obj)] != REST_KEPT && view.objs[obj].first_node >= 0)
            take_inserted(obj);
    return std::move(opened);
}

using NAME_NUMBERS = std::map<std::string, size_t>;

size_t number_of(NAME_NUMBERS &numbers, const std::string &name) {
    return numbers.emplace(name, numbers.size()).first->second;
}

std::string module_text(const char *name, const OPENED_DESIGN &design, NAME_NUMBERS &inputs,
                        const NAME_NUMBERS &points) {
    std::string text;
    for (const auto &[input, nets] : design.inputs) {
        std::istringstream list(nets);
        for (std::string net; list >> net;)
            text += format_text("  assign %s = i[%zu];\n", net.c_str(), number_of(inputs, input));
    }
    for (const auto &[point, net] : design.points)
        if (auto number = points.find(point); number != points.end())
            text += format_text("  assign o[%zu] = %s;\n", number->second, net.c_str());
    return format_text("module %s (input [@:0] i, output [%zu:0] o);\n", name, points.size() - 1) +
           design.wires + design.instances + text + "endmodule\n";
}

void set_width(std::string &text, size_t inputs) {
    for (size_t at = 0; (at = text.find('@', at)) != text.npos;)
        text.replace(at, 1, std::to_string(inputs == 0 ? 0 : inputs - 1));
}

/// The points that are not proven, by the numbers in what Yosys says; `why_not` when its sums are others.
std::vector<std::string> unproven_points(const std::string &log, const NAME_NUMBERS &points,
                                         std::string &why_not) {
    constexpr std::string_view MARK = "\\o_gold";
    std::set<size_t> numbers;
    size_t proven = 0, left = 0;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);) {
        std::sscanf(line.c_str(), " Of those cells %zu are proven and %zu are unproven.", &proven, &left);
        size_t at = line.find(MARK);
        if (line.find("Unproven $equiv") == line.npos || at == line.npos)
            continue;
        size_t bracket = line.find_first_not_of(' ', at + MARK.size()); // none in a vector of one bit
        bool has_number = bracket != line.npos && line[bracket] == '[';
        numbers.insert(has_number ? std::strtoul(line.c_str() + bracket + 1, nullptr, 10) : 0);
    }
    if (why_not.empty() && (proven + left != points.size() || left != numbers.size()))
        why_not = format_text("yosys speaks of %zu points, and %zu were asked", proven + left, points.size());
    std::vector<std::string> names;
    for (const auto &[name, number] : points)
        if (numbers.contains(number))
            names.push_back(name);
    return names;
}

} // namespace

POINT_PROOF prove_points(const BOUNDARY_REGISTER &found, const std::string &source_file,
                         const REST_VALUES &values, const CHIP_COMPARISON &compared,
                         const std::vector<std::string> &models) {
    POINT_PROOF proof;
    VERILOG_MODULES modules = modules_of(models);
    DESIGN_VIEW after = view_design(found.walk);
    OPEN_DESIGN source(source_file.c_str());
    NETLIST_WALK walk;
    prepare_walk(walk, std::string(view_class_name(after, after.objs[found.tap_obj].class_id)).c_str());
    DESIGN_VIEW before = view_design(walk);
    OPENED_DESIGN gold = DESIGN_OPENER(before, 'a', compared.roles_before, values, modules)
                             .open(compared.let_pass, compared.reading);
    OPENED_DESIGN gate = DESIGN_OPENER(after, 'b', compared.roles_after, values, modules)
                             .open(compared.let_pass, compared.reading);
    proof.why_not = gold.obstacle + gate.obstacle;
    NAME_NUMBERS inputs, points;
    for (const auto &[name, net] : gold.points)
        if (gate.points.contains(name))
            number_of(points, name);
        else
            proof.unproven.push_back(name);
    if (!proof.why_not.empty() || points.empty())
        return proof;
    std::string texts[] = {module_text("gate", gate, inputs, points),
                           module_text("gold", gold, inputs, points)};
    SCRATCH_FOLDER folder;
    std::string script, log, path[2];
    for (int side = 0; side < 2; ++side) {
        path[side] = folder.path + (side == 0 ? "/gate.v" : "/gold.v");
        set_width(texts[side], inputs.size());
        TOOL_write_file(path[side], texts[side]);
    }
    for (const std::string &file : models)
        script += "read_verilog -defer " + yosys_word(file) + "\n";
    script += "read_verilog " + yosys_word(path[0]) +
              "\nhierarchy -check -top gate\nproc\nflatten\nasync2sync\ndffunmap\nread_verilog " +
              yosys_word(path[1]) +
              "\nproc\nequiv_make gold gate rimkit_equiv\nhierarchy -top rimkit_equiv\nequiv_simple -undef\n"
              "equiv_status\n";
    proof.why_not = run_yosys(script, log);
    std::vector<std::string> unproven = unproven_points(log, points, proof.why_not);
    proof.unproven.insert(proof.unproven.end(), unproven.begin(), unproven.end());
    proof.points = static_cast<int32_t>(points.size());
    return proof;
}
