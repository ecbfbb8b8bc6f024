// Where the definitions of modules and cells come from: SDB files in a list of directories and on the search
// path.
#pragma once

#include "siblings/netlist.hh"

#include <string>
#include <vector>

/// The file `<name>.sdb`: first in each of the directories, then on the search path. Empty when there is
/// none.
std::string DEF_find(const std::vector<std::string> &directories, const std::string &name);

/// Fills the ports of a module from its file. False when there is none.
bool DEF_read_ports(NL_DESIGN &design, NL_MODULE &module, const std::vector<std::string> &directories);

/// Reads a module from its file, with the modules below it that are not defined yet. False when there is
/// none.
bool DEF_read_module(NL_DESIGN &design, NL_MODULE &module, const std::vector<std::string> &directories);

/// Reads the file `path` as the module `name` with all modules below it; library cells have their ports
/// alone. `order` gets the modules that are no library cells, each behind those that it instantiates.
int32_t DEF_read_tree(NL_DESIGN &design, const std::string &path, const std::string &name,
                      const std::vector<std::string> &directories, std::vector<int32_t> &order);
