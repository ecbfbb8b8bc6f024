// Pins of the pin list that are skip signals: the chip's TAP ports among them.
#pragma once

#include "planning/port_table.hh"
#include "planning/tap_state.hh"

/// The order in which a name is compared with the declared TAP ports; the first equal one decides.
constexpr STANDARD_PORT STANDARD_PORT_ORDER[STANDARD_PORT_COUNT] = {PORT_TDO, PORT_TDI, PORT_TMS, PORT_TCK,
                                                                    PORT_TRST};

/// Fills the row of a skip signal that is a TAP port, when the design has that port; any other skip signal
/// keeps its row as created. `name` is the pin's top name as it stands. The row never gets a cell.
void bs_save_OPIN_TAB_for_standard_port_of_TAP(OPIN_ROW &row, const char *name);

/// Points the TAP ports at their rows again after rows were added.
void point_standard_ports_at_rows();
