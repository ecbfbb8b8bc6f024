// Splitting the loads of the control signals into groups of limited size.
#pragma once

#include "planning/control_signals.hh"

#include <cstdint>

/// A new table with the sizes of the groups that `n` loads fall into when none may exceed `size`: as few
/// groups as possible, sizes that differ by at most one, the larger first. Null for `n` 0. `size` below 2
/// ends the run with "Can't group", on the console alone, and exit status 0.
int32_t *split_into_groups(int32_t n, int32_t size);

/// From the needs of the trees to their groups and buffers.
void built_bus_balance_group_tab_for_control_signal(CONTROL_TREES &trees);
