#include "guide/dialog.hh"

#include "support/console.hh"
#include "support/dyna.hh"
#include "support/message.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdarg>
#include <cstdlib>

namespace {

bool is_within(char c, unsigned char first, unsigned char last) {
    auto byte = static_cast<unsigned char>(c);
    return byte >= first && byte <= last;
}

/// The place behind the escape sequence that starts at `start` (ECMA-48): of a key ("ESC [ ... letter", "ESC
/// O letter"), of a string (up to BEL or "ESC \\"), of two characters or of three ("ESC ( B").
size_t behind_escape(std::string_view line, size_t start) {
    size_t at = start + 1;
    char kind = at < line.size() ? line[at++] : 0;
    if (std::string_view("]P^_X").find(kind) != std::string_view::npos) {
        size_t bell = line.find('\a', at), terminator = line.find("\x1b\\", at);
        if (bell == terminator) // neither is there: the key was Alt and this one
            return at;
        return bell < terminator ? bell + 1 : terminator + 2;
    }
    if (kind == '[')
        while (at < line.size() && !is_within(line[at], 0x40, 0x7e))
            ++at;
    else if (kind != 'O' && !is_within(kind, 0x20, 0x2f))
        return at;
    return std::min(at + 1, line.size());
}

std::string without_controls(std::string_view line) {
    std::string text;
    for (size_t at = 0; at < line.size();) {
        bool is_wide = line[at] == '\xc2' && at + 1 < line.size() && is_within(line[at + 1], 0x80, 0x9f);
        if (line[at] == '\x1b')
            at = behind_escape(line, at);
        else if (is_wide) // a control character of two bytes in UTF-8
            at += 2;
        else if (char c = line[at++]; c == '\t')
            text += ' ';
        else if (!is_within(c, 0, 0x1f) && c != '\x7f')
            text += c;
    }
    return text;
}

} // namespace

void print_screen(const char *screen, const TEMPLATE_VALUES &values) {
    run_shell("clear");
    std::string text = expand_template(screen, values);
    text.back() = ' ';
    console_printf("%s", text.c_str());
}

ANSWER read_answer() {
    char *line = nullptr;
    size_t room = 0;
    ssize_t length = -1;
    do {
        // A terminal can go on behind an end of input; the stream must not remember the earlier one.
        std::clearerr(stdin);
        errno = 0;
        length = ::getline(&line, &room, stdin);
    } while (length < 0 && std::ferror(stdin) != 0 && errno == EINTR);
    if (length < 0 && errno == ENOMEM) // this is no end of the input
        MSG_fatal_error(MSG_NO_MEMORY);
    ANSWER answer;
    if (length >= 0)
        answer = std::string(line); // a zero byte ends the text, as in every text of the tables
    std::free(line);
    if (answer && answer->ends_with('\n'))
        answer->pop_back();
    return answer;
}

ANSWER ask(const PROMPT &prompt) {
    for (;;) {
        console_printf("%*s%s", prompt.indent, "", prompt.text);
        ANSWER line = read_answer();
        if (!line || line->empty())
            return line;
        std::string value = without_controls(*line);
        if (!value.empty())
            return value;
    }
}

void error_wait(const char *format, ...) {
    va_list values;
    va_start(values, format);
    console_printf("%s", format_list(format, values).c_str());
    va_end(values);
    read_answer();
}

std::optional<int32_t> to_integer(const std::string &text) {
    int32_t value = 0;
    const char *end = text.data() + text.size();
    bool is_integer = text.find_first_not_of("0123456789") == std::string::npos;
    if (!is_integer || std::from_chars(text.data(), end, value).ec != std::errc())
        return std::nullopt;
    return value;
}

const char *field_text(const std::string &answer) {
    return answer.empty() ? nullptr : keep_text(answer);
}

void append_tokens(const char **&list, const std::string &answer, bool (*accept)(const std::string &)) {
    constexpr const char *separators = ",; \n";
    size_t start = answer.find_first_not_of(separators);
    while (start != std::string::npos) {
        size_t end = answer.find_first_of(separators, start);
        std::string token = answer.substr(start, end - start);
        if (accept(token))
            append_row(list, keep_text(token));
        start = answer.find_first_not_of(separators, end);
    }
}

void empty_list(const char **&list) {
    DYNA_free(&list);
    list = nullptr;
}
