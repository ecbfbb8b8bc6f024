#include "rtl/decode_terms.hh"

#include "planning/tap_state.hh"
#include "rtl/module_names.hh"
#include "support/text.hh"

#include <algorithm>
#include <set>

namespace {

/// Which instructions raise the mode signals, in the order of their terms. HIGHZ joins the mode whose pin it
/// shares.
struct MODE_DRIVER {
    KNOWN_INSTRUCTION known;
    bool modes[3];
};
constexpr MODE_DRIVER MODE_DRIVERS[] = {
    {KNOWN_EXTEST, {true, false, true}}, {KNOWN_SAMPLE, {false, false, true}},
    {KNOWN_INTEST, {true, true, false}}, {KNOWN_HIGHZ, {false, false, false}},
    {KNOWN_CLAMP, {true, false, true}},  {KNOWN_RUNBIST, {true, false, false}},
};

bool drives_mode(const MODE_DRIVER &driver, int32_t mode) {
    return driver.modes[mode - 1] || (driver.known == KNOWN_HIGHZ && highz_mode() == mode);
}

/// "INST == 4'b0000", the comparison itself.
std::string comparison(const std::string &opcode, RTL_LANGUAGE language) {
    return language == VHDL ? "INST = \"" + pattern_text(opcode, VHDL) + "\""
                            : format_text("INST == %d'b%s", INST_LEN, opcode.c_str());
}

std::string term(const std::string &opcode, RTL_LANGUAGE language) {
    return "( " + comparison(opcode, language) + " )";
}

std::string joined_terms(const std::vector<std::string> &opcodes, const char *between,
                         RTL_LANGUAGE language) {
    std::string text;
    for (const std::string &opcode : opcodes)
        text += (text.empty() ? "" : between) + term(opcode, language);
    return text;
}

std::string vhdl_selected(const std::string &terms, const char *active, const char *idle) {
    return format_text("'%s' when %s\n                else '%s'", active, terms.c_str(), idle);
}

/// The third mode joins the opcodes of EXTEST, and those of SAMPLE, without a blank ahead.
const char *mode_separator(int32_t mode, KNOWN_INSTRUCTION known, size_t opcode) {
    bool narrow = known == KNOWN_EXTEST || (known == KNOWN_SAMPLE && opcode > 0);
    return mode == 3 && narrow ? "| " : " | ";
}

std::string mode_terms(int32_t mode, RTL_LANGUAGE language) {
    std::string text;
    for (const MODE_DRIVER &driver : MODE_DRIVERS) {
        if (!drives_mode(driver, mode))
            continue;
        std::vector<std::string> opcodes = instruction_opcodes(INST_EXIST[driver.known]);
        for (size_t i = 0; i < opcodes.size(); ++i) {
            if (!text.empty())
                text += language == VHDL ? " or " : mode_separator(mode, driver.known, i);
            text += term(opcodes[i], language);
        }
    }
    if (language == VERILOG)
        return text.empty() ? " 1'b0" : text;
    return text.empty() ? "'0'" : vhdl_selected(text, "1", "0");
}

std::string output_terms(KNOWN_INSTRUCTION known, RTL_LANGUAGE language) {
    std::vector<std::string> opcodes = instruction_opcodes(INST_EXIST[known]);
    return language == VHDL ? vhdl_selected(joined_terms(opcodes, " or ", VHDL), "1", "0")
                            : joined_terms(opcodes, " | ", VERILOG);
}

std::string id_mode_terms(RTL_LANGUAGE language) {
    if (language == VHDL)
        return output_terms(KNOWN_IDCODE, VHDL);
    std::string text;
    for (const std::string &opcode : instruction_opcodes(INST_EXIST[KNOWN_IDCODE]))
        text += (text.empty() ? "" : "||\n" + std::string(26, ' ')) + comparison(opcode, VERILOG) + " ";
    return text;
}

std::string single_enable_terms(const ENABLE_PIN &pin, const ENABLE_USES &uses, RTL_LANGUAGE language) {
    bool active_low = same_text(pin.value, "0");
    std::string text, new_line = " ||\n" + std::string(std::string_view(pin.name).size() + 19, ' ');
    for (const ENABLE_USE &use : uses.at(pin.name))
        text +=
            (text.empty()       ? ""
             : language == VHDL ? " or "
                                : new_line) +
            joined_terms(instruction_opcodes(use.instruction), language == VHDL ? " or " : " || ", language);
    if (language == VHDL)
        return vhdl_selected(text, active_low ? "0" : "1", active_low ? "1" : "0");
    return active_low ? " ~( " + text + " )" : " " + text;
}

std::string wide_enable_terms(const ENABLE_PIN &pin, const ENABLE_USES &uses, RTL_LANGUAGE language) {
    size_t name_size = std::string_view(pin.name).size();
    std::string text, indent(name_size + (language == VHDL ? 11 : 19), ' ');
    int32_t width = static_cast<int32_t>(std::string_view(pin.value).size());
    for (const ENABLE_USE &use : uses.at(pin.name))
        for (const std::string &opcode : instruction_opcodes(use.instruction)) {
            if (language == VHDL)
                text += (text.empty() ? "  \"" : indent + " \"") + pattern_text(use.value, VHDL) +
                        "\" when  " + comparison(opcode, VHDL) + " else\n";
            else
                text += (text.empty() ? " (" : indent + "(") + comparison(opcode, VERILOG) + ") ? " +
                        format_text("%d'b%s :\n", width, use.value);
        }
    if (language == VHDL)
        return text + indent + "\"" + enable_default(pin, uses) + "\"";
    return text + indent + format_text("%d'b%s", width, enable_default(pin, uses).c_str());
}

/// The data register that an instruction selects, in the one spelling that macros and constants have.
std::string selected_register(const INSTRUCTION &instruction) {
    return ACCESS_REG[find_access_register(register_base(instruction.register_name))];
}

std::string verilog_selections() {
    std::string text, indent(28, ' ');
    for (int32_t row = 0; row < DYNA_count(INSTRUCTIONS); ++row)
        for (const std::string &opcode : instruction_opcodes(row))
            text += (text.empty() ? "" : indent) + "(" + comparison(opcode, VERILOG) + ") ? `SEL_" +
                    selected_register(INSTRUCTIONS[row]) + (row == 0 ? " :\n" : ":\n");
    return text + indent + "`SEL_BYPASS;";
}

/// The choices of the VHDL decoder. An opcode may stand there once; the first row that has it wins, as in
/// Verilog.
std::vector<TEMPLATE_NAMES> vhdl_choices() {
    std::vector<TEMPLATE_NAMES> choices;
    std::set<std::string> seen;
    for (int32_t row = 0; row < DYNA_count(INSTRUCTIONS); ++row)
        for (const std::string &opcode : instruction_opcodes(row))
            if (std::string text = pattern_text(opcode, VHDL); seen.insert(text).second)
                choices.push_back({{"OPCODE", text}, {"REG", selected_register(INSTRUCTIONS[row])}});
    return choices;
}

/// The outputs of the decoder, each with the letter under which DECODER_ORDERS knows it.
struct DECODER_PORT {
    char letter;
    TEMPLATE_NAMES row;
};

std::vector<DECODER_PORT> decoder_ports(RTL_LANGUAGE language, const INNER_NAME &inner_name) {
    std::vector<DECODER_PORT> ports;
    auto add = [&](char letter, const std::string &port, const std::string &net, const std::string &terms) {
        ports.push_back({letter, {{"PORT", port}, {"NET", net}, {"TERMS", terms}}});
    };
    auto net = [&](const char *name) { return table_name(language == VHDL ? inner_name(name) : name); };
    if (has_instruction(KNOWN_CHIP_TEST))
        add('K', "CHIP_TEST", net("CHIP_TEST"), output_terms(KNOWN_CHIP_TEST, language));
    if (has_highz_port())
        add('H', table_name(TAP_HIZ_PIN), net(TAP_HIZ_PIN), output_terms(KNOWN_HIGHZ, language));
    for (int32_t mode = 1; mode <= 3; ++mode) {
        CONTROL_SIGNAL signal = MODE_SIGNALS[mode - 1];
        const char *gap = language == VERILOG && mode != 2 ? " " : "";
        if (BCELL_HAS[signal])
            add(static_cast<char>('0' + mode), table_name(TAP_PIN[signal]), net(TAP_PIN[signal]),
                gap + mode_terms(mode, language));
    }
    if (has_id_mode())
        add('I', "IDMODE", "IDMODE", id_mode_terms(language));
    ENABLE_USES uses = enable_uses();
    for (const ENABLE_PIN &pin : rows(INST_ENABLE_PIN)) {
        bool is_gated = pin.gate_kind != GATE_NONE;
        bool wide = std::string_view(pin.value).size() > 1;
        std::string gated =
            language == VHDL ? table_name(std::string(pin.name) + "_net") : table_name(pin.name) + "_wire";
        add('N', table_name(pin.name), is_gated ? gated : net(pin.name),
            wide ? wide_enable_terms(pin, uses, language) : single_enable_terms(pin, uses, language));
        if (wide) {
            size_t high = std::string_view(pin.value).size() - 1;
            ports.back().row["RANGE"] = format_text("[%zu:0]", high);
            ports.back().row["TYPE"] = format_text("std_logic_vector(%zu downto 0)", high);
            ports.back().row["GAP"] = "\n";
        }
    }
    if (has_instruction(KNOWN_VELMORA_ATPG)) {
        const char *name = language == VHDL ? "velmora_atpg_mode" : "velmora_test_mode";
        add('M', name, name, output_terms(KNOWN_VELMORA_ATPG, language));
    }
    return ports;
}

/// The orders in which the text has the decoder's ports, per list of the templates: the header with the
/// instance (Q), the declarations (V), the assignments (=). The Verilog assigns IDMODE in a place of its own.
struct DECODER_ORDER {
    char list;
    std::string_view verilog, vhdl;
};
constexpr DECODER_ORDER DECODER_ORDERS[] = {
    {'Q', "KH123INM", "KH123INM"},
    {'V', "KHI123NM", "KHI123MN"},
    {'=', "123HKNM", "123IHKMN"},
};

/// What the decoder's Verilog instance is joined to, four enable pins to a line.
std::string decoder_nets(const std::vector<DECODER_PORT> &ports) {
    std::string text = "DR_SELECT, INST";
    int32_t count = 0;
    for (const DECODER_PORT &port : ports) {
        bool new_line = port.letter == 'N' && count++ % 4 == 0;
        text += (new_line ? ",\n" + std::string(26, ' ') : ", ") + port.row.at("NET");
    }
    return text;
}

} // namespace

