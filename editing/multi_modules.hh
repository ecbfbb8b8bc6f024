// Pads in several modules: the steps of that flow in their order, and the state that they share.
//
// Each module on the way from the top to a pad is a row of MULTI_IO_TAB and is edited as a copy of its own,
// two instances of one class as two copies. Its command file grows step by step: head; cell lines; control
// ports, trees and control wires; chain lines; then the `replace` lines of its children, ports and
// connections recorded for it. The text stays in memory, and each file is written whole at its end.
#pragma once

#include "editing/standard_signals.hh"
#include "planning/port_table.hh"

#include <string>
#include <vector>

/// Copies all modules and begins their files. Ends the run with a message when one can't be found, copied or
/// written.
void open_multi_io_modules();

/// Writes the cells of all rows into the files of their modules, in chain order.
void emit_multi_io_cells();

/// Follows each standard signal from its pad up to the top module. Where it has no port to leave a module by,
/// it gets one there and on every level above. To be done before the cells are written.
void bs_hier_search_tap_ports();
/// Joins an added TAP to the standard ports, in the top module's file.
void connect_standard_ports_in_top(EDIT_FILE *top);

/// Spreads the needs upwards: a module counts one load per child with the signal.
void set_hier_common_net();
/// The control signals that come into the module from outside, by the names of the TAP's pins, in the order
/// of their lines. Holds after set_hier_common_net.
std::vector<const char *> signals_into_module(int32_t module);

/// Writes the control ports, trees and control wires of every module, then the chain.
void connect_scan_cell_for_multi_io();
/// Joins the chain pins of SCAN_TAB row `row`. `fp` is the file of its module; what other modules have to do
/// is recorded for them.
void hier_add_and_connect_bc_serial(int32_t row, EDIT_FILE *fp);

/// Ends the files of all modules, a child's before its parent's: the children replaced and wired, in the top
/// the standard ports, and everywhere the ports and connections recorded on the way.
void hier_replace_io_modules();

/// Notes a new port of the module. Ends the run when the name is taken.
void take_port_name(int32_t module, const std::string &name);
/// Records a port, and a connection, for the end of the module's file.
void record_port(int32_t module, const char *name, EDIT_PORT direction);
void record_connection(int32_t module, const SIGNAL_PLACE &a, const SIGNAL_PLACE &b);
