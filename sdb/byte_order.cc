// Files of the other byte order.
//
// Ids and counts are swapped as words. Flag words are bit fields that the other machine's compiler laid out
// from the other end, so that their fields are moved to where this machine's tools look for them.
#include "sdb/sdb.hh"

#include "sdb/byte_stream.hh"

int32_t sdb_reverseL = 0;

namespace {

/// The field of `width` bits from bit `first` on, with the order of its bits reversed.
uint32_t reverse_field(uint32_t word, int first, int width) {
    uint32_t mask = ((1U << width) - 1) << first;
    uint32_t reversed = 0;
    for (int bit = 0; bit < width; bit++)
        if ((word >> (first + bit) & 1U) != 0)
            reversed |= 1U << (first + width - 1 - bit);
    return (word & ~mask) | reversed;
}

uint32_t swap_bits(uint32_t word, int a, int b) {
    uint32_t differ = (word >> a ^ word >> b) & 1U;
    return word ^ (differ << a | differ << b);
}

void reverse_port(uint32_t *record) {
    record[3] = SDB_reverse_all(record[3]);
}

/// An object's word: two pairs of flags change places, then the three-bit code at the low end and the two-bit
/// code at bit 7 are exchanged, each in the other's coding.
void reverse_obj(uint32_t *record) {
    uint32_t word = swap_bits(swap_bits(record[2], 3, 6), 4, 5);
    constexpr uint32_t high_of_low[4] = {0, 0x100, 0x80, 0x180};
    uint32_t high = high_of_low[word & 3U];
    uint32_t low = word >> 7 & 3U;
    record[2] = (word & ~0x187U) | high | low;
}

void reverse_net(uint32_t *record) {
    uint32_t word = SDB_reverse_all(record[1]);
    word = reverse_field(word, 5, 8);
    word = reverse_field(word, 13, 8);
    word = reverse_field(word, 21, 2);
    record[1] = reverse_field(word, 23, 4);
}

void reverse_node(uint32_t *record) {
    record[4] = reverse_field(SDB_reverse_all(record[4]), 4, 2);
}

/// How the records of one table are turned: the words that are swapped, and what is done to the flag word.
struct record_treatment {
    int32_t swapped_words;
    int32_t words;
    void (*flags)(uint32_t *record);
};

constexpr record_treatment treatments[] = {
    {8, 8, nullptr},      // CLAS
    {3, 4, reverse_port}, // PORT
    {2, 3, reverse_obj},  // OBJ
    {1, 2, reverse_net},  // NET
    {4, 5, reverse_node}, // NODE
    {2, 2, nullptr},      // PIN
    {1, 1, nullptr},      // SOBJ
    {1, 1, nullptr},      // SNET
    {1, 1, nullptr},      // XPIN
    {1, 1, nullptr},      // XNOD
    {3, 3, nullptr},      // PREF
    {1, 1, nullptr},      // XPOR
};

} // namespace

int32_t SDB_reverse(int32_t word) {
    return sdb_reverseL != 0 ? static_cast<int32_t>(swapped_word(static_cast<uint32_t>(word))) : word;
}

uint8_t SDB_reverse_byte(uint8_t byte) {
    return static_cast<uint8_t>(reverse_field(byte, 0, 8));
}

uint32_t SDB_reverse_all(uint32_t word) {
    uint32_t result = 0;
    for (int shift = 0; shift < 32; shift += 8)
        result |= static_cast<uint32_t>(SDB_reverse_byte(static_cast<uint8_t>(word >> shift))) << shift;
    return result;
}

void SDB_reverse_tab(SDB_HANDLE *handle, int32_t index) {
    if (index < 0 || index >= static_cast<int32_t>(std::size(treatments)))
        return;
    const record_treatment &treatment = treatments[index];
    auto *record = static_cast<uint32_t *>(handle->tables[index].data);
    for (int32_t row = 0; row < handle->tables[index].count; row++, record += treatment.words) {
        for (int32_t word = 0; word < treatment.swapped_words; word++)
            record[word] = swapped_word(record[word]);
        if (treatment.flags != nullptr)
            treatment.flags(record);
    }
}
