// Small read-only walks through the open design, on which classification and emission rest. Each is also the
// check that the description fits the netlist. Node, net, port and object ids are those of the current
// design; -1 is none.
#pragma once

#include "planning/port_table.hh"
#include "sdb/sdb.hh"

#include <cstdint>

/// The name of what has none.
constexpr const char *UNDEFINED = "*UNDEF*";
inline const char *text_or_undefined(const char *text) {
    return text != nullptr ? text : UNDEFINED;
}

/// The port of that name without '-', or the one bit of a one-bit bus of that name. Ends the run when
/// unknown.
int32_t find_iport(const char *name);
/// The node at the far end of the port's net. Ends the run when the port floats.
int32_t get_node_connected_to_portnode(int32_t port);
/// The first other node on the node's net, or -1.
int32_t find_adjacent_node(int32_t node);
/// The node of the object's pin whatever its direction, names compared without regard to case; -1 for none.
int32_t find_pin_node(int32_t obj, const char *pin_name);
/// The same by the instance's name, or the node of a port when `instance` is null; -1 for none.
int32_t find_place_node(const char *instance, const char *pin_name);
/// The node of the object's pin, names compared without regard to case; -1 when the object has no such pin.
/// Ends the run when the pin's direction is another one.
int32_t search_inode_connected_to_obj(int32_t obj, const char *pin_name, int32_t direction);
/// The net of that node, or -1.
int32_t search_inet_connected_to_obj(int32_t obj, const char *pin_name, int32_t direction);
/// The name of the net on the pin, in a static buffer of the design layer; null when missing or unconnected.
const char *verify_obj_pin_name(int32_t obj, const char *pin_name, int32_t direction);
/// Opens the design file into `sdb` and makes it current. Ends the run when it cannot be opened.
void open_sdb_file(const char *path);
/// Closes the current design; none is current afterwards.
void close_sdb_file();
/// The same, for a design that is soon opened again: open_sdb_file then finds it in memory, if its file has
/// not changed. One design at a time is kept like this.
void set_sdb_file_aside();

/// Class name of an object as text, "*UNDEF*" for none.
const char *object_class_name(int32_t obj);
/// Pin name of a node that stands on an object; port name of a port's node; "*UNDEF*" when there is none.
const char *node_pin_name(int32_t node);
/// True when the node is a port's own node.
bool is_port_node(int32_t node);
/// The enable pin of a pad: %EN_L, else %EN_H, as PAD_EN_L and PAD_EN_H of the pin file choose; null for
/// none. `pin` is null for a port that the pin file does not name, `is_low` where it is not asked for.
const char *chosen_enable_pin(const BUFFER_CELL *pad, const PIN_ENTRY *pin, bool *is_low);
