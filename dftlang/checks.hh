// What a DFT file must hold across its blocks.
#pragma once

#include "dftlang/syntax_tree.hh"

/// Warns of %ATPG_MODE blocks, from `first` on, with the mode of an earlier one.
void check_atpg_scan_opt_duplicate(SCAN_AST *first);
/// The checks at the end of a DFT file: instructions and sequences that are named must be there, patterns
/// must have a character for each port. The first fault ends the run.
void check_dft_semantic(SCAN_AST *root);
