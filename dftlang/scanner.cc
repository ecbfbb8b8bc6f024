#include "dftlang/scanner.hh"

#include "dftlang/grammar.hh"
#include "dftlang/messages.hh"
#include "support/console.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstring>
#include <string>

SCAN_VALUE scan_yylval = {nullptr, 0, ""};
std::FILE *scan_yyin = nullptr;
int32_t scan_yylineno = 1;

namespace {

constexpr size_t read_step = 64 * 1024;
constexpr int end_of_file = -1;

/// The part of the file that is in memory, and what is known of the word characters that lie ahead.
struct WINDOW {
    std::string bytes;
    size_t position = 0; ///< next character
    bool at_end = false;
    size_t word_end = 0;    ///< behind the run of word characters last measured; 0 when there is none
    size_t last_escape = 0; ///< place behind the last '\' of that run, or 0
    size_t last_open = 0;   ///< place behind the last '(' of that run, or 0
    int32_t last_token = 0; ///< the token before this one
};
WINDOW window;

/// Reads on until `count` characters lie ahead or the file ends.
bool have(size_t count) {
    while (window.bytes.size() - window.position < count && !window.at_end) {
        if (window.position > read_step && window.position > window.bytes.size() / 2) {
            size_t dropped = window.position;
            window.bytes.erase(0, dropped);
            window.position = 0;
            window.word_end = window.word_end > dropped ? window.word_end - dropped : 0;
            window.last_escape = window.last_escape > dropped ? window.last_escape - dropped : 0;
            window.last_open = window.last_open > dropped ? window.last_open - dropped : 0;
        }
        size_t old = window.bytes.size();
        window.bytes.resize(old + read_step);
        size_t got = std::fread(window.bytes.data() + old, 1, read_step, scan_yyin);
        window.bytes.resize(old + got);
        window.at_end = got == 0;
    }
    return window.bytes.size() - window.position >= count;
}

/// The character `ahead` places behind the next one, or end_of_file.
int peek(size_t ahead = 0) {
    if (window.position + ahead >= window.bytes.size() && !have(ahead + 1))
        return end_of_file;
    return static_cast<unsigned char>(window.bytes[window.position + ahead]);
}

int take() {
    int c = peek();
    if (c != end_of_file) {
        window.position++;
        if (c == '\n')
            scan_yylineno++;
    }
    return c;
}

bool is_digit(int c) {
    return c >= '0' && c <= '9';
}

bool is_blank(int c) {
    return c == ' ' || c == '\t' || c == '\f' || c == '\n';
}

bool is_letter(int c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool in_set(int c, const char *set) {
    return c > 0 && std::strchr(set, c) != nullptr;
}

bool starts_word(int c) {
    return is_letter(c) || in_set(c, "_#$%&@");
}

bool continues_word(int c) {
    return is_letter(c) || is_digit(c) || in_set(c, "_!#$%&()*+-./:<>@[\\]^|");
}

void check_size(size_t length) {
    if (length > longest_token)
        error_fail("token too large, exceeds YYLMAX\n");
}

/// Takes `length` characters as the text of a token.
std::string_view taken(size_t length) {
    check_size(length);
    std::string_view text(window.bytes.data() + window.position, length);
    window.position += length;
    return text;
}

int32_t give_kept(int32_t token, const char *text) {
    scan_yylval.text = scan_yylval.shown = text;
    return token;
}

int32_t give(int32_t token, std::string_view text) {
    return give_kept(token, keep_copy(text));
}

size_t digits_from(size_t ahead) {
    while (is_digit(peek(ahead))) {
        check_size(ahead);
        ahead++;
    }
    return ahead;
}

/// Length of the real number whose '.' is `dot` places ahead, or 0 when there is none.
size_t real_length(size_t dot) {
    size_t end = digits_from(dot + 1);
    if (peek(dot) != '.' || end == dot + 1)
        return 0;
    if (peek(end) == 'E' || peek(end) == 'e') {
        size_t sign = peek(end + 1) == '+' || peek(end + 1) == '-' ? 1 : 0;
        size_t exponent = digits_from(end + 1 + sign);
        if (exponent > end + 1 + sign)
            end = exponent;
    }
    return end;
}

/// A number at the next character, or 0 when none starts there.
int32_t number_token() {
    size_t sign = peek() == '-' ? 1 : 0;
    size_t digits = digits_from(sign);
    if (size_t length = real_length(digits); length != 0)
        return give(TOKEN_REAL, taken(length));
    if (digits == sign)
        return 0;
    if (sign == 0 && peek(digits) == '%')
        return give(TOKEN_PERCENT, taken(digits + 1));
    return give(TOKEN_INTEGER, taken(digits));
}

struct NUMBERED_WORD {
    const char *head;
    int32_t token; ///< 0: the token of the keyword without its number
    const char *keyword;
};

constexpr NUMBERED_WORD numbered_words[] = {
    {"%SCAN_CLOCK_", 0, "%SCAN_CLOCK"},
    {"%DATA_", 0, "%DATA"},
    {"%SCAN_SELECT_", TOKEN_SCAN_SELECT_N, nullptr},
    {"%BIST_CLOCK_", TOKEN_BIST_CLOCK_N, nullptr},
    {"%BIST_SELECT_", TOKEN_BIST_SELECT_N, nullptr},
    {"%FOLD_SCAN_IN_", TOKEN_FOLD_SCAN_IN_N, nullptr},
    {"%FOLD_SCAN_OUT_", TOKEN_FOLD_SCAN_OUT_N, nullptr},
};

/// Token of a numbered block word, or -1.
int32_t numbered_word(std::string_view word) {
    if (word.empty() || word[0] != '%')
        return -1;
    for (const NUMBERED_WORD &row : numbered_words) {
        if (!word.starts_with(row.head))
            continue;
        std::string_view number = word.substr(std::strlen(row.head));
        if (number.empty() || number.find_first_not_of("0123456789") != std::string_view::npos)
            continue;
        return row.token != 0 ? row.token : keyword_lookup(row.keyword);
    }
    return -1;
}

/// Measures the run of word characters ahead. Behind a cut in front of a parenthesis the rest of a run is
/// scanned again; its measure is kept, so that a run full of parentheses costs its length once.
size_t measure_word() {
    if (window.word_end > window.position)
        return window.word_end - window.position;
    size_t length = 0;
    window.last_escape = window.last_open = 0;
    for (int c = peek(); continues_word(c); c = peek(length)) {
        length++;
        check_size(length);
        if (c == '\\')
            window.last_escape = length;
        if (c == '(')
            window.last_open = length;
    }
    window.word_end = window.position + length;
    if (window.last_escape != 0)
        window.last_escape += window.position;
    if (window.last_open != 0)
        window.last_open += window.position;
    return length;
}

int32_t word_token() {
    size_t length = measure_word();
    std::string_view word(window.bytes.data() + window.position, length);
    if (int32_t token = numbered_word(word); token >= 0)
        return give(token, taken(length));
    if (int32_t token = keyword_lookup(word); token >= 0)
        return give_kept(token, keep_text(taken(length))); // keywords are few and stand everywhere
    bool escaped = window.last_escape > window.position;
    char stop = window.last_open > window.position ? '(' : ')';
    size_t end = escaped ? std::string_view::npos : word.find(stop);
    return give(TOKEN_NAME, taken(std::min(length, end)));
}

int32_t escaped_name() {
    size_t length = 1;
    while (peek(length) != end_of_file && !is_blank(peek(length))) {
        length++;
        check_size(length);
    }
    return give(TOKEN_NAME, taken(length));
}

bool in_pattern(int c) {
    return in_set(c, "01SXZ\t\f\n");
}

/// A pattern at the quote that is next, or 0 when it opens none.
int32_t pattern_token() {
    size_t length = 1;
    std::string text;
    while (in_pattern(peek(length))) {
        if (!is_blank(peek(length)))
            text += static_cast<char>(peek(length));
        length++;
        check_size(length);
    }
    if (length == 1 || peek(length) != '\'')
        return 0;
    for (size_t i = 0; i <= length; i++)
        take();
    return give(TOKEN_PATTERN, text);
}

/// The inner text of a string whose opening delimiter has been taken.
std::string get_string(int delimiter) {
    std::string text;
    for (;;) {
        int c = peek();
        if (c == end_of_file || c == '\n' || c == '\0')
            error_handler(in_file_name, scan_yylineno, MESSAGE_BAD_STRING);
        take();
        if (c == delimiter) {
            if (peek() != delimiter)
                return text;
            take(); // a doubled delimiter stands for one
        }
        text += static_cast<char>(c);
        if (c == '\\') { // nothing up to the next blank can end the string
            do {
                c = take();
                if (c == end_of_file)
                    error_handler(in_file_name, scan_yylineno, MESSAGE_BAD_STRING);
                text += static_cast<char>(c);
                check_size(text.size());
            } while (c != ' ' && c != '\n' && c != '\0');
        }
        check_size(text.size());
    }
}

/// Drops the leading blanks and one blank at the end.
std::string_view sl_ignore_space(std::string_view text) {
    size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    text.remove_prefix(first);
    if (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

int32_t string_token() {
    int32_t before = window.last_token;
    take();
    std::string text = get_string('"');
    text.resize(std::min(text.size(), text.find('\0'))); // a NUL behind a '\' ends the text
    give(TOKEN_STRING, sl_ignore_space(text));
    if (before == keyword_lookup("%ATPG_MODE"))
        scan_yylineno++; // lines behind a mode's name are counted from one more
    return TOKEN_STRING;
}

void skip_line_comment() {
    int c = peek();
    while (c != '\n' && c != end_of_file) {
        window.position++;
        c = peek();
    }
    bool silent = has_map_file || window.last_token == keyword_lookup("%SCAN_CLOCK");
    if (c == end_of_file && !silent)
        error_printf("Bad string is encountered at line %d.\n", scan_yylineno);
}

void skip_block_comment() {
    int32_t first_line = scan_yylineno;
    take();
    take();
    while (peek() != '*' || peek(1) != '/') {
        if (take() == end_of_file)
            error_handler(in_file_name, first_line, MESSAGE_BAD_COMMENT);
    }
    take();
    take();
}

/// Skips a comment at the next character; false when there is none.
bool skip_comment() {
    if (peek() != '/' || (peek(1) != '/' && peek(1) != '*'))
        return false;
    if (peek(1) == '/')
        skip_line_comment();
    else
        skip_block_comment();
    return true;
}

/// The token that starts with `c`, or 0 when none does.
int32_t token_at(int c) {
    if (starts_word(c))
        return word_token();
    if (c == '"')
        return string_token();
    if (c == '\'')
        return pattern_token();
    if (c == '\\')
        return escaped_name();
    int32_t token = is_digit(c) || c == '-' || c == '.' ? number_token() : 0;
    if (token != 0 || !in_set(c, "{}()[],;:=~!."))
        return token;
    token = take();
    if (token == '=' && peek() == '>') {
        take();
        token = TOKEN_ARROW;
    }
    static char shown[2];
    shown[0] = static_cast<char>(token);
    scan_yylval.shown = token == TOKEN_ARROW ? "=>" : shown;
    return token;
}

} // namespace

void scan_start() {
    window = WINDOW();
}

int32_t scan_yylex() {
    int32_t token = TOKEN_END;
    scan_yylval = {nullptr, TOKEN_END, ""};
    for (int c = peek(); c != end_of_file; c = peek()) {
        if (skip_comment())
            continue;
        token = token_at(c);
        if (token != 0)
            break;
        take(); // white space, or a character that means nothing
    }
    scan_yylval.type = token;
    window.last_token = token;
    return token;
}
