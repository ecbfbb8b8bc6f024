// From the ports of the open flat design to the plan: which pad each stands on, what it is, and why a port
// gets no cell.
#pragma once

#include "kit/chip_plan.hh"
#include "kit/liberty.hh"
#include "kit/verilog_model.hh"

/// Fills plan.ports and plan.pads from the open design. `clock_pins` of the library tell
/// clocks; where it does not know a cell, names do, and the port's row has a doubt. `models` serve cells
/// that the library does not know.
void plan_ports(CHIP_PLAN &plan, const LIBERTY &library,
                const std::unordered_map<std::string, VERILOG_MODEL> &models);

/// Finds the test ports among the plan's ports by the usual names, or by `names` ("tck=TCK_PAD", one per port
/// that is given); where the design has none of them, names for new ports are chosen. Ends the program with
/// KIT_USAGE for a word that it can't take.
void plan_test_ports(CHIP_PLAN &plan, const std::string &names);

/// Fills plan.pin_states with what the further pins of the scanned ports' pads are tied to.
void plan_pin_states(CHIP_PLAN &plan);
