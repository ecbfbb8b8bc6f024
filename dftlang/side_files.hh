// Files that a DFT file names. Inside this folder alone.
#pragma once

#include "dftlang/parser.hh"

/// 1 while the tree of each file is printed on the console when it has been parsed; scan_interface sets it.
extern int32_t print_scan_trees;

/// `name` as the file that is being read means it: against the directory of that file.
const char *resolve_side_file(const char *name);

/// Opens the resolved name, parses it as a file of that kind and closes it. The run ends when it cannot be
/// opened.
void parse_file(const char *file_name, const char *shown_name, SCAN_FILE_KIND kind);
/// The same for a file that may be missing: false then.
bool parse_file_if_there(const char *file_name, const char *shown_name, SCAN_FILE_KIND kind);
