// The test logic of the chip alone, as Verilog: the TAP, the boundary cells, the pads and the buffers between
// them, with the wires of the final netlist. The core is left out, and what it drives is open. So the test
// can be simulated without models of the core, and in a time that does not grow with it.
#pragma once

#include "kit/boundary_register.hh"
#include "kit/engines.hh"

#include <string>
#include <vector>

/// The module DESIGN_jtag. A pad is what its %BUFFER block says: pins that the block does not name do
/// nothing. Pads with a multiplexer or a cell inside are instances, and so are the TAP and the boundary
/// cells.
std::string test_logic_text(const BOUNDARY_REGISTER &found, const std::string &design);

/// The classes that it instantiates beside the TAP, without those that do something in `modules`.
std::vector<std::string> test_logic_lacks(const BOUNDARY_REGISTER &found, const VERILOG_MODULES &modules);
