// What the library says of a port's pad, held against the pad in the design.
#pragma once

#include "planning/port_table.hh"
#include "planning/tracing.hh"

inline bool is_bs_buffer(const BUFFER_CELL *pad) {
    return pad != nullptr && pad->kind == BUFFER_BS;
}
inline bool is_differential(const BUFFER_CELL *pad) {
    return pad != nullptr && (pad->kind == BUFFER_DIFF_VOLTAGE || pad->kind == BUFFER_DIFF_CURRENT);
}
/// True when the pad's %FUNCTION is the word, not minding case.
bool has_function(const BUFFER_CELL *pad, const char *word);

/// Finds the cell next to the port of the row and fills pad_obj, pad_class and, when the
/// library describes it, pad and the hierarchy. Ends the run at an undescribed cell, unless the options let
/// the port stand without a pad; -no_pad does so only where `bare_is_allowed`.
void take_pad(OPIN_ROW &row, int32_t port, bool bare_is_allowed);

/// The node of the pad's %OUTPUT, through which it drives the core. Ends the run when the library or the
/// design has no such pin. `words` is the pad's keyword in the messages.
int32_t pad_output_node(const OPIN_ROW &row, const char *words = "%BUFFER");
/// The same, taken as the row's core side.
int32_t take_pad_output(OPIN_ROW &row, const char *words = "%BUFFER");
/// Takes the net on the pad's data pin, by which the core drives it. Ends the run when it has none.
void take_pad_input(OPIN_ROW &row, const char *data_pin, const char *words = "%BUFFER");
/// Takes the port's own net as the core side of a port without a described pad. Returns the port's node.
int32_t take_own_net(OPIN_ROW &row, int32_t port);
/// Ends the run: -add_pad has no default pad to add. `keyword` is "%INPUT_BUFFER" or "%OUTPUT_BUFFER".
[[noreturn]] void fail_add_pad(const char *keyword);

/// True when the port stands on the plus leg of its differential pad, where the pad's one cell is; false on
/// the minus leg. Ends the run on any other pin.
bool is_plus_leg(const OPIN_ROW &row, int32_t port, const char *plus, const char *minus);

/// The multiplexers that a pad can have: %MODE_n chooses %MUX_INn.
enum PAD_MUX : int32_t { PAD_MUX_1, PAD_MUX_2 };
/// True when the row's pad has that multiplexer. Ends the run when only one of its two pins is declared.
/// `direction` is that of the pad in the message: "input".
bool has_mux(const OPIN_ROW &row, PAD_MUX mux, const char *direction);
/// Takes the nets on the multiplexer's two pins.
void trace_mux(OPIN_ROW &row, PAD_MUX mux);
/// True when %MODE_1, 2 or 3, by index, of the row's pad has no working net, so that it will hang on the TAP.
bool mode_hangs_on_tap(const OPIN_ROW &row, int32_t mode);

/// Clears the enables of a pad whose name is that of its data pin: they are no true enables. Both enables are
/// looked at unless `pad_enable`, the PAD_EN word of a pin, chooses one. True when one was cleared.
bool clear_false_enables(BUFFER_CELL *pad, int32_t pad_enable, const char *data_pin);
