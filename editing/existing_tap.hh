// A TAP that stands in the design already: what the design has joined to it, and what is still to be joined.
#pragma once

#include "editing/standard_signals.hh"

/// True when the run is to leave the wire between a standard port and the TAP as the design has it. A TAP
/// down a path is wired through ports whose names only the design knows; elsewhere a wire that is there may
/// be written again, but not across logic that stands between pad and TAP.
bool design_wires_port(STANDARD_PORT port);

/// Warns of the standard ports that the design does not join to the TAP, where the run does not do it either.
void warn_of_unwired_ports();

/// Frees the pins of the TAP of the constants that the design ties them to. `fp` is the file of the module
/// that the TAP stands in.
void free_existing_tap(EDIT_FILE *fp);

/// Gives the edited module, whose SDB is open, a port for each signal between the TAP or what
/// leads to it and what lies outside, and joins both: the signals of the cells, the ends of the chain, and
/// the standard ports that the design does not wire.
void lift_existing_tap_ports(EDIT_FILE *fp);
