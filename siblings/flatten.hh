// A design flattened to its library cells.
#pragma once

#include "siblings/netlist.hh"

/// Expands all module instances below `top`, whose modules are all in `design`, into a new module of the same
/// name. Names keep their place in the hierarchy by their scopes; each module instance on the way stays as an
/// instance without connections. Ends the program on a module that contains itself.
NL_MODULE NL_flatten(NL_DESIGN &design, int32_t top);

/// Takes pins off their nets that are alone there, on a net without a port: what walks the flat design finds
/// an open pin. The nets stay. An input stays on its net where it waits for a driver: that of a pad that
/// feeds nothing inside, as one for TDO, and a don't-care bit of a cell in the core.
void NL_open_lone_pins(const NL_DESIGN &design, NL_MODULE &flat);
