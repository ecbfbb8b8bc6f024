// Text on its way into a file.
//
// The text goes out in pieces, so that no file is ever held whole. The file is saved whole all the same: what
// was there before stays until TEXT_finish, and nothing is left of a text whose program fails on the way. A
// device or pipe, which keeps what it got, gets nothing before the end.
#pragma once

#include "support/whole_file.hh"

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

struct TEXT_SINK {
    std::string path; ///< of the file; empty for a text that is kept
    whole_file file{};
    bool in_file = false; ///< the file is begun, and takes what leaves the buffer
    std::string kept{};   ///< what has left the buffer and is not in the file
    std::unique_ptr<char[]> buffer{};
    char *at = nullptr; ///< the free part of the buffer
    char *end = nullptr;

    TEXT_SINK &operator+=(std::string_view text);
    TEXT_SINK &operator+=(char c) {
        return *this += std::string_view(&c, 1);
    }
};

/// A text for the file `path`, or one that is kept when it is empty. The file is not touched yet.
TEXT_SINK TEXT_open(const std::string &path = {});

/// Makes room in the buffer; a text that is longer than all of it is passed on at once, and true is returned.
bool TEXT_make_room(TEXT_SINK &sink, std::string_view text);

/// Puts the file in its place; a fault ends the program.
void TEXT_finish(TEXT_SINK &sink);

/// The text of a sink without a file.
std::string TEXT_take(TEXT_SINK &sink);

inline TEXT_SINK &TEXT_SINK::operator+=(std::string_view text) {
    if (text.size() > static_cast<size_t>(end - at) && TEXT_make_room(*this, text)) [[unlikely]]
        return *this;
    std::memcpy(at, text.data(), text.size());
    at += text.size();
    return *this;
}
