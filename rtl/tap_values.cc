#include "rtl/tap_values.hh"

#include "planning/tap_state.hh"
#include "rtl/module_names.hh"
#include "rtl/tap_ports.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace {

/// One gate between the decoder and an enable pin, as each language writes it around its two inputs.
struct GATE_TEXT {
    GATE_KIND kind;
    const char *verilog[3], *vhdl[3]; // before, between, behind
};
constexpr GATE_TEXT GATES[] = {
    {GATE_AND, {"", " & ", ""}, {"", " and ", ""}}, {GATE_NAND, {"~(", " & ", ")"}, {"not (", " and ", ")"}},
    {GATE_OR, {"", " | ", ""}, {"", " or ", ""}},   {GATE_NOR, {"~(", " | ", ")"}, {"not (", " or ", ")"}},
    {GATE_XOR, {"", " ^ ", ""}, {"", " xor ", ""}}, {GATE_XNOR, {"", " ^~ ", ""}, {"not (", " xor ", ")"}},
};

/// Wires of one bit inside the top module that a gate may name.
constexpr const char *INNER_WIRES[] = {"SELECT_DR", "ENABLE", "TDOIN",  "SHIFT_IR",  "CLOCK_IR",
                                       "UPDATE_IR", "IR_out", "DR_out", "BYPASS_out"};

constexpr size_t ID_LENGTH = 32;

bool has(CONTROL_SIGNAL signal) {
    return BCELL_HAS[signal] != 0;
}

std::string text_or_empty(const char *text) {
    return text ? text : "";
}

