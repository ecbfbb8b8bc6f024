// Memory in large pages, for what is filled as a whole.
#pragma once

#include <cstddef>

/// Asks the system to back a block of memory with large pages, where it has them: a block of many megabytes
/// then takes a hundredth of the page faults. A block that is too small for it is left as it is.
void use_large_pages(void *memory, size_t size);
