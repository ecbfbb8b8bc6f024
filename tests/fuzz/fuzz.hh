// Fuzzing of the readers. A program ends a run by leaving the process and its tables to the exit; here one
// process makes thousands of runs, each as if it were the first.
#pragma once

#include <functional>
#include <vector>

struct FUZZ_READER {
    const char *name;
    std::vector<const char *> files; ///< names of an input's parts, which lines of "====" part; none is empty
    void (*read)();                  ///< in a folder that holds the parts: reads them in one or more runs
    void (*prepare)() = nullptr;     ///< makes the files that every input finds in that folder; what it does
                                     ///< outside of a run stays, such as a table of keywords
};

/// The reader of that name.
const FUZZ_READER &fuzz_reader(const char *name);

/// A run of a program; gives its exit status. Stops the fuzzer when the run ends with a status that no run
/// has, or with 255 and without a word.
int fuzz_run(const std::function<void()> &program);
