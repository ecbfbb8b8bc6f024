// Names that a generated port cannot have.
#include "rtl/module_names.hh"
#include "rtl/tap_checks.hh"

#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>

namespace {

using WORDS = std::set<std::string, std::less<>>;

WORDS split(const char *text) {
    std::istringstream stream(text);
    WORDS words;
    for (std::string word; stream >> word;)
        words.insert(word);
    return words;
}

// IEEE 1364-2001, and what Icarus Verilog takes for a word in that generation too.
const char *const VERILOG_WORDS = R"(
    always and assign automatic begin buf bufif0 bufif1 case casex casez cell cmos config deassign
    default defparam design disable edge else end endcase endconfig endfunction endgenerate endmodule
    endprimitive endspecify endtable endtask event for force forever fork function generate genvar
    highz0 highz1 if ifnone incdir include initial inout input instance integer join large liblist
    library localparam macromodule medium module nand negedge nmos nor noshowcancelled not notif0 notif1
    or output parameter pmos posedge primitive pull0 pull1 pulldown pullup pulsestyle_onevent
    pulsestyle_ondetect rcmos real realtime reg release repeat rnmos rpmos rtran rtranif0 rtranif1
    scalared showcancelled signed small specify specparam strong0 strong1 supply0 supply1 table task
    time tran tranif0 tranif1 tri tri0 tri1 triand trior trireg unsigned use vectored wait wand weak0
    weak1 while wire wor xnor xor bool logic wreal
)";

// IEEE 1076-1993 and 1076-2008.
const char *const VHDL_WORDS = R"(
    abs access after alias all and architecture array assert assume assume_guarantee attribute begin
    block body buffer bus case component configuration constant context cover default disconnect downto
    else elsif end entity exit fairness file for force function generate generic group guarded if impure
    in inertial inout is label library linkage literal loop map mod nand new next nor not null of on
    open or others out package parameter port postponed procedure process property protected pure range
    record register reject release rem report restrict restrict_guarantee return rol ror select sequence
    severity shared signal sla sll sra srl strong subtype then to transport type unaffected units until
    use variable vmode vprop vunit wait when while with xnor xor
)";

bool is_letter(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

bool is_letter_or_digit(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

bool is_verilog_identifier(const std::string &word) {
    return !word.empty() && (is_letter(word[0]) || word[0] == '_') &&
           std::all_of(word.begin(), word.end(), [](char c) { return is_letter_or_digit(c) || c == '_'; });
}

bool is_vhdl_identifier(const std::string &word) {
    return is_verilog_identifier(word) && is_letter(word[0]) && word.back() != '_' &&
           word.find("__") == std::string::npos;
}

} // namespace

bool is_unusable_name(const std::string &word, RTL_LANGUAGE language) {
    static const WORDS verilog = split(VERILOG_WORDS), vhdl = split(VHDL_WORDS);
    if (language == VERILOG)
        return !is_verilog_identifier(word) || verilog.contains(word);
    return !is_vhdl_identifier(word) || vhdl.contains(name_key(word, VHDL));
}
