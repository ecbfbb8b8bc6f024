// The classes of the cells at rest. A cell has to be a wire whatever its registers hold; so these are cut,
// and what they give is free. A pad with a cell or a multiplexer inside is laid down twice, with the same
// values at the pins of its function and any at the others: nobody can see a difference.
#include "kit/prove.hh"

#include "description/lookups.hh"
#include "kit/engines.hh"
#include "kit/yosys.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

/// What stands for a pin that is let go: once 0 and once 1, which are all values that the board can give it.
const char *const RELEASED_PIN = R"(
module \$tribuf (A, EN, Y);
  parameter WIDTH = 1;
  input [WIDTH-1:0] A;
  input EN;
  output [WIDTH-1:0] Y;
  assign Y = EN ? A : {WIDTH{%s}};
endmodule
)";

constexpr const char *REGISTERS = " t:$dff t:$adff t:$aldff t:$dffe t:$adffe t:$aldffe t:$sdff t:$sdffe "
                                  "t:$sdffce t:$dffsr t:$dffsre t:$dlatch "
                                  "t:$adlatch t:$dlatchsr t:$sr\n";

const char *const LETTING_GO = "proc\nflatten\ntribuf -merge\ntechmap -map %s\nsetundef -undriven -%s\n";
const char *const CUTTING = "select -none\nselect -set registers%scutpoint @registers\nselect -clear\n";

std::string connection(const std::string &pin, const std::string &net) {
    return (net.empty() ? "" : ", .\\" + pin + " (" + net + ")");
}

/// "\CLASS NAME (.\PIN (NET), ...);" without the comma in front.
std::string instance_text(const REST_KIND &kind, const char *name, const std::string &connections) {
    return "  \\" + kind.class_name + " " + name + " (" +
           connections.substr(std::min<size_t>(2, connections.size())) + ");\n";
}

bool is_role(const char *role_pin, const std::string &pin) {
    return role_pin != nullptr && same_text_no_case(without_minus(role_pin), pin.c_str());
}

/// A cell that has to be a wire: each of its ways, as `bit == bit`.
std::string wire_text(const REST_KIND &kind) {
    const SCAN_CELL &cell = *get_scan_cell(kind.class_name.c_str());
    std::string nets, ports, equal = "1'b1";
    std::string mode = "1'b0";
    for (const auto &[pin, part] : kind.pins)
        if (is_role(cell.mode_1, pin) && part >= 0)
            mode = part == 1 ? "1'b1" : "1'b0";
    for (size_t i = 0; i < kind.pins.size(); ++i) {
        const auto &[pin, part] = kind.pins[i];
        std::string net = format_text("n%zu", i);
        if (part >= 0) {
            nets += connection(pin, part == 1 ? "1'b1" : "1'b0");
            continue;
        }
        if (part == REST_OUTPUT || part == REST_HIDDEN) {
            const char *from = is_role(cell.data_out, pin) ? "di"
                               : is_role(cell.sys_in, pin) ? "sp"
                                                           : nullptr;
            std::string expected = is_role(cell.oe_mode, pin) ? mode : from != nullptr ? from : "";
            if (expected.empty())
                continue;
            nets += connection(pin, net);
            ports += ", output " + net;
            equal += " & " + net + " == " + expected;
        } else {
            bool is_core = is_role(cell.data_in, pin), is_pin = is_role(cell.sys_pin, pin);
            nets += connection(pin, is_core ? "di" : is_pin ? "sp" : net);
            ports += is_core || is_pin ? "" : ", input " + net;
        }
    }
    return "module rimkit_prove (input di, input sp, output ok" + ports + ");\n" +
           instance_text(kind, "u", nets) + "  assign ok = " + equal + ";\nendmodule\n";
}

/// A pad laid down twice.
std::string twins_text(const REST_KIND &kind) {
    std::string nets[2], ports, wires, equal = "1'b1";
    for (size_t i = 0; i < kind.pins.size(); ++i) {
        const auto &[pin, part] = kind.pins[i];
        if (part == REST_HIDDEN)
            continue;
        std::string net = format_text("n%zu", i);
        for (int twin = 0; twin < 2; ++twin) {
            bool is_shared = part == REST_DATA;
            std::string own = is_shared ? net : net + (twin == 0 ? "a" : "b");
            nets[twin] += connection(pin, part == 0 ? "1'b0" : part == 1 ? "1'b1" : own);
            if (part == REST_OUTPUT)
                wires += "  wire " + own + ";\n";
            else if (part < 0 && !(is_shared && twin == 1))
                ports += ", input " + own;
        }
        if (part == REST_OUTPUT)
            equal += " & " + net + "a == " + net + "b";
    }
    return "module rimkit_prove (output ok" + ports + ");\n" + wires + instance_text(kind, "a", nets[0]) +
           instance_text(kind, "b", nets[1]) + "  assign ok = " + equal + ";\nendmodule\n";
}

