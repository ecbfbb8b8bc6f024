// From syntax trees to records. Inside this folder alone.
#pragma once

#include "dftlang/dft_object.hh"
#include "dftlang/syntax_tree.hh"

#include <cstdint>
#include <string_view>
#include <unordered_map>

/// All %DONT_FIX pairs of cores that were read; map_cores writes it.
extern NAME_PAIR *DONT_FIX_TAB;

/// Look-ups of a configuration by name; the first record of a name counts.
struct DFT_INDEX {
    std::unordered_map<std::string_view, SEQUENCE *> sequences;
    std::unordered_map<std::string_view, int32_t> instructions;
};

/// Creates DFT_OBJECT from the DFT file and the map file parsed last; DFT_OBJECT stays null when the DFT file
/// held no statement.
void MAP_AST_2_OBJECT();

/// The sequence of that name in the current configuration, or null.
SEQUENCE *SCAN_FIND_SEQUENCE(const char *name);
/// The instruction of that name in the current configuration, or null.
SCAN_INSTRUCTION *SCAN_FIND_INSTRUCTION(const char *name);

// Values of one statement; each takes null for a statement that is absent.
int32_t value_number(SCAN_AST *statement);
DFT_VALUE GET_VALUE(SCAN_AST *statement);
/// Appends the names below a node, lists included.
void append_names(SCAN_AST *node, const char **&names);
/// A target as text: `name` or `name{pin}`.
const char *target_text(SCAN_AST *target);
void append_targets(SCAN_AST *statement, const char **&targets);

// The blocks that are more than their values.
void map_multicycle_path(SCAN_AST *block);
void map_false_path(SCAN_AST *block);
void map_scan_decoder(SCAN_AST *block);
void map_connect_scans(SCAN_AST *list);
void map_connect_bists(SCAN_AST *list);
void map_atpg_constraints(SCAN_AST *block);
void map_select_fault(SCAN_AST *block);
void map_sequences(SCAN_AST *list);
void map_instructions(SCAN_AST *list);
void map_cores(SCAN_AST *list);
void map_fold_scan(SCAN_AST *list);
MAP_OBJECT_RECORD *map_map_file(SCAN_AST *root, const char *map_file);

/// The scrambled fold scan section of the current configuration; nothing when it has fold scan tables
/// already.
void sl_decrypt();
