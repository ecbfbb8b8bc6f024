// Opening and parsing of DFT files and of the files that they name. Inside this folder alone.
#pragma once

#include "dftlang/dft_object.hh"
#include "dftlang/parser.hh"

/// 1 while the tree of each file is printed on the console when it has been parsed; scan_interface sets it.
extern int32_t print_scan_trees;

/// `name` as a file in `directory` means it; null for the working directory.
const char *resolve_side_file(const char *directory, const char *name);
/// The tree of a file, null when it holds no statement. Messages call it `shown_name`. Ends the run when it
/// cannot be opened; an instance file that is not there holds nothing.
SCAN_AST *parse_file(const char *file_name, const char *shown_name, SCAN_FILE_KIND kind);
/// Reads a file that the current configuration names, and notes it there.
SIDE_FILE read_side_file(const char *name, SCAN_FILE_KIND kind);
