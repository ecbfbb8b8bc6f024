// Whether the names of a flattened design can be told apart without composing their paths.
#pragma once

#include "siblings/netlist.hh"

/// True when two names of a module with scopes might read the same with their paths, or a path like a name at
/// the top: when some component holds the separator, when two scopes are one by their names, or when two nets
/// or instances of one scope share a name, the base name of a vector included. False when the module has no
/// scopes.
bool PATHS_may_clash(const NL_DESIGN &design, const NL_MODULE &module);