std::string pattern_text(const std::string &pattern, RTL_LANGUAGE language) {
    std::string text = pattern;
    if (language == VHDL)
        std::replace(text.begin(), text.end(), 'x', 'X');
    return text;
}

ENABLE_USES enable_uses() {
    ENABLE_USES uses;
    for (int32_t row = 0; row < DYNA_count(INSTRUCTIONS); ++row) {
        const INSTRUCTION &instruction = INSTRUCTIONS[row];
        for (int32_t i = 0; i < DYNA_count(instruction.enable_pins); ++i) {
            std::vector<ENABLE_USE> &of_pin = uses[instruction.enable_pins[i]];
            const char *value = instruction.enable_values[i];
            if (of_pin.empty() || of_pin.back().instruction != row)
                of_pin.push_back({row, value ? value : "1"});
        }
    }
    return uses;
}

std::string enable_default(const ENABLE_PIN &pin, const ENABLE_USES &uses) {
    std::set<std::string> used;
    for (const ENABLE_USE &use : uses.at(pin.name))
        used.insert(use.value);
    auto width = static_cast<int32_t>(std::string_view(pin.value).size());
    std::string pattern;
    for (int32_t k = 0; k < 2 * width; ++k) {
        pattern = integer_to_binary_code(k, width);
        std::reverse(pattern.begin(), pattern.end()); // bit 0 is the leftmost character
        if (!used.contains(pattern))
            break;
    }
    return pattern;
}

