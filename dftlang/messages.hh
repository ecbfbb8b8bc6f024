// The message layer of the DFT configuration reader. All of these go to the error stream.
#pragma once

#include <cstdint>

/// What follows a message. A fatal one ends the run and removes the log files; when memory has run out they
/// stay.
enum MESSAGE_KIND : int32_t { FATAL, FATAL_KEEPS_LOG, WARNING };

/// In a text <F> is the file, <L> the line, <1> and <2> the two texts.
struct DFT_MESSAGE {
    MESSAGE_KIND kind;
    const char *text;
};

inline constexpr DFT_MESSAGE MESSAGE_CANNOT_OPEN = {FATAL, "ERROR : Can't open input file - '<1>'.\n"};
inline constexpr DFT_MESSAGE MESSAGE_WRONG_KIND = {
    FATAL, "ERROR : One of the input files is not <1> file format.\n"};
inline constexpr DFT_MESSAGE MESSAGE_SYNTAX = {FATAL,
                                               "ERROR : '<F>', line-<L>, syntax error near or at <1>.\n"};
inline constexpr DFT_MESSAGE MESSAGE_UNDEFINED = {FATAL,
                                                  "ERROR : '<F>', line-<L>, <1> - '<2>' is undefined.\n"};
inline constexpr DFT_MESSAGE MESSAGE_MISSING = {WARNING,
                                                "WARNING : '<F>', line-<L>, '<1>' statement is missing.\n"};
inline constexpr DFT_MESSAGE MESSAGE_REPEATED = {WARNING,
                                                 "WARNING : '<F>', line-<L>, '<1>' is multiple defined.\n"};
inline constexpr DFT_MESSAGE MESSAGE_BOTH = {
    WARNING, "WARNING : '<F>', line-<L>, '<1>' and '<2>' statements can't appear in the same time.\n"};
inline constexpr DFT_MESSAGE MESSAGE_NEITHER = {
    WARNING, "WARNING : '<F>', line-<L>, either '<1>' or '<2>' statement is missing.\n"};
inline constexpr DFT_MESSAGE MESSAGE_NO_MEMORY = {FATAL_KEEPS_LOG, "ERROR : run out of memory.\n"};
inline constexpr DFT_MESSAGE MESSAGE_TREE = {FATAL, "ERROR : internal parser tree error.\n"};
inline constexpr DFT_MESSAGE MESSAGE_BAD_STRING = {FATAL,
                                                   "ERROR : '<F>', line-<L>, bad string is encountered.\n"};
inline constexpr DFT_MESSAGE MESSAGE_BAD_COMMENT = {
    FATAL, "ERROR : '<F>', line-<L>, unterminated comment is encountered.\n"};
inline constexpr DFT_MESSAGE MESSAGE_EMPTY_BODY = {WARNING,
                                                   "WARNING : '<F>', line-<L>, '<1>' has empty body.\n"};
inline constexpr DFT_MESSAGE MESSAGE_PATTERN_LENGTH = {
    FATAL, "ERROR : '<F>', line-<L>, pattern length (<1>) is inconsistent with port number.\n"};
inline constexpr DFT_MESSAGE MESSAGE_NOT_DEFINED = {FATAL,
                                                    "ERROR : '<F>', line-<L>, '<1>' wasn't defined.\n"};
inline constexpr DFT_MESSAGE MESSAGE_POLARITY = {
    FATAL, "ERROR : '<F>', line-<L>, POLARITY can only be ACTIVE_HIGH or ACTIVE_LOW.\n"};
inline constexpr DFT_MESSAGE MESSAGE_MODE_ACTIVE = {
    FATAL, "ERROR : '<F>', line-<L>, SCAN_MODE_ACTIVE can only be HIGH or LOW.\n"};
inline constexpr DFT_MESSAGE MESSAGE_CLOCK_POLARITY = {
    FATAL, "ERROR : '<F>', line-<L>, CLOCK_POLARITY can only be POSITIVE and NEGATIVE\n"};
inline constexpr DFT_MESSAGE MESSAGE_PORT_COUNT = {FATAL,
                                                   "ERROR: '<F>', line-<L>, number of pattern '<1>' doesn't\n"
                                                   "       match the number of ports.\n"};
inline constexpr DFT_MESSAGE MESSAGE_ILLEGAL_PATTERN = {
    FATAL, "ERROR: '<F>', line-<L>, syntax error at '<1>'.\n"
           "       ILLEGAL_INPUTS can't accept 'X' or 'Z' in pattern.\n"};
inline constexpr DFT_MESSAGE MESSAGE_NUMBER_RANGE = {
    FATAL, "ERROR : '<F>', line-<L>, the number <1> is out of range.\n"};
inline constexpr DFT_MESSAGE MESSAGE_DEPTH = {FATAL,
                                              "ERROR : '<F>', line-<L>, the blocks are nested too deep.\n"};
inline constexpr DFT_MESSAGE MESSAGE_CYCLE = {
    FATAL, "ERROR : The DFT file '<1>' contains itself through its core '<2>'.\n"};
inline constexpr DFT_MESSAGE MESSAGE_TOO_MANY_INPUTS = {
    FATAL, "ERROR : '<F>', line-<L>, the inputs give more combinations of patterns than can be held.\n"};

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