PROVEN_CELLS::ANSWER prove_kind(const REST_KIND &kind, const std::vector<std::string> &models) {
    SCRATCH_FOLDER folder;
    std::vector<const char *> values = {"0"};
    if (kind.is_pad) // which may let its pin go
        values.push_back("1");
    for (const char *value : values) {
        std::string map = folder.path + "/released.v", number = std::string("1'b") + value;
        TOOL_write_file(map, format_text(RELEASED_PIN, number.c_str()));
        YOSYS_TASK task{models,
                        kind.is_pad ? twins_text(kind) : wire_text(kind),
                        "rimkit_prove",
                        format_text(LETTING_GO, yosys_word(map).c_str(), *value == '0' ? "zero" : "one") +
                            format_text(CUTTING, REGISTERS),
                        {"-prove ok 1"}};
        YOSYS_ANSWERS answers = ask_yosys(task);
        if (!answers.why_not.empty())
            return {false, answers.why_not};
        if (!answers.held[0])
            return {false, ""};
    }
    return {true, ""};
}

/// The cell twice, with one value of its registers, once with a 0 of the core and once with a 1.
PROVEN_CELLS::ANSWER prove_isolated(const REST_KIND &kind, const std::vector<std::string> &models) {
    const SCAN_CELL &cell = *get_scan_cell(kind.class_name.c_str());
    std::string text = "module rimkit_prove; one a (); two b (); endmodule\n";
    for (const auto &[side, value] : {std::pair{"one", "1'b0"}, std::pair{"two", "1'b1"}}) {
        std::string nets, ports;
        for (size_t i = 0; i < kind.pins.size(); ++i) {
            const auto &[pin, part] = kind.pins[i];
            bool is_shown = is_role(cell.data_out, pin),
                 is_output = part == REST_OUTPUT || part == REST_HIDDEN;
            if (is_output && !is_shown)
                continue;
            std::string net = is_role(cell.data_in, pin) ? value
                              : part >= 0                ? (part == 1 ? "1'b1" : "1'b0")
                                                         : format_text("n%zu", i);
            nets += connection(pin, net);
            if (net[0] == 'n')
                ports += (is_output ? ", output " : ", input ") + net;
        }
        text += std::string("module ") + side + " (" + ports.substr(std::min<size_t>(2, ports.size())) +
                ");\n" + instance_text(kind, "u", nets) + "endmodule\n";
    }
    std::string script = "proc\nflatten one\nflatten two\ncd one\ndelete" + std::string(REGISTERS) +
                         "cd ..\ncd two\ndelete" + REGISTERS +
                         "cd ..\nsetundef -undriven -expose one two\n"
                         "miter -equiv -flatten -make_outputs one two rimkit_miter\n";
    YOSYS_ANSWERS answers =
        ask_yosys({models, text, "rimkit_prove", script, {"-prove trigger 0 rimkit_miter"}});
    return {answers.why_not.empty() && answers.held[0], answers.why_not};
}

/// Asks about each kind that a model is there for.
PROVEN_CELLS ask_kinds(const std::vector<REST_KIND> &kinds, const std::vector<std::string> &models,
                       PROVEN_CELLS::ANSWER (*ask)(const REST_KIND &, const std::vector<std::string> &)) {
    PROVEN_CELLS proven;
    proven.why_not = engine_obstacle("yosys", "yosys");
    if (proven.why_not.empty() && models.empty())
        proven.why_not = "there are no Verilog models of the cells (--cells)";
    VERILOG_MODULES modules = modules_of(models);
    for (const REST_KIND &kind : kinds)
        proven.of_kind.push_back(!proven.why_not.empty() ? PROVEN_CELLS::ANSWER{false, proven.why_not}
                                 : has_model(modules, kind.class_name)
                                     ? ask(kind, models)
                                     : PROVEN_CELLS::ANSWER{false, "no file of --cells has a model of it"});
    return proven;
}

} // namespace

PROVEN_CELLS prove_cells(const std::vector<REST_KIND> &kinds, const std::vector<std::string> &models) {
    return ask_kinds(kinds, models, prove_kind);
}

PROVEN_CELLS prove_isolation(const std::vector<REST_KIND> &kinds, const std::vector<std::string> &models) {
    return ask_kinds(kinds, models, prove_isolated);
}

std::vector<std::pair<std::string, std::vector<std::string>>>
unanswered_kinds(const std::vector<REST_KIND> &kinds, const PROVEN_CELLS &proven) {
    std::vector<std::pair<std::string, std::vector<std::string>>> reasons;
    for (size_t i = 0; i < kinds.size(); ++i) {
        const PROVEN_CELLS::ANSWER &answer = proven.of_kind[i];
        if (answer.held || answer.why_not.empty())
            continue;
        auto reason = std::find_if(reasons.begin(), reasons.end(),
                                   [&answer](const auto &row) { return row.first == answer.why_not; });
        if (reason == reasons.end())
            reason = reasons.insert(reasons.end(), {answer.why_not, {}});
        reason->second.push_back(format_text("%s (%d)", kinds[i].class_name.c_str(), kinds[i].count));
    }
    return reasons;
}
