// What the three readers share: the file being read, the scanners and parsers, and the messages of a reading.
#pragma once

#include "support/program.hh"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

struct PIN_READING;

// The parsers of the three languages, and of their scanners the start of a file and the line counter.
extern int lib_yylineno;
extern int bsc_yylineno;
extern int pin_yylineno;
void lib_yyrestart(std::FILE *file);
void bsc_yyrestart(std::FILE *file);
void pin_yyrestart(std::FILE *file);
int lib_yyparse();
int bsc_yyparse();
int pin_yyparse(PIN_READING &reading);

extern const char *current_file; ///< name of the file being parsed, for messages; begin_file sets both
extern const int *current_line;  ///< line counter of its scanner

/// Lets a scanner start at the file. The counter goes on from where it stands.
void begin_file(const char *name, std::FILE *file, void (*restart)(std::FILE *file), const int &line);

/// Begins a reading of the descriptions: the lines of each of its pin files count on from where the files of
/// an earlier reading ended.
void begin_pin_files();

/// Codes of error_msg.
enum READER_ERROR : int32_t {
    MISSING_COMMENT_END = 0,
    NO_SUCH_CELL = 1,
    PIN_NUMBER_REPEATED = 3,
    PIN_NAME_REPEATED = 4
};

/// Prints one of the fixed messages on the console; the caller decides whether the run goes on.
void error_msg(const char *file, int32_t line, READER_ERROR code, const char *text);

/// Prints that `text` cannot stand there, on the console.
void print_syntax_error(const char *file, int32_t line, const char *text);

// The ways out of a reading; each tells of the current file.

/// A character that starts no token: prints the syntax error and ends the run. A NUL is shown as \0.
[[noreturn]] void bad_character(int32_t line, char character);

/// The error routine of the parsers: `reason` is the generator's, `token` the current token's text.
[[noreturn]] void parser_error(int32_t line, const char *reason, const char *token);

/// Ends the run with the message for a comment that is opened twice or never closed.
[[noreturn]] void missing_comment_end(int32_t line);

/// The scanners' way out: prints the generator's `reason` on the error stream and ends the run, with status 2
/// for a token that is too long.
[[noreturn]] void scanner_failed(const char *reason);

// In place of what the generators would define.
#define YY_FATAL_ERROR(reason) scanner_failed(reason)
#define YYMALLOC checked_malloc
#define YYFREE std::free

/// Value of a string of digits. Ends the run when it is above 2147483647.
int32_t number_value(const char *file, int32_t line, const char *digits);
