#include "support/console.hh"

#include "support/text.hh"

#include <cstdarg>
#include <cstdlib>
#include <ctime>

std::FILE *fd = nullptr;

namespace {

void write_to(std::FILE *stream, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

void write_error(std::string_view text) {
    std::fflush(stdout);
    write_to(stderr, text);
}

} // namespace

void print_out_str(std::string_view text) {
    write_to(stdout, text);
    if (fd != nullptr)
        write_to(fd, text);
}

void vmr_printf(const char *format, ...) {
    va_list values;
    va_start(values, format);
    print_out_str(format_list(format, values));
    va_end(values);
}

void console_printf(const char *format, ...) {
    va_list values;
    va_start(values, format);
    write_to(stdout, format_list(format, values));
    va_end(values);
}

void error_printf(const char *format, ...) {
    va_list values;
    va_start(values, format);
    write_error(format_list(format, values));
    va_end(values);
}

void end_run() {
    std::exit(-1);
}

void vmr_fail(const char *format, ...) {
    va_list values;
    va_start(values, format);
    print_out_str(format_list(format, values));
    va_end(values);
    end_run();
}

void console_fail(const char *format, ...) {
    va_list values;
    va_start(values, format);
    write_to(stdout, format_list(format, values));
    va_end(values);
    end_run();
}

void error_fail(const char *format, ...) {
    va_list values;
    va_start(values, format);
    write_error(format_list(format, values));
    va_end(values);
    end_run();
}

const char *get_time_string() {
    static char text[64];
    std::time_t now = std::time(nullptr);
    if (ctime_r(&now, text) == nullptr)
        return "\n";
    return text;
}
