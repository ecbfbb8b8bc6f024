// The message layer of the DFT configuration reader. All of these go to the error stream.
#pragma once

#include <cstdint>

/// What goes ahead of a message and what follows it. ERROR and WARNING tell the place, "ERROR : '<F>',
/// line-<L>, "; FATAL is the text alone. All but WARNING end the run and remove the log files; when memory
/// has run out they stay.
enum MESSAGE_KIND : int32_t { ERROR, WARNING, FATAL, FATAL_KEEPS_LOG };

/// In a text <F> is the file, <L> the line, <1> and <2> the two texts. A line end follows it.
struct DFT_MESSAGE {
    MESSAGE_KIND kind;
    const char *text;
};

// clang-format off
inline constexpr DFT_MESSAGE
    MESSAGE_CANNOT_OPEN = {FATAL, "ERROR : Can't open input file - '<1>'."},
    MESSAGE_WRONG_KIND = {FATAL, "ERROR : One of the input files is not <1> file format."},
    MESSAGE_SYNTAX = {ERROR, "syntax error near or at <1>."},
    MESSAGE_UNDEFINED = {ERROR, "<1> - '<2>' is undefined."},
    MESSAGE_MISSING = {WARNING, "'<1>' statement is missing."},
    MESSAGE_REPEATED = {WARNING, "'<1>' is multiple defined."},
    MESSAGE_BOTH = {WARNING, "'<1>' and '<2>' statements can't appear in the same time."},
    MESSAGE_NEITHER = {WARNING, "either '<1>' or '<2>' statement is missing."},
    MESSAGE_NO_MEMORY = {FATAL_KEEPS_LOG, "ERROR : run out of memory."},
    MESSAGE_TREE = {FATAL, "ERROR : internal parser tree error."},
    MESSAGE_BAD_STRING = {ERROR, "bad string is encountered."},
    MESSAGE_BAD_COMMENT = {ERROR, "unterminated comment is encountered."},
    MESSAGE_EMPTY_BODY = {WARNING, "'<1>' has empty body."},
    MESSAGE_PATTERN_LENGTH = {ERROR, "pattern length (<1>) is inconsistent with port number."},
    MESSAGE_NOT_DEFINED = {ERROR, "'<1>' wasn't defined."},
    MESSAGE_POLARITY = {ERROR, "POLARITY can only be ACTIVE_HIGH or ACTIVE_LOW."},
    MESSAGE_MODE_ACTIVE = {ERROR, "SCAN_MODE_ACTIVE can only be HIGH or LOW."},
    MESSAGE_CLOCK_POLARITY = {ERROR, "CLOCK_POLARITY can only be POSITIVE and NEGATIVE"},
    MESSAGE_PORT_COUNT = {FATAL, "ERROR: '<F>', line-<L>, number of pattern '<1>' doesn't\n"
                                 "       match the number of ports."},
    MESSAGE_ILLEGAL_PATTERN = {FATAL, "ERROR: '<F>', line-<L>, syntax error at '<1>'.\n"
                                      "       ILLEGAL_INPUTS can't accept 'X' or 'Z' in pattern."},
    MESSAGE_NUMBER_RANGE = {ERROR, "the number <1> is out of range."},
    MESSAGE_DEPTH = {ERROR, "the blocks are nested too deep."},
    MESSAGE_CYCLE = {FATAL, "ERROR : The DFT file '<1>' contains itself through its core '<2>'."},
    MESSAGE_TOO_MANY_INPUTS = {ERROR, "the inputs give more combinations of patterns than can be held."};
// clang-format on

/// The DFT file whose configuration is being read; scan_interface.cc sets it.
extern const char *in_file_name;

/// Prints the message; null texts are allowed where it needs none. Does not return for a fatal one.
void error_handler(const char *file, int32_t line, const DFT_MESSAGE &message, const char *text1 = nullptr,
                   const char *text2 = nullptr);
/// A fault of this program.
[[noreturn]] void tree_error();

/// Notes the log name of a DFT file; every such file is removed when the read ends.
void set_log_file(const char *dft_file);
/// Ends a read: the log files are removed.
void close_scan();
/// Ends the run at a fault of the read: the text goes to the console, or to the error stream.
[[noreturn]] void scan_fail(const char *format, ...) __attribute__((format(printf, 1, 2)));
[[noreturn]] void scan_error_fail(const char *format, ...) __attribute__((format(printf, 1, 2)));
