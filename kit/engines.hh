// Programs that a verb has its simulations and proofs done by, where they are installed, and the models that
// they work on.
#pragma once

#include "kit/command.hh"

#include <map>
#include <string>
#include <vector>

/// Empty when the program is on PATH, else a sentence with the Debian package that brings it.
std::string engine_obstacle(const char *program, const char *package);

/// Runs a program by its words; both its streams go to the file `log`. Empty, or why it did not end well: a
/// status that is not 0, or more time than any chip needs.
std::string run_engine(const std::vector<std::string> &words, const std::string &log);

/// A folder of its own, gone at the end of its scope. Where none can be made the program ends.
struct SCRATCH_FOLDER {
    std::string path;
    SCRATCH_FOLDER();
    ~SCRATCH_FOLDER();
    SCRATCH_FOLDER(const SCRATCH_FOLDER &) = delete;
    SCRATCH_FOLDER &operator=(const SCRATCH_FOLDER &) = delete;
};

/// The modules that Verilog files define; true for those with a statement that does something. A library
/// often has the ports alone.
using VERILOG_MODULES = std::map<std::string, bool>;
VERILOG_MODULES modules_of(const std::vector<std::string> &files);
/// True for a module that does something.
bool has_model(const VERILOG_MODULES &modules, const std::string &name);

/// The Verilog models of the cells: the files that --cells gives, and DESIGN_cells.v, which `rimkit start`
/// leaves, unless they define a module of it, too. A missing file ends the program.
std::vector<std::string> cell_models(const KIT_CALL &call, const std::string &design);
