// Runs planning on a small design in a child process, so that each case starts fresh and may end the run.
#pragma once

#include "tests/support/scratch.hh"

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

struct PLANNING_CASE {
    const char *name;
    const char *netlist;           ///< in the form of design_builder.hh
    const char *pins;              ///< rows of the pin file
    const char *expected = "";     ///< rows, or the text of the refusal
    const char *console = "";      ///< what is printed before that
    std::vector<int> options = {}; ///< OPTION_INDEX values
    const char *roles = nullptr;   ///< %SCAN_CELLS items in place of the usual ones
    const char *settings = "";     ///< further .bsc statements
    const char *library = "";      ///< further .lib blocks
    const char *tap_items = "";    ///< further items of the TAP cell
};

inline void PrintTo(const PLANNING_CASE &planned, std::ostream *stream) {
    *stream << planned.name;
}

/// How far a case goes and what it shows: the rows after the walk, or the rows in chain order, with the
/// control drivers.
enum class PLANNING_STAGE { ROWS, CHAIN, MODULES };

struct planning_result {
    int status;
    std::string console; ///< without the result
    std::string rows;
};

planning_result run_planning(const PLANNING_CASE &planned, PLANNING_STAGE stage);
