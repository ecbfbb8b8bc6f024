// The three description files of a chip, as text. Each line that was inferred has the reason behind it, and
// each that was guessed has "please check:".
#pragma once

#include "kit/chip_plan.hh"

#include <string>
#include <vector>

/// The boundary cells that the drafts use.
struct CELL_CHOICE {
    std::string input, clock, output, control; ///< names; `control` is empty when no pad has an enable
    std::string tree_buffer;                   ///< empty for none
    std::string blocks;     ///< their blocks of the library file, as they stand in `source`
    std::string source;     ///< the file they come from
    std::string doubt;      ///< what to look at, or empty
    bool has_highz = false; ///< the control cell has a %HIGHZ pin
    bool has_reset = false; ///< the control cell has an %RST pin
};

std::string draft_lib(const CHIP_PLAN &plan, const CELL_CHOICE &cells);
std::string draft_bsc(const CHIP_PLAN &plan, const CELL_CHOICE &cells);
std::string draft_pin(const CHIP_PLAN &plan, const CELL_CHOICE &cells);

/// True when HIGHZ can release every output: each has an enable that is not tied.
bool plan_releases_all(const CHIP_PLAN &plan);

/// The value at which most control cells turn their pads off, and true in `mixed` when others need the
/// opposite. -1 when no pad has an enable.
int plan_off_value(const CHIP_PLAN &plan, bool &mixed);
