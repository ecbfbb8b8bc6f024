// A TAP that stands down in the hierarchy: the path of its instance, and the files of the modules on it.
//
// The path's rows are instances from the top's child down to the TAP itself. It may run beside the pads'
// path, or share its first instances with it.
#pragma once

#include "editing/standard_ports.hh"

/// The deepest instance that the TAP path and the pads' path of OPIN_TAB row `row` share, found by comparing
/// both from the top down, goes to rwv_hier_same_instance_tapG and rwv_hier_same_instance_iopadG; -1 when
/// none is shared.
void rwv_check_hier_inst_tap_iopad(int32_t row);

/// Fills the modules of the path. Ends the run when an instance can't be found.
void rwv_hier_find_tap_instance();

/// Copies the modules of the path from row `first` on, writes their files from the TAP's parent up, and
/// carries them out. TAP_INSTANCE_NAME is then the instance of row `first`, whose edited module has the TAP's
/// ports.
void rwv_hier_replace_tap_instance(int32_t first);

/// Adds a port for each port of the TAP to the edited module, whose SDB is open, and joins it to the pin of
/// `inst` with the same name.
void rwv_added_tap_ctrl_ports_into_parent(EDIT_FILE *fp, const char *inst);
