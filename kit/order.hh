// The order of the boundary register: the rows of the pin file.
#pragma once

#include "kit/chip_plan.hh"

/// Fills plan.pins and plan.order_source: from the list of package pins when there is one, else from the
/// placement of the pads, else from the order of the pads in the netlist. Empty paths mean none.
void plan_order(CHIP_PLAN &plan, const std::string &package_list, const std::string &placement);
