// What a verb has found: one record per finding, sorted, printed for people or for machines.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Errors end a run, or give a chip that does not work; warnings concern the chip; notes ask for nothing.
enum FINDING_SEVERITY : int { FINDING_ERROR, FINDING_WARNING, FINDING_NOTE, FINDING_SEVERITY_COUNT };

/// "error", "warning" or "note".
const char *severity_word(FINDING_SEVERITY severity);

struct FINDING {
    FINDING_SEVERITY severity = FINDING_WARNING;
    std::string rule{};   ///< "pin-without-port": a section of the manual
    std::string file{};   ///< empty where no file is at fault
    int32_t line = 0;     ///< 0 where none is known
    std::string object{}; ///< the port, cell, instruction ... that it is about
    std::string text{};   ///< what is found, one line
    std::string effect{}; ///< what that does to the chip
    std::string cure{};   ///< the line to add or to change
};

/// Sorts by severity, file and line, and drops what is said twice: one rule on one object at one place.
void sort_findings(std::vector<FINDING> &findings);

/// "FILE:LINE: error: text [rule]" with effect and cure below, and a line of counts.
std::string findings_text(const std::vector<FINDING> &findings);
/// The two parts of it: a few lines for each finding, and "1 error, 2 warnings, 0 notes".
std::string findings_lines(const std::vector<FINDING> &findings);
std::string findings_counts(const std::vector<FINDING> &findings);
/// The same as a JSON list of objects.
std::string findings_json(const std::vector<FINDING> &findings);

/// KIT_FINDINGS with an error or a warning, else KIT_DONE.
int findings_status(const std::vector<FINDING> &findings);

/// A few of the names, and how many more there are.
std::string few_of(const std::vector<std::string> &names);
