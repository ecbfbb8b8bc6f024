#include "siblings/verilog_scan.hh"

#include "siblings/tool.hh"
#include "support/text.hh"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr size_t SOURCE_DEPTH_LIMIT = 64;
constexpr size_t FILE_LIMIT = 20000; // opened in one run; files that include others twice open any number

void skip_long_comment(VSCAN &scan, VSCAN_SOURCE &source) {
    int first_line = source.line;
    for (const char *at = source.at + 2; at + 1 < source.end; at++) {
        if (*at == '\n')
            source.line += source.counts;
        else if (*at == '*' && at[1] == '/') {
            source.at = at + 2;
            return;
        }
    }
    TOOL_fail(VSCAN_file(scan), first_line, "a comment is not closed.");
}

// "(*" opens an attribute unless a ')' follows: "@(*)" is an event list.
bool skip_attribute(VSCAN &scan, VSCAN_SOURCE &source) {
    const char *at = source.at + 2;
    while (at < source.end && (VSCAN_is(*at, CHAR_BLANK) || *at == '\n'))
        at++;
    if (at < source.end && *at == ')')
        return false;
    int first_line = source.line;
    bool in_string = false;
    for (at = source.at + 2; at + 1 < source.end; at++) {
        if (*at == '\n')
            source.line += source.counts;
        if (in_string) {
            if (*at == '\\')
                at++;
            else if (*at == '"')
                in_string = false;
        } else if (*at == '"') {
            in_string = true;
        } else if (*at == '*' && at[1] == ')') {
            source.at = at + 2;
            return true;
        }
    }
    TOOL_fail(VSCAN_file(scan), first_line, "an attribute is not closed.");
}

void scan_name(VSCAN &scan, VSCAN_SOURCE &source) {
    std::string_view name = VSCAN_name_at(source.at);
    source.at += name.size();
    scan.token.kind = TOKEN_NAME;
    scan.token.text = name;
    if (name.size() > VSCAN_NAME_LIMIT)
        VSCAN_fail(scan, "a name of %zu characters is too long.", name.size());
    bool guessed = static_cast<size_t>(scan.guess) < scan.names.texts.size() &&
                   NL_same_text(NL_text(scan.names, scan.guess), name);
    scan.token.id = guessed ? scan.guess : NL_name_in_place(scan.names, name);
    scan.guess = -1;
}

void scan_escaped(VSCAN &scan, VSCAN_SOURCE &source) {
    const char *first = source.at + 1;
    const char *at = first;
    while (at < source.end && !VSCAN_is(*at, CHAR_BLANK) && *at != '\n')
        at++;
    source.at = at;
    scan.token.kind = TOKEN_ESCAPED;
    scan.token.text = {first, static_cast<size_t>(at - first)};
    if (at == first)
        VSCAN_fail(scan, "nothing stands behind the '\\' of an escaped name.");
    if (scan.token.text.size() > VSCAN_NAME_LIMIT)
        VSCAN_fail(scan, "a name of %zu characters is too long.", scan.token.text.size());
    // A design file ends a name there, where two names may become one.
    if (scan.token.text.find('\0') != std::string_view::npos)
        VSCAN_fail(scan, "an escaped name holds a NUL character.");
    scan.token.id = NL_name_in_place(scan.names, scan.token.text);
}

bool is_number_digit(char c) {
    return VSCAN_is(c, CHAR_IN_NAME) || c == '?';
}

// Size, base and digits may stand apart: 4 'b 1010.
void scan_number(VSCAN &scan, VSCAN_SOURCE &source) {
    const char *first = source.at;
    const char *at = first;
    while (at < source.end && (VSCAN_is(*at, CHAR_DIGIT) || *at == '_'))
        at++;
    const char *ahead = at;
    while (ahead < source.end && VSCAN_is(*ahead, CHAR_BLANK))
        ahead++;
    if (ahead + 1 < source.end && *ahead == '\'' && VSCAN_is(ahead[1], CHAR_STARTS_NAME)) {
        at = ahead + 1;
        if (*at == 's' || *at == 'S')
            at++;
        if (at < source.end)
            at++;
        while (at < source.end && VSCAN_is(*at, CHAR_BLANK))
            at++;
        while (at < source.end && is_number_digit(*at))
            at++;
    }
    source.at = at;
    scan.token.kind = TOKEN_NUMBER;
    scan.token.text = {first, static_cast<size_t>(at - first)};
}

void scan_string(VSCAN &scan, VSCAN_SOURCE &source) {
    const char *first = source.at;
    const char *at = first + 1;
    while (at < source.end && *at != '"' && *at != '\n')
        at += (*at == '\\' && at + 1 < source.end) ? 2 : 1;
    if (at >= source.end || *at != '"')
        TOOL_fail(VSCAN_file(scan), source.line, "a string is not closed.");
    source.at = at + 1;
    scan.token.kind = TOKEN_STRING;
    scan.token.text = {first, static_cast<size_t>(source.at - first)};
}

void scan_symbol(VSCAN &scan, VSCAN_SOURCE &source) {
    char c = *source.at;
    scan.token.text = {source.at, 1};
    source.at++;
    if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) > 0x7e)
        TOOL_fail(VSCAN_file(scan), source.line, "the character with the code %d has no place here.",
                  static_cast<unsigned char>(c));
    scan.token.kind = TOKEN_SYMBOL;
    scan.token.symbol = c;
    if (c == '$') {
        while (source.at < source.end && VSCAN_is(*source.at, CHAR_IN_NAME))
            source.at++;
        scan.token.kind = TOKEN_UNREADABLE;
        scan.token.text = {scan.token.text.data(), static_cast<size_t>(source.at - scan.token.text.data())};
    }
}

