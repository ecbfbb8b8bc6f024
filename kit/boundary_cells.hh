// Which boundary cells a chip gets: those of a library file that fit the roles.
#pragma once

#include "kit/drafts.hh"

#include <string>
#include <vector>

/// The boundary cells that come with the programs: beside an installed rimkit or in its source tree. Ends the
/// program when they are in neither place.
std::string own_cells_folder();

/// The cells of the library file `path`, which may be null for the own ones. Ends the program when a role of
/// the chip has none.
CELL_CHOICE choose_boundary_cells(const CHIP_PLAN &plan, const std::string &path);

/// The names of the chosen cells and buffers.
std::vector<std::string> cell_names(const CELL_CHOICE &cells);
