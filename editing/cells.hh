// The lines that put boundary cells into the design: one call per row of OPIN_TAB that has a cell, in chain
// order. The serial chain and the control pins are wired behind them (editing/wiring.hh).
#pragma once

#include "editing/edit_commands.hh"

/// Writes the lines of the row's cell, with its control cell where the row makes one, and the pad or inverter
/// that it needs. The SDB of the module that holds the pad must be open. Appends to SCAN_TAB; sets `order`
/// and `scan_cell_name` of the row. Kinds without a step write nothing. Ends the run on a floating pad.
void add_scan_cells_in_cmd_file(EDIT_FILE *fp, OPIN_ROW &row);
