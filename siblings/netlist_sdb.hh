// Modules from and to SDB files.
//
// In a design that is written, objects 0 and 1 are the sources of the constants, so that nodes 0 and 1 are
// the first nodes of nets 0 and 1. A library cell is told by its having no object at all. Ports are sorted by
// direction in the file; their own order is kept beside them and taken up again by the reader.
#pragma once

#include "sdb/sdb.hh"
#include "sdb/sdb_file.hh"
#include "siblings/netlist.hh"

#include <functional>
#include <string>

/// Classes of the two source objects. Their kind is one with pins of its own, so that the sources have nodes.
constexpr const char *NL_SOURCE_CLASS_0 = "FORCED_0_CLASS";
constexpr const char *NL_SOURCE_CLASS_1 = "FORCED_1_CLASS";

/// What to do with a design whose file would be too large.
constexpr const char *NL_SMALLER_DESIGN =
    "Keep the core as a cell: read it with kalmverin -lib and leave its netlist out.";

/// Bytes of the file of a module.
uint64_t NL_sdb_size(const NL_DESIGN &design, const NL_MODULE &module);

/// Ends the program when that file would be larger than its format allows. Cheap for one that is far from it.
void NL_check_sdb_size(const NL_DESIGN &design, const NL_MODULE &module, const std::string &path,
                       uint64_t limit = SDB_FILE_LIMIT);

/// Writes a module, flattened or not, or a library cell. A fault ends the program.
void NL_write_sdb(const NL_DESIGN &design, const NL_MODULE &module, const std::string &path);

/// Reads the ports alone, as they are needed to instantiate the module or cell.
void NL_read_sdb_ports(NL_DESIGN &design, NL_MODULE &module, const std::string &path);
/// The same of a file that is open.
void NL_take_sdb_ports(NL_DESIGN &design, NL_MODULE &module, const SDB_HANDLE *handle);

/// Reads a module with its instances. `find_def` gives the module of the design for a class, by name; it may
/// leave it undefined, and its ports then are the pins of the class.
void NL_read_sdb(NL_DESIGN &design, NL_MODULE &module, const std::string &path,
                 const std::function<int32_t(int32_t name)> &find_def);