// A file has to close the conditions that it opens.
void close_source(VSCAN &scan) {
    VSCAN_SOURCE &source = scan.sources.back();
    if (source.counts) {
        scan.line_count += source.line;
        if (scan.conditions.size() > source.if_depth)
            TOOL_fail(VSCAN_file(scan), scan.conditions.back().line, "`ifdef without `endif.");
    }
    scan.sources.pop_back();
}

void scan_token(VSCAN &scan, VSCAN_SOURCE &source) {
    char c = *source.at;
    scan.token.line = source.line;
    scan.token.symbol = 0;
    if (VSCAN_is(c, CHAR_STARTS_NAME))
        scan_name(scan, source);
    else if (c == '\\')
        scan_escaped(scan, source);
    else if (VSCAN_is(c, CHAR_DIGIT) ||
             (c == '\'' && source.at + 1 < source.end && VSCAN_is(source.at[1], CHAR_STARTS_NAME)))
        scan_number(scan, source);
    else if (c == '"')
        scan_string(scan, source);
    else
        scan_symbol(scan, source);
}

// The tokens that a netlist is full of: names and symbols behind no more than blanks and ends of lines. False
// elsewhere.
bool scan_common(VSCAN &scan, VSCAN_SOURCE &source) {
    const char *at = VSCAN_behind_blanks(source.at);
    while (*at == '\n') {
        source.line += source.counts;
        at = VSCAN_behind_blanks(at + 1);
    }
    source.at = at;
    bool lone = VSCAN_is(*at, CHAR_LONE) || (*at == '(' && at[1] != '*');
    if (!lone && !VSCAN_is(*at, CHAR_STARTS_NAME))
        return false;
    scan.token.line = source.line;
    scan.token.symbol = 0;
    if (!lone) {
        scan_name(scan, source);
        return true;
    }
    scan.token.kind = TOKEN_SYMBOL;
    scan.token.symbol = *at;
    scan.token.text = {at, 1};
    source.at = at + 1;
    return true;
}

} // namespace

bool VSCAN_skip_blanks(VSCAN &scan, VSCAN_SOURCE &source) {
    while (source.at < source.end) {
        source.at = VSCAN_behind_blanks(source.at);
        if (source.at == source.end)
            return false;
        char c = *source.at;
        if (c == '\n') {
            source.line += source.counts;
            source.at++;
        } else if (c == '/' && source.at + 1 < source.end && source.at[1] == '/') {
            const void *end = std::memchr(source.at, '\n', static_cast<size_t>(source.end - source.at));
            source.at = end != nullptr ? static_cast<const char *>(end) : source.end;
        } else if (c == '/' && source.at + 1 < source.end && source.at[1] == '*') {
            skip_long_comment(scan, source);
        } else {
            return true;
        }
    }
    return false;
}

void VSCAN_open(VSCAN &scan, const std::string &path) {
    if (scan.sources.size() >= SOURCE_DEPTH_LIMIT)
        TOOL_fail(VSCAN_file(scan), scan.sources.back().line,
                  "files that include each other are nested too deep.");
    if (scan.files.size() >= FILE_LIMIT)
        TOOL_fail(VSCAN_file(scan), 0, "more than %zu files are opened.", FILE_LIMIT);
    if (scan.sources.empty())
        scan.texts.push_back(TOOL_read_file(path));
    else
        scan.texts.push_back(TOOL_read_file(path, VSCAN_file(scan), scan.sources.back().line));
    scan.files.push_back(path);
    const std::string &text = scan.texts.back();
    scan.sources.push_back({text.data(), text.data() + text.size(), 1,
                            static_cast<int32_t>(scan.files.size()) - 1, true, scan.conditions.size()});
}

void VSCAN_next(VSCAN &scan) {
    for (;;) {
        if (scan.sources.empty()) {
            scan.token.kind = TOKEN_END;
            scan.token.symbol = 0;
            scan.token.text = {};
            return;
        }
        VSCAN_SOURCE &source = scan.sources.back();
        if (scan_common(scan, source))
            return;
        if (!VSCAN_skip_blanks(scan, source)) {
            // The end of the outermost file is a token, so that errors there can name the file.
            if (scan.sources.size() == 1) {
                scan.token.line = source.line;
                scan.token.kind = TOKEN_END;
                scan.token.symbol = 0;
                scan.token.text = {};
                if (scan.conditions.size() > source.if_depth)
                    TOOL_fail(VSCAN_file(scan), scan.conditions.back().line, "`ifdef without `endif.");
                return;
            }
            close_source(scan);
            continue;
        }
        if (*source.at == '`') {
            source.at++;
            VSCAN_directive(scan);
            continue;
        }
        if (*source.at == '(' && source.at + 1 < source.end && source.at[1] == '*' &&
            skip_attribute(scan, source))
            continue;
        scan_token(scan, source);
        return;
    }
}

const std::string &VSCAN_file(const VSCAN &scan) {
    static const std::string none;
    if (!scan.sources.empty())
        return scan.files[static_cast<size_t>(scan.sources.back().file)];
    return scan.files.empty() ? none : scan.files.back();
}

void VSCAN_fail(const VSCAN &scan, const char *format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = format_list(format, args);
    va_end(args);
    TOOL_fail(VSCAN_file(scan), scan.token.line, "%s", text.c_str());
}

std::string VSCAN_shown(const VSCAN &scan) {
    constexpr size_t SHOWN = 60;
    if (scan.token.kind == TOKEN_END)
        return "end of file";
    if (scan.token.text.size() > SHOWN)
        return "'" + std::string(scan.token.text.substr(0, SHOWN)) + "...'";
    return "'" + std::string(scan.token.text) + "'";
}
