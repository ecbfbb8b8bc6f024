// The modules on the way from the top to the pads: MULTI_IO_TAB, and the place of each port in it.
#pragma once

#include "planning/port_table.hh"

/// Fills pad_instance, hierarchy and io_module of an OPIN_TAB row, and MULTI_IO_TAB. A port without a
/// described pad has its cell at the port itself, in the top module.
void get_hier_class_and_inst_name(OPIN_ROW &row, int32_t obj);
/// Sets multi_io_module_flagG also where the rows that have a cell lie in more than one module without the
/// tracing of neighbours having seen it, and puts all rows into row 0 where they lie in one. Runs once, when
/// all rows are classified.
void settle_io_modules();
/// Forgets the modules met so far; MULTI_IO_TAB is about to be made anew.
void forget_io_modules();
