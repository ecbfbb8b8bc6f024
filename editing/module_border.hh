// Signals that cross the border of a module: which there are, and the ports that they get.
#pragma once

#include "editing/standard_signals.hh"

#include <vector>

/// The order of the control signals' pins at module borders, and of those of a TAP that stands already.
constexpr CONTROL_SIGNAL BORDER_ORDER[] = {SIG_SHIFT, SIG_CLOCK, SIG_UPDATE, SIG_HIGHZ,
                                           SIG_RST,   SIG_MODE1, SIG_MODE2,  SIG_MODE3};
/// True for a signal that a declared cell has a pin for.
bool signal_is_used(CONTROL_SIGNAL signal);
/// The TAP's pin of a signal that cells, pads with a multiplexer or high-impedance buffers hang on; null for
/// none.
const char *pin_in_use(CONTROL_SIGNAL signal);

/// Adds a pin to the signals that cross a module's border: null is none, and two signals may share a pin of
/// the TAP, and so a port.
void add_crossing_pin(std::vector<const char *> &pins, const char *pin);
/// Ends the run: a signal is to enter the module by a port whose name is taken.
[[noreturn]] void fail_taken_port(const char *module, const char *port);
/// Adds a port to the module whose SDB is open and whose file is `fp`. A port of that name in the module ends
/// the run.
void add_new_port(EDIT_FILE *fp, const char *name, EDIT_PORT direction);
/// Signals that a module with cells gets from outside, by the TAP pins' names, in the order of their lines:
/// the control signals that are in use and the extra pins, each name once.
std::vector<const char *> crossing_signals();

/// Gives the edited module, whose SDB is open, a port for a pin of the TAP or of what leads to it, and joins
/// both.
void lift_tap_pin(EDIT_FILE *fp, const char *pin, EDIT_PORT direction);
