// The command line of kalmverin, and what it says of ports.
#pragma once

#include "siblings/netlist.hh"

#include <string>
#include <utility>
#include <vector>

struct VERIN_ARGUMENTS {
    bool library = false;
    bool drop_parameters = false;
    std::vector<std::string> files{};
    std::string top{};
    std::string output_directory{};
    std::vector<std::pair<std::string, std::string>> macros{}; ///< name and text
    std::vector<std::string> include_directories{};
    std::vector<std::string> inputs{}; ///< names of ports, with wild cards, as all of these lists
    std::vector<std::string> outputs{};
    std::vector<std::string> power{};
};

/// Reads the command line; a fault ends the program, and so does -help, with status 0.
VERIN_ARGUMENTS VERIN_read_arguments(int argc, char **argv);

/// Gives the bidirectional ports of the top that the command line names the direction that they have in
/// truth.
void VERIN_set_directions(NL_DESIGN &design, NL_MODULE &top, const VERIN_ARGUMENTS &arguments);

/// Marks the power ports of the modules.
void VERIN_mark_power(NL_DESIGN &design, const std::vector<int32_t> &modules,
                      const VERIN_ARGUMENTS &arguments);
