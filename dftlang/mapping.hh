// From syntax trees to records. Inside this folder alone.
#pragma once

#include "dftlang/dft_object.hh"
#include "dftlang/syntax_tree.hh"

/// Looks into the blocks of DFT_OBJECT's tree, reads the files that they name and fills the records. A fault
/// ends the run.
void MAP_AST_2_OBJECT();

/// The sequence of that name in the current configuration, or null.
const SCAN_AST *SCAN_FIND_SEQUENCE(const char *name);

// The blocks that are looked into.
void map_paths(SCAN_AST *block); ///< %MULTICYCLE_PATH or %FALSE_PATH, with the files that it names
void map_scan_decoder(SCAN_AST *block);
void map_connections(SCAN_AST *list); ///< all %CONNECT_SCAN or all %CONNECT_BIST
void map_atpg_constraints(SCAN_AST *block);
void map_select_fault(SCAN_AST *block);
void map_sequences(SCAN_AST *list);
void map_instructions(SCAN_AST *list);
void map_cores(SCAN_AST *list);
void map_map_file(const SIDE_FILE &map);

/// Unscrambles the fold scan section of the current configuration; nothing when it has fold scan blocks
/// already.
void sl_decrypt();
