// Small chips for the planning tests: Verilog, the description files and a pin file go through the real
// programs in a scratch folder, and what planning decided is shown as the user sees it: messages, report,
// edit commands and boundary order file. The editor runs them, so commands that do not fit the netlist end a
// case.
#pragma once

#include "tests/support/scratch.hh"

#include <span>
#include <string>

inline constexpr const char *USUAL_ROLES =
    "%INPUT_SCAN BC_IN; %CLOCK_SCAN BC_CLK; %OUTPUT_SCAN BC_OUT; %BIDIR_SCAN BC_BI; %CONTROL_SCAN BC_CTL; "
    "%CONTROL_OE_SCAN BC_COE; %INPUT_MUX_SCAN BC_MI; %OUTPUT_MUX_SCAN BC_MO; %BIDIR_MUX_SCAN BC_MB; "
    "%INTERNAL_SCAN BC_IN; %OBSERVE_ONLY_SCAN BC_CLK;";
inline constexpr const char *USUAL_TAP_PINS =
    "%UPDATE_DR update; %TAP_RESET rst; %MODE_1 mode1; %MODE_2 mode2;";

/// What an expected file holds: the sections of the report and the commands of cells and pads, or what these
/// say.
enum SHOWN_PARTS { USUAL_PARTS = 0, WHOLE_CMD = 1, WHOLE_REPORT = 2, NO_CMD = 4, TREE_LINES = 8 };

struct PLANNED_CHIP {
    const char *name;
    const char *design;       ///< Verilog; the top module is chip
    const char *pins;         ///< rows of the pin file
    const char *message = ""; ///< of a refusal: all that the run prints behind its head
    const char *options = "-add_tap";
    const char *roles = USUAL_ROLES;       ///< items of %SCAN_CELLS
    const char *settings = "";             ///< further .bsc statements
    const char *library = "";              ///< further .lib blocks; `$` stands for the pins of each scan cell
    const char *tap_items = "";            ///< further items of the TAP cell
    const char *tap_pins = USUAL_TAP_PINS; ///< its pins beyond those that each TAP must have
    int shows = USUAL_PARTS;
};

/// A scratch folder with the cells of designs/cells.v read. The chips of one test share it.
class planning_folder {
  public:
    planning_folder();

    /// Writes the files of a chip and reads its netlist; runs the program on it; both.
    void read(const PLANNED_CHIP &chip) const;
    run_result insert(const PLANNED_CHIP &chip) const;
    run_result run(const PLANNED_CHIP &chip) const;
    /// What a run left, in the sections of an expected file: messages, report, commands, boundary order file.
    std::string outcome(const run_result &result, int shows) const;
    /// Runs each chip to its end; the expected files are those of their names.
    void expect_outcomes(std::span<const PLANNED_CHIP> chips) const;

    scratch_folder scratch;
};

/// What the run printed behind the line of the files that it read, without the lines that tell what it is
/// doing.
std::string messages_of(const std::string &console);
