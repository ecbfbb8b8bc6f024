// What an SDB file holds, as text that a test can compare: ports in their order, then instances with the nets
// on their pins.
//
//   input a a
//   U1 INV A=a Z=n1
//
// A port or pin without a net shows a '-'. The sources of the constants are checked and left out.
#pragma once

#include "sdb/navigation.hh"
#include "tests/support/scratch.hh"

#include <string>

inline std::string net_of_node(const SDB_HANDLE *design, int32_t node) {
    int32_t net = node < 0 ? -1 : SDB_table<SDB_NODE>(design, SDB_NODE_TAB)[node].net;
    return net < 0 ? "-" : SDB_net_name(design, net);
}

/// Nodes 0 and 1 are the first of nets 0 and 1, which are called GND and VCC.
inline void check_constants(const SDB_HANDLE *design) {
    ASSERT_GE(SDB_table_count(design, SDB_NET_TAB), 2);
    EXPECT_STREQ(SDB_net_name(design, 0), "GND");
    EXPECT_STREQ(SDB_net_name(design, 1), "VCC");
    for (int32_t i = 0; i < 2; i++) {
        EXPECT_EQ(SDB_table<SDB_NET>(design, SDB_NET_TAB)[i].first_node, i);
        EXPECT_EQ(SDB_table<SDB_NODE>(design, SDB_NODE_TAB)[i].obj, i);
    }
}

inline std::string ports_text(const SDB_HANDLE *design) {
    constexpr const char *ways[] = {"output ", "inout ", "input ", "? "};
    const SDB_PORT *ports = SDB_table<SDB_PORT>(design, SDB_PORT_TAB);
    std::string text;
    for (int32_t i = 0; i < SDB_table_count(design, SDB_XPORT_TAB); i++) {
        int32_t port = SDB_search_port(SDB_table<int32_t>(design, SDB_XPORT_TAB)[i]);
        text += ways[ports[port].flags & SDB_DIRECTION_MASK];
        text += SYM_get(design->symbols, ports[port].name);
        text += " " + net_of_node(design, ports[port].node) + "\n";
    }
    return text;
}

inline std::string instances_text(const SDB_HANDLE *design) {
    std::string text;
    const SDB_NODE *nodes = SDB_table<SDB_NODE>(design, SDB_NODE_TAB);
    const SDB_PIN *pins = SDB_table<SDB_PIN>(design, SDB_PIN_TAB);
    for (int32_t i = 2; i < SDB_table_count(design, SDB_OBJ_TAB); i++) {
        text += std::string(SDB_obj_name(design, i)) + " " + SDB_obj_class_name(design, i);
        int32_t node = SDB_table<SDB_OBJ>(design, SDB_OBJ_TAB)[i].first_node;
        for (; node >= 0 && nodes[node].obj == i; node++)
            text += std::string(" ") + SYM_get(design->symbols, pins[nodes[node].pin].name) + "=" +
                    net_of_node(design, node);
        text += "\n";
    }
    return text;
}

/// The text of a file; a library cell has ports alone.
inline std::string design_text(const std::string &path) {
    SDB_HANDLE *design = SDB_setup(SDB_open(path.c_str(), "r", 0));
    if (design == nullptr)
        return "no design in " + path;
    std::string text = ports_text(design);
    if (SDB_table_count(design, SDB_OBJ_TAB) > 0) {
        check_constants(design);
        text += instances_text(design);
    }
    SDB_close(design, 0);
    SDB_clear_current();
    return text;
}
