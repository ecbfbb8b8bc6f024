// Where the TAP stands, seen from the module that a file edits.
#pragma once

#include "editing/edit_commands.hh"
#include "planning/tap_state.hh"

/// Row of the TAP path that is also an instance on the pads' path; -1 when none. Set by
/// rwv_check_hier_inst_tap_iopad.
extern int32_t rwv_hier_same_instance_tapG;
/// Index of the same instance in the pads' path, counted from the pads' module; -1 when none.
extern int32_t rwv_hier_same_instance_iopadG;
/// Relation of the level in work to that instance. Set before each level is written, kept behind the last.
enum LEVEL_MATCH : int32_t {
    MATCH_NONE = -1, ///< the TAP stands outside the pads' path
    MATCH_HERE = 1,  ///< the TAP stands in this module
    MATCH_BELOW = 2, ///< it stands deeper; its ports run down through this module
    MATCH_ABOVE = 3  ///< it stands higher; this module gets ports as when it stood outside
};
extern int32_t rwv_hier_instance_matchG;

/// True when TAP and cells stand in one module, so that a TAP pin can be named.
bool tap_is_beside_cells();
/// The TAP's signal where the cells stand: the TAP's pin, or the port that carries the signal into the module
/// and has the pin's name.
EDIT_OPERAND tap_signal(const char *pin);
