// Texts that live to the exit, and small text helpers.
//
// A record's text is a `const char *` into the storage kept here, so that no record owns or frees a string. A
// text that was not given is null.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

/// Keeps a copy of `text` to the exit and returns it, zero-terminated. Equal texts share one copy.
const char *keep_text(std::string_view text);

/// Keeps a copy that is not shared: for the texts of a large file, which mostly stand there once, so that
/// finding equal ones would cost more memory than it spares.
const char *keep_copy(std::string_view text);

/// The same as keep_text for a text that may be null; null stays null.
const char *keep_text_or_null(const char *text);

/// A formatted text that takes memory only when it is long, so that a short message can be made when there is
/// no memory left. `values` is used up.
struct formatted_text {
    formatted_text(const char *format, va_list values);
    formatted_text(const formatted_text &) = delete;
    formatted_text &operator=(const formatted_text &) = delete;
    std::string_view view() const {
        return long_text.empty() ? std::string_view(short_text, length) : long_text;
    }

  private:
    char short_text[1024];
    size_t length = 0;
    std::string long_text{};
};

/// printf into a string.
std::string format_text(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// vprintf into a string; `values` is used up.
std::string format_list(const char *format, va_list values);

/// printf into a kept text.
const char *keep_format(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// The text, or an empty one for null.
std::string text_or_empty(const char *text);

/// True when both are null or both are set and equal.
bool same_text(const char *a, const char *b);

/// The same without regard to case; two nulls are equal, one null is not equal to anything else.
bool same_text_no_case(const char *a, const char *b);

/// The text in lower case: the key of a look-up without regard to case.
std::string lower_case(std::string_view text);

/// `name` behind its leading '-', which marks an active-low port; null for null.
const char *without_minus(const char *name);

/// True when `name` starts with '-'; false for null.
bool is_active_low(const char *name);
