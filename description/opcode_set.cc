#include "description/opcode_set.hh"

#include <algorithm>
#include <bit>

namespace {

constexpr size_t word_bits = 64;

uint64_t word_of(const std::vector<uint64_t> *bits, size_t word) {
    return bits != nullptr && word < bits->size() ? (*bits)[word] : 0;
}

void set_bit(std::vector<uint64_t> &bits, size_t number) {
    bits.resize(std::max(bits.size(), number / word_bits + 1));
    bits[number / word_bits] |= uint64_t{1} << (number % word_bits);
}

} // namespace

void OPCODE_SET::add(std::string_view opcode) {
    positions.resize(std::max(positions.size(), opcode.size()));
    for (size_t i = 0; i < opcode.size(); i++) {
        POSITION &position = positions[i];
        BITS *bits = &position.open;
        if (!is_any_bit(opcode[i])) {
            auto value = std::ranges::find(position.values, opcode[i], &VALUE::bit);
            if (value == position.values.end())
                value = position.values.insert(value, VALUE{opcode[i], {}});
            bits = &value->with;
        }
        set_bit(*bits, static_cast<size_t>(count));
    }
    count++;
}

int32_t OPCODE_SET::first_that_meets(std::string_view opcode) const {
    struct FILTER {
        const BITS *open, *with;
    };
    std::vector<FILTER> filters; // each leaves the opcodes that agree at one position
    for (size_t i = 0; i < std::min(opcode.size(), positions.size()); i++) {
        if (is_any_bit(opcode[i]))
            continue;
        auto value = std::ranges::find(positions[i].values, opcode[i], &VALUE::bit);
        filters.push_back({&positions[i].open, value == positions[i].values.end() ? nullptr : &value->with});
    }
    for (size_t first = 0; first < static_cast<size_t>(count); first += word_bits) {
        size_t word = first / word_bits, left = static_cast<size_t>(count) - first;
        uint64_t agreeing = left < word_bits ? (uint64_t{1} << left) - 1 : ~uint64_t{0};
        for (size_t i = 0; i < filters.size() && agreeing != 0; i++)
            agreeing &= word_of(filters[i].open, word) | word_of(filters[i].with, word);
        if (agreeing != 0)
            return static_cast<int32_t>(first) + std::countr_zero(agreeing);
    }
    return -1;
}