void add_decoder_values(TEMPLATE_VALUES &values, RTL_LANGUAGE language, const INNER_NAME &inner_name) {
    TEMPLATE_NAMES &names = values.names;
    names["RANGE"] = "";
    names["TYPE"] = "std_logic";
    names["GAP"] = "";
    names["IDMODE_TERMS"] = id_mode_terms(language);
    names["SELECTIONS"] = verilog_selections();
    std::vector<std::string> clamp = instruction_opcodes(INST_EXIST[KNOWN_CLAMP]);
    std::string terms = joined_terms(clamp, " | ", VERILOG);
    names["CLAMP_TERMS"] = clamp.size() > 1 ? "( " + terms + " )" : terms;
    values.lists['F'] = vhdl_choices();

    std::vector<DECODER_PORT> ports = decoder_ports(language, inner_name);
    names["DECODER_NETS"] = decoder_nets(ports);
    for (const DECODER_ORDER &order : DECODER_ORDERS) {
        std::vector<TEMPLATE_NAMES> &list = values.lists[order.list];
        for (char letter : language == VHDL ? order.vhdl : order.verilog)
            for (const DECODER_PORT &port : ports)
                if (port.letter == letter)
                    list.push_back(port.row);
    }
    // The input comes first in the header, so that it is the last one where there is no output of these.
    std::vector<TEMPLATE_NAMES> &header = values.lists['Q'];
    header.insert(header.begin(), TEMPLATE_NAMES{{"PORT", "INST"}});
    for (TEMPLATE_NAMES &row : header)
        row["PORT_END"] = &row == &header.back() ? " );" : ",";
}
