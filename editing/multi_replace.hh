// The tree of modules put together again: each parent takes the edited copies of its children.
#pragma once

#include "planning/port_table.hh"

/// Ends the files of MULTI_IO_TAB row `index` and its subtree: the children replaced and wired, in the top
/// the standard ports, and everywhere the ports and connections recorded on the way.
void hier_replace_io_module(int32_t index, const MULTI_IO_NODE *children);
