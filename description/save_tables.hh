// The save steps: from the syntax tree of a file to the tables. One function per statement; each takes the
// statement's node and walks its children. The names of the files being read serve the messages.
#pragma once

#include "description/hash_tables.hh"
#include "description/keywords.hh"
#include "description/opcode_set.hh"
#include "description/reading.hh"

/// Fill the tables from theAST.
void save_lib_tab();
void save_bsc_tab();

// Statements of the .bsc file, as their rows of the keyword table name them.
void save_setting(const AST_NODE &node);  ///< a single name, into the global that its keyword gives
void save_settings(const AST_NODE &node); ///< a block of such items
void save_idcode_register(const AST_NODE &node);
void save_usercode_register(const AST_NODE &node);
void save_instruction_table(const AST_NODE &node);
void save_instruction_capture(const AST_NODE &node);
void save_instruction_private(const AST_NODE &node);
void save_pin_list(const AST_NODE &node);
void save_package_list(const AST_NODE &node);
void save_skip_signal(const AST_NODE &node);
void save_unbounded_pins(const AST_NODE &node);
void save_trans_buffer(const AST_NODE &node);
void save_connect_table(const AST_NODE &node);
void bl_save_mbist_table(const AST_NODE &node);
void bl_save_lbist_table(const AST_NODE &node);

/// 1 when the pattern may join the table, whose patterns are `earlier`. Prints the reason on the error stream
/// and returns 0 when its length differs from theirs, or when some value fits it and one of them; 'X' and 'x'
/// fit '0' and '1'.
int32_t check_pattern_list(const AST_NODE &pattern, const char **table, const OPCODE_SET &earlier);

/// Appends each pattern of the node that check_pattern_list accepts.
void append_patterns(const AST_NODE &node, const char **&table);

/// The text of a node's first child.
inline const char *first_text(const AST_NODE &node) {
    return node.first_child->text;
}

/// Appends the text of each child.
inline void append_texts(const AST_NODE &node, const char **&table) {
    for (const AST_NODE &child : children(node))
        append_row(table, child.text);
}
