// The files of a finished run, as the verbs behind it read them.
#pragma once

#include "kit/command.hh"

#include <initializer_list>
#include <string>
#include <vector>

struct FINISHED_RUN {
    std::string design;              ///< with its folder
    std::string opath;               ///< where the run wrote its netlists, with '/', or empty
    std::vector<std::string> models; ///< Verilog files of the cells
};

/// The run that a verb's command line means: its one name, --opath and --cells. Without the name the program
/// ends.
FINISHED_RUN finished_run(const KIT_CALL &call);
/// A file that the run writes into its folder for output: DESIGN and the ending.
std::string run_file(const FINISHED_RUN &run, const std::string &ending);
/// What the last run wrote in its language, DESIGN and the ending without ".v" or ".vhd": the younger file of
/// two, as an earlier run may have left the other; the Verilog name when there is neither.
std::string run_text(const FINISHED_RUN &run, const std::string &ending);
/// Why an engine can't read the file: it is VHDL, or there is none. Empty when it can.
std::string verilog_obstacle(const std::string &file);

/// Ends the program, naming the verb, when a description, the boundary order, or the design before or after
/// the run is missing.
void need_run_files(const FINISHED_RUN &run, const char *verb);
/// Fills the description tables and opens the flat edited design; false when there is none.
bool open_finished_run(const FINISHED_RUN &run);
