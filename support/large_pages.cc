#include "support/large_pages.hh"

#include <cerrno>
#include <cstdint>
#include <sys/mman.h>

// A page takes memory as a whole when its first byte is written, so that blocks of a few pages would waste
// much of it. What the system answers does not matter: the memory is good without it, too.
void use_large_pages(void *memory, size_t size) {
    constexpr size_t page = size_t{2} << 20;
    constexpr size_t least_size = 2 * page;
    if (size < least_size)
        return;
    auto start = reinterpret_cast<uintptr_t>(memory);
    uintptr_t first = (start + page - 1) / page * page;
    uintptr_t end = (start + size) / page * page;
    int reason = errno;
    madvise(reinterpret_cast<void *>(first), end - first, MADV_HUGEPAGE);
    errno = reason;
}
