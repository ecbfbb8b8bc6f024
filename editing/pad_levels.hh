// The modules on the way from the top to the pads. Each is copied and edited: it gets the boundary cells or
// lets their signals pass, and its parent changes the type of its instance.
#pragma once

#include "editing/tap_hierarchy.hh"

/// Follows the standard signals, ends the top module's file and writes those of all levels of the pads' path,
/// from the top's child down. Returns that of level 0, with all that stands before the cell lines.
EDIT_FILE *write_pad_levels(const PAD_PATH &path, EDIT_FILE *top);
