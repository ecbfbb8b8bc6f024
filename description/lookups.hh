// Questions to the description tables by name. All but get_buffer compare the whole name, with regard to
// case. Results point into the tables of description/tables.hh; the caller frees nothing. A miss is no error:
// each caller decides what it means.
#pragma once

#include "description/tables.hh"

/// The first record of that name in the file; null for a miss and for a null name.
SCAN_CELL *get_scan_cell(const char *name);
TAP_CELL *get_tap_cell(const char *name);

/// The buffer of that name, else the one whose wild-card name covers it best, else null. Ends the run when
/// two wild-card names cover it equally well.
BUFFER_CELL *get_buffer(const char *name);

/// The wild-card buffer name that covers `name` best, or null. Ends the run on a draw.
const char *bs_name_transfer_wild_card_name(const char *name);

/// True when the name stands in %SKIP_SIGNAL_NAMES. "a[3]" is not covered by an entry "a".
bool skip_signal(const char *name);

/// True when the name stands in %TRANSPARENT_BUFFER.
bool trans_buffer(const char *name);

/// Top-module name and direction of row `row` of PIN_TABLE; null for '*'. `row` must be below BS_PIN_COUNT.
const char *bs_pin_name(int32_t row);
const char *bs_pin_direction(int32_t row);

/// True for the package names that mark a row of the pin file as a cell inside the core: INTERNAL, and those
/// of a cell that only watches. False for null.
bool bs_internal_word(const char *package_name);
/// True for the latter: OBSERVE and OBSERVE_ONLY, which mean the same.
bool bs_observe_word(const char *package_name);
