// Reads DFT configurations in a child process, so that a test sees the streams, the status and a summary of
// what was made.
#pragma once

#include "dftlang/scan_interface.hh"
#include "tests/support/scratch.hh"

#include <functional>

/// Reads chip.dft of the scratch folder; `show` may print of the configuration what the test looks at.
inline run_result read_dft(
    const scratch_folder &scratch, const std::function<void()> &show = [] {}, int debug = 0) {
    return run_child(scratch, [&] {
        scan_interface("chip.dft", debug, "hier_dft");
        show();
    });
}
