// A small chip, taken from Verilog through the real program in a scratch folder. The tools behind the editor
// are replaced by ones that only say yes, so that a case shows the edit command files alone; a case may bring
// its own.
#pragma once

#include "tests/support/scratch.hh"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What is different from the usual chip.
struct CHIP_INPUT {
    std::string design = {};       ///< Verilog
    std::string cells = {};        ///< further cells, as Verilog
    std::string tap_items = {};    ///< further items of the TAP cell in the .lib file
    std::string library = {};      ///< further .lib blocks
    std::string tap = "TAP";       ///< %INSTANCE_NAME
    std::string roles = {};        ///< further items of %SCAN_CELLS; a repeated role wins
    std::string settings = {};     ///< further .bsc statements
    std::string pins = {};         ///< rows of the pin file
    std::string instructions = {}; ///< further items of %INSTRUCTION_TABLE
    bool bidir_cell = true;        ///< %BIDIR_SCAN is declared
};

class chip_case {
  public:
    explicit chip_case(const CHIP_INPUT &input);

    /// Runs `rimweave chip <options>` with the tools of the folder `tools` first on PATH.
    run_result run(const std::string &options, std::string_view input = "") const;
    /// Runs the bundled tools and `rimweave d/chip <options>`, with the design and some of its cells in the
    /// folder `d`. What has the names of its files in the working folder is no design.
    run_result run_in_own_folder(const std::string &options) const;
    /// Makes a tool that runs the given shell text.
    void make_tool(const std::string &name, const std::string &text) const;
    /// The edit command files of those names, each behind a line "== <name>".
    std::string commands(const std::vector<std::string> &names) const;

    scratch_folder scratch;
};

/// One replacement in a file of the chip's folder.
struct CHANGE {
    const char *file, *from, *to;
};

constexpr const char *USUAL_PINS = "1 PA a *\n2 PY y *\n3 PZ z *\n4 PB b *\n9 CK ck *\n";

/// A chip, what is changed in it, and what a run of it prints and writes.
struct CHIP_ROW {
    const char *what;
    const char *design = "usual"; ///< of tests/editing/designs, where the input brings none
    CHIP_INPUT input = {};        ///< USUAL_PINS where it brings none
    std::vector<CHANGE> changes = {};
    const char *options = "-add_tap";
    const char *before = "true"; ///< shell commands ahead of the run
    const char *expected = "";   ///< part of what is printed
    int status = 255;
    const char *lines = ""; ///< part of the command files, one behind the other by name
    const char *file = "";  ///< of tests/editing/expected: all of them
};

/// Runs each row. A command file has to be whole or absent, the design stays as it was, and the bundled tools
/// have to carry out what a run without a fault has written.
void run_rows(std::span<const CHIP_ROW> table);

/// A file of tests/editing.
std::string test_file(const std::string &name);
/// Compares with tests/editing/expected/<name>.cmd, which may hold what is different from that of `like`.
void expect_commands(const std::string &name, const std::string &text, const std::string &like = "");
