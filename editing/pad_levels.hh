// The modules on the way from the top to the pads. Each is copied and edited: it gets the boundary cells or
// lets their signals pass, and its parent changes the type of its instance.
#pragma once

#include "editing/standard_ports.hh"

/// Ends the top module's file: the outermost module of the pads' path is replaced and wired.
void replace_cell_in_top(int32_t row);
/// Writes the files of all levels of the pads' path of OPIN_TAB row `row`, from the top's child down. That of
/// level 0, with all that stands before the cell lines, stays open in PAD_FP. Returns the path of its SDB.
const char *write_pad_levels(int32_t row);
