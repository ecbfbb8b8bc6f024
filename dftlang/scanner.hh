// The scanner of the DFT configuration language: characters of an open file to tokens.
//
// All five kinds of file share it. It reads its file through a window as wide as the longest token, so that a
// file of any size costs no more memory than that.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

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
    TOKEN_ARROW, // =>
    TOKEN_KEYWORDS,
    TOKEN_LIMIT = TOKEN_KEYWORDS + 420
};

/// A single token holds at most this many characters.
constexpr size_t longest_token = 1048575;

/// A token. `text` is null for punctuation and kept to the exit otherwise, without the quotes of a string and
/// a pattern; `shown` is what messages print, up to the next token.
struct SCAN_VALUE {
    int32_t type;
    const char *text;
    const char *shown;
};

/// A file being scanned.
struct SCANNER {
    const char *file_name; ///< in messages
    bool is_quiet;         ///< nothing is said of a line comment that the file's end cuts
    SCAN_VALUE value = {TOKEN_END, nullptr, ""}; ///< the token last taken
    int32_t line = 1;                            ///< at its end
    int32_t previous_line = 1;                   ///< at the end of the one before it
    int32_t comment_line = 0;                    ///< first line of the comment being skipped
    std::string string{};                        ///< inner text of the string being taken
    void *state = nullptr;                       ///< the generated part
};

void scan_start(SCANNER &scanner, std::FILE *file);
/// Takes the next token. Ends the run on a bad string, an unterminated comment and a token that is too large.
void scan_next(SCANNER &scanner);
void scan_end(SCANNER &scanner);
