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

/// What each opcode selects, in table order. In VHDL an opcode may stand there once; the first row that has
/// it wins, as it does in Verilog by itself.
std::vector<TEMPLATE_NAMES> selections(RTL_LANGUAGE language) {
    std::vector<TEMPLATE_NAMES> choices;
    std::set<std::string> seen;
    for (int32_t row = 0; row < DYNA_count(INSTRUCTIONS); ++row)
        for (const std::string &opcode : instruction_opcodes(row)) {
            std::string text = pattern_text(opcode, language);
            if (language == VERILOG || seen.insert(text).second)
                choices.push_back({{"LEAD", choices.empty() ? "assign  DR_SELECT = " : std::string(20, ' ')},
                                   {"OPCODE", text},
                                   {"REG", selected_register(INSTRUCTIONS[row])},
                                   {"GAP", row == 0 ? " " : ""}});
        }
    return choices;
}

/// The outputs of the decoder, each with the letter under which DECODER_ORDERS knows it.
struct DECODER_PORT {
    char letter;
    TEMPLATE_NAMES row;
};

/// What drives the enable pin, and the words of one of several bits. A gate stands between the decoder and
/// its pin.
void add_enable_pin(TEMPLATE_NAMES &row, const ENABLE_PIN &pin, const ENABLE_USES &uses,
                    RTL_LANGUAGE language) {
    if (pin.gate_kind != GATE_NONE)
        row["NET"] =
            language == VHDL ? table_name(std::string(pin.name) + "_net") : table_name(pin.name) + "_wire";
    int32_t width = enable_width(pin.value);
    row["TERMS"] =
        width == 0 ? single_enable_terms(pin, uses, language) : wide_enable_terms(pin, uses, language);
    if (width == 0)
        return;
    row["RANGE"] = format_text("[%d:0]", width - 1);
    row["TYPE"] = format_text("std_logic_vector(%d downto 0)", width - 1);
    row["GAP"] = "\n";
}

std::vector<DECODER_PORT> decoder_ports(RTL_LANGUAGE language, const std::vector<TAP_MODULE_PORT> &ports) {
    std::vector<DECODER_PORT> made;
    ENABLE_USES uses = enable_uses();
    const ENABLE_PIN *pin = INST_ENABLE_PIN; // the ports have the pins in this order
    for (const TAP_MODULE_PORT &port : ports) {
        auto name = [&port](const std::string &text) { return port.is_fixed ? text : table_name(text); };
        TEMPLATE_NAMES row = {{"PORT", name(port.name)}, {"NET", name(port.inner)}};
        switch (port.role) {
        case ROLE_CHIP_TEST:
            row["TERMS"] = output_terms(KNOWN_CHIP_TEST, language);
            break;
        case ROLE_HIGHZ:
            row["TERMS"] = output_terms(KNOWN_HIGHZ, language);
            break;
        case ROLE_ATPG:
            row["PORT"] = port.inner;
            row["TERMS"] = output_terms(KNOWN_VELMORA_ATPG, language);
            break;
        case ROLE_MODE1:
        case ROLE_MODE2:
        case ROLE_MODE3:
            row["TERMS"] = (language == VERILOG && port.role != ROLE_MODE2 ? " " : "") +
                           mode_terms(port.role - ROLE_MODE1 + 1, language);
            break;
        case ROLE_ENABLE:
            add_enable_pin(row, *pin++, uses, language);
            break;
        default:
            continue;
        }
        made.push_back({port.role, std::move(row)});
    }
    if (has_id_mode())
        made.push_back({'I', {{"PORT", "IDMODE"}, {"NET", "IDMODE"}, {"TERMS", id_mode_terms(language)}}});
    return made;
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

/// The ports in one of the orders; those of one letter keep their order.
std::vector<DECODER_PORT> sorted(std::vector<DECODER_PORT> ports, std::string_view letters) {
    std::erase_if(ports, [&](const DECODER_PORT &port) { return letters.find(port.letter) == letters.npos; });
    std::ranges::stable_sort(ports, {}, [&](const DECODER_PORT &port) { return letters.find(port.letter); });
    return ports;
}

/// What the decoder's Verilog instance is joined to, four enable pins to a line.
std::string decoder_nets(const std::vector<DECODER_PORT> &ports) {
    std::string text = "DR_SELECT, INST";
    int32_t count = 0;
    for (const DECODER_PORT &port : ports) {
        bool new_line = port.letter == 'N' && count++ % 4 == 0;
        text += (new_line ? ",\n" + std::string(26, ' ') : ", ") + *port.row.find("NET");
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

void add_decoder_values(TEMPLATE_VALUES &values, RTL_LANGUAGE language,
                        const std::vector<TAP_MODULE_PORT> &tap_ports) {
    TEMPLATE_NAMES &names = values.names;
    names["RANGE"] = "";
    names["TYPE"] = "std_logic";
    names["GAP"] = "";
    names["IDMODE_TERMS"] = id_mode_terms(language);
    std::vector<std::string> clamp = instruction_opcodes(INST_EXIST[KNOWN_CLAMP]);
    std::string terms = joined_terms(clamp, " | ", VERILOG);
    names["CLAMP_TERMS"] = clamp.size() > 1 ? "( " + terms + " )" : terms;
    values.lists['F'] = selections(language);

    std::vector<DECODER_PORT> ports = decoder_ports(language, tap_ports);
    names["DECODER_NETS"] = decoder_nets(sorted(ports, DECODER_ORDERS[0].verilog));
    for (const DECODER_ORDER &order : DECODER_ORDERS) {
        std::vector<TEMPLATE_NAMES> &list = values.lists[order.list];
        for (DECODER_PORT &port : sorted(ports, language == VHDL ? order.vhdl : order.verilog))
            list.push_back(std::move(port.row));
    }
    // The input comes first in the header, so that it is the last one where there is no output of these.
    std::vector<TEMPLATE_NAMES> &header = values.lists['Q'];
    header.insert(header.begin(), TEMPLATE_NAMES{{"PORT", "INST"}});
    for (TEMPLATE_NAMES &row : header)
        row["PORT_END"] = &row == &header.back() ? " );" : ",";
}
