#include "support/message.hh"

#include "support/console.hh"
#include "support/text.hh"

#include <cstdarg>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view fatal_id = "FATAL ";
/// Width of a message number, its colon and a blank; continuation lines stand below the text behind them.
constexpr size_t number_width = 5;

struct abort_text {
    int code;
    const char *text;
};

constexpr abort_text abort_msg[] = {
    {MSG_NO_MEMORY, "Not enough memory"},
    {MSG_DISK_FULL, "Disk full"},
    {MSG_CORRUPTED_TABLE, "Corrupted data table"},
};

/// The text behind its identifier, with every further line indented to stand below the first.
std::string with_identifier(std::string_view text) {
    if (text.starts_with('#'))
        text.remove_prefix(1);
    std::string out(fatal_id);
    const std::string indent(fatal_id.size() + number_width, ' ');
    for (bool first = true; first || !text.empty(); first = false) {
        size_t end = text.find('\n');
        size_t line = end == std::string_view::npos ? text.size() : end + 1;
        if (!first)
            out += indent;
        out += text.substr(0, line);
        text.remove_prefix(line);
    }
    return out;
}

} // namespace

void MSG_fatal(const char *format, ...) {
    va_list values;
    va_start(values, format);
    std::string text = with_identifier(format_list(format, values));
    va_end(values);
    error_fail("%s", text.c_str());
}

int MSG_inform(const char *format, ...) {
    va_list values;
    va_start(values, format);
    error_printf("%s", format_list(format, values).c_str());
    va_end(values);
    return 0;
}

void MSG_fatal_error(int code) {
    MSG_inform("\n");
    for (const abort_text &known : abort_msg)
        if (known.code == code)
            MSG_fatal("#002: Fatal Error - %s\n", known.text);
    MSG_fatal("#003: Fatal Error - Error Code %d\n", code);
}
