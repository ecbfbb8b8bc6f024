// Building and changing a design in memory.
//
//     SDB_HANDLE *design = SDB_open("chip.sdb", "w", 0);
//     int32_t cell = SDB_add_class(design, "AND2", SDB_KIND_CELL, {{"A", SDB_INPUT}, {"Z", SDB_OUTPUT}});
//     int32_t u1 = SDB_add_obj(design, SDB_plain_name(design, "u1"), cell);
//     int32_t net = SDB_add_net(design, SDB_plain_name(design, "n1"));
//     SDB_connect(design, SDB_obj_node(design, u1, 1), net);
//     SDB_close(design, 1);
//
// A handle that was opened with "r+" is changed by the same calls. Adding is cheap at any size. Pointers to
// table rows are invalid after any call that adds. The copies of the current design follow at the next
// SDB_setup.
#pragma once

#include "sdb/handle_internal.hh"

#include <string_view>
#include <vector>

struct SDB_NEW_PIN {
    std::string_view name;
    int32_t direction; ///< SDB_OUTPUT, SDB_BIDIRECTIONAL or SDB_INPUT
};

namespace sdb_writer {

/// The last row added to a table.
template <class T> T &grow(SDB_HANDLE *design, int32_t index, int32_t *id) {
    *id = SDB_grow_table(design, index, 1);
    return SDB_table<T>(design, index)[*id];
}

/// Makes the prefix row of a hierarchical name entry stand for `target`.
inline void set_target(SDB_HANDLE *design, int32_t name_entry, int32_t target) {
    if (name_entry <= SDB_ENTRY_BASE)
        SDB_table<SDB_PREFIX>(design, SDB_PREFIX_TAB)[SDB_entry_row(name_entry)].target = target;
}

/// Appends one node for each pin of the class and returns the first; -1 for a class without pins.
inline int32_t add_obj_nodes(SDB_HANDLE *design, int32_t obj, int32_t class_id) {
    if (class_id < 0)
        return -1;
    SDB_CLASS cell = SDB_table<SDB_CLASS>(design, SDB_CLASS_TAB)[class_id];
    if (cell.pin_count == 0 || !SDB_is_user_class(cell.type))
        return -1;
    int32_t first = SDB_grow_table(design, SDB_NODE_TAB, cell.pin_count);
    auto *nodes = SDB_table<SDB_NODE>(design, SDB_NODE_TAB);
    for (int32_t i = 0; i < cell.pin_count; i++)
        nodes[first + i] = {obj, cell.first_pin + i, -1, -1, 0};
    return first;
}

inline void take_off_net(SDB_HANDLE *design, int32_t node) {
    auto *nodes = SDB_table<SDB_NODE>(design, SDB_NODE_TAB);
    int32_t net = nodes[node].net;
    if (net < 0)
        return;
    int32_t *link = &SDB_table<SDB_NET>(design, SDB_NET_TAB)[net].first_node;
    while (*link != node && *link >= 0)
        link = &nodes[*link].next;
    if (*link == node)
        *link = nodes[node].next;
    nodes[node].net = -1;
    nodes[node].next = -1;
}

} // namespace sdb_writer

/// A name entry for an object or net: the symbol of a plain name. The other kind is SDB_prefix_name of a row
/// that SDB_add_prefix gives.
inline int32_t SDB_plain_name(SDB_HANDLE *design, std::string_view text) {
    return SYM_setup(design->symbols, text);
}

/// Adds a class with its pins; the caller has made sure that its name is new.
inline int32_t SDB_add_class(SDB_HANDLE *design, std::string_view name, int32_t type,
                             const std::vector<SDB_NEW_PIN> &pins) {
    auto pin_count = static_cast<int32_t>(pins.size());
    int32_t first_pin = SDB_table_count(design, SDB_PIN_TAB);
    for (const SDB_NEW_PIN &pin : pins) {
        int32_t id = 0;
        sdb_writer::grow<SDB_PIN>(design, SDB_PIN_TAB, &id) = {SDB_plain_name(design, pin.name),
                                                               pin.direction};
    }
    int32_t id = 0;
    sdb_writer::grow<SDB_CLASS>(design, SDB_CLASS_TAB, &id) = {
        SDB_plain_name(design, name), type, first_pin, pin_count, 1, 0, 0, pin_count - 1};
    return id;
}

