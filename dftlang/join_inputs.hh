// Rows of values that share a port are joined until no two of them do. Inside this folder alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Values that some ports may take together: one character for each port in each pattern.
struct INPUT_ROW {
    std::vector<const char *> ports;
    std::vector<std::string> patterns;
    int32_t line;
};

struct JOINED_ROW {
    INPUT_ROW row;
    std::vector<size_t> sources; ///< the rows that it was made of, itself first; one alone shares no port
};

/// The patterns that the rows of one mode may hold at a time.
constexpr size_t most_patterns = size_t(1) << 24;
/// The warnings of ports that don't match that one mode gives.
constexpr size_t most_mismatches = 1000;

/// The rows that share no port first, then the joined ones. Warns of values that don't match; what is left
/// without a pattern is dropped. Ends the run when the rows hold more than most_patterns.
std::vector<JOINED_ROW> combine_relative_legal_inputs(const std::vector<INPUT_ROW> &rows);
