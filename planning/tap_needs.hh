// What the chain needs of the TAP: the one list of needs, and the one table of the TAP's pins that serve
// them.
//
// BCELL_HAS and BCELL_EXTRA are the list. It has to be there before the ports are classified: a TAP that the
// run makes is written first, and of one that is in the design all missing pins are told, and the run ends,
// before the first message about a port. The declared cells, the cells that the pin file names and, for a new
// TAP, the pads of the design enter their needs by then. In a design with a TAP the cell inside a pad is met
// while its port is classified: it enters its needs then, in messages of its own, and the pins that are
// missing are resolved behind that port.
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

/// A pin of the TAP.
struct TAP_PIN_ROW {
    const char *keyword;
    const char *TAP_CELL::*field;
    /// Takes the pin's name without '-'; null for an end of the chain, which is used from the record.
    const char **name;
    const char *fallback;          ///< its name in a TAP that the run makes, where the library has none
    int32_t *found = nullptr;      ///< word of TAP_FLAG, or null
    const int32_t *need = nullptr; ///< word of BCELL_HAS; null for a pin that no cell has to ask for
};
/// The rows that are spoken of alone. %HIGHZ_COMMAND stands in two: as the source of the cells' %HIGHZ pins,
/// and last as the command itself, which no chain needs.
enum TAP_PIN_ID : int32_t {
    TAP_TRST = 4,
    TAP_LAST = 8,
    TAP_UPDATE,
    TAP_HIGHZ,
    TAP_COMMAND = 15,
    TAP_PIN_COUNT
};
/// In the order in which the names of a TAP that the run makes are resolved.
extern const TAP_PIN_ROW TAP_PIN_ROWS[TAP_PIN_COUNT];
/// True when the chain, or the chip, needs the pin of the row.
bool tap_pin_is_wanted(int32_t id);

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
