// The top module's file: its head, the TAP, and the chip's standard ports.
#pragma once

#include "editing/tap_hierarchy.hh"

#include <vector>

/// Copies the top module, begins its file in TAP_FP and writes the TAP section. Ends the run when the copy
/// fails or the file can't be created. With the pads in the top module, its SDB must be open.
void open_and_modify_top_sdb(const PAD_PATH &pads);

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

/// The 32 lines that tie the TAP's IDCODE input, when -external_idcode asks for them.
void write_idcode_lines(EDIT_FILE *fp);

/// Makes a port that the design does not have, with a pad under -add_pad, and joins it to the TAP.
void add_standard_port(STANDARD_SIGNAL signal);
/// Makes the standard ports that the design does not have, and with `pads_in_top` joins those that it has.
void write_standard_ports(bool pads_in_top);

/// The lines of %CONNECTION_TABLE.
void rwv_do_connection_table(EDIT_FILE *fp);
