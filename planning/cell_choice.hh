// The choice of a port's cell: the one that the pin file names, the one inside its pad, or a declared one.
#pragma once

#include "planning/port_pad.hh"

#include <cstdint>

/// The cell of that name in a role. Ends the run when the role's check finds a fault.
CHOSEN_CELL checked_cell(const char *name, CELL_COUNTER role);

/// The cell that the pin file names for the row's pin, checked for the role; none when it names none.
CHOSEN_CELL named_cell(const OPIN_ROW &row, CELL_COUNTER role);

/// The cell that a role declares, or none.
CHOSEN_CELL declared_cell(CELL_COUNTER role);
/// The cell of the first role when that is declared, else of the second.
CHOSEN_CELL declared_cell(CELL_COUNTER first, CELL_COUNTER second);
/// Ends the run when none was chosen for the row.
CHOSEN_CELL required_cell(const OPIN_ROW &row, const CHOSEN_CELL &chosen);
/// The same in the words of a kind of port.
struct CELL_WORDS {
    const char *keyword, *need; ///< "%INPUT_SCAN", "INPUT SCAN"
    const char *direction;      ///< "input"
};
CHOSEN_CELL required_cell(const OPIN_ROW &row, const CHOSEN_CELL &chosen, const CELL_WORDS &words);

/// Gives the row its kind and its cell. Nothing else gives a row a cell.
void take_cell(OPIN_ROW &row, int32_t kind, const CHOSEN_CELL &chosen);
/// The same for a kind with an output and an input cell.
void take_pair(OPIN_ROW &row, int32_t kind, const CHOSEN_CELL &output, const CHOSEN_CELL &input);

/// The name under which the library describes the cell inside a %BS_BUFFER pad: the pad's class, or the entry
/// that covers it.
const char *builtin_cell_name(const OPIN_ROW &row);
/// The cell inside a %BS_BUFFER pad, whose needs of the TAP are noted. Ends the run when the library has
/// none.
SCAN_CELL *builtin_cell(const OPIN_ROW &row);
