// The ports of the TAP module, as one table: its header and declarations, the port-only module, the VHDL port
// clause and the port tables of a hierarchical TAP all walk it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What a port is, where its text differs from that of its neighbours.
enum TAP_PORT_ROLE { ROLE_PLAIN, ROLE_CHIP_TEST, ROLE_USER_REGISTER };

/// One port. The places give its order: the header lists all ports by the first, the Verilog declarations and
/// the VHDL port clause have orders of their own.
struct TAP_MODULE_PORT {
    std::string name;
    bool is_output;
    int32_t width;      ///< bits of a vector, 0 for a plain wire
    int32_t hier_table; ///< row of rwv_hier_tap_port_tabG, -1 for none
    int32_t declare_place, vhdl_place;
    TAP_PORT_ROLE role;
    bool is_fixed = false; ///< the templates name it, and not the tables
};

/// The ports that the TAP has, in the order of the header.
std::vector<TAP_MODULE_PORT> tap_ports();
/// The same in the order of one of the other places; ports of one place keep their order.
std::vector<TAP_MODULE_PORT> sorted_ports(int32_t TAP_MODULE_PORT::*place);

/// Bits of an enable pin's vector; 0 for a pin of one bit.
int32_t enable_width(const char *value);

/// Makes rwv_hier_tap_port_tabG from the ports when the TAP instance is a path.
void save_hier_tap_ports();
