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
    {'U', [] { return BCELL_HAS[SIG_UPDATE] != 0; }},
    {'O', [] { return BCELL_HAS[SIG_RST] != 0; }},
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

/// The ports of the TAP by name without regard to case, as VHDL takes them.
using PORTS_BY_KEY = std::unordered_map<std::string, const TAP_MODULE_PORT *>;

PORTS_BY_KEY ports_by_key(const std::vector<TAP_MODULE_PORT> &ports) {
    PORTS_BY_KEY by_key;
    for (const TAP_MODULE_PORT &port : ports)
        by_key.emplace(lower_case(port.name), &port);
    return by_key;
}

/// How a gate reads its second input. The outputs that always have a signal are read in the spelling of the
/// gate.
std::string gate_input(const char *signal, const PORTS_BY_KEY &ports, RTL_LANGUAGE language) {
    auto found = ports.find(lower_case(signal));
    const TAP_MODULE_PORT *port = found == ports.end() ? nullptr : found->second;
    if (language == VERILOG)
        return signal;
    if ((port != nullptr && port->signal == OWN_SIGNAL) || same_text_no_case(signal, "SHIFT_DR") ||
        same_text_no_case(signal, "CLOCK_DR"))
        return std::string(signal) + "_net";
    return port != nullptr && port->inner != port->name ? port->inner : signal;
}

std::string gated_text(const ENABLE_PIN &pin, const PORTS_BY_KEY &ports, RTL_LANGUAGE language) {
    for (const GATE_TEXT &gate : GATES)
        if (gate.kind == pin.gate_kind) {
            const char *const *part = language == VHDL ? gate.vhdl : gate.verilog;
            return part[0] + table_name(pin.name) + (language == VHDL ? "_net" : "_wire") + part[1] +
                   table_name(gate_input(pin.gate_signal, ports, language)) + part[2];
        }
    return "";
}

/// The wire that carries a data register's output to the multiplexer in the top module; marked where the
/// tables name it.
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

/// The enable pins with a gate, and the outputs that have a signal because a gate reads them.
void add_gate_values(TEMPLATE_VALUES &values, const std::vector<TAP_MODULE_PORT> &ports,
                     RTL_LANGUAGE language) {
    PORTS_BY_KEY by_key = ports_by_key(ports);
    std::vector<TEMPLATE_NAMES> &gated = values.lists['P'];
    for (const ENABLE_PIN &pin : rows(INST_ENABLE_PIN))
        if (is_gated(pin))
            gated.push_back({{"PIN", table_name(pin.name)}, {"GATED", gated_text(pin, by_key, language)}});
    std::vector<TEMPLATE_NAMES> &read_back = values.lists['J'];
    for (const TAP_MODULE_PORT &port : ports) {
        if (port.signal == SIGNAL_FOR_GATES && port.inner != port.name)
            read_back.push_back({{"PORT", table_name(port.name)}});
        if (same_text(port.name.c_str(), TAP_PIN[SIG_UPDATE]))
            values.names["UPDATE_NET"] = table_name(port.inner);
    }
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
    names["RESET"] = BCELL_HAS[SIG_RST] ? table_name(TAP_PIN[SIG_RST]) : text_or_empty(TAP_PIN[SIG_RST]);
    for (auto [name, text] : table)
        names[name] = table_name(text_or_empty(text));
}

} // namespace

bool is_undriven_register(int32_t row) {
    return is_register(row, "usercode") || (is_register(row, "idcode") && !has_id_register());
}

std::vector<const ENABLE_PIN *> pins_of_unknown_gates(RTL_LANGUAGE language) {
    auto key = [language](const std::string &name) { return language == VHDL ? lower_case(name) : name; };
    std::vector<TAP_MODULE_PORT> ports = tap_ports(language);
    PORTS_BY_KEY by_key = ports_by_key(ports);
    std::unordered_set<std::string> readable;
    for (const char *wire : INNER_WIRES)
        readable.insert(key(wire));
    readable.insert(key(text_or_empty(TAP_PIN[SIG_RST])));
    for (const TAP_MODULE_PORT &port : ports) {
        bool is_read = language == VERILOG || !port.is_output ||
                       gate_input(port.name.c_str(), by_key, language) != port.name;
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
    std::vector<TAP_MODULE_PORT> ports = tap_ports(language);
    add_decoder_values(values, language, ports);
    add_register_values(values);
    add_gate_values(values, ports, language);
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
    names["RESET_NET"] = names["RESET"] + (BCELL_HAS[SIG_RST] ? "_net" : "");
    return values;
}
