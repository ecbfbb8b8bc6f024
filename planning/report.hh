// The report at the end of boundary insertion, and the boundary order file.
#pragma once

#include "description/tables.hh"

/// Prints what was added: the TAP and its pins, the cells by type, the buffer trees.
void print_report();
/// Prints the pins that a scan cell declares.
void print_various_scan_cell(const SCAN_CELL *cell);
/// Writes <design>.bso. Asks whether to go on when it cannot be created.
void print_bso_file();
