// What the five programs share around their work: the streams, the memory and the end.
#pragma once

#include <cstddef>
#include <cstdio>

/// The first call of a program. Opens /dev/null in place of each standard stream that is closed, so that no
/// file takes its number; lets a write beyond a limit of the system, or to a reader that has gone, fail
/// instead of ending the process; has the end watch over the output (support/console.hh). Without memory the
/// program ends with the fatal error "Not enough memory" from its very start.
void start_program();

/// malloc; ends the run when there is no memory.
void *checked_malloc(size_t size);

/// fopen; ends the run when there is no memory for the stream. Null, with errno, for any other fault.
std::FILE *open_stream(const char *name, const char *mode);
