// The flow in which all boundary cells live in one module <top>_BCM, which the user writes.
//
// The top module gets one instance of it, under the module's name. The lines of a cell cut the wire at the
// pad as in the other flows, and join both ends to ports of that instance: <cell>_IN and its sisters for a
// cell, BCM_<pin> for a pin of the TAP. What stands behind the ports is not this program's.
#pragma once

#include "editing/edit_commands.hh"

#include <cstdint>
#include <string>

extern int32_t
    level_count; ///< number of the next cell in <top>_BCM; set by begin_bcm_cells, counted by cells

/// Ends the run with a message when planning has found what the flow can't do: pads below the top module, or
/// ports without a pad. Writes nothing.
void check_bcm_design();

/// Copies the top module, begins its file in TAP_FP and writes the instance of <top>_BCM with the wires of
/// the standard ports. The top module's SDB must be open.
void make_top_sdb();

/// Starts the numbering of the cells.
void begin_bcm_cells();
/// Writes the lines of the row's cells.
void make_scan_cells_in_cmd_file(EDIT_FILE *fp, int32_t row);
