// The scanner of Verilog netlists: whole files in memory, tokens as views into them, directives done on the
// way.
//
// A netlist of a million instances is ten million tokens, so the scanner copies nothing and knows each
// identifier by the id that the netlist will use for it.
#pragma once

#include "siblings/names.hh"

#include <array>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

enum VSCAN_KIND : uint8_t {
    TOKEN_END,        ///< end of all files
    TOKEN_NAME,       ///< identifier or reserved word; `id` is set
    TOKEN_ESCAPED,    ///< escaped identifier, never a reserved word; `id` is set
    TOKEN_NUMBER,     ///< a number, sized or not, as written
    TOKEN_STRING,     ///< a string with its quotes
    TOKEN_SYMBOL,     ///< one character
    TOKEN_UNREADABLE, ///< what no netlist has, such as a system task
};

/// What a character may be. LONE: a symbol whatever follows it.
enum VSCAN_CLASS : uint8_t {
    CHAR_BLANK = 1,
    CHAR_STARTS_NAME = 2,
    CHAR_IN_NAME = 4,
    CHAR_DIGIT = 8,
    CHAR_LONE = 16
};

inline constexpr std::array<uint8_t, 256> VSCAN_classes = [] {
    std::array<uint8_t, 256> made{};
    for (char c : {' ', '\t', '\r', '\f', '\v'})
        made[static_cast<uint8_t>(c)] = CHAR_BLANK;
    for (int c = 'a'; c <= 'z'; c++)
        made[c] = made[c - 'a' + 'A'] = CHAR_STARTS_NAME | CHAR_IN_NAME;
    made['_'] = CHAR_STARTS_NAME | CHAR_IN_NAME;
    made['$'] = CHAR_IN_NAME;
    for (int c = '0'; c <= '9'; c++)
        made[c] = CHAR_IN_NAME | CHAR_DIGIT;
    for (char c : {'.', ',', ';', ')', '[', ']', ':', '{', '}', '='})
        made[static_cast<uint8_t>(c)] = CHAR_LONE;
    return made;
}();

inline bool VSCAN_is(char c, uint8_t classes) {
    return (VSCAN_classes[static_cast<uint8_t>(c)] & classes) != 0;
}

/// The first character that is no blank; the end of a line is none.
inline const char *VSCAN_behind_blanks(const char *at) {
    while (VSCAN_is(*at, CHAR_BLANK))
        at++;
    return at;
}

/// The plain name that stands there, empty when none does.
inline std::string_view VSCAN_name_at(const char *at) {
    const char *end = at;
    if (VSCAN_is(*at, CHAR_STARTS_NAME))
        do
            end++;
        while (VSCAN_is(*end, CHAR_IN_NAME));
    return {at, static_cast<size_t>(end - at)};
}

/// A path of names may be 4095 characters long for the main program; one name of that size is a fault of the
/// file.
constexpr size_t VSCAN_NAME_LIMIT = 4000;

struct VSCAN_TOKEN {
    VSCAN_KIND kind;
    char symbol; ///< the character of a TOKEN_SYMBOL, else 0
    int32_t id;
    int line;
    std::string_view text;
};

/// A text that is being read: a file, or what a macro stands for. A NUL stands at its end, which ends every
/// run of characters of a class.
struct VSCAN_SOURCE {
    const char *at;
    const char *end;
    int line;
    int32_t file;    ///< index in VSCAN::files
    bool counts;     ///< lines are counted: not in a macro's text, which stands on the line of its use
    size_t if_depth; ///< conditions open where a file began
};

struct VSCAN_MACRO {
    std::vector<std::string> formals;
    bool has_formals;
    std::string_view body;
};

/// One `ifdef that is open.
struct VSCAN_CONDITION {
    bool active;      ///< the text is read
    bool was_active;  ///< one of its branches has been read
    bool outer;       ///< the text around it is read
    bool else_passed; ///< no other branch may follow
    int line;
};

struct VSCAN {
    NL_NAMES &names;
    VSCAN_TOKEN token{};
    std::vector<VSCAN_SOURCE> sources{};
    std::vector<std::string> files{}; ///< names of all files that were opened
    std::deque<std::string> texts{};  ///< their contents and made texts; names refer to them
    std::unordered_map<std::string, VSCAN_MACRO> macros{};
    std::vector<VSCAN_CONDITION> conditions{};
    std::vector<std::string> include_directories{}; ///< searched last
    int64_t line_count = 0;
    size_t made_size = 0;          ///< of all texts that macros stood for so far
    bool no_implicit_nets = false; ///< by `default_nettype none
    int32_t guess = -1;            ///< a name that the next token may be, tried before the table of names
};

/// Opens a file in front of what is being read.
void VSCAN_open(VSCAN &scan, const std::string &path);

/// Defines a macro without arguments, as a `define in front of all files would.
void VSCAN_define(VSCAN &scan, const std::string &name, std::string_view text);

/// Reads the next token into `scan.token`.
void VSCAN_next(VSCAN &scan);

/// Name of the file of the present token.
const std::string &VSCAN_file(const VSCAN &scan);

/// Ends the program with an error at the present token.
[[noreturn]] void VSCAN_fail(const VSCAN &scan, const char *format, ...)
    __attribute__((format(printf, 2, 3)));

/// The present token as a message shows it, cut when it is long.
std::string VSCAN_shown(const VSCAN &scan);

// Between the scanner and its directives.
/// Carries out the directive at the source's position, which stands behind the '`'.
void VSCAN_directive(VSCAN &scan);
/// Skips blanks and comments; false at the end of the source.
bool VSCAN_skip_blanks(VSCAN &scan, VSCAN_SOURCE &source);
