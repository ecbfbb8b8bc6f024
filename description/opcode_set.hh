// Opcodes, with "don't care" bits, and which of them meet.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// True for a bit that may have either value.
inline bool is_any_bit(char bit) {
    return bit == 'X' || bit == 'x';
}

/// Opcodes of one length, numbered from 0 as they come. A set of n opcodes is asked in n / 64 steps at most,
/// however many of their bits are open.
class OPCODE_SET {
  public:
    void add(std::string_view opcode);
    /// The first opcode that some value has in common with this one, or -1.
    int32_t first_that_meets(std::string_view opcode) const;

  private:
    using BITS = std::vector<uint64_t>; // a bit for each opcode
    struct VALUE {
        char bit;
        BITS agreeing; // the opcodes that have this value there, or any
    };
    struct POSITION {
        BITS open; // the opcodes that have any value there
        std::vector<VALUE> values;
    };
    void make_room(size_t length);

    std::vector<POSITION> positions;
    size_t word_count = 0; // of each set of bits
    int32_t count = 0;
};
