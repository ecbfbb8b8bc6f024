// The message layer of the DFT configuration reader: one table of diagnostics, all on the error stream.
#pragma once

#include <cstdint>

/// Codes of error_handler; the table in messages.cc says which are warnings and which end the run.
enum DFT_MESSAGE : int32_t {
    MESSAGE_CANNOT_OPEN = 0,
    MESSAGE_CANNOT_CREATE = 1,
    MESSAGE_WRONG_KIND = 2,
    MESSAGE_EMPTY_FILE = 3,
    MESSAGE_SYNTAX = 4,
    MESSAGE_UNDEFINED = 5,
    MESSAGE_MISSING = 6,
    MESSAGE_REPEATED = 7,
    MESSAGE_BOTH = 8,
    MESSAGE_NEITHER = 9,
    MESSAGE_NO_MEMORY = 10,
    MESSAGE_TREE = 11,
    MESSAGE_BAD_STRING = 12,
    MESSAGE_BAD_COMMENT = 13,
    MESSAGE_NOT_IN_MAP = 14,
    MESSAGE_EMPTY_BODY = 15,
    MESSAGE_SEE_FILE = 16,
    MESSAGE_PATTERN_LENGTH = 17,
    MESSAGE_NOT_DEFINED = 18,
    MESSAGE_POLARITY = 19,
    MESSAGE_MODE_ACTIVE = 20,
    MESSAGE_CLOCK_POLARITY = 21,
    MESSAGE_PORT_COUNT = 22,
    MESSAGE_ILLEGAL_PATTERN = 23,
    MESSAGE_GROUPING = 24,
    MESSAGE_NUMBER_RANGE = 25,
    MESSAGE_DEPTH = 26,
    MESSAGE_CYCLE = 27,
    MESSAGE_TOO_MANY_INPUTS = 28,
    MESSAGE_CODES
};

extern int32_t has_error;        ///< 1 after a warning; a read begins and ends with 0
extern const char *in_file_name; ///< file being scanned, for messages; side files change it
extern int32_t has_map_file;     ///< %READ_MAP stands; also 1 while an instance file is parsed
extern const char *LOG_FILE;     ///< "<base>.dft_map.log" of the configuration being read

/// Prints the message of `code`; null texts are allowed where the code needs none. Does not return for a
/// fatal code.
void error_handler(const char *file, int32_t line, int32_t code, const char *text1 = nullptr,
                   const char *text2 = nullptr);
void empty_body_error(const char *name, int32_t line);
void undefined_error(const char *what, const char *name, int32_t line);
[[noreturn]] void tree_error();

/// Makes the log name of a configuration file current; every such file is removed when the read ends.
void set_log_file(const char *dft_file);
/// Ends a read: no error stands, and the log files are removed.
void close_scan();
/// Ends the run at a fault of the read: the text goes to the console, or to the error stream.
[[noreturn]] void scan_fail(const char *format, ...) __attribute__((format(printf, 1, 2)));
[[noreturn]] void scan_error_fail(const char *format, ...) __attribute__((format(printf, 1, 2)));
