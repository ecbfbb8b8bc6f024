#include "support/message.hh"

#include "support/console.hh"
#include "support/text.hh"

#include <cstdarg>
#include <string_view>

namespace {

constexpr const char *fatal_id = "FATAL ";
/// As wide as the identifier, a message number, its colon and a blank, so that the texts stand below each
/// other.
constexpr const char *continuation = "           ";

struct abort_text {
    int code;
    const char *text;
};

constexpr abort_text abort_msg[] = {
    {MSG_NO_MEMORY, "Not enough memory"},
    {MSG_DISK_FULL, "Disk full"},
    {MSG_CORRUPTED_TABLE, "Corrupted data table"},
};

/// Writes the text behind its identifier, with every further line indented to stand below the first. Pieces
/// are written as they are found, since a whole text would take memory.
void write_with_identifier(std::string_view text) {
    if (text.starts_with('#'))
        text.remove_prefix(1);
    for (bool first = true; first || !text.empty(); first = false) {
        size_t end = text.find('\n');
        size_t line = end == std::string_view::npos ? text.size() : end + 1;
        error_printf("%s%.*s", first ? fatal_id : continuation, static_cast<int>(line), text.data());
        text.remove_prefix(line);
    }
}

} // namespace

void MSG_fatal(const char *format, ...) {
    va_list values;
    va_start(values, format);
    write_with_identifier(formatted_text(format, values).view());
    va_end(values);
    end_run();
}

int MSG_inform(const char *format, ...) {
    va_list values;
    va_start(values, format);
    formatted_text text(format, values);
    va_end(values);
    error_printf("%.*s", static_cast<int>(text.view().size()), text.view().data());
    return 0;
}

void MSG_fatal_error(int code) {
    MSG_inform("\n");
    for (const abort_text &known : abort_msg)
        if (known.code == code)
            MSG_fatal("#002: Fatal Error - %s\n", known.text);
    MSG_fatal("#003: Fatal Error - Error Code %d\n", code);
}
