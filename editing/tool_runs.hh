// Carrying out the edit command files: the runs of the sibling tools, and the moves of their results.
//
// Every step is one command for the shell, and its status is all that is looked at. A failed step ends the
// run with status 255; what the tool has said is on the console or in its log.
#pragma once

#include "planning/port_table.hh"

#include <cstdint>

/// Runs the files of the pads' path, child before parent, and the top module's file; moves the edited modules
/// to the library directory; prints the closing lines and writes the netlist unless -no_expand was given.
void do_kalmedit();
/// Runs the files of a TAP path, from the TAP's parent up to row `last` of the path, and moves the results.
void rwv_hier_do_kalmedit_for_tap_instance(int32_t last);
/// Runs the files of all rows of MULTI_IO_TAB, children first, and moves each result at once.
void hier_do_kalmedit();
/// The lines that close an insertion, and the netlist.
void print_closing_lines();
/// Writes the edited design as one netlist and expands it.
void bs_get_and_expand_netlist_with_jtag();
