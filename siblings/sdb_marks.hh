// Marks of ports and nets in an SDB file.
//
// The names of a file alone do not tell a bit of a vector from a name that was written with its brackets, nor
// a don't-care net from one that lacks its driver. What they leave open stands in the table of properties:
// a word that tells these properties from those of others, then pairs of a kind and the symbol of a port or
// the id of a net. A file without them is one whose names say all.
#pragma once

#include "sdb/sdb.hh"
#include "siblings/netlist.hh"

#include <functional>

/// Writes the marks. `symbol_of` gives the symbol of a name; net ids of the file are those of the module.
void MARKS_write(SDB_HANDLE *file, const NL_MODULE &module, const std::function<int32_t(int32_t)> &symbol_of);

/// Calls `take` for each mark: with a port's symbol or with the id of a net.
void MARKS_read(const SDB_HANDLE *file,
                const std::function<void(bool of_net, int32_t id, uint8_t marks)> &take);
