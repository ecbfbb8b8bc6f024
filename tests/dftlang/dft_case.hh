// Reads DFT configurations in a child process, so that a test sees the streams, the status and a summary of
// what was made.
#pragma once

#include "dftlang/scan_interface.hh"
#include "tests/support/scratch.hh"

#include <cstdio>
#include <filesystem>
#include <functional>

/// Runs `action` in a child with the scratch folder as its working directory.
inline run_result run_child(const scratch_folder &scratch, const std::function<void()> &action) {
    scratch_folder streams;
    std::fflush(nullptr);
    pid_t child = fork();
    if (child == 0) {
        std::filesystem::current_path(scratch.dir);
        if (std::freopen(streams.path("out").c_str(), "w", stdout) == nullptr ||
            std::freopen(streams.path("err").c_str(), "w", stderr) == nullptr)
            _exit(99);
        action();
        std::fflush(nullptr);
        _exit(0);
    }
    int raw = 0;
    waitpid(child, &raw, 0);
    int status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
    return {status, streams.read("out"), streams.read("err")};
}

/// Reads chip.dft of the scratch folder; `show` may print of the configuration what the test looks at.
inline run_result read_dft(
    const scratch_folder &scratch, const std::function<void()> &show = [] {}, int debug = 0) {
    return run_child(scratch, [&] {
        scan_interface("chip.dft", debug, "hier_dft");
        show();
    });
}
