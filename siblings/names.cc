#include "siblings/names.hh"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace {

constexpr size_t FIRST_SLOTS = 4096;

// Odd, so that every slot is met. Names with one stem fill a run of slots (hash_text): a run that another one
// is in the way of moves on as a whole.
constexpr size_t PROBE_STEP = 17;

constexpr size_t BLOCK_SIZE = 1 << 20;

uint64_t mix(uint64_t hash, uint64_t word) {
    hash = (hash ^ word) * 0xFF51AFD7ED558CCDu;
    return hash ^ (hash >> 32);
}

// Names are short, and looked up for each token of a large file. The last character is added, not mixed:
// names that differ in their last digit alone are used near each other, and so have slots side by side.
inline uint32_t hash_text(std::string_view text) {
    if (text.empty())
        return 0;
    uint64_t hash = 0x9E3779B97F4A7C15u ^ text.size();
    const char *at = text.data();
    size_t left = text.size() - 1;
    for (; left > 8; at += 8, left -= 8)
        hash = mix(hash, NL_load<uint64_t>(at));
    hash = mix(hash, NL_short_word(at, left));
    return static_cast<uint32_t>(hash) + static_cast<unsigned char>(text.back());
}

// Makes room for `more` texts.
void grow_slots(NL_NAMES &names, size_t more) {
    size_t size = std::max(FIRST_SLOTS, names.slots.size());
    while ((names.texts.size() + more) * 2 > size)
        size *= 2;
    std::vector<NL_NAMES::SLOT> old;
    old.swap(names.slots);
    names.slots.assign(size, {0, -1});
    size_t mask = size - 1;
    for (const NL_NAMES::SLOT &slot : old) {
        if (slot.id < 0)
            continue;
        size_t at = slot.hash & mask;
        while (names.slots[at].id >= 0)
            at = (at + PROBE_STEP) & mask;
        names.slots[at] = slot;
    }
}

std::string_view copy_text(NL_NAMES &names, std::string_view text) {
    if (text.size() > names.free_size) {
        size_t size = text.size() > BLOCK_SIZE ? text.size() : BLOCK_SIZE;
        names.blocks.push_back(std::make_unique_for_overwrite<char[]>(size));
        names.free_at = names.blocks.back().get();
        names.free_size = size;
    }
    char *copy = names.free_at;
    std::memcpy(copy, text.data(), text.size());
    names.free_at += text.size();
    names.free_size -= text.size();
    return {copy, text.size()};
}

// The slot of `text`, or the free slot where it belongs.
inline size_t slot_of(const NL_NAMES &names, std::string_view text, uint32_t hash) {
    const NL_NAMES::SLOT *slots = names.slots.data();
    size_t mask = names.slots.size() - 1;
    size_t at = hash & mask;
    for (; slots[at].id >= 0; at = (at + PROBE_STEP) & mask)
        if (slots[at].hash == hash && NL_same_text(names.texts[static_cast<size_t>(slots[at].id)], text))
            break;
    return at;
}

// Fills a slot that is free.
template <bool in_place> int32_t put_new(NL_NAMES &names, std::string_view text, uint32_t hash, size_t at) {
    int32_t id = static_cast<int32_t>(names.texts.size());
    names.slots[at] = {hash, id};
    names.texts.push_back(in_place ? text : copy_text(names, text));
    if (names.texts.size() * 2 > names.slots.size())
        grow_slots(names, 1);
    return id;
}

template <bool in_place> int32_t put_hashed(NL_NAMES &names, std::string_view text, uint32_t hash) {
    size_t at = slot_of(names, text, hash);
    int32_t id = names.slots[at].id;
    return id >= 0 ? id : put_new<in_place>(names, text, hash, at);
}

template <bool in_place> int32_t put_name(NL_NAMES &names, std::string_view text) {
    if (names.slots.empty())
        grow_slots(names, 1);
    return put_hashed<in_place>(names, text, hash_text(text));
}

} // namespace

int32_t NL_name(NL_NAMES &names, std::string_view text) {
    return put_name<false>(names, text);
}

int32_t NL_name_in_place(NL_NAMES &names, std::string_view text) {
    return put_name<true>(names, text);
}

void NL_reserve_names(NL_NAMES &names, size_t more) {
    size_t count = names.texts.size() + more;
    if (count * 2 > names.slots.size())
        grow_slots(names, more);
    if (count > names.texts.capacity())
        names.texts.reserve(std::max(count, names.texts.size() + names.texts.size() / 2));
}

void NL_name_all(NL_NAMES &names, std::span<const std::string_view> texts, std::span<int32_t> ids) {
    NL_reserve_names(names, texts.size());
    uint32_t hashes[NL_NAMES_AT_ONCE];
    for (size_t from = 0; from < texts.size(); from += NL_NAMES_AT_ONCE) {
        size_t count = std::min(NL_NAMES_AT_ONCE, texts.size() - from);
        for (size_t i = 0; i < count; i++) {
            hashes[i] = hash_text(texts[from + i]);
            __builtin_prefetch(&names.slots[hashes[i] & (names.slots.size() - 1)]);
        }
        for (size_t i = 0; i < count; i++)
            ids[from + i] = put_hashed<false>(names, texts[from + i], hashes[i]);
    }
}

int32_t NL_find_name(const NL_NAMES &names, std::string_view text) {
    if (names.slots.empty())
        return -1;
    return names.slots[slot_of(names, text, hash_text(text))].id;
}

bool NL_parse_bit(std::string_view text, NL_BIT &bit) {
    if (text.size() < 4 || text.back() != ']')
        return false;
    size_t open = text.rfind('[');
    if (open == std::string_view::npos || open == 0)
        return false;
    const char *end = text.data() + text.size() - 1;
    auto [stop, fault] = std::from_chars(text.data() + open + 1, end, bit.index);
    // Leading zeros would not come back when the index is written again.
    bool plain = text[open + 1] != '0' || stop - (text.data() + open + 1) == 1;
    if (fault != std::errc() || stop != end || bit.index < 0 || !plain)
        return false;
    bit.base = text.substr(0, open);
    return true;
}

int32_t NL_bit_name(NL_NAMES &names, std::string_view base, int32_t index) {
    char buffer[256];
    char digits[16];
    auto end = std::to_chars(digits, digits + sizeof digits, index).ptr;
    size_t size = base.size() + static_cast<size_t>(end - digits) + 2;
    if (size > sizeof buffer)
        return NL_name(names, std::string(base) + "[" + std::string(digits, end) + "]");
    std::memcpy(buffer, base.data(), base.size());
    char *at = buffer + base.size();
    *at++ = '[';
    std::memcpy(at, digits, static_cast<size_t>(end - digits));
    at += end - digits;
    *at = ']';
    return NL_name(names, {buffer, size});
}
