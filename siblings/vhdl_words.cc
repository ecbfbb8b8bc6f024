#include "siblings/vhdl_words.hh"

#include <cctype>
#include <iterator>
#include <unordered_set>

namespace {

constexpr std::string_view reserved[] = {
    "abs", "access", "after", "alias", "all", "and", "architecture", "array", "assert", "assume",
    "assume_guarantee", "attribute", "begin", "block", "body", "buffer", "bus", "case", "component",
    "configuration", "constant", "context", "cover", "default", "disconnect", "downto", "else", "elsif",
    "end", "entity", "exit", "fairness", "file", "for", "force", "function", "generate", "generic", "group",
    "guarded", "if", "impure", "in", "inertial", "inout", "is", "label", "library", "linkage", "literal",
    "loop", "map", "mod", "nand", "new", "next", "nor", "not", "null", "of", "on", "open", "or", "others",
    "out", "package", "parameter", "port", "postponed", "private", "procedure", "process", "property",
    "protected", "pure", "range", "record", "register", "reject", "release", "rem", "report", "restrict",
    "restrict_guarantee", "return", "rol", "ror", "select", "sequence", "severity", "shared", "signal", "sla",
    "sll", "sra", "srl", "strong", "subtype", "then", "to", "transport", "type", "unaffected", "units",
    "until", "use", "variable", "view", "vmode", "vpkg", "vprop", "vunit", "wait", "when", "while", "with",
    "xnor", "xor",
    // What a netlist itself says.
    "ieee", "std", "work", "std_logic", "std_logic_1164", "std_logic_vector"};

bool is_word(std::string_view folded) {
    static const std::unordered_set<std::string_view> words(std::begin(reserved), std::end(reserved));
    return words.contains(folded);
}

} // namespace

std::string VHDL_folded(std::string_view text) {
    std::string folded(text);
    for (char &c : folded)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return folded;
}

bool VHDL_is_basic(std::string_view text) {
    if (text.empty() || !std::isalpha(static_cast<unsigned char>(text[0])) || text.back() == '_')
        return false;
    for (size_t i = 0; i < text.size(); i++)
        if (text[i] == '_' ? text[i - 1] == '_' : !std::isalnum(static_cast<unsigned char>(text[i])))
            return false;
    return !is_word(VHDL_folded(text));
}

std::string VHDL_extended(std::string_view text) {
    std::string identifier = "\\";
    for (char c : text) {
        if (c < ' ' || c > '~')
            return {};
        identifier += c;
        if (c == '\\')
            identifier += c;
    }
    return text.empty() ? std::string() : identifier + "\\";
}
