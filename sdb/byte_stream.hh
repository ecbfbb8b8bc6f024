// Bytes of a file in memory, read in order with every bound checked, and a buffered writer. Private to this
// folder.
#pragma once

#include <cstdint>
#include <cstdio>
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

/// Collects bytes and hands them to the stream in large pieces.
struct byte_writer {
    std::FILE *stream;
    std::string pending{};
    uint64_t written = 0; ///< bytes given so far
    bool failed = false;

    void put(const void *bytes, size_t size) {
        written += size;
        if (pending.size() + size > piece)
            flush();
        if (size > piece)
            write_now(bytes, size);
        else
            pending.append(static_cast<const char *>(bytes), size);
    }
    void word(uint32_t value) {
        put(&value, sizeof value);
    }
    void number(int32_t value) {
        put(&value, sizeof value);
    }
    void flush() {
        write_now(pending.data(), pending.size());
        pending.clear();
    }

  private:
    static constexpr size_t piece = size_t{1} << 20;
    void write_now(const void *bytes, size_t size) {
        if (!failed && size > 0 && std::fwrite(bytes, 1, size, stream) != size)
            failed = true;
    }
};
