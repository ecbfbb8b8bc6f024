// What the routines of the cells in <top>_BCM share.
#pragma once

#include "editing/bcm_flow.hh"
#include "editing/cell_routines.hh"

/// "<top>_BCM".
std::string bcm_name();
/// Port `<cell>_<suffix>` of the instance.
EDIT_OPERAND bcm_port(const std::string &cell, const char *suffix);

/// Name of the next cell, "BCELL<level_count>". Numbers whose names another cell has are left out.
std::string next_bcm_cell();
/// Notes a cell that has the name of its SCAN_TAB row.
void take_bcm_name(const std::string &cell);
/// Counts the cell just written.
void count_bcm_cell();
/// Name of the last cell that was counted.
std::string last_bcm_cell();

/// A cell that the flow can't reach through <top>_BCM stands without wires of its own: warns of it.
void warn_of_unwired_cell(const OPIN_ROW &row, const char *name);

void make_control_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row);
void make_oe_control_scan_cell_in_cmd(EDIT_FILE *fp, int32_t row);
/// The control step of a row whose own cell stands in the top module: a control cell that lives in <top>_BCM
/// already is shared, any other one stands in the top module too.
void add_control_beside_bcm(EDIT_FILE *fp, int32_t row, const char *name, bool may_be_oe);
