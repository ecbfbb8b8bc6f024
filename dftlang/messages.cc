#include "dftlang/messages.hh"

#include "support/console.hh"
#include "support/fnm.hh"
#include "support/text.hh"

#include <cstdarg>
#include <string>
#include <unistd.h>
#include <vector>

int32_t has_error = 0;
const char *in_file_name = nullptr;
int32_t has_map_file = 0;
const char *LOG_FILE = nullptr;

namespace {

std::vector<const char *> log_files; ///< of the configurations read since the last orderly end

enum SEVERITY { FATAL, FATAL_KEEPS_LOG, WARNING };

/// In a text <F> is the file, <L> the line, <1> and <2> the two texts.
struct MESSAGE_ROW {
    SEVERITY severity;
    const char *text;
};

constexpr MESSAGE_ROW messages[MESSAGE_CODES] = {
    {FATAL, "ERROR : Can't open input file - '<1>'.\n"},
    {FATAL, "ERROR : Can't create file - '<1>'.\n"},
    {FATAL, "ERROR : One of the input files is not <1> file format.\n"},
    {WARNING, "WARNING : '<1>' is an empty file .\n"},
    {FATAL, "ERROR : '<F>', line-<L>, syntax error near or at <1>.\n"},
    {FATAL, "ERROR : '<F>', line-<L>, <1> - '<2>' is undefined.\n"},
    {WARNING, "WARNING : '<F>', line-<L>, '<1>' statement is missing.\n"},
    {WARNING, "WARNING : '<F>', line-<L>, '<1>' is multiple defined.\n"},
    {WARNING, "WARNING : '<F>', line-<L>, '<1>' and '<2>' statements can't appear in the same time.\n"},
    {WARNING, "WARNING : '<F>', line-<L>, either '<1>' or '<2>' statement is missing.\n"},
    {FATAL_KEEPS_LOG, "ERROR : run out of memory.\n"},
    {FATAL, "ERROR : internal parser tree error.\n"},
    {FATAL, "ERROR : '<F>', line-<L>, bad string is encountered.\n"},
    {FATAL, "ERROR : '<F>', line-<L>, unterminated comment is encountered.\n"},
    {WARNING, "WARNING : '<F>', line-<L>, can't find definition of '<1>' in map file.\n"},
    {WARNING, "WARNING : '<F>', line-<L>, '<1>' has empty body.\n"},
    {WARNING, "WARNING : There are ERRORS (WARNINGS) in your scan language file!\n"
              "          Please see '<1>'.\n\n"},
    {FATAL, "ERROR : '<F>', line-<L>, pattern length (<1>) is inconsistent with port number.\n"},
    {FATAL, "ERROR : '<F>', line-<L>, '<1>' wasn't defined.\n"},
    {FATAL, "ERROR : '<F>', line-<L>, POLARITY can only be <1> or <2>.\n"},
    {FATAL, "ERROR : '<F>', line-<L>, SCAN_MODE_ACTIVE can only be <1> or <2>.\n"},
    {FATAL, "ERROR : '<F>', line-<L>, CLOCK_POLARITY can only be POSITIVE and NEGATIVE\n"},
    {FATAL, "ERROR: '<F>', line-<L>, number of pattern '<1>' doesn't\n"
            "       match the number of ports.\n"},
    {FATAL, "ERROR: '<F>', line-<L>, syntax error at '<1>'.\n"
            "       ILLEGAL_INPUTS can't accept 'X' or 'Z' in pattern.\n"},
    {FATAL, "FATAL: '<F>', near '<1>', grouping error!\n"},
    {FATAL, "ERROR : '<F>', line-<L>, the number <1> is out of range.\n"},
    {FATAL, "ERROR : '<F>', line-<L>, the blocks are nested too deep.\n"},
    {FATAL, "ERROR : The DFT file '<1>' contains itself through its core '<2>'.\n"},
    {FATAL, "ERROR : '<F>', line-<L>, the inputs give more combinations of patterns than can be held.\n"},
};

void remove_logs() {
    for (const char *name : log_files)
        ::unlink(name);
    log_files.clear();
}

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

void error_handler(const char *file, int32_t line, int32_t code, const char *text1, const char *text2) {
    const MESSAGE_ROW &row = messages[code];
    error_printf("%s", filled(row.text, file, line, text1, text2).c_str());
    has_error = row.severity == WARNING ? 1 : 0;
    if (row.severity == WARNING)
        return;
    if (row.severity == FATAL)
        remove_logs();
    end_run();
}

void empty_body_error(const char *name, int32_t line) {
    error_handler(in_file_name, line, MESSAGE_EMPTY_BODY, name);
}

void undefined_error(const char *what, const char *name, int32_t line) {
    error_handler(in_file_name, line, MESSAGE_UNDEFINED, what, name);
}

void tree_error() {
    error_handler(in_file_name, 0, MESSAGE_TREE);
    end_run();
}

void set_log_file(const char *dft_file) {
    LOG_FILE = keep_format("%s.dft_map.log", FNM_break(dft_file, "b").c_str());
    log_files.push_back(LOG_FILE);
}

void close_scan() {
    has_error = 0;
    remove_logs();
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
