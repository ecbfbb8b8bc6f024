// The report at the end of boundary insertion, and the boundary order file.
#pragma once

#include "description/tables.hh"

/// Prints what was added: the TAP and its pins, the cells by type, the buffer trees.
void print_report();
/// Writes <design>.bso. Asks whether to go on when it cannot be created.
void print_bso_file();
