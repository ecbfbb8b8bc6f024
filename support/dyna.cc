// The untyped core of the growable tables.
//
// A table is one allocation, a header and behind it the elements. The room grows by a fixed step beyond the
// need, not by doubling. All sizes are computed in 64 bits, so that a huge table fails with a message and
// never wraps.
#include "support/dyna.hh"

#include "support/console.hh"
#include "support/large_pages.hh"
#include "support/message.hh"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <numeric>
#include <vector>

namespace {

struct table_header {
    char magic[4];
    uint32_t delta;
    uint32_t flags;
    uint32_t element_size;
    int32_t limit;
    uint32_t capacity;
    int32_t count;
    uint32_t padding; // keeps element 0 aligned for every record
};
static_assert(sizeof(table_header) % alignof(std::max_align_t) == 0);

constexpr char table_magic[4] = {'L', 'T', 'A', '\0'};
constexpr uint32_t flag_sorted = 1;
constexpr uint32_t first_room = 16;
constexpr uint32_t default_delta = 1024;
constexpr uint32_t large_delta = 65536;
constexpr uint64_t large_bytes = 0x7FFFFFFE;

/// The handle that was validated last; spares the check in loops over one table.
const void *last_validated = nullptr;

table_header *header_of(const void *tab) {
    return static_cast<table_header *>(const_cast<void *>(tab)) - 1;
}

table_header *validated(const void *tab) {
    table_header *header = header_of(tab);
    if (tab == last_validated)
        return header;
    if (std::memcmp(header->magic, table_magic, sizeof table_magic) != 0)
        MSG_fatal_error(MSG_CORRUPTED_TABLE);
    last_validated = tab;
    return header;
}

uint64_t bytes_for(uint64_t elements, uint32_t element_size) {
    return sizeof(table_header) + elements * element_size;
}

char *element(void *tab, const table_header *header, size_t index) {
    return static_cast<char *>(tab) + index * header->element_size;
}

[[noreturn]] void resize_failed(uint32_t element_size, int64_t length) {
    error_printf("\n%%FATAL%% DYNA resize failed!\n");
    error_printf("            [element size: %d] [array length: %d]\n\n", static_cast<int>(element_size),
                 static_cast<int>(std::min<int64_t>(length, std::numeric_limits<int32_t>::max())));
    MSG_fatal_error(MSG_NO_MEMORY);
}

/// Moves the table to room for so many elements. Whose room grows by steps hears of a table beyond 2 GB.
void set_capacity(void **tab, int64_t new_capacity, bool by_steps) {
    table_header *header = validated(*tab);
    new_capacity = std::max<int64_t>(new_capacity, 0);
    if (new_capacity > std::numeric_limits<int32_t>::max())
        resize_failed(header->element_size, new_capacity);
    if (new_capacity < header->count)
        header->count = static_cast<int32_t>(new_capacity);
    uint64_t bytes = bytes_for(static_cast<uint64_t>(new_capacity), header->element_size);
    if (bytes > large_bytes && by_steps) {
        error_printf("\n%%WARNING%% DYNA acquiring memory larger than 2GB!\n");
        error_printf("            [element size: %d] [array length: %d]\n\n",
                     static_cast<int>(header->element_size), static_cast<int>(new_capacity));
        header->delta = large_delta;
    }
    last_validated = nullptr; // the old place is about to be given up
    uint32_t element_size = header->element_size;
    auto *moved = static_cast<table_header *>(std::realloc(header, bytes));
    if (moved == nullptr)
        resize_failed(element_size, new_capacity);
    use_large_pages(moved, bytes);
    moved->capacity = static_cast<uint32_t>(new_capacity);
    if (moved->limit > 0)
        moved->limit = static_cast<int32_t>(new_capacity);
    *tab = moved + 1;
    last_validated = *tab;
}

/// Makes room in a bounded table by dropping its oldest elements.
void drop_oldest(void *tab, table_header *header, int64_t surplus) {
    if (surplus > header->count) // more new elements than the table may ever hold
        MSG_fatal_error(MSG_CORRUPTED_TABLE);
    size_t rest = static_cast<size_t>(header->count - surplus);
    std::memmove(tab, element(tab, header, static_cast<size_t>(surplus)), rest * header->element_size);
    header->count = static_cast<int32_t>(rest);
}

} // namespace

