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

void add_decoder_values(TEMPLATE_VALUES &values, RTL_LANGUAGE language) {
    TEMPLATE_NAMES &names = values.names;
    names["MODE1_TERMS"] = mode_terms(1, language);
    names["MODE2_TERMS"] = mode_terms(2, language);
    names["MODE3_TERMS"] = mode_terms(3, language);
    names["HIGHZ_TERMS"] = output_terms(KNOWN_HIGHZ, language);
    names["CHIP_TEST_TERMS"] = output_terms(KNOWN_CHIP_TEST, language);
    names["ATPG_TERMS"] = output_terms(KNOWN_VELMORA_ATPG, language);
    names["IDMODE_TERMS"] = id_mode_terms(language);
    names["SELECTIONS"] = verilog_selections();
    std::vector<std::string> clamp = instruction_opcodes(INST_EXIST[KNOWN_CLAMP]);
    std::string terms = joined_terms(clamp, " | ", VERILOG);
    names["CLAMP_TERMS"] = clamp.size() > 1 ? "( " + terms + " )" : terms;
    values.lists['F'] = vhdl_choices();

    ENABLE_USES uses = enable_uses();
    std::vector<TEMPLATE_NAMES> &pins = values.lists['N'];
    for (const ENABLE_PIN &pin : rows(INST_ENABLE_PIN)) {
        auto width = static_cast<int32_t>(std::string_view(pin.value).size());
        bool wide = width > 1;
        std::string vector = format_text("std_logic_vector(%d downto 0)", width - 1);
        pins.push_back({
            {"PIN", table_name(pin.name)},
            {"RANGE", wide ? format_text("[%d:0]", width - 1) : ""},
            {"TYPE", wide ? vector : "std_logic"},
            {"PIN_TERMS",
             wide ? wide_enable_terms(pin, uses, language) : single_enable_terms(pin, uses, language)},
            {"PIN_GAP", wide ? "\n" : ""},
        });
    }
}
