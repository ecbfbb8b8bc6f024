// The copies of modules that the editor changes, and the beginnings of their command files. Each step ends
// the run with a message when it fails.
#pragma once

#include "editing/edit_commands.hh"

#include <string>
#include <vector>

/// Copies a file through the shell; 0 is success.
int copy_file(const std::string &from, const std::string &to);

/// Copies the top module and begins its file, with a `path` line or without.
EDIT_FILE *begin_top_file(bool with_path);

// A module of a TAP path, or one of several that hold pads: its SDB, the copy of that under the edited
// module's name, and its command file.
const char *found_module_file(const char *module);
void copy_module(const char *sdb_path, const std::string &edited);
EDIT_FILE *begin_module_file(const std::string &edited);

/// Name of the edited module of a row of MULTI_IO_TAB: "chip_jtag" for the top, else "<class>_bs<copy>".
std::string edited_module_name(int32_t module);
/// The rows of MULTI_IO_TAB, each behind the modules below it.
std::vector<int32_t> modules_children_first();

/// A level of the pads' path, or of that of a standard port: the SDB of its module. Kept for good.
const char *found_level_file(const char *module);
/// Copies the module of a level of the pads' path as <module>_bs and begins its file.
EDIT_FILE *begin_level_file(const char *module, bool with_path);
