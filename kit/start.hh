// What `start` does, for the verb that does it on its way.
#pragma once

#include "kit/command.hh"

#include <cstdint>
#include <span>
#include <string>

/// The options of `start`.
extern const std::span<const KIT_OPTION> start_options;

/// What became of the drafts.
struct START_RESULT {
    std::string design;
    size_t ports = 0, scanned = 0, skipped = 0, tests = 0;
    std::string order;    ///< where the order of the pins comes from
    int32_t to_check = 0; ///< lines with "please check" in the files that were written
};

/// Brings the design database up to date with the netlist and writes the drafts that are not there yet.
START_RESULT start_drafts(const KIT_CALL &call, const std::string &design);

/// The result as a text for people.
std::string start_report(const START_RESULT &result);

/// The design database alone.
void start_update(const KIT_CALL &call, const std::string &design);
