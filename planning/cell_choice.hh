// What the three kinds of ports have in common when their pad is looked at and their cell is chosen.
#pragma once

#include "planning/port_table.hh"

#include <cstdint>

inline bool is_bs_buffer(const BUFFER_CELL *pad) {
    return pad != nullptr && pad->kind == BUFFER_BS;
}
inline bool is_differential(const BUFFER_CELL *pad) {
    return pad != nullptr && (pad->kind == BUFFER_DIFF_VOLTAGE || pad->kind == BUFFER_DIFF_CURRENT);
}

/// A text for a message: "*UNDEF*" where the description gives none.
inline const char *text_or_undefined(const char *text) {
    return text != nullptr ? text : "*UNDEF*";
}

/// A check of planning/validation.hh: true when the cell has a fault, which has been printed.
using CELL_CHECK_FUNCTION = bool (*)(const char *name);

/// One role of %SCAN_CELLS.
struct CELL_ROLE {
    const char **declared;     ///< name of the cell that plays it; null when it is not declared
    CELL_CHECK_FUNCTION check; ///< of a cell that the pin file names in its place; null where it can't
};
extern const CELL_ROLE CELL_ROLES[CELL_COUNTER_COUNT]; ///< by CELL_COUNTER

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

/// Gives the row its kind and its cell. Nothing else gives a row a cell.
void take_cell(OPIN_ROW &row, int32_t kind, const CHOSEN_CELL &chosen);
/// The same for a kind with an output and an input cell.
void take_pair(OPIN_ROW &row, int32_t kind, const CHOSEN_CELL &output, const CHOSEN_CELL &input);

/// The name under which the library describes the cell inside a %BS_BUFFER pad: the pad's class, or the entry
/// that covers it.
const char *builtin_cell_name(const OPIN_ROW &row);

/// Looks up what an existing TAP has on its pin of a signal, when that comes to be needed after the field
/// checks. A constant there is warned of: the run takes it away.
void note_tap_net(int32_t signal, const char *tap_pin);

/// The cell inside a %BS_BUFFER pad. Ends the run when the library has none. What that cell needs of the TAP
/// is noted: it was not among the declared cells when the TAP's pins were looked up.
SCAN_CELL *builtin_cell(const OPIN_ROW &row);

/// The name of the pad pin through which the port reaches its differential pad. Ends the run when it has
/// none.
const char *differential_leg(const OPIN_ROW &row, int32_t port);

/// Ends the run: the port stands on a pin that the description of its differential pad does not have.
[[noreturn]] void fail_third_leg(const OPIN_ROW &row, const char *leg);

/// Checks that a pad which declares one of two pins declares the other too; both belong to one multiplexer.
/// `words` is the pad's kind in the message: "mux input pad".
struct MUX_PIN_PAIR {
    const char *mode_keyword, *input_keyword; ///< "%MODE_1", "%MUX_IN1"
    const char *words;                        ///< "mux input pad"
    const char *Words;                        ///< the same at the start of a sentence
};
/// True when the pad has that multiplexer. Ends the run when only one of its two pins is declared.
bool has_mux(const OPIN_ROW &row, const char *mode, const char *input, const MUX_PIN_PAIR &pair);

/// Clears the enables of a pad whose name is that of another of its pins: they are no true enables. Both
/// enables are looked at unless the pin's PAD_EN word chooses one. True when one was cleared.
bool clear_false_enables(BUFFER_CELL *pad, const PIN_ENTRY *pin, const char *data_pin);
