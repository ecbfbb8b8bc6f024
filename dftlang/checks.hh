// What a DFT file must hold across its blocks.
#pragma once

#include "dftlang/syntax_tree.hh"

/// Name of the map file that %READ_MAP gives; valid when has_map_file is set.
extern const char *map_file_name;

/// Warns of %ATPG_MODE blocks, from `first` on, with the mode of an earlier one.
void check_atpg_scan_opt_duplicate(SCAN_AST *first);
/// The checks at the end of a DFT file: instructions and sequences that are named must be there, patterns
/// must have a character for each port. The first fault ends the run. Notes the map file.
void check_dft_semantic(SCAN_AST *root);
/// 1 when a pattern of the statement has not one character for each of its names.
int32_t check_atpg_pattern_length(SCAN_AST *statement);
