// Which nets are clocks: those that reach the clock pin of a register through buffers and inverters.
#pragma once

#include "kit/liberty.hh"

#include <cstdint>
#include <string>
#include <unordered_map>

struct CLOCK_FOUND {
    bool is_clock = false;
    bool by_name = false; ///< no library describes the cell: its pin is called like a clock
    std::string pin;      ///< "u1{CK}", the pin that was reached
};

/// What is remembered of the cells between searches.
struct CLOCK_SEARCH {
    explicit CLOCK_SEARCH(const LIBERTY &of) : library(of) {}
    const LIBERTY &library;
    std::unordered_map<int32_t, int32_t> through; ///< by class: the output pin of a buffer, or -1
};

/// Follows the net of `node`, a node of the open design.
CLOCK_FOUND find_clock(CLOCK_SEARCH &search, int32_t node);
