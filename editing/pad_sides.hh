// What stands at the core side of a pad, and how it is named in a command.
//
// A cell cuts a wire: the pad's pin is disconnected, and one pin of the cell takes its place on the old net,
// which is reached through any other pin of that net, the far end. When that other pin has been cut as well,
// by the cell of another pad on the same net, the pin of that cell that took its place stands for it.
#pragma once

#include "editing/edit_commands.hh"
#include "planning/port_table.hh"
#include "planning/tap_state.hh"
#include "sdb/navigation.hh"

extern int32_t ADD_BUF_COUNT; ///< running number of added pads and inverters, never reset

/// The two sides of a pad: the pin that drives the core, and the pin that the core drives.
enum PAD_SIDE : int32_t { SIDE_OUTPUT, SIDE_INPUT };
/// How a floating pad is spoken of.
enum PAD_WORD : int32_t { PAD_WORD_INPUT, PAD_WORD_OUTPUT, PAD_WORD_BIDIRECTIONAL };

/// A pin at the core side of a pad: the pad's own, or that of a transparent buffer which belongs to the pad.
struct PAD_PIN {
    PAD_SIDE side;
    const char *instance;
    const char *pin;
    PAD_WORD word;
};
PAD_PIN pad_pin(const OPIN_ROW &row, PAD_SIDE side, PAD_WORD word = PAD_WORD_INPUT);
/// The far pin of the %TRANSPARENT_BUFFER that follows the pad on this side; the pad's own where none does.
PAD_PIN pin_behind_buffer(const EDIT_FILE *fp, const OPIN_ROW &row, PAD_SIDE side, PAD_WORD word);

/// The pin as an operand.
EDIT_OPERAND pin_operand(const PAD_PIN &pin);
/// The first node on the pin's net that is no pin of the same instance, or -1.
int32_t far_end(const EDIT_FILE *fp, const char *instance, const char *pin, int32_t direction);
int32_t far_end(const EDIT_FILE *fp, const PAD_PIN &pin);
/// The same; ends the run when the pad of the row floats.
int32_t far_end_of_pad(const EDIT_FILE *fp, const OPIN_ROW &row, const PAD_PIN &pin);
/// The operand by which a command joins a node's net.
EDIT_OPERAND node_operand(const EDIT_FILE *fp, int32_t node);
/// What the design has at the port: the first other node on its net, and its operand. Ends the run when the
/// port floats.
int32_t port_far_node(const EDIT_FILE *fp, const OPIN_ROW &row);
EDIT_OPERAND port_far_operand(const EDIT_FILE *fp, const OPIN_ROW &row);

/// Disconnects the pin and notes that `successor` stands on its old net from now on.
void cut_pin(EDIT_FILE *fp, const char *instance, const char *pin, const EDIT_OPERAND &successor,
             EDIT_BLANKS blanks = EDIT_PLAIN);
void cut_pin(EDIT_FILE *fp, const PAD_PIN &pin, const EDIT_OPERAND &successor,
             EDIT_BLANKS blanks = EDIT_PLAIN);
/// The same for a port of the design.
void cut_port(EDIT_FILE *fp, const OPIN_ROW &row, const EDIT_OPERAND &successor);
