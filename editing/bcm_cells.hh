// The flow in which all boundary cells live in one module <top>_BCM, which the user writes.
//
// The top module gets one instance of it, under the module's name. The lines of a cell are those of the other
// flows, with ports of that instance for the cell's pins: <cell>_IN and its sisters, and BCM_<pin> for a pin
// of the TAP. What stands behind the ports is not this program's.
#pragma once

#include "editing/cell_routines.hh"

/// Ends the run with a message when planning has found what the flow can't do: pads below the top module, or
/// ports without a pad. Writes nothing.
void check_bcm_design();
/// Copies the top module, begins its file, writes the instance of <top>_BCM with the wires of the
/// standard ports, and starts the numbering of the cells. The top module's SDB must be open.
EDIT_FILE *make_top_sdb();

/// True when the row's cells stand in <top>_BCM: with -add_bcm, for all kinds but a few.
bool lives_in_bcm(const OPIN_ROW &row);
/// Input and output cells keep the names of their SCAN_TAB rows there; the others are numbered.
bool keeps_scan_name(const OPIN_ROW &row);
/// Port `<cell>_<suffix>` of the instance.
EDIT_OPERAND bcm_port(const std::string &cell, const char *suffix);
/// The next number that no cell's name has yet, as a name: "BCELL<n>".
std::string next_bcm_cell();
/// Counts a cell whose lines are written; nothing for a cell in the design. `numbered` tells that its name
/// came from next_bcm_cell.
void count_bcm_cell(const PLACED_CELL &cell, bool numbered);
/// Name by number of the last cell that was counted.
std::string last_bcm_cell();
/// A cell that the flow can't reach through <top>_BCM stands without wires of its own: warns of it.
void warn_of_unwired_cell(const OPIN_ROW &row, const char *name);

/// The name of a control cell there that several rows share; empty for one that stands in the design.
std::string &bcm_control(const CONTROL_ROW &control);
/// The enable pin of the row's pad that gets a control cell: %EN_L, else %EN_H; null for none. Warns when the
/// pin list chooses the other one.
const char *bcm_enable(const OPIN_ROW &row);
/// The wire from a pad straight to a port stays as it is, with a warning.
bool stays_at_port(const EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell, const PAD_PIN &pin);
/// The mode pin of a mux pad is driven through <top>_BCM, unless it stands on a working net. Nothing for a
/// cell in the design, whose pad's modes are wired with the control signals.
void join_bcm_mode(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell, int32_t mode);
