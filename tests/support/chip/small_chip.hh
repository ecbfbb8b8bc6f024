// A small chip, taken from Verilog and description files through the real programs in a scratch folder. Its
// files are those of tests/<folder>/designs: a case fills the holes that these have, "<NAME=usual text>", and
// what it leaves out is usual there.
#pragma once

#include "tests/support/expected_file.hh"

#include <optional>
#include <vector>

/// One replacement in a file of the chip.
struct CHANGE {
    const char *file, *from, *to;
};

using given_text = std::optional<std::string>;

/// A chip, how it is run, and what is expected then.
struct CHIP {
    const char *name = "";
    std::string design = "";   ///< Verilog, or the name of a file of the designs; "usual" where none is given
    given_text pins = {};      ///< rows of the pin file; usual are those in front of the design
    given_text options = {};   ///< those of the table where it brings none
    given_text roles = {};     ///< items of %SCAN_CELLS
    given_text settings = {};  ///< further .bsc statements
    std::string library = {};  ///< further .lib blocks; `$` stands for the pins of each scan cell
    given_text tap_items = {}; ///< further items of the TAP cell
    given_text tap_pins = {};  ///< its pins beyond those that each TAP must have
    std::string cells = {};    ///< further cells, as Verilog
    given_text tap = {};       ///< %INSTANCE_NAME
    given_text instructions = {}; ///< further items of %INSTRUCTION_TABLE
    std::vector<CHANGE> changes = {};
    const char *before = ""; ///< shell commands ahead of the run
    const char *file = "";   ///< the expected file of them all
    const char *like = "";   ///< another expected file, of which that one holds what differs
    int shows = 0;           ///< which parts of a run an expected file holds
};

/// A scratch folder with the cells of a folder of tests read.
class chip_folder {
  public:
    explicit chip_folder(const std::string &tests);

    /// Writes the files of a chip and reads its netlist.
    void lay_out(const CHIP &chip) const;
    /// Runs `rimweave chip <options>` with the tools of the folder `tools` first on PATH.
    run_result run(const std::string &options, std::string_view input = "") const;

    /// The names of the edit command files, without .cmd, and the text of one.
    std::vector<std::string> command_files() const;
    std::string commands(const std::string &name) const;

    scratch_folder scratch;

  private:
    std::string designs;
};

/// `text` from behind the first `from` up to the next `to`.
std::string between(const std::string &text, const std::string &from, const std::string &to);

/// What the run printed behind the line of the files that it read, without the lines that tell what it is
/// doing.
std::string messages_of(const std::string &console);
