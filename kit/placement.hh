// Where the cells of a chip lie: the components of a DEF file, and the order of pads round the die.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Which way the upper side of a cell points.
enum class PLACEMENT_UP : uint8_t { NORTH, WEST, SOUTH, EAST };

/// A placed component. Coordinates are in the units of the file; the origin is the lower left corner of the
/// cell as it lies there.
struct PLACEMENT_COMPONENT {
    std::string instance; ///< as in the netlist: without the backslashes of the file
    std::string cell;
    int64_t x = 0, y = 0;
    PLACEMENT_UP up = PLACEMENT_UP::NORTH;
    bool is_mirrored = false; ///< left and right changed places
    int32_t line = 0;
};

struct PLACEMENT {
    std::string design;
    int64_t units = 0; ///< per micrometre; 0 when the file tells none
    int64_t die_left = 0, die_bottom = 0, die_right = 0, die_top = 0; ///< of a polygon the rectangle round it
    std::vector<PLACEMENT_COMPONENT> components;                      ///< those that are placed
};

/// Reads a DEF file, which may be compressed by gzip, as far as its components. A fault ends the program with
/// "ERROR: FILE:LINE: text" and status 255.
PLACEMENT placement_read(const std::string &path);

/// The component of each instance of the netlist, as a row of the placement; -1 for none. Names of the file
/// may leave away the outer parts of a path, where the placement is that of a module. No component is given
/// twice.
std::vector<int32_t> placement_rows(const PLACEMENT &placement, const std::vector<std::string> &instances);

/// A side of the die, counter-clockwise.
enum class PLACEMENT_SIDE : uint8_t { BOTTOM, RIGHT, TOP, LEFT };

/// The side of each of `pads`.
std::vector<PLACEMENT_SIDE> placement_sides(const std::vector<PLACEMENT_COMPONENT> &pads);

/// The rows of `pads` in their order counter-clockwise round the die: the bottom from left to right, the
/// right side upwards, the top from right to left, the left side downwards. The first is the one behind the
/// row `behind`, which then comes last, or with -1 the leftmost of the bottom. Two rows of pads on one side
/// make one order, by their places along the side. Pads at one place are ordered by their names.
std::vector<int32_t> placement_ring(const std::vector<PLACEMENT_COMPONENT> &pads, int32_t behind = -1);
