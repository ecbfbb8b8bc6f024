// The top module's file: its head, the TAP, and the chip's standard ports.
#pragma once

#include "editing/tap_hierarchy.hh"

/// Copies the top module, begins its file and writes the TAP section. Ends the run when the copy fails or the
/// file can't be created. With the pads in the top module, its SDB must be open.
EDIT_FILE *open_and_modify_top_sdb(const PAD_PATH &pads);

/// Makes a port that the design does not have, with a pad under -add_pad, and joins it to the TAP.
void add_standard_port(EDIT_FILE *top, STANDARD_SIGNAL signal);
/// Makes the standard ports that the design does not have, and with `pads_in_top` joins those that it has.
void write_standard_ports(EDIT_FILE *top, bool pads_in_top);

/// The lines of %CONNECTION_TABLE.
void rwv_do_connection_table(EDIT_FILE *fp);
