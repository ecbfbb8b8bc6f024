// The roles of %SCAN_CELLS: which cell is declared for each, and what it must have.
#pragma once

#include "description/tables.hh"
#include "planning/port_table.hh"

/// A pin that a cell must have.
struct PIN_NEED {
    const char *keyword;
    const char *SCAN_CELL::*field;
};
constexpr PIN_NEED DATA_IN = {"%DATA_IN", &SCAN_CELL::data_in};

/// What a role says of %MODE_1 to %MODE_3. The pad of a mux cell has the multiplexer, and with it the mode
/// pins.
enum MODE_WARNING { NO_WARNING, WARN_NO_MODE, WARN_ANY_MODE };

struct CELL_ROLE {
    const char **declared; ///< name of the cell that plays it; null when it is not declared
    const char *keyword;   ///< in messages: "%INPUT_SCAN"
    PIN_NEED pins[4];      ///< without a keyword where there are fewer
    MODE_WARNING warning = NO_WARNING;
    const char *warning_word = nullptr; ///< the role in the mode warnings, where it is spelt in its own way
    const char *oe_keyword = nullptr;   ///< the role in the message of a missing %OE_MODE; null: not needed
};

/// By CELL_COUNTER, in the order in which the declared cells are checked.
extern const CELL_ROLE CELL_ROLES[CELL_COUNTER_COUNT];

/// Checks the cell of that name in a role, fills its oe_mode_type and notes what it needs of the TAP. True
/// when the cell has a fault, which has been printed.
bool check_scan_cell(CELL_COUNTER role, const char *name);