std::string padded(std::string text, size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

/// The condition letters of the templates.
struct TEMPLATE_LETTER {
    char letter;
    bool (*holds)();
};
const TEMPLATE_LETTER TEMPLATE_LETTERS[] = {
    {'T', [] { return TAP_PORT[PORT_TRST].tap_pin != nullptr; }},
    {'U', [] { return has(SIG_UPDATE); }},
    {'O', [] { return has(SIG_RST); }},
    {'S', [] { return option(OPT_SYNCH); }},
    {'C', [] { return has_instruction(KNOWN_CLAMP); }},
    {'G', has_id_register},
    {'I', has_id_mode},
    {'E', [] { return option(OPT_EXTERNAL_IDCODE); }},
    {'D', [] { return TAP_TDO_EN_PIN != nullptr; }},
    {'A', [] { return TDO_EN_LOW != 0; }},
    {'M', [] { return has_instruction(KNOWN_VELMORA_ATPG); }},
};

bool is_gated(const ENABLE_PIN &pin) {
    return pin.gate_kind != GATE_NONE;
}

/// Outputs of the TAP that a VHDL gate can read back through a signal of their own, besides those that always
/// have one.
struct READ_BACK {
    std::vector<const char *> outputs;
    std::unordered_map<std::string, const char *> by_key; ///< in lower case, as VHDL does not tell case
};

READ_BACK read_back_outputs() {
    std::unordered_set<std::string> read_by_gates;
    for (const ENABLE_PIN &pin : rows(INST_ENABLE_PIN))
        if (is_gated(pin))
            read_by_gates.insert(lower_case(pin.gate_signal));
    READ_BACK made;
    auto add = [&](bool exists, const char *name) {
        std::string key = exists && name != nullptr ? lower_case(name) : "";
        if (!read_by_gates.contains(key))
            return;
        made.outputs.push_back(name);
        made.by_key.emplace(std::move(key), name);
    };
    add(has(SIG_UPDATE), TAP_PIN[SIG_UPDATE]);
    for (CONTROL_SIGNAL mode : MODE_SIGNALS)
        add(has(mode), TAP_PIN[mode]);
    add(has_highz_port(), TAP_HIZ_PIN);
    add(has_instruction(KNOWN_CHIP_TEST), "CHIP_TEST");
    for (const ENABLE_PIN &pin : rows(INST_ENABLE_PIN))
        add(!is_gated(pin) && enable_width(pin.value) == 0, pin.name);
    return made;
}

/// The name inside the VHDL architecture of an output that may be read back.
std::string inner_name(const char *name, const READ_BACK &read_back) {
    if (name == nullptr)
        return "";
    auto found = read_back.by_key.find(lower_case(name));
    bool has_net = found != read_back.by_key.end() && same_text(found->second, name);
    return std::string(name) + (has_net ? "_net" : "");
}

/// True for an output whose inner signal always exists in VHDL.
bool always_has_net(const char *signal) {
    return same_text_no_case(signal, "SHIFT_DR") || same_text_no_case(signal, "CLOCK_DR") ||
           same_text_no_case(signal, TAP_PIN[SIG_SHIFT]) || same_text_no_case(signal, TAP_PIN[SIG_CLOCK]) ||
           (has(SIG_RST) && same_text_no_case(signal, TAP_PIN[SIG_RST]));
}

std::string vhdl_gate_signal(const char *signal, const READ_BACK &read_back) {
    if (always_has_net(signal))
        return std::string(signal) + "_net";
    if (same_text_no_case(signal, "velmora_test_mode") && has_instruction(KNOWN_VELMORA_ATPG))
        return "velmora_atpg_mode";
    auto found = read_back.by_key.find(lower_case(signal));
    return found == read_back.by_key.end() ? signal : std::string(found->second) + "_net";
}

std::string gated_text(const ENABLE_PIN &pin, const READ_BACK &read_back, RTL_LANGUAGE language) {
    for (const GATE_TEXT &gate : GATES)
        if (gate.kind == pin.gate_kind) {
            const char *const *part = language == VHDL ? gate.vhdl : gate.verilog;
            std::string second =
                language == VHDL ? vhdl_gate_signal(pin.gate_signal, read_back) : pin.gate_signal;
            return part[0] + table_name(pin.name) + (language == VHDL ? "_net" : "_wire") + part[1] +
                   table_name(second) + part[2];
        }
    return "";
}

void add_register_values(TEMPLATE_VALUES &values) {
    std::string outs, wires, inner;
    int32_t count = DYNA_count(ACCESS_REG);
    std::vector<TEMPLATE_NAMES> &registers = values.lists['B'];
    std::vector<TEMPLATE_NAMES> &undriven = values.lists['L'];
    std::vector<TEMPLATE_NAMES> &user = values.lists['R'];
    for (int32_t row = 0; row < count; ++row) {
        std::string name = ACCESS_REG[row], wire = register_wire(row);
        bool last = row == count - 1;
        std::string out = table_name(name + "_out");
        outs += (row == 0 ? "" : ", ") + out;
        wires += (row == 0 ? "" : ", ") + wire;
        if (!is_user_register(row) && !is_register(row, "boundary"))
            inner += ", " + wire;
        registers.push_back({{"REG", name},
                             {"REG_OUT", out},
                             {"REG12", padded(name, 12)},
                             {"REG8", padded(name, 8)},
                             {"WIRE", wire},
                             {"CODE", integer_to_binary_code(row, DR_SEL_LINE)},
                             {"PORT_END", last ? " );" : ","},
                             {"TERM_END", last ? ");" : " |"}});
        if (is_undriven_register(row))
            undriven.push_back({{"WIRE", wire}});
        if (is_user_register(row))
            user.push_back({{"REG_IN", table_name(name + "_in")}});
    }
    values.names["REGISTER_OUTS"] = outs;
    values.names["REGISTER_WIRES"] = wires;
    values.names["INNER_WIRES"] = inner;
}

void add_enable_values(TEMPLATE_VALUES &values, const READ_BACK &read_back, RTL_LANGUAGE language) {
    std::vector<TEMPLATE_NAMES> &gated = values.lists['P'];
    for (const ENABLE_PIN &pin : rows(INST_ENABLE_PIN))
        if (is_gated(pin))
            gated.push_back({{"PIN", table_name(pin.name)}, {"GATED", gated_text(pin, read_back, language)}});
    for (const char *output : read_back.outputs)
        values.lists['J'].push_back({{"PORT", table_name(output)}});
}

void add_port_names(TEMPLATE_NAMES &names) {
    const struct {
        const char *name, *text;
    } table[] = {
        {"TDI", TAP_PORT[PORT_TDI].tap_pin},   {"TDO", TAP_PORT[PORT_TDO].tap_pin},
        {"TMS", TAP_PORT[PORT_TMS].tap_pin},   {"TCK", TAP_PORT[PORT_TCK].tap_pin},
        {"TRST", TAP_PORT[PORT_TRST].tap_pin}, {"TDO_EN", TAP_TDO_EN_PIN},
        {"SHIFT_DR", TAP_PIN[SIG_SHIFT]},      {"CLOCK_DR", TAP_PIN[SIG_CLOCK]},
        {"UPDATE_DR", TAP_PIN[SIG_UPDATE]},    {"FIRST_BCELL", TAP_CONTR->first_bcell},
        {"LAST_BCELL", TAP_CONTR->last_bcell}, {"TAP_MODULE", TAP_MODULE_NAME},
    };
    // A reset that is no port has a name of the logic's own.
    names["RESET"] = has(SIG_RST) ? table_name(TAP_PIN[SIG_RST]) : text_or_empty(TAP_PIN[SIG_RST]);
    for (auto [name, text] : table)
        names[name] = table_name(text_or_empty(text));
}

} // namespace

