// Bytes of a file in memory, read in order with every bound checked, and the words of a file in the making.
// Private to this folder.
#pragma once

#include "support/whole_file.hh"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

constexpr uint32_t swapped_word(uint32_t word) {
    return __builtin_bswap32(word);
}

/// A position in a file's bytes. A read beyond the end gives 0 and marks the reader as failed for good.
struct byte_reader {
    const unsigned char *bytes;
    size_t size;
    size_t position = 0;
    bool swapped = false;
    bool failed = false;

    bool has(uint64_t n) const {
        return !failed && n <= size - position;
    }
    /// The next n bytes, or null.
    const unsigned char *take(uint64_t n) {
        if (!has(n)) {
            failed = true;
            return nullptr;
        }
        const unsigned char *at = bytes + position;
        position += static_cast<size_t>(n);
        return at;
    }
    uint32_t word() {
        const unsigned char *at = take(4);
        if (at == nullptr)
            return 0;
        uint32_t value;
        std::memcpy(&value, at, sizeof value);
        return swapped ? swapped_word(value) : value;
    }
    int32_t number() {
        return static_cast<int32_t>(word());
    }
};

inline void put_word(whole_file &file, uint32_t value) {
    put_bytes(file, &value, sizeof value);
}
inline void put_number(whole_file &file, int32_t value) {
    put_bytes(file, &value, sizeof value);
}
