// The routines behind add_scan_cells_in_cmd_file, and what they share. Each takes a row of OPIN_TAB by its
// index; one that returns a name gives the instance name of the inserted cell.
#pragma once

#include "editing/pad_sides.hh"

const char *add_input_clock_cell_in_cmd(EDIT_FILE *fp, int32_t row);
const char *add_output_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row);
const char *add_bidi_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row);
const char *add_in_out_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row);
const char *add_internal_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row);
const char *add_mux_input_cell_in_cmd(EDIT_FILE *fp, int32_t row);
const char *add_mux_output_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row);
const char *add_mux_bidi_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row);
const char *add_mux1_in_out_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row);
const char *add_mux2_in_out_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row);
void add_control_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row);
/// `name` is the instance of the row's own cell, whose %OE_MODE pin is tied to the control cell's.
void add_oe_control_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row, const char *name);
/// The OE control routine when the row's cell has an %OE_MODE pin, else the plain one.
void add_control_of_row(EDIT_FILE *fp, int32_t row, const char *name);

/// What drives the enable pin in the design. An OE cell takes the first other node of the net; the plain one
/// passes over other readers of the enable. Ends the run when nothing does.
EDIT_OPERAND enable_source(const OPIN_ROW &row, const char *enable, bool is_oe);
/// The enable hangs on the high-impedance command, through the buffer of the row's group.
void drive_by_highz(EDIT_FILE *fp, OPIN_ROW &row, const char *enable);
/// True for a differential pad that is not the first on its enable: its enable stays as it is. The user is
/// told.
bool leaves_shared_enable(const OPIN_ROW &row);
std::string highz_buffer_name(int32_t group);

/// Writes the `add` line of the newest SCAN_TAB row and lets the OPIN_TAB row point at it.
void place_cell(EDIT_FILE *fp, int32_t row, const char *name, const SCAN_CELL *cell);
/// Sets `order` to the last SCAN_TAB row.
void set_order_to_last(int32_t row);

/// Warns of a pad whose far end on the core's side is a port.
void warn_of_port_at_pad(const OPIN_ROW &row, int32_t node);
/// The far end of pad pin or internal pin as an operand. A port there that belongs to the chip is warned of.
EDIT_OPERAND far_operand_with_warning(const EDIT_FILE *fp, const OPIN_ROW &row, int32_t node);
/// Joins the cell's data pin to the pad pin, through an inverter when the row is inverted.
void connect_data_in(EDIT_FILE *fp, OPIN_ROW &row, const char *name, const char *data_in);

/// The pins of a mux pad that the boundary cells drive or read.
enum MUX_PIN : int32_t { MUX_IN1, MUX_IN2, MUX_OUT };
/// Joins a pin of the cell to a mux pin of the pad, unless that stands on a working net; a tied pin is freed
/// first, with a warning.
void mux_pin_step(EDIT_FILE *fp, OPIN_ROW &row, MUX_PIN which, const char *name, const char *cell_pin);
/// The same with the cell's pin as an operand; `name` is for the warning.
void mux_pin_step(EDIT_FILE *fp, OPIN_ROW &row, MUX_PIN which, const char *name,
                  const EDIT_OPERAND &cell_pin);

/// Frees a mode pin of the row's pad of the constant on it, with a warning.
void free_pad_mode(EDIT_FILE *fp, const OPIN_ROW &row, int32_t mode);
