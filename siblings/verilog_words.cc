#include "siblings/verilog_words.hh"

#include <array>
#include <bitset>
#include <iterator>
#include <unordered_set>

namespace {

// The first words stand in the order of VLOG_WORD.
constexpr std::string_view words[] = {
    "module", "macromodule", "endmodule", "input", "output", "inout", "wire", "tri", "supply0", "supply1",
    "reg", "signed", "integer", "assign", "parameter", "localparam", "primitive", "endprimitive", "function",
    "endfunction", "task", "endtask", "specify", "endspecify", "config", "endconfig", "defparam",
    // WORD_OTHERS: no more than reserved.
    "always", "and", "automatic", "begin", "buf", "bufif0", "bufif1", "case", "casex", "casez", "cell",
    "cmos", "deassign", "default", "design", "disable", "edge", "else", "end", "endcase", "endgenerate",
    "endtable", "event", "for", "force", "forever", "fork", "generate", "genvar", "highz0", "highz1", "if",
    "ifnone", "incdir", "include", "initial", "instance", "join", "large", "liblist", "library", "medium",
    "nand", "negedge", "nmos", "nor", "noshowcancelled", "not", "notif0", "notif1", "or", "pmos", "posedge",
    "pull0", "pull1", "pulldown", "pullup", "pulsestyle_onevent", "pulsestyle_ondetect", "rcmos", "real",
    "realtime", "release", "repeat", "rnmos", "rpmos", "rtran", "rtranif0", "rtranif1", "scalared",
    "showcancelled", "small", "specparam", "strong0", "strong1", "table", "time", "tran", "tranif0",
    "tranif1", "tri0", "tri1", "triand", "trior", "trireg", "unsigned", "use", "vectored", "wait", "wand",
    "weak0", "weak1", "while", "wor", "xnor", "xor"};

// Words of IEEE 1800 that Icarus Verilog, Verilator or Yosys take for reserved: escaped, they are names
// again.
constexpr std::string_view later_words[] = {
    "alias",         "always_comb", "always_ff",   "always_latch", "assert",     "assume",     "bind",
    "bit",           "break",       "byte",        "chandle",      "checker",    "class",      "clocking",
    "const",         "constraint",  "context",     "continue",     "cover",      "covergroup", "do",
    "endchecker",    "endclass",    "endclocking", "endinterface", "endpackage", "endprogram", "endproperty",
    "endsequence",   "enum",        "expect",      "export",       "extends",    "extern",     "final",
    "foreach",       "global",      "implements",  "implies",      "import",     "inside",     "int",
    "interface",     "let",         "local",       "logic",        "longint",    "matches",    "modport",
    "new",           "nexttime",    "null",        "package",      "packed",     "priority",   "program",
    "property",      "protected",   "pure",        "rand",         "randc",      "ref",        "restrict",
    "return",        "sequence",    "shortint",    "shortreal",    "soft",       "solve",      "static",
    "string",        "strong",      "struct",      "super",        "tagged",     "this",       "throughout",
    "timeprecision", "timeunit",    "type",        "typedef",      "union",      "unique",     "uwire",
    "var",           "virtual",     "void",        "weak",         "with",       "within"};

using WORD_SET = std::unordered_set<std::string_view>;

const WORD_SET &all_words() {
    static const WORD_SET all = [] {
        WORD_SET made(std::begin(words), std::end(words));
        made.insert(std::begin(later_words), std::end(later_words));
        return made;
    }();
    return all;
}

size_t ends_of(std::string_view text) {
    return size_t{static_cast<unsigned char>(text.front())} << 8 | static_cast<unsigned char>(text.back());
}

// True when some word begins and ends like the text, which few names do.
bool has_ends_of_a_word(std::string_view text) {
    static const std::bitset<1 << 16> ends = [] {
        std::bitset<1 << 16> made;
        for (std::string_view word : all_words())
            made.set(ends_of(word));
        return made;
    }();
    return ends.test(ends_of(text));
}

// By character: 1 for those of a plain identifier, 2 for those that it may begin with as well.
constexpr auto plain_characters = [] {
    std::array<uint8_t, 256> made{};
    for (unsigned char c : std::string_view("0123456789$"))
        made[c] = 1;
    for (unsigned char c : std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_"))
        made[c] = 2;
    return made;
}();

} // namespace

const int32_t VLOG_word_count = static_cast<int32_t>(std::size(words));

void VLOG_put_words(NL_NAMES &names) {
    for (std::string_view word : words)
        NL_name_in_place(names, word);
}

bool VLOG_is_reserved(std::string_view text) {
    return !text.empty() && has_ends_of_a_word(text) && all_words().contains(text);
}

bool VLOG_is_plain(std::string_view text) {
    if (text.empty() || plain_characters[static_cast<unsigned char>(text[0])] != 2)
        return false;
    for (char c : text)
        if (plain_characters[static_cast<unsigned char>(c)] == 0)
            return false;
    return !VLOG_is_reserved(text);
}

std::string VLOG_identifier(std::string_view text) {
    return VLOG_is_plain(text) ? std::string(text) : "\\" + std::string(text) + " ";
}
