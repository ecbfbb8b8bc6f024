// What planning decided about a small chip, as the user sees it: messages, report, edit commands and boundary
// order file. The editor runs the commands, so that those that do not fit the netlist end a case.
#pragma once

#include "tests/support/chip/small_chip.hh"

#include <span>

/// What an expected file holds: the sections of the report and the commands of cells and pads, or what these
/// say.
enum SHOWN_PARTS { USUAL_PARTS = 0, WHOLE_CMD = 1, WHOLE_REPORT = 2, NO_CMD = 4, TREE_LINES = 8 };

/// The chips of one test share a folder.
struct planning_folder : chip_folder {
    planning_folder() : chip_folder("planning") {}

    /// Runs the program on the chip that lies there; lays the chip out before.
    run_result insert(const CHIP &chip) const;
    run_result plan(CHIP chip) const;
    /// What a run left, in the sections of an expected file: messages, report, commands, boundary order file.
    std::string outcome(const run_result &result, int shows) const;
    /// Runs each chip to its end; the expected files are those of their names.
    void expect_outcomes(std::span<const CHIP> chips) const;
};
