#include "description/opcode_set.hh"

#include <algorithm>
#include <bit>

namespace {

constexpr size_t word_bits = 64;

void set_bit(std::vector<uint64_t> &bits, size_t number) {
    bits[number / word_bits] |= uint64_t{1} << (number % word_bits);
}

} // namespace

/// Room for one more opcode in all sets of bits, which so have one length.
void OPCODE_SET::make_room(size_t length) {
    size_t words = static_cast<size_t>(count) / word_bits + 1;
    bool grows = words > word_count;
    if (length > positions.size()) // an opcode that ends ahead of a position does not agree there
        positions.resize(length, POSITION{BITS(words), {}});
    word_count = words;
    if (!grows)
        return;
    for (POSITION &position : positions) {
        position.open.resize(words);
        for (VALUE &value : position.values)
            value.agreeing.resize(words);
    }
}

void OPCODE_SET::add(std::string_view opcode) {
    make_room(opcode.size());
    auto number = static_cast<size_t>(count++);
    for (size_t i = 0; i < opcode.size(); i++) {
        POSITION &position = positions[i];
        if (is_any_bit(opcode[i])) {
            set_bit(position.open, number);
            for (VALUE &value : position.values)
                set_bit(value.agreeing, number);
            continue;
        }
        auto value = std::ranges::find(position.values, opcode[i], &VALUE::bit);
        if (value == position.values.end())
            value = position.values.insert(value, VALUE{opcode[i], position.open});
        set_bit(value->agreeing, number);
    }
}

int32_t OPCODE_SET::first_that_meets(std::string_view opcode) const {
    std::vector<const uint64_t *> filters; // each leaves the opcodes that agree at one position
    for (size_t i = 0; i < std::min(opcode.size(), positions.size()); i++) {
        if (is_any_bit(opcode[i]))
            continue;
        auto value = std::ranges::find(positions[i].values, opcode[i], &VALUE::bit);
        filters.push_back(value == positions[i].values.end() ? positions[i].open.data()
                                                             : value->agreeing.data());
    }
    for (size_t first = 0; first < static_cast<size_t>(count); first += word_bits) {
        size_t word = first / word_bits, left = static_cast<size_t>(count) - first;
        uint64_t agreeing = left < word_bits ? (uint64_t{1} << left) - 1 : ~uint64_t{0};
        for (size_t i = 0; i < filters.size() && agreeing != 0; i++)
            agreeing &= filters[i][word];
        if (agreeing != 0)
            return static_cast<int32_t>(first) + std::countr_zero(agreeing);
    }
    return -1;
}
