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

#include "sdb/sdb.hh"

#include <initializer_list>
#include <span>
#include <string_view>

struct SDB_NEW_PIN {
    std::string_view name;
    int32_t direction; ///< SDB_OUTPUT, SDB_BIDIRECTIONAL or SDB_INPUT
};

/// A name entry for an object or net: the symbol of a plain name ...
int32_t SDB_plain_name(SDB_HANDLE *design, std::string_view text);
/// ... or a row of the prefix table (see SDB_add_prefix).
constexpr int32_t SDB_prefix_name(int32_t row) {
    return SDB_ENTRY_BASE - row;
}

/// Adds a class with its pins; the caller has made sure that its name is new.
int32_t SDB_add_class(SDB_HANDLE *design, std::string_view name, int32_t type,
                      std::span<const SDB_NEW_PIN> pins);
int32_t SDB_add_class(SDB_HANDLE *design, std::string_view name, int32_t type,
                      std::initializer_list<SDB_NEW_PIN> pins);

/// Adds a port with its own node, not connected. SDB_save sorts ports by direction, so ids change there.
int32_t SDB_add_port(SDB_HANDLE *design, std::string_view name, int32_t direction);
/// Adds an object with one node for each pin of its class, in their order. `class_id` -1 adds no nodes.
int32_t SDB_add_obj(SDB_HANDLE *design, int32_t name_entry, int32_t class_id);
int32_t SDB_add_net(SDB_HANDLE *design, int32_t name_entry);
/// Adds a row of a hierarchical name; `parent` is an earlier row or -1. `target` is set later by SDB_add_obj
/// or SDB_add_net, which take the row as their name entry; until then it is -1.
int32_t SDB_add_prefix(SDB_HANDLE *design, std::string_view component, int32_t parent);

/// Node of pin `number` of the object's class.
int32_t SDB_obj_node(const SDB_HANDLE *design, int32_t obj, int32_t number);
/// Node of a port.
int32_t SDB_port_node(const SDB_HANDLE *design, int32_t port);

/// Puts a node on a net behind the net's first node; takes it off its present net before. `net` -1 only takes
/// it off.
void SDB_connect(SDB_HANDLE *design, int32_t node, int32_t net);