/// Adds a port with its own node, not connected. SDB_save sorts ports by direction, so ids change there.
inline int32_t SDB_add_port(SDB_HANDLE *design, std::string_view name, int32_t direction) {
    int32_t symbol = SDB_plain_name(design, name);
    int32_t port = 0;
    int32_t node = 0;
    sdb_writer::grow<SDB_PORT>(design, SDB_PORT_TAB, &port) = {symbol, direction, -1, 0};
    sdb_writer::grow<SDB_NODE>(design, SDB_NODE_TAB, &node) = {-1, port, -1, -1, 0};
    SDB_table<SDB_PORT>(design, SDB_PORT_TAB)[port].node = node;
    return port;
}

/// Adds an object with one node for each pin of its class, in their order. `class_id` -1 adds no nodes.
inline int32_t SDB_add_obj(SDB_HANDLE *design, int32_t name_entry, int32_t class_id) {
    int32_t obj = 0;
    int32_t name_row = 0;
    sdb_writer::grow<SDB_OBJ>(design, SDB_OBJ_TAB, &obj) = {class_id, -1, 0};
    sdb_writer::grow<int32_t>(design, SDB_SOBJ_TAB, &name_row) = name_entry;
    int32_t first_node = sdb_writer::add_obj_nodes(design, obj, class_id);
    SDB_table<SDB_OBJ>(design, SDB_OBJ_TAB)[obj].first_node = first_node;
    sdb_writer::set_target(design, name_entry, obj | SDB_OBJ_TARGET);
    return obj;
}

inline int32_t SDB_add_net(SDB_HANDLE *design, int32_t name_entry) {
    int32_t net = 0;
    int32_t name_row = 0;
    sdb_writer::grow<SDB_NET>(design, SDB_NET_TAB, &net) = {-1, 0};
    sdb_writer::grow<int32_t>(design, SDB_SNET_TAB, &name_row) = name_entry;
    sdb_writer::set_target(design, name_entry, net);
    return net;
}

/// Adds a row of a hierarchical name; `parent` is an earlier row or -1. `target` is set later by SDB_add_obj
/// or SDB_add_net, which take the row as their name entry; until then it is -1.
inline int32_t SDB_add_prefix(SDB_HANDLE *design, std::string_view component, int32_t parent) {
    int32_t symbol = SDB_plain_name(design, component);
    int32_t row = 0;
    sdb_writer::grow<SDB_PREFIX>(design, SDB_PREFIX_TAB, &row) = {symbol, parent, -1};
    return row;
}

/// Node of pin `number` of the object's class.
inline int32_t SDB_obj_node(const SDB_HANDLE *design, int32_t obj, int32_t number) {
    return SDB_table<SDB_OBJ>(design, SDB_OBJ_TAB)[obj].first_node + number;
}

/// Node of a port.
inline int32_t SDB_port_node(const SDB_HANDLE *design, int32_t port) {
    return SDB_table<SDB_PORT>(design, SDB_PORT_TAB)[port].node;
}

/// Puts a node on a net behind the net's first node; takes it off its present net before. `net` -1 only takes
/// it off.
inline void SDB_connect(SDB_HANDLE *design, int32_t node, int32_t net) {
    sdb_writer::take_off_net(design, node);
    if (net < 0)
        return;
    auto *nodes = SDB_table<SDB_NODE>(design, SDB_NODE_TAB);
    int32_t first = SDB_table<SDB_NET>(design, SDB_NET_TAB)[net].first_node;
    int32_t *link = first < 0 ? &SDB_table<SDB_NET>(design, SDB_NET_TAB)[net].first_node : &nodes[first].next;
    nodes[node].net = net;
    nodes[node].next = *link;
    *link = node;
}
