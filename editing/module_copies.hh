// The copies of modules that the editor changes, and the beginnings of their command files. Each step ends
// the run with a message when it fails.
#pragma once

#include "editing/edit_commands.hh"

#include <string>

/// Copies a file through the shell; 0 is success.
int copy_file(const std::string &from, const std::string &to);

/// Copies the top module and begins its file in TAP_FP, with a `path` line or without.
void begin_top_file(bool with_path);

// A module of a TAP path, or one of several that hold pads: its SDB, the copy of that under the edited
// module's name, and its command file.
const char *found_module_file(const char *module);
void copy_module(const char *sdb_path, const std::string &edited);
EDIT_FILE *begin_module_file(const std::string &edited);

/// Name of the edited module of a row of MULTI_IO_TAB: "chip_jtag" for the top, else "<class>_bs<copy>".
std::string edited_module_name(int32_t module);

/// A level of the pads' path: copies the module as <module>_bs, begins its file in PAD_FP and returns the
/// path of its SDB.
const char *begin_level_file(const char *module, bool with_path);
