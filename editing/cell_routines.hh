// The routines behind add_scan_cells_in_cmd_file, and what they share.
#pragma once

#include "editing/pad_sides.hh"

void add_input_clock_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
void add_output_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
void add_bidi_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
void add_in_out_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
void add_internal_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
void add_mux_input_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
void add_mux_output_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
void add_mux_bidi_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
void add_mux1_in_out_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
void add_mux2_in_out_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
void add_control_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
/// Ties the %OE_MODE pin of the row's own cell, its first, to the control cell's.
void add_oe_control_scan_cell_in_cmd(EDIT_FILE *fp, OPIN_ROW &row);
/// The OE control routine when the row's cell has an %OE_MODE pin, else the plain one.
void add_control_of_row(EDIT_FILE *fp, OPIN_ROW &row);

/// A cell while its lines are written. With -add_bcm most cells stand in <top>_BCM and are reached through
/// ports of that instance.
struct PLACED_CELL {
    const SCAN_CELL *cell;
    const char *name; ///< of its SCAN_TAB row
    std::string bcm;  ///< what its ports of <top>_BCM begin with; empty for a cell in the design itself
    EDIT_BLANKS blanks = EDIT_PLAIN;     ///< of the lines that join its pins
    EDIT_BLANKS out_blanks = EDIT_PLAIN; ///< of the line for %DATA_OUT, and of the cut before it
};
/// Appends the SCAN_TAB row of the row's cell, or of the input cell of a pair. Nothing is written yet.
PLACED_CELL new_cell(OPIN_ROW &row, const SCAN_CELL *cell, bool mux = false);
/// Writes the `add` line of a cell in the design and lets the OPIN_TAB row point at the cell.
void place_cell(EDIT_FILE *fp, OPIN_ROW &row, const PLACED_CELL &cell);
/// Lets the OPIN_TAB row point at the last SCAN_TAB row, and name its cells.
void point_at_last_cell(OPIN_ROW &row, const char *names);
/// True for a cell that is built into the row's pad, and so has no lines. One that should stand in <top>_BCM
/// is warned of.
bool is_inside_pad(const OPIN_ROW &row, const PLACED_CELL &cell);

/// The pins of a cell that its data take.
enum CELL_PIN : int32_t {
    PIN_DATA_IN,
    PIN_DATA_OUT,
    PIN_PAD_DATA_IN, ///< %DATA_IN and %DATA_OUT of a cell that serves both directions
    PIN_PAD_DATA_OUT,
    PIN_SYS_IN,
    PIN_SYS_PIN,
    PIN_UPDATE_OUT,
    PIN_MUX_DATA_IN
};
EDIT_OPERAND cell_pin(const PLACED_CELL &cell, CELL_PIN pin);
void join(EDIT_FILE *fp, const PLACED_CELL &cell, CELL_PIN pin, const EDIT_OPERAND &other);

/// Name of the high-impedance buffer of a group.
std::string highz_buffer_name(int32_t group);

/// Warns of a pad whose far end on the core's side is a port.
void warn_of_port_at_pad(const PAD_PIN &pin, int32_t node);
/// The same for a port that belongs to the chip.
void warn_of_chip_port(const EDIT_FILE *fp, const PAD_PIN &pin, int32_t node);
/// Joins the cell's data pin to the pad pin, through an inverter when the row is inverted.
void connect_data_in(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell, const PAD_PIN &pin);
/// The cell takes the place of the pad pin that the core drives: `in` gets the far end, `out` the pad pin.
/// The joins are written in one of the two orders that the cells have.
void cut_pad_input(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell, CELL_PIN in, CELL_PIN out,
                   const PAD_PIN &pin, bool out_first);
/// The cell takes the place of the pad pin that drives the core. Returns the far end.
int32_t cut_pad_output(EDIT_FILE *fp, const OPIN_ROW &row, const PLACED_CELL &cell, CELL_PIN out,
                       const PAD_PIN &pin);

/// The pins of a mux pad that the boundary cells drive or read.
enum MUX_PIN : int32_t { MUX_IN1, MUX_IN2, MUX_OUT };
/// Joins a pin of the cell to a mux pin of the pad, unless that stands on a working net; a tied pin is freed
/// first, with a warning.
void mux_pin_step(EDIT_FILE *fp, const OPIN_ROW &row, MUX_PIN which, const PLACED_CELL &cell, CELL_PIN pin);

/// Frees a mode pin of the row's pad of the constant on it, with a warning.
void free_pad_mode(EDIT_FILE *fp, const OPIN_ROW &row, int32_t mode);
