// From the description tables to the TAP: resolved names, the port-only module, the RTL file and the scripts.
#pragma once

#include "description/tables.hh"

#include <cstdint>

/// Checks the instruction table and resolves the TAP's names. Ends the run on a fault; missing names take
/// defaults with a warning.
void jtag_init();

/// Writes the port-only TAP module and has it read as a cell, then writes the TAP's RTL and the three
/// scripts.
void jtagsyn();
