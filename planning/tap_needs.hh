// What the chain needs of the TAP: the one list of needs, and the pins of the TAP that serve them.
//
// BCELL_HAS and BCELL_EXTRA are the list. The declared cells, the cells that the pin file names and the pads
// of the design enter their needs before the TAP's pins are resolved. A cell inside a pad is met later, while
// its port is classified: it enters its needs then, and the pins that are missing are resolved behind that
// port.
#pragma once

#include "planning/port_table.hh"

/// Empties the list.
void forget_needs();
/// Enters the control and %EXTRA_n pins of a cell; no need is ever taken back.
void note_control_pins(const SCAN_CELL &cell);
/// Enters the cells that play no role that is checked: those that the pin file names, and those of pins
/// inside the core.
void note_cells_of_pins();
/// Enters the mode pins of a pad in the design, and all that the cell inside it wants.
void note_needs_of_pad(const BUFFER_CELL &pad);
/// Enters the cell inside the pad of a row. Ends the run when the TAP lacks a pin that it can't do without.
void note_builtin_cell(const OPIN_ROW &row, const SCAN_CELL &cell);

/// What resolve_tap_pins found beside the pins.
struct TAP_PINS_FOUND {
    bool error = false;    ///< a pin is missing, which has been printed
    bool inverted = false; ///< an active-low pin asks for the inverting buffer
};
/// Fills TAP_PIN and its companions from the TAP cell, and TAP_FLAG from the TAP that the open design has;
/// `tap_obj` is -1 when it has none.
TAP_PINS_FOUND resolve_tap_pins(int32_t tap_obj);

/// Behind the classification of a port: resolves the mode pins that its cell was the first to need, and looks
/// at the pins of the TAP on which the mode pins of its mux pad will hang.
void resolve_modes_of_port(const OPIN_ROW &row);
/// The TAP's pin for a mode pin of the row's pad that was needed by no cell. Ends the run when it has none.
void require_mode_pin(int32_t signal, const OPIN_ROW &row);
