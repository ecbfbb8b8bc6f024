#include "dftlang/messages.hh"

#include "support/console.hh"
#include "support/fnm.hh"
#include "support/text.hh"

#include <cstdarg>
#include <string>
#include <unistd.h>
#include <vector>

const char *in_file_name = nullptr;

namespace {

std::vector<std::string> log_files; ///< of the configurations read since the last orderly end

/// What goes ahead of the text, by the kind.
constexpr const char *places[] = {"ERROR : '<F>', line-<L>, ", "WARNING : '<F>', line-<L>, ", "", ""};

std::string filled(const DFT_MESSAGE &message, const char *file, int32_t line, const char *text1,
                   const char *text2) {
    std::string made, text = std::string(places[message.kind]) + message.text + '\n';
    for (const char *at = text.c_str(); *at != '\0'; at++) {
        bool mark = at[0] == '<' && at[1] != '\0' && at[2] == '>';
        if (!mark) {
            made += *at;
            continue;
        }
        if (at[1] == 'L')
            made += std::to_string(line);
        const char *value = at[1] == 'F' ? file : at[1] == '1' ? text1 : at[1] == '2' ? text2 : nullptr;
        made += value == nullptr ? "" : value;
        at += 2;
    }
    return made;
}

[[noreturn]] void fail(void (*print)(const char *, ...), const char *format, va_list values) {
    print("%s", format_list(format, values).c_str());
    close_scan();
    end_run();
}

} // namespace

void error_handler(const char *file, int32_t line, const DFT_MESSAGE &message, const char *text1,
                   const char *text2) {
    error_printf("%s", filled(message, file, line, text1, text2).c_str());
    if (message.kind == WARNING)
        return;
    if (message.kind != FATAL_KEEPS_LOG)
        close_scan();
    end_run();
}

void tree_error() {
    error_handler(in_file_name, 0, MESSAGE_TREE);
    end_run();
}

void set_log_file(const char *dft_file) {
    log_files.push_back(FNM_break(dft_file, "b") + ".dft_map.log");
}

void close_scan() {
    for (const std::string &name : log_files)
        ::unlink(name.c_str());
    log_files.clear();
}

void scan_fail(const char *format, ...) {
    va_list values;
    va_start(values, format);
    fail(console_printf, format, values);
}

void scan_error_fail(const char *format, ...) {
    va_list values;
    va_start(values, format);
    fail(error_printf, format, values);
}
