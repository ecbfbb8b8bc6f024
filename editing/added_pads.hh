// The pads that -add_pad gives to ports without one.
#pragma once

#include "planning/port_table.hh"

#include <initializer_list>

/// The cell of an added pad, and its pins.
struct ADDED_PAD {
    const char *cell;
    const char *input, *output;
};
/// The pad cell that the pin file names for the pin, else the default one; `pin` is null for a port that the
/// pin file does not name.
ADDED_PAD added_pad_cell(const PIN_ENTRY *pin, bool is_output);

/// Its enable pin, as the pin file chooses it; null for none.
const char *enable_of_added_pad(const ADDED_PAD &pad, const PIN_ENTRY *pin, bool &is_low);

/// Notes the pins that the run connects of one added pad; null pins are passed over.
void note_added_pad(const char *cell, std::initializer_list<const char *> connected);
/// One warning with all pins of added pads that nothing is connected to, and a new start for the notes.
void warn_of_open_pad_pins();
