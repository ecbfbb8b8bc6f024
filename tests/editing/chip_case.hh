// A small chip, taken from Verilog through the real program in a scratch folder. The tools behind the editor
// are replaced by ones that only say yes, so that a case shows the edit command files alone; a case may bring
// its own.
#pragma once

#include "tests/support/scratch.hh"

#include <string>
#include <string_view>
#include <vector>

/// What is different from the usual chip.
struct CHIP_INPUT {
    std::string design;       ///< Verilog
    std::string cells;        ///< further cells, as Verilog
    std::string tap_items;    ///< further items of the TAP cell in the .lib file
    std::string library;      ///< further .lib blocks
    std::string tap = "TAP";  ///< %INSTANCE_NAME
    std::string roles;        ///< further items of %SCAN_CELLS; a repeated role wins
    std::string settings;     ///< further .bsc statements
    std::string pins;         ///< rows of the pin file
    std::string instructions; ///< further items of %INSTRUCTION_TABLE
    bool bidir_cell = true;   ///< %BIDIR_SCAN is declared
};

class chip_case {
  public:
    explicit chip_case(const CHIP_INPUT &input);

    /// Runs `rimweave chip <options>` with the tools of the folder `tools` first on PATH.
    run_result run(const std::string &options) const;
    /// Makes a tool that runs the given shell text.
    void make_tool(const std::string &name, const std::string &text) const;
    /// The edit command files of those names, each behind a line "== <name>".
    std::string commands(const std::vector<std::string> &names) const;

    scratch_folder scratch;
};

/// A file of tests/editing.
std::string test_file(const std::string &name);
/// Compares with tests/editing/expected/<name>; writes that file instead when RW_WRITE_EXPECTED is set.
void expect_file(const std::string &name, const std::string &text);
