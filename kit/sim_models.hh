// Verilog for a simulation of the edited chip, where the given models leave some out. Libraries often come as
// ports alone; what the library file says of a pad is enough for a simulation of the boundary register.
#pragma once

#include "kit/command.hh"
#include "kit/netlist_walk.hh"

#include <string>
#include <vector>

/// What a user gives for a simulation.
struct SIM_GIVEN {
    std::vector<std::string> cells;   ///< Verilog files
    std::vector<std::string> macros;  ///< NAME or NAME=VALUE
    std::vector<std::string> folders; ///< of `include files
};
/// The options --cells, --define and --include of a verb.
SIM_GIVEN sim_given(const KIT_CALL &call);

struct SIM_MODELS {
    std::vector<std::string> words; ///< for Icarus: all that the netlist and its TAP need beside themselves
    std::string why_not;            ///< empty, or why there can't be a simulation
};

/// The models for the cells of the Verilog file `netlist`, whose flat edited design is open. DESIGN_cells.v,
/// which `rimkit start` leaves, is taken with the given files when it is there. Modules of these without a
/// statement that drives anything get one: pads what their %BUFFER block says; other cells leave their
/// outputs open. Such a text, and modules that no file has, go to DESIGN_models.v. An unreadable file ends
/// the program.
SIM_MODELS simulation_models(const NETLIST_WALK &walk, const std::string &design, const std::string &netlist,
                             SIM_GIVEN given);
