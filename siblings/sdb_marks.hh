// Marks of ports and nets in an SDB file, and assigns between nets.
//
// The names of a file alone do not tell a bit of a vector from a name that was written with its brackets, nor
// a don't-care net from one that lacks its driver, and two power nets that an assign joins have no pin in
// common. What is left open so stands in the table of properties: a word that tells these properties from
// those of others, then pairs of a kind and the symbol of a port or the id of a net. A file without them is
// one whose names and nets say all.
#pragma once

#include "sdb/sdb.hh"
#include "siblings/netlist.hh"

#include <functional>
#include <vector>

/// What a pair speaks of. The two sides of an assign are pairs that follow each other.
enum MARK_KIND : int32_t {
    MARK_OF_PORT = 0,
    MARK_OF_NET = 0x100,
    MARK_ASSIGN_LEFT = 0x200,
    MARK_ASSIGN_RIGHT = 0x300,
};

/// The words of the table. `symbol_of` gives the symbol of a name; net ids of the file are those of the
/// module.
std::vector<int32_t> MARKS_words(const NL_MODULE &module, const std::function<int32_t(int32_t)> &symbol_of);

/// Calls `take` for each pair: with a port's symbol or with the id of a net, neither of them checked, and
/// with the NL_MARKs of the port or net.
void MARKS_read(const SDB_HANDLE *file,
                const std::function<void(MARK_KIND kind, int32_t id, uint8_t marks)> &take);