namespace dyna_core {

void *init(int32_t limit, uint32_t element_size) {
    uint32_t room = limit > 0 ? static_cast<uint32_t>(limit) : first_room;
    auto *header = static_cast<table_header *>(std::calloc(1, bytes_for(room, element_size)));
    if (header == nullptr)
        MSG_fatal_error(MSG_NO_MEMORY);
    std::memcpy(header->magic, table_magic, sizeof table_magic);
    header->delta = default_delta;
    header->element_size = element_size;
    header->limit = limit > 0 ? limit : 0;
    header->capacity = room;
    return header + 1;
}

int32_t add(void **tab, int32_t n) {
    if (*tab == nullptr)
        return -1;
    table_header *header = validated(*tab);
    int64_t need = static_cast<int64_t>(header->count) + n;
    if (need < 0)
        return -1;
    int64_t spare = static_cast<int64_t>(header->capacity) - need;
    if (spare < 0 && header->limit == 0)
        set_capacity(tab, static_cast<int64_t>(header->capacity) + header->delta - spare, true);
    else if (spare < 0)
        drop_oldest(*tab, header, -spare);
    header = header_of(*tab);
    header->count += n;
    header->flags &= ~flag_sorted;
    return header->count - n;
}

int32_t resize(void **tab, int32_t delta) {
    if (*tab == nullptr)
        return -1;
    set_capacity(tab, static_cast<int64_t>(validated(*tab)->capacity) + delta, true);
    return header_of(*tab)->count;
}

void reserve(void **tab, int64_t new_capacity) {
    if (*tab != nullptr && new_capacity > validated(*tab)->capacity)
        set_capacity(tab, new_capacity, false);
}

int32_t remove(void *tab, int32_t index) {
    if (tab == nullptr)
        return -1;
    table_header *header = validated(tab);
    index = std::max(index, 0);
    if (index >= header->count)
        return -1;
    size_t behind = static_cast<size_t>(header->count - index - 1);
    if (behind > 0)
        std::memmove(element(tab, header, static_cast<size_t>(index)),
                     element(tab, header, static_cast<size_t>(index) + 1), behind * header->element_size);
    header->count--;
    return 1;
}

// Equal rows keep their order, so that the result does not depend on the machine's library.
int32_t sort(void *tab, int (*compare)(const void *, const void *)) {
    if (tab == nullptr)
        return -1;
    table_header *header = validated(tab);
    size_t count = static_cast<size_t>(header->count);
    size_t size = header->element_size;
    std::vector<uint32_t> order(count);
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) {
        return compare(element(tab, header, a), element(tab, header, b)) < 0;
    });
    auto sorted = std::make_unique_for_overwrite<char[]>(count * size + 1);
    for (size_t i = 0; i < count; i++)
        std::memcpy(sorted.get() + i * size, element(tab, header, order[i]), size);
    if (count > 0)
        std::memcpy(tab, sorted.get(), count * size);
    header->flags |= flag_sorted;
    return 0;
}

int32_t search(const void *tab, const void *key, int (*compare)(const void *, const void *)) {
    if (tab == nullptr)
        return -1;
    const table_header *header = validated(tab);
    auto row = [&](int32_t index) {
        return static_cast<const char *>(tab) + static_cast<size_t>(index) * header->element_size;
    };
    if ((header->flags & flag_sorted) == 0) {
        for (int32_t i = 0; i < header->count; i++)
            if (compare(key, row(i)) == 0)
                return i;
        return -1;
    }
    int32_t low = 0;
    int32_t high = header->count;
    while (low < high) { // the lowest of several equal elements
        int32_t middle = low + (high - low) / 2;
        if (compare(key, row(middle)) > 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low < header->count && compare(key, row(low)) == 0 ? low : -1;
}

int32_t release(void *tab) {
    if (tab == nullptr)
        return -1;
    table_header *header = validated(tab);
    std::memset(header->magic, 0, sizeof header->magic);
    last_validated = nullptr; // a later table may come to lie at this address
    std::free(header);
    return 0;
}

int32_t count(const void *tab) {
    return tab == nullptr ? 0 : validated(tab)->count;
}

uint32_t capacity(const void *tab) {
    return tab == nullptr ? 0 : validated(tab)->capacity;
}

void set_delta(void *tab, uint32_t delta) {
    if (tab != nullptr)
        validated(tab)->delta = delta;
}

} // namespace dyna_core

int DYNA_scomp(const void *a, const void *b) {
    const char *left = *static_cast<const char *const *>(a);
    const char *right = *static_cast<const char *const *>(b);
    if (left == nullptr || right == nullptr) // a null stands in front of every string
        return (left != nullptr) - (right != nullptr);
    return std::strcmp(left, right);
}
