// A TAP that stands down in the hierarchy: the path of its instance, and the files of the modules on it.
//
// The path's rows are instances from the top's child down to the TAP itself. It may run beside the pads'
// path, or share its first instances with it.
#pragma once

#include "editing/standard_signals.hh"

/// The modules above the pads of the cells, and where on this path the TAP stands. Level 0 holds the pads,
/// level `levels` is the top module.
struct PAD_PATH {
    const OPIN_ROW *row; ///< its hier_instances and hier_classes are the levels below the top
    int32_t levels;      ///< 0 when the pads stand in the top, or in several modules
    /// The level whose module holds the TAP, or the rest of its path: the one above the instances that both
    /// paths share.
    int32_t tap_level;
};
PAD_PATH path_of_pads();

/// Writes and carries out the files of those modules of the TAP path that are not on the pads' path, from the
/// TAP's parent up. A TAP that is no path has none. Ends the run when an instance of the path can't be found.
void edit_tap_path(const PAD_PATH &pads);

/// Puts the TAP into the module that `depth` instances of its path lie above, and tells the module's file: a
/// new TAP is added, one that stands there is freed of constants, and of a path that goes on, the next
/// instance takes its edited module. True when the TAP is new.
bool place_tap(EDIT_FILE *fp, int32_t depth);

/// The 32 lines that tie the TAP's IDCODE input, when -external_idcode asks for them.
void write_idcode_lines(EDIT_FILE *fp);
