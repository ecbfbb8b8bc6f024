#include "kit/bsdl_names.hh"

#include "support/text.hh"

#include <algorithm>
#include <cctype>

namespace {

const std::unordered_set<std::string_view> &reserved_words() {
    static const std::unordered_set<std::string_view> words = {
        // VHDL
        "abs", "access", "after", "alias", "all", "and", "architecture", "array", "assert", "attribute",
        "begin", "block", "body", "buffer", "bus", "case", "component", "configuration", "constant",
        "disconnect", "downto", "else", "elsif", "end", "entity", "exit", "file", "for", "function",
        "generate", "generic", "group", "guarded", "if", "impure", "in", "inertial", "inout", "is", "label",
        "library", "linkage", "literal", "loop", "map", "mod", "nand", "new", "next", "nor", "not", "null",
        "of", "on", "open", "or", "others", "out", "package", "port", "postponed", "procedure", "process",
        "protected", "pure", "range", "record", "register", "reject", "rem", "report", "return", "rol", "ror",
        "select", "severity", "shared", "signal", "sla", "sll", "sra", "srl", "subtype", "then", "to",
        "transport", "type", "unaffected", "units", "until", "use", "variable", "wait", "when", "while",
        "with", "xnor", "xor",
        // the types of VHDL that a BSDL file uses
        "bit", "bit_vector", "boolean", "false", "integer", "real", "string", "true", "std", "work",
        "standard",
        // BSDL
        "at_pins", "bc_0", "bc_1", "bc_2", "bc_3", "bc_4", "bc_5", "bc_6", "bc_7", "bc_8", "bc_9", "bc_10",
        "bc_99", "bidir", "bidir_in", "bidir_out", "both", "boundary", "boundary_cells", "boundary_length",
        "boundary_register", "bscan_inst", "bsdl_extension", "bypass", "cap", "cap_data", "captures",
        "cell_data", "cell_info", "cell_type", "clamp", "clamped_outputs", "clock", "clock_info",
        "clock_level", "compliance_patterns", "component_conformance", "control", "controlr",
        "design_warning", "device_id", "differential_current", "differential_voltage", "expect_data",
        "extest", "highz", "id_bits", "id_string", "idcode", "idcode_register", "input",
        "instruction_capture", "instruction_length", "instruction_opcode", "instruction_private", "internal",
        "intest", "intest_execution", "keeper", "low", "observe_only", "observing", "one", "output2",
        "output3", "physical_pin_map", "pi", "pin_map", "pin_map_string", "po", "port_grouping", "preload",
        "pull0", "pull1", "register_access", "runbist", "runbist_execution", "sample", "std_1149_1_1990",
        "std_1149_1_1994", "std_1149_1_2001", "tap_scan_clock", "tap_scan_in", "tap_scan_mode",
        "tap_scan_out", "tap_scan_reset", "upd", "usercode", "usercode_register", "wait_duration", "weak0",
        "weak1", "x", "z", "zero"};
    return words;
}

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}
bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Letters, digits and single '_', none of them last.
std::string with_legal_characters(std::string_view text) {
    std::string name;
    for (char c : text) {
        char legal = is_letter(c) || is_digit(c) ? c : '_';
        if (legal != '_' || (!name.empty() && name.back() != '_') || name.empty())
            name += legal;
    }
    while (!name.empty() && name.back() == '_')
        name.pop_back();
    return name;
}

std::string cut(const std::string &name, size_t length) {
    return with_legal_characters(name.substr(0, length));
}

} // namespace

std::string bsdl_legal_name(std::string_view text) {
    std::string name = with_legal_characters(text);
    if (name.empty() || !is_letter(name[0]))
        name = "p_" + name.substr(std::min(name.size(), name.find_first_not_of('_')));
    if (reserved_words().contains(lower_case(name)))
        name += "_p";
    return with_legal_characters(name);
}

std::string bsdl_take_name(BSDL_NAMES &names, const std::string &text) {
    std::string name = bsdl_legal_name(text), taken = name;
    if (name.size() > BSDL_NAME_LENGTH)
        taken = name = cut(name, BSDL_NAME_LENGTH);
    for (int number = 2; !names.taken.insert(lower_case(taken)).second; ++number) {
        std::string tail = format_text("_%d", number);
        taken = cut(name, BSDL_NAME_LENGTH - tail.size()) + tail;
    }
    if (taken != text)
        names.renamed.push_back({text, taken});
    return taken;
}

std::string bsdl_pin_name(std::string_view text) {
    return with_legal_characters(text);
}

bool bsdl_standard_instruction(std::string &name) {
    constexpr std::string_view STANDARD[] = {"BYPASS",  "EXTEST", "SAMPLE", "PRELOAD",  "INTEST",
                                             "RUNBIST", "CLAMP",  "IDCODE", "USERCODE", "HIGHZ"};
    for (std::string_view standard : STANDARD)
        if (lower_case(name) == lower_case(standard)) {
            name = standard;
            return true;
        }
    return false;
}
