// The store of texts that live to the exit: blocks that are only ever appended to, and an index of what they
// hold.
#include "support/text.hh"

#include "support/flat_table.hh"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <strings.h>
#include <vector>

namespace {

constexpr size_t block_size = 64 * 1024;

/// A kept text of less than 4 GB with its hash, small: a run may keep millions.
struct text_row {
    const char *text = nullptr;
    uint32_t hash = 0;
    uint32_t size = 0;
};

struct text_row_traits {
    static bool is_free(const text_row &row) {
        return row.text == nullptr;
    }
    static size_t hash_of(const text_row &row) {
        return row.hash;
    }
};

struct text_store {
    std::vector<std::unique_ptr<char[]>> blocks;
    char *free_from = nullptr;
    size_t free_bytes = 0;
    flat_table<text_row, text_row_traits> index;
};

text_store &store() {
    // Never destroyed: handlers that run at the exit may still read kept texts.
    static text_store *const the_store = new text_store;
    return *the_store;
}

char *take_bytes(text_store &texts, size_t bytes) {
    if (bytes > block_size / 4) { // a long text gets a block of its own, so that no block is half wasted
        texts.blocks.push_back(std::make_unique_for_overwrite<char[]>(bytes));
        return texts.blocks.back().get();
    }
    if (bytes > texts.free_bytes) {
        texts.blocks.push_back(std::make_unique_for_overwrite<char[]>(block_size));
        texts.free_from = texts.blocks.back().get();
        texts.free_bytes = block_size;
    }
    char *place = texts.free_from;
    texts.free_from += bytes;
    texts.free_bytes -= bytes;
    return place;
}

} // namespace

formatted_text::formatted_text(const char *format, va_list values) {
    va_list first_pass;
    va_copy(first_pass, values);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_copy has just set it
    int needed = std::vsnprintf(short_text, sizeof short_text, format, first_pass);
    va_end(first_pass);
    length = needed < 0 ? 0 : static_cast<size_t>(needed);
    if (length < sizeof short_text)
        return;
    long_text.resize(length);
    std::vsnprintf(long_text.data(), length + 1, format, values);
}

std::string format_list(const char *format, va_list values) {
    return std::string(formatted_text(format, values).view());
}

const char *keep_copy(std::string_view text) {
    char *place = take_bytes(store(), text.size() + 1);
    if (!text.empty())
        std::memcpy(place, text.data(), text.size());
    place[text.size()] = '\0';
    return place;
}

const char *keep_text(std::string_view text) {
    if (text.size() > UINT32_MAX)
        return keep_copy(text);
    auto hash = static_cast<uint32_t>(std::hash<std::string_view>()(text));
    auto is_it = [&](const text_row &row) {
        return row.hash == hash && std::string_view(row.text, row.size) == text;
    };
    return store()
        .index
        .add(hash, is_it,
             [&] {
                 return text_row{keep_copy(text), hash, static_cast<uint32_t>(text.size())};
             })
        .text;
}

const char *keep_text_or_null(const char *text) {
    return text == nullptr ? nullptr : keep_text(text);
}

std::string format_text(const char *format, ...) {
    va_list values;
    va_start(values, format);
    std::string text = format_list(format, values);
    va_end(values);
    return text;
}

const char *keep_format(const char *format, ...) {
    va_list values;
    va_start(values, format);
    std::string text = format_list(format, values);
    va_end(values);
    return keep_text(text);
}

std::string text_or_empty(const char *text) {
    return text != nullptr ? text : "";
}

bool same_text(const char *a, const char *b) {
    if (a == nullptr || b == nullptr)
        return a == b;
    return std::strcmp(a, b) == 0;
}

bool same_text_no_case(const char *a, const char *b) {
    if (a == nullptr || b == nullptr)
        return a == b;
    return strcasecmp(a, b) == 0;
}

std::string lower_case(std::string_view text) {
    std::string lower(text);
    for (char &c : lower)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return lower;
}

const char *without_minus(const char *name) {
    return is_active_low(name) ? name + 1 : name;
}

bool is_active_low(const char *name) {
    return name != nullptr && name[0] == '-';
}
