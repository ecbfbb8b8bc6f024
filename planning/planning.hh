// The steps of planning, in the order in which a run takes them.
#pragma once

#include "planning/port_table.hh"

#include <cstdint>

/// Resets the tables and counters for a run; MULTI_IO_TAB has its row 0 then, the top module.
void rimweave_init();

/// Releases the planning tables and nulls their handles.
void free_planning_tables();

/// Walks the pin list, makes the OPIN_TAB rows and classifies each port on the open design; closes the
/// design.
void produce_opin_control_tab();

/// Per direction: chooses the cell of one row, whose pad has been taken.
void save_input_clock_tab(OPIN_ROW &row, int32_t port);
void save_output_scan_tab(OPIN_ROW &row, int32_t port);
void save_bidir_scan_tab(OPIN_ROW &row);
/// True, with a warning, when the port's core side, the net of `node`, runs straight or through one buffer to
/// another port, whose cell then serves both.
bool is_merged(const OPIN_ROW &row, int32_t node, bool is_bidir);

/// Ties the enable of a row with its chosen cell to one of the two control tables.
void save_enable_control(OPIN_ROW &row);
/// Gives every I/O module control cells of its own: rows of both tables are split by the module of their
/// ports. Runs once, when all rows are classified and the design turned out to have several I/O modules.
void split_control_cells_by_module();
/// Forgets which enable nets have a control cell; the tables are about to be made anew.
void forget_control_sharing();
/// Marks the rows that make a control cell or a high-impedance buffer; rows are in chain order.
void setup_driving_control_cell_and_highz_buf();
/// Appends the SCAN_TAB row of an inserted cell, counts its loads and returns its instance name.
const char *add_scan_tab(const SCAN_CELL *cell, OPIN_ROW &row, bool mux, bool is_control);
/// 1, 2, 3 when the TAP's %HIGHZ_COMMAND is the same pin as its %MODE_1, %MODE_2, %MODE_3; else 0.
int32_t check_hiz_signal();

/// Sorts OPIN_TAB into chain order, from TDO.
void arrange_opin_tab_from_tdo();

/// Takes the standard ports' row pointers and numbers again after the sort.
void bs_reset_standard_port_ptr_of_TAP();

/// Inverter of '-' pins, resolved by the classification; null when no pin is inverted.
extern const char *INVERTER_INPUT;
extern const char *INVERTER_OUTPUT;
