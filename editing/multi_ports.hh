// The standard ports of a chip whose pads lie in several modules.
#pragma once

/// Follows each standard port, and the enable of the TDO pad, from its pad up to the top module. Where the
/// signal has no port to leave a module by, it gets one there and on every level above. The rows then name
/// the signals' places in the top module. IO_MODULES must be open.
void bs_hier_search_tap_ports();

/// Joins an added TAP to the standard ports, in the top module's file.
void connect_standard_ports_in_top();
