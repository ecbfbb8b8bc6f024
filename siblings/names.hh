// Texts as numbers: every name of a netlist is held once and compared as an id.
#pragma once

#include <cstdint>
#include <cstring>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The bytes there as a number, which may stand anywhere.
template <class T> T NL_load(const char *at) {
    T word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

/// Up to eight bytes as one word; a middle may be in it twice.
inline uint64_t NL_short_word(const char *at, size_t size) {
    if (size >= 4)
        return NL_load<uint32_t>(at) | uint64_t{NL_load<uint32_t>(at + size - 4)} << 32;
    if (size >= 2)
        return NL_load<uint16_t>(at) | uint64_t{NL_load<uint16_t>(at + size - 2)} << 16;
    return size == 0 ? 0 : static_cast<unsigned char>(*at);
}

/// Whether two texts are equal; names are too short for a call.
inline bool NL_same_text(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    const char *left = a.data(), *right = b.data();
    size_t size = a.size();
    for (; size > 8; left += 8, right += 8, size -= 8)
        if (NL_load<uint64_t>(left) != NL_load<uint64_t>(right))
            return false;
    return NL_short_word(left, size) == NL_short_word(right, size);
}

/// A table of distinct texts. Ids count from 0 in the order of first use and never change.
struct NL_NAMES {
    struct SLOT {
        uint32_t hash;
        int32_t id; // -1 while the slot is free
    };
    std::vector<SLOT> slots; // open addressing, a power of two, at most half full
    std::vector<std::string_view> texts;
    std::vector<std::unique_ptr<char[]>> blocks; // storage of the copied texts
    char *free_at = nullptr;
    size_t free_size = 0;
};

/// The id of `text`, which is copied when it is new.
int32_t NL_name(NL_NAMES &names, std::string_view text);

/// The same for a text that lives as long as the table, which refers to it.
int32_t NL_name_in_place(NL_NAMES &names, std::string_view text);

/// Makes room for that many new texts.
void NL_reserve_names(NL_NAMES &names, size_t more);

/// The ids of many texts, as NL_name gives them. The places of a table that no cache holds are fetched ahead,
/// those of so many texts at once.
constexpr size_t NL_NAMES_AT_ONCE = 64;
void NL_name_all(NL_NAMES &names, std::span<const std::string_view> texts, std::span<int32_t> ids);

/// The id of `text`, or -1.
int32_t NL_find_name(const NL_NAMES &names, std::string_view text);

inline std::string_view NL_text(const NL_NAMES &names, int32_t id) {
    return names.texts[static_cast<size_t>(id)];
}

/// A copy of the text, for messages and file names.
inline std::string NL_string(const NL_NAMES &names, int32_t id) {
    return std::string(NL_text(names, id));
}

/// A text of the form `base[index]` taken apart.
struct NL_BIT {
    std::string_view base;
    int32_t index;
};

/// True when `text` ends in a decimal index in brackets, as bits of vectors are named, and fills `bit`.
bool NL_parse_bit(std::string_view text, NL_BIT &bit);

/// The id of `base[index]`.
int32_t NL_bit_name(NL_NAMES &names, std::string_view base, int32_t index);
