// Screens and answers: all that the guide prints goes to the console alone, all that it reads comes line by
// line from the standard input, which may be a terminal or a pipe.
#pragma once

#include "support/template_text.hh"

#include <cstdint>
#include <optional>
#include <string>

/// One input line without its line end, of any length; nothing at the end of the input. On a terminal more
/// lines may follow such an end.
using ANSWER = std::optional<std::string>;

/// A question: so many blanks, then the text.
struct PROMPT {
    int indent;
    const char *text;
};

/// Runs `clear` and shows the expanded template. The last line of the template is a prompt that ends in ':';
/// the cursor stays one blank behind it.
void print_screen(const char *screen, const TEMPLATE_VALUES &values);

/// The line as it was typed: a command is compared with all of it.
ANSWER read_answer();
/// The answer as a value: without control characters and the sequences that a terminal's keys send, and with
/// a blank for a tab. A line of nothing else is asked for again, since it is no empty answer.
ANSWER ask(const PROMPT &prompt);

/// Says what is wrong and leaves it on the screen until the user has pressed Enter.
void error_wait(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// The number that the digits give; nothing when the text is no integer or no number of 32 bits.
std::optional<int32_t> to_integer(const std::string &text);

/// The field's new text: null for an empty answer.
const char *field_text(const std::string &answer);

/// Cuts the answer into tokens at commas, semicolons and blanks and appends each that `accept` takes.
void append_tokens(const char **&list, const std::string &answer, bool (*accept)(const std::string &token));

void empty_list(const char **&list);
