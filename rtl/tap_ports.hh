// The ports of the TAP module, as one table: its header and declarations, the port-only module, the VHDL port
// clause and the port tables of a hierarchical TAP all walk it.
#pragma once

#include "rtl/tap_model.hh"

#include <cstdint>
#include <string>
#include <vector>

/// What a port is, where its text differs from that of its neighbours.
/// The outputs of the decoder have the letters by which decode_terms.cc orders them.
enum TAP_PORT_ROLE : char {
    ROLE_PLAIN,
    ROLE_USER_REGISTER,
    ROLE_CHIP_TEST = 'K',
    ROLE_HIGHZ = 'H',
    ROLE_MODE1 = '1',
    ROLE_MODE2 = '2',
    ROLE_MODE3 = '3',
    ROLE_ENABLE = 'N',
    ROLE_ATPG = 'M'
};

/// When the VHDL has a signal of its own for an output: VHDL 93 reads no output port.
enum INNER_SIGNAL { NO_SIGNAL, SIGNAL_FOR_GATES, OWN_SIGNAL };

/// One port. The places give its order: the header lists all ports by the first, the Verilog declarations and
/// the VHDL port clause have orders of their own.
struct TAP_MODULE_PORT {
    std::string name;
    bool is_output;
    int32_t width;      ///< bits of a vector, 0 for a plain wire
    int32_t hier_table; ///< row of rwv_hier_tap_port_tabG, -1 for none
    int32_t declare_place, vhdl_place;
    TAP_PORT_ROLE role;
    INNER_SIGNAL signal;
    bool is_fixed = false; ///< the templates name it, and not the tables
    std::string inner{};   ///< the name by which the inside reads it, its own where it has no signal
};

/// The ports that the TAP has, in the order of the header.
std::vector<TAP_MODULE_PORT> tap_ports(RTL_LANGUAGE language);
/// The same in the order of one of the other places; ports of one place keep their order.
std::vector<TAP_MODULE_PORT> sorted_ports(int32_t TAP_MODULE_PORT::*place, RTL_LANGUAGE language);

/// Bits of an enable pin's vector; 0 for a pin of one bit.
int32_t enable_width(const char *value);

/// Makes rwv_hier_tap_port_tabG from the ports when the TAP instance is a path.
void save_hier_tap_ports();
