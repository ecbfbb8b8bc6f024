// The pads that -add_pad gives to ports without one.
#pragma once

#include "planning/validation.hh"

#include <initializer_list>

/// The cell of an added pad, and its enable pin as the pin file chooses it.
struct ADDED_PAD {
    const char *cell;
    const BUFFER_CELL *buffer;    ///< its record; null only for a bidirectional pad that is not declared
    const char *enable = nullptr; ///< null for none
    bool is_low = false;          ///< the enable is active low
};
/// The pad of a pin; `pin` is null for a port that the pin file does not name.
ADDED_PAD added_pad_cell(PAD_ROLE role, const PIN_ENTRY *pin);

/// Notes the pins that the run connects of one added pad; null pins are passed over.
void note_added_pad(const char *cell, std::initializer_list<const char *> connected);
/// One warning with all pins of added pads that nothing is connected to, and a new start for the notes.
void warn_of_open_pad_pins();
