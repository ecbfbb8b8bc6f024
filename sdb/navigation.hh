// Names and ids of the current design.
//
// All but the last function search the tables that SDB_setup made current; with none current nothing is
// found. A result of -1 means not found. Of several rows with one name the lowest id is found.
#pragma once

#include "sdb/sdb.hh"

#include <string>
#include <vector>

int32_t SDB_search_port(int32_t symbol);
int32_t SDB_search_obj(int32_t symbol);
int32_t SDB_search_net(int32_t symbol);
/// The node of `obj` whose pin has the name `pin_symbol`.
int32_t SDB_search_node(int32_t pin_symbol, int32_t obj);

int32_t SDB_nl_search_port(const char *name);
int32_t SDB_nl_search_obj(const char *name);
/// The object of a plain name or, when `name` holds the separator, of a hierarchical one: the exact path
/// first; then the one reading in which separators belong to components, as in a Verilog name `\a.b `; then
/// the name with a backslash in front of each such separator. -1 also for a name with several readings.
int32_t SDB_lookup_obj(const char *name);
/// The readings of a name that holds the separator, each with its inner separators marked, for a message.
std::vector<std::string> SDB_obj_readings(const char *name);
/// The object that stands at the top of the design under exactly this name, whatever characters it has; for
/// a design that is one module, the instance of that name.
int32_t SDB_instance_obj(const char *instance);
/// The object that is reached through these components, the outermost first.
int32_t SDB_path_obj(const std::vector<std::string> &components);
/// The node of a pin of an object, or of a port when `obj_name` is null or starts with '*'. -2 when the
/// object is there and `pin_name` is no symbol of the design.
int32_t SDB_nl_search_node(const char *obj_name, const char *pin_name);

/// Name of an object or net as text; "*UNDEF*" for -1, null for an illegal name entry or an id outside the
/// table. Where a reader of the current design would take the name for another's, the separators inside its
/// components are marked. A hierarchical or marked name is valid until the next call of the same function, a
/// plain one as long as the handle.
const char *SDB_obj_name(const SDB_HANDLE *handle, int32_t obj);
const char *SDB_net_name(const SDB_HANDLE *handle, int32_t net);
/// Name of the object's class, or null.
const char *SDB_obj_class_name(const SDB_HANDLE *handle, int32_t obj);

/// Row of the prefix table that names the object, or -1 when its name is plain.
int32_t SDB_obj_prefix_row(const SDB_HANDLE *handle, int32_t obj);
/// Instance name of one row, its own component only; null when it has none.
const char *SDB_prefix_instance_name(const SDB_HANDLE *handle, int32_t row);
/// Class name of the instance that a row stands for, or null: through the symbol that its target names, else
/// through the object that its target names.
const char *SDB_prefix_class_name(const SDB_HANDLE *handle, int32_t row);
