// What the cells of the register do, seen in simulation: the TAP as it was written, a cell of each kind
// behind it with its control pins as the netlist has them, each instruction loaded, every value of core, pin
// and update stage. Icarus Verilog does the work.
#pragma once

#include "kit/bsdl_file.hh"
#include "kit/cell_types.hh"

/// Tries each kind of cell. `models` are Verilog files of the boundary cells, `tap_file` is the TAP's
/// Verilog. Where that can't be done `why_not` tells the reason and nothing is measured. A cell that does not
/// hold its output by its update stage in EXTEST, or changes it in SAMPLE, is a fault of the register.
CELL_TYPES try_cells(const BSDL_FILE &file, BOUNDARY_REGISTER &found, const std::vector<std::string> &models,
                     const std::string &tap_file);
