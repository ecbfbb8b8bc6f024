#include "support/heap.hh"

#include "support/large_pages.hh"
#include "support/program.hh"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <malloc.h>
#include <new>
#include <unistd.h>

namespace {

constexpr int megabyte = 1 << 20;

// What the heap holds before its pages become large ones. To clear some of them takes longer than all that a
// short run does.
constexpr std::ptrdiff_t short_run = 8 * megabyte;

// A large page is one only where the heap had not ended in it before: so the heap grows by many at once.
// What is not used of a step takes no memory.
constexpr int heap_step = 64 * megabyte;

// A block of this size lies by itself and is given back; the library allows for no more.
constexpr int own_block = 32 * megabyte;

std::atomic<char *> heap_end =
    nullptr; ///< up to where large pages were asked for; null where none are wanted

char *end_of_heap() {
    return static_cast<char *>(sbrk(0));
}

/// Of two threads that see the heap grow, both may ask. The operators below call it, which the sanitizers replace.
[[maybe_unused]] void look_at_heap() {
    char *before = heap_end.load(std::memory_order_relaxed);
    if (before == nullptr || end_of_heap() <= before)
        return;
    char *end = end_of_heap();
    heap_end.store(end, std::memory_order_relaxed);
    use_large_pages(before, static_cast<size_t>(end - before));
}

} // namespace

void keep_heap_in_large_pages() {
    mallopt(M_MMAP_THRESHOLD, own_block);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_TOP_PAD, heap_step);
    heap_end = end_of_heap() + short_run;
}

// The sanitizers bring operators that compare how memory is taken and how it is given back.
#ifndef RW_SANITIZED

void *operator new(size_t size) {
    void *memory = checked_malloc(size);
    look_at_heap();
    use_large_pages(memory, size);
    return memory;
}

void operator delete(void *memory) noexcept {
    std::free(memory);
}

void operator delete(void *memory, size_t) noexcept {
    std::free(memory);
}

#endif
