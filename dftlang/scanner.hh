// The scanner of the DFT configuration language: characters of an open file to tokens.
//
// All five kinds of file share it. It reads its file through a window, so that a file of any size costs
// memory for its longest token alone.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>

/// Token numbers; a keyword's number is TOKEN_KEYWORDS or above. A punctuation token has its character as
/// number.
enum TOKEN : int32_t {
    TOKEN_END = 0,
    TOKEN_INTEGER = 256,
    TOKEN_REAL,
    TOKEN_PERCENT,
    TOKEN_PATTERN,
    TOKEN_NAME,
    TOKEN_STRING,
    TOKEN_ARROW,         // =>
    TOKEN_SCAN_SELECT_N, // %SCAN_SELECT_<n>
    TOKEN_BIST_CLOCK_N,
    TOKEN_BIST_SELECT_N,
    TOKEN_FOLD_SCAN_IN_N,
    TOKEN_FOLD_SCAN_OUT_N,
    TOKEN_KEYWORDS,
    TOKEN_LIMIT = TOKEN_KEYWORDS + 400
};

/// A single token holds at most this many characters.
constexpr size_t longest_token = 1048575;

/// The token last taken. `text` is null for punctuation and kept to the exit otherwise, without the quotes of
/// a string and a pattern; `shown` is what messages print. Written by scan_yylex alone.
struct SCAN_VALUE {
    const char *text;
    int32_t type;
    const char *shown;
};
extern SCAN_VALUE scan_yylval;

/// The file being read and its current line; the caller of the parser sets both.
extern std::FILE *scan_yyin;
extern int32_t scan_yylineno;

/// Begins a file: forgets what was read ahead of another one.
void scan_start();
/// The next token's number, or TOKEN_END. Ends the run on a bad string, an unterminated comment and a token
/// that is too large.
int32_t scan_yylex();
