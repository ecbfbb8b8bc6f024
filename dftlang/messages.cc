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

std::string filled(const char *text, const char *file, int32_t line, const char *text1, const char *text2) {
    std::string made;
    for (const char *at = text; *at != '\0'; at++) {
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

} // namespace

void error_handler(const char *file, int32_t line, const DFT_MESSAGE &message, const char *text1,
                   const char *text2) {
    error_printf("%s", filled(message.text, file, line, text1, text2).c_str());
    if (message.kind == WARNING)
        return;
    if (message.kind == FATAL)
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
    console_printf("%s", format_list(format, values).c_str());
    va_end(values);
    close_scan();
    end_run();
}

void scan_error_fail(const char *format, ...) {
    va_list values;
    va_start(values, format);
    error_printf("%s", format_list(format, values).c_str());
    va_end(values);
    close_scan();
    end_run();
}
