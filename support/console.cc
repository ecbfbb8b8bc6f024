#include "support/console.hh"

#include "support/faults.hh"
#include "support/text.hh"
#include "support/whole_file.hh"

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <unistd.h>
#include <utility>

std::FILE *fd = nullptr;

namespace {

/// errno of the first text that a sink did not take whole; 0 while there is none.
int console_fault = 0;
int report_fault = 0;

void write_error(std::string_view text) {
    std::fflush(stdout);
    put_text(stderr, text);
}

/// Closes a sink and says on the error stream when it did not take all. True when it did.
bool close_sink(std::FILE *stream, int fault, const char *name) {
    errno = 0;
    if (std::fclose(stream) != 0 && fault == 0)
        fault = errno;
    if (fault == 0)
        return true;
    std::fprintf(stderr, "ERROR: not all of %s could be written (%s).\n", name, std::strerror(fault));
    return false;
}

void close_sinks() {
    bool whole = close_sink(stdout, console_fault, "the output");
    if (fd != nullptr)
        whole = close_sink(std::exchange(fd, nullptr), report_fault, "the report") && whole;
    if (!whole)
        ::_exit(255);
}

} // namespace

void put_text(std::FILE *stream, std::string_view text) {
    if (fault_collector != nullptr) {
        fault_collector->text += text;
        return;
    }
    errno = 0;
    bool whole = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    if (std::fflush(stream) == 0 && whole)
        return;
    int *fault = stream == stdout ? &console_fault : stream == fd ? &report_fault : nullptr;
    if (fault != nullptr && *fault == 0)
        *fault = errno;
}

void watch_sinks() {
    std::atexit(close_sinks);
}

void print_out_str(std::string_view text) {
    put_text(stdout, text);
    if (fd != nullptr)
        put_text(fd, text);
}

void vmr_printf(const char *format, ...) {
    va_list values;
    va_start(values, format);
    print_out_str(formatted_text(format, values).view());
    va_end(values);
}

void console_printf(const char *format, ...) {
    va_list values;
    va_start(values, format);
    put_text(stdout, formatted_text(format, values).view());
    va_end(values);
}

void error_printf(const char *format, ...) {
    va_list values;
    va_start(values, format);
    write_error(formatted_text(format, values).view());
    va_end(values);
}

void end_run(int status) {
    discard_unfinished_files();
    end_process(status);
}

void vmr_fail(const char *format, ...) {
    va_list values;
    va_start(values, format);
    print_out_str(formatted_text(format, values).view());
    va_end(values);
    end_run();
}

void console_fail(const char *format, ...) {
    va_list values;
    va_start(values, format);
    put_text(stdout, formatted_text(format, values).view());
    va_end(values);
    end_run();
}

void error_fail(const char *format, ...) {
    va_list values;
    va_start(values, format);
    write_error(formatted_text(format, values).view());
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
