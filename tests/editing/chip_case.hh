// A small chip and the edit command files that a run on it writes. The tools behind the editor are replaced
// by ones that only say yes, so that a case shows these files alone; a case may bring its own.
#pragma once

#include "tests/support/chip/small_chip.hh"

#include <span>

struct chip_case : chip_folder {
    explicit chip_case(const CHIP &chip);

    /// Runs the bundled tools and `rimweave d/chip <options>`, with the design and some of its cells in the
    /// folder `d`. What has the names of its files in the working folder is no design; the netlists have to
    /// be there then.
    void run_in_own_folder(const std::string &options) const;
    /// Makes a tool that runs the given shell text.
    void make_tool(const std::string &name, const std::string &text) const;
    /// The edit command files of those names, each behind a line "== <name>".
    std::string command_files_of(const std::vector<std::string> &names) const;
};

/// Compares with tests/editing/expected/<name>.cmd, which may hold what is different from that of `like`.
void expect_commands(const std::string &name, const std::string &text, const std::string &like = "");

/// Runs each row and compares what all of them say and write with tests/editing/expected/rows_of_<name>.txt.
/// A command file has to be whole or absent, the design stays as it was, and the bundled tools have to carry
/// out what a run without a fault has written. What a row leaves out is that of `base`.
void run_rows(const std::string &name, std::span<const CHIP> table,
              const CHIP &base = {.options = "-add_tap"});
