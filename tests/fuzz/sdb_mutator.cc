// Mutations of SDB files: mostly words of their records, so that what lies behind the header is reached.
#include "sdb/sdb_format.hh"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <random>

namespace {

/// Changes one word of a record.
void change_record(uint8_t *data, size_t size, uint32_t seed) {
    constexpr size_t descriptors = 24, descriptor_size = 20;
    std::minstd_rand random(seed);
    const size_t at = descriptors + random() % SDB_FIXED_TAB_COUNT * descriptor_size;
    uint32_t count, record, offset, word;
    if (size < at + descriptor_size)
        return;
    std::memcpy(&count, data + at + 4, 4);
    std::memcpy(&record, data + at + 8, 4);
    std::memcpy(&offset, data + at + 16, 4);
    const uint64_t words = uint64_t{count} * record / 4;
    if (words == 0 || words > size / 4 || offset > size - words * 4)
        return;
    const size_t place = offset + random() % words * 4;
    std::memcpy(&word, data + place, 4);
    const uint32_t near = random() % (2 * count + 2);
    const uint32_t values[] = {word + 1, word - 1, ~0U, near, ~near, 0x40000000 + near, 0U - 6 - near};
    std::memcpy(data + place, &values[random() % std::size(values)], 4);
}

} // namespace

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t room);

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t room, unsigned seed) {
    if (seed % 4 == 0)
        return LLVMFuzzerMutate(data, size, room);
    change_record(data, size, seed / 4);
    return size;
}
