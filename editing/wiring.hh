// Wiring of the boundary register: the buffer trees of the control signals, the control pins of every cell,
// and the serial chain.
#pragma once

#include "editing/edit_commands.hh"

/// Writes trees, control wires and chain for a design with one I/O module behind its cell lines, and ends the
/// file. SCAN_TAB must have a row, and built_bus_balance_group_tab_for_control_signal must have run.
void connect_scan_cell_in_cmd(EDIT_FILE *fp);

/// Writes the buffer trees of all control signals. `with_report` adds the lines that close each tree in the
/// report.
void build_control_trees(EDIT_FILE *fp, CONTROL_TREES &trees, bool with_report);

/// Writes the control wires of SCAN_TAB row `row` and advances the counters of its module's trees.
void connect_control_signal(EDIT_FILE *fp, CONTROL_TREES &trees, int32_t row);
