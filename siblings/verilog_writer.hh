// Writing netlists as Verilog of IEEE 1364-2001.
#pragma once

#include "siblings/netlist.hh"

#include <string>

/// Appends the module. A name that Verilog cannot hold ends the program.
void VLOG_write_module(std::string &text, const NL_DESIGN &design, const NL_MODULE &module);
