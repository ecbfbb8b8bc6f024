// The save steps: from the syntax tree of a file to the tables. One function per statement; each takes the
// statement's node and walks its children. The names of the files being read serve the messages.
#pragma once

#include "description/syntax_tree.hh"
#include "description/tables.hh"

/// Fill the tables from theAST.
void save_lib_tab();
void save_dft_tab();

// Blocks of the .lib file.
void save_tap_cell(const AST_NODE &node);
void save_scan_cell(const AST_NODE &node);
void save_buffer_cell(const AST_NODE &node);

// Statements of the .bsc file.
void save_dft_scan_cell(const AST_NODE &node);
void save_dft_instruction_table(const AST_NODE &node);
void save_dft_instruction_capture(const AST_NODE &node);
void save_dft_usercode_register(const AST_NODE &node);
void save_dft_tap_cell(const AST_NODE &node);
void save_pin_list(const AST_NODE &node);
void save_package_list(const AST_NODE &node);
void save_skip_signal(const AST_NODE &node);
void save_unbounded_pins(const AST_NODE &node);
void save_trans_buffer(const AST_NODE &node);
void save_connect_table(const AST_NODE &node);
void bl_save_mbist_table(const AST_NODE &node);
void bl_save_lbist_table(const AST_NODE &node);

/// Begins a reading of the descriptions: the lines of each of its pin files count on from where the files of
/// an earlier reading ended.
void begin_pin_files();

/// 1 when the pattern may join the table. Prints the reason on the error stream and returns 0 when its length
/// differs from an earlier one's, or when some value fits both; 'X' and 'x' fit '0' and '1'.
int32_t check_pattern_list(const AST_NODE &pattern, const char **table);

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

/// Which field of a record a node of that kind fills with its first child's text.
template <class T> struct TEXT_FIELD {
    NODE_KIND kind;
    const char *T::*field;
};

/// Fills the field that the node names; false when the table has none of its kind.
template <class T, size_t N>
bool save_text_field(T &record, const AST_NODE &node, const TEXT_FIELD<T> (&fields)[N]) {
    for (const TEXT_FIELD<T> &entry : fields) {
        if (entry.kind == node.kind) {
            record.*entry.field = first_text(node);
            return true;
        }
    }
    return false;
}
