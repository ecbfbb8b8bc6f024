// The message layer of the support library's own fatal errors. Its stream is the error stream.
#pragma once

/// Codes of MSG_fatal_error.
enum MSG_CODE { MSG_NO_MEMORY = 1, MSG_DISK_FULL = 2, MSG_CORRUPTED_TABLE = 3 };

/// Prints the text behind "FATAL ", continuation lines aligned, and ends the run with status 255.
[[noreturn]] void MSG_fatal(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// Prints the text without an identifier. Returns 0.
int MSG_inform(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// Prints an empty line and the fatal error of that code, and ends the run with status 255.
[[noreturn]] void MSG_fatal_error(int code);
