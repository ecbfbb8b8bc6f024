// Liberty libraries: what a pin of a cell is and does, of all that such a file tells. Timing, power and
// tables are passed over while they are read, so that a library of any size takes the memory of what is kept.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

enum class LIBERTY_DIRECTION : uint8_t { UNKNOWN, INPUT, OUTPUT, INOUT, INTERNAL };

/// A pin, or one bit of a bus, `A[3]`. Texts are empty where the library gives none.
struct LIBERTY_PIN {
    std::string name;
    LIBERTY_DIRECTION direction = LIBERTY_DIRECTION::UNKNOWN;
    std::string function;    ///< expressions as they stand there (kit/liberty_function.hh reads them)
    std::string three_state; ///< true releases the pin
    bool is_pad = false;
    bool is_clock = false;                   ///< marked so, or a flip-flop or latch of the cell names it
    std::string complementary;               ///< the other pin of a differential pair
    std::vector<std::string> driver_types{}; ///< pull_up, pull_down, bus_hold, open_drain, ...
    int32_t line = 0;
};

struct LIBERTY_CELL {
    std::string name;
    int32_t file = 0; ///< row of LIBERTY::files
    int32_t line = 0;
    bool is_pad_cell = false;
    bool is_sequential = false; ///< has a flip-flop or a latch
    std::vector<LIBERTY_PIN> pins{};
    std::vector<std::string> power_pins{}; ///< of pg_pin groups
};

struct LIBERTY {
    std::vector<std::string> files; ///< with those that are included
    std::unordered_map<std::string, LIBERTY_CELL> cells;
};

/// Adds the cells of a file, which may be compressed by gzip. A cell that is there already, of another corner
/// for instance, stays as it is. A fault ends the program with "ERROR: FILE:LINE: text" and status 255.
void liberty_read(LIBERTY &library, const std::string &path);
