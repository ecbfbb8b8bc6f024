// A design flattened to its library cells.
#pragma once

#include "siblings/netlist.hh"

/// Expands all module instances below `top`, whose modules are all in `design`, into a new module of the same
/// name. Names keep their place in the hierarchy by their scopes; each module instance on the way stays as an
/// instance without connections. Ends the program on a module that contains itself.
NL_MODULE NL_flatten(NL_DESIGN &design, int32_t top);

/// Takes pins off their nets that are alone there, on a net without a port: what walks the flat design finds
/// an open pin. The nets stay. Pins of a pad for one direction that leads nowhere keep theirs, as they wait
/// for a TAP, and so do don't-care bits in the core.
void NL_open_lone_pins(const NL_DESIGN &design, NL_MODULE &flat);
