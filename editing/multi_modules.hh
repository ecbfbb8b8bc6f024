// Pads in several modules: the state that the steps of that flow share, and its first steps.
//
// Each module on the way from the top to a pad is a row of MULTI_IO_TAB and is edited as a copy of its own,
// two instances of one class as two copies. Its command file grows step by step: head; cell lines; control
// ports, trees and control wires; chain lines; then the `replace` lines of its children, ports and
// connections recorded for it. The text stays in memory, and each file is written whole at its end.
#pragma once

#include "editing/edit_commands.hh"
#include "planning/port_table.hh"

#include <string>
#include <unordered_set>
#include <vector>

/// What the flow keeps of one row of MULTI_IO_TAB, under the same index.
struct IO_MODULE {
    const char *sdb_path;                  ///< the module as it was given
    EDIT_FILE *file;                       ///< null once it is written
    std::unordered_set<std::string> ports; ///< names that ports of the module have, the new ones included
    bool highz_buffer;                     ///< the module or one below it has a high-impedance buffer
};
extern std::vector<IO_MODULE> IO_MODULES; ///< made by open_multi_io_modules

/// Name of the edited module: "chip_jtag" for the top, else "<class>_bs<copy>".
std::string edited_module_name(int32_t module);

/// Copies all modules and begins their files. Ends the run with a message when one can't be found, copied or
/// written.
void open_multi_io_modules();

/// Writes the cells of all rows into the files of their modules, in chain order.
void emit_multi_io_cells();

/// Spreads the needs of the subtree of `index` upwards: a module counts one load per child with the signal.
void set_hier_common_net(int32_t index, const MULTI_IO_NODE *children);

/// The control signals that come into the module from outside, by the names of the TAP's pins, in the order
/// of their lines. Holds after set_hier_common_net.
std::vector<const char *> signals_into_module(int32_t module);

/// Notes a new port of the module. Ends the run when the name is taken.
void take_port_name(int32_t module, const std::string &name);
/// Records a port that hier_replace_io_module adds.
void record_port(int32_t module, const char *name, EDIT_PORT direction);
/// Records a connection that hier_replace_io_module makes; a null instance makes its pin a net.
void record_connection(int32_t module, const char *inst1, const char *pin1, const char *inst2,
                       const char *pin2);
