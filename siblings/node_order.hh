// The nodes of a module in its SDB file, and the order in which they stand on their nets.
//
// Nodes are numbered: those of the two sources of the constants, of the ports, then of each instance one for
// each port of its module, whether it is connected or not.
#pragma once

#include "siblings/netlist.hh"

struct NODE_ORDER {
    struct LIST {
        int32_t first; ///< -1 for a net without a node
        int32_t last;
    };
    std::vector<LIST> nets;    ///< by net
    std::vector<int32_t> next; ///< by node: the next one on its net, -1 at the end
};

/// Puts the nodes of a module that is no library cell on their nets, drivers and pads first.
NODE_ORDER NL_order_nodes(const NL_DESIGN &design, const NL_MODULE &module, size_t node_count);