std::string register_wire(int32_t row) {
    if (is_register(row, "boundary"))
        return table_name(TAP_CONTR->last_bcell);
    if (is_register(row, "bypass"))
        return "BYPASS_out";
    if (is_register(row, "idcode"))
        return "IDCODE_out";
    if (is_register(row, "usercode"))
        return "USERCODE_out";
    return table_name(std::string(ACCESS_REG[row]) + "_out");
}

bool is_undriven_register(int32_t row) {
    return is_register(row, "usercode") || (is_register(row, "idcode") && !has_id_register());
}

std::vector<const ENABLE_PIN *> pins_of_unknown_gates(RTL_LANGUAGE language) {
    auto key = [language](const std::string &name) { return language == VHDL ? lower_case(name) : name; };
    READ_BACK read_back = read_back_outputs();
    std::unordered_set<std::string> readable;
    for (const char *wire : INNER_WIRES)
        readable.insert(key(wire));
    readable.insert(key(text_or_empty(TAP_PIN[SIG_RST])));
    for (const TAP_MODULE_PORT &port : tap_ports()) {
        bool is_read = language == VERILOG || !port.is_output ||
                       vhdl_gate_signal(port.name.c_str(), read_back) != port.name;
        if (port.width == 0 && is_read)
            readable.insert(key(port.name));
    }
    std::vector<const ENABLE_PIN *> pins;
    for (const ENABLE_PIN &pin : rows(INST_ENABLE_PIN))
        if (is_gated(pin) && !readable.contains(key(pin.gate_signal)))
            pins.push_back(&pin);
    return pins;
}

std::string tap_letters() {
    std::string letters;
    for (const TEMPLATE_LETTER &row : TEMPLATE_LETTERS)
        letters += row.letter;
    return letters;
}

TEMPLATE_VALUES tap_values(RTL_LANGUAGE language) {
    TEMPLATE_VALUES values;
    for (const TEMPLATE_LETTER &row : TEMPLATE_LETTERS)
        if (row.holds())
            values.letters += row.letter;
    add_state_values(values);
    READ_BACK read_back = read_back_outputs();
    add_decoder_values(values, language, [&](const char *name) { return inner_name(name, read_back); });
    add_register_values(values);
    add_enable_values(values, read_back, language);
    TEMPLATE_NAMES &names = values.names;
    add_port_names(names);
    names["N"] = std::to_string(INST_LEN);
    names["N-1"] = std::to_string(INST_LEN - 1);
    names["L"] = std::to_string(DR_SEL_LINE);
    names["L-1"] = std::to_string(DR_SEL_LINE - 1);
    names["CAPTURE"] = pattern_text(capture_pattern(), language);
    names["RESET_OP"] = pattern_text(reset_opcode(), language);
    names["IDCODE_REG"] = pattern_text(text_or_empty(IDCODE_REG), language);
    names["USERCODE_REG"] =
        DYNA_count(USERCODE_REG) > 0 ? pattern_text(USERCODE_REG[0], language) : std::string(ID_LENGTH, '0');
    names["IDMODE_PORT"] = has_id_mode() ? ", IDMODE" : "";
    names["RESET_NET"] = names["RESET"] + (has(SIG_RST) ? "_net" : "");
    names["UPDATE_NET"] = table_name(inner_name(TAP_PIN[SIG_UPDATE], read_back));
    return values;
}
