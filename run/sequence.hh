// The spine of the program: one run, from the command line to the closing lines.
#pragma once

#include <cstdint>

/// Takes one design through the fixed sequence of a run and ends the process: with status 0 when all is done,
/// with 255 at the first fault.
[[noreturn]] void run_sequence(int32_t argc, char **argv);
