// Console and report output, and the ways in which a run ends.
//
// Normal output goes to the console and the report together. Three routes stand beside it: plain console text
// (command line, readers, guide), the error stream (growable tables, some reader checks) and the message
// layer of support/message.hh.
#pragma once

#include <cstdio>
#include <string_view>

/// The report file; null while none is open. The command line opens it, the exit closes it.
extern std::FILE *fd;

/// Writes a text to a stream and flushes it. That the console or the report did not take all of it is kept in
/// mind.
void put_text(std::FILE *stream, std::string_view text);

/// From here on an exit closes the console and the report first. When one of them did not take all of its
/// text, the error stream is told and the status becomes 255.
void watch_sinks();

/// Writes to the console and, when it is open, to the report; flushes both.
void vmr_printf(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// Writes a ready text to the console and, when it is open, to the report; flushes both.
void print_out_str(std::string_view text);

/// Writes to the console alone and flushes it.
void console_printf(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// Writes to the error stream alone, after the console has been flushed.
void error_printf(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// Ends the run with the exit status; what is to be said has been said. While faults are collected
/// (support/faults.hh) it ends the step alone, and nothing is written here.
[[noreturn]] void end_run(int status = 255);

/// vmr_printf, then end_run.
[[noreturn]] void vmr_fail(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// console_printf, then end_run.
[[noreturn]] void console_fail(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// error_printf, then end_run.
[[noreturn]] void error_fail(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// The current local time in the form of ctime, with its line end; in a static buffer.
const char *get_time_string();
