// The serial chain across modules: it leaves one module and enters another as often as the scan order asks.
#pragma once

#include "editing/edit_commands.hh"

#include <cstdint>

/// The nearest common ancestor of two rows of MULTI_IO_TAB, a row counting as its own; 0 for equal rows.
int32_t check_common_level_for_two_multi_io(int32_t a, int32_t b);

/// Joins the chain pins of SCAN_TAB row `row`. `fp` is the file of its module; what other modules have to do
/// is recorded for them.
void hier_add_and_connect_bc_serial(int32_t row, EDIT_FILE *fp);
