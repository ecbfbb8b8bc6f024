// The bench of the patterns, played by Icarus Verilog on the chip or on its test logic alone.
#pragma once

#include "kit/finished_run.hh"
#include "kit/patterns.hh"

#include <string>
#include <vector>

/// What the bench is played on.
struct BENCH_CHIP {
    std::vector<std::string> files; ///< Verilog
    std::string why_not;            ///< why there is none, or empty
    std::string why_no_core;        ///< why the core is left out, or empty
};

/// The whole chip where all cells have a model, else the test logic alone, which play_bench makes
/// (kit/test_logic.hh).
BENCH_CHIP bench_chip(const FINISHED_RUN &run, const BOUNDARY_REGISTER &found);

/// Plays the steps; `said` gets the bench's lines. Where the core is left out, nothing that it would have to
/// answer is looked at any more in `list`. Empty, or why there are no results.
std::string play_bench(PATTERN_LIST &list, const BOUNDARY_REGISTER &found, const BENCH_CHIP &chip,
                       std::string &said);
