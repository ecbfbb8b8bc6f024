// The syntax tree that a parse leaves behind. Nothing outside this folder sees it.
//
// Nodes and texts live to the exit: the records made from a tree share its texts.
#pragma once

#include "support/sibling_range.hh"

#include <cstdint>
#include <cstdio>
#include <vector>

/// Node kinds; the number is the place in node_kinds.def. Kinds behind these come from scan_add_kind.
enum SCAN_KIND : int32_t {
#define DFT_NODE(name) name,
#include "dftlang/node_kinds.def"
#undef DFT_NODE
    SCAN_KIND_COUNT
};

/// One construct. A leaf (IDENT, NUMBER, REAL_NUM, PERCENTAGE, PATTERN) has a text, any other node children:
/// scan_text and scan_child tell which. A large file is nearly all nodes, so they are small.
struct SCAN_AST {
    SCAN_KIND kind;
    int32_t line; ///< of the file, when the node was made
    union {
        const char *attribute; ///< of a leaf
        SCAN_AST *child;       ///< first child of another node, or null
    };
    SCAN_AST *sibling;
};

/// A node that still takes children; it knows its last one, so that a long list costs no walk.
struct OPEN_NODE {
    SCAN_AST *node;
    SCAN_AST *last_child;
};

/// Name of a kind, as messages and listings print it.
const char *scan_kind_name(SCAN_KIND kind);
/// A new kind of that name, which is kept to the exit.
SCAN_KIND scan_add_kind(const char *name);

SCAN_AST *SCAN_MAKE_LEAF(SCAN_KIND kind, int32_t line, const char *text);
/// A node of that kind without children, to be filled.
OPEN_NODE SCAN_OPEN_AST(SCAN_KIND kind, int32_t line);
/// A node with its children, to take further ones.
OPEN_NODE SCAN_REOPEN_AST(SCAN_AST *node);
/// Appends one node at the end of the children.
void SCAN_APPEND_CHILD(OPEN_NODE &open, SCAN_AST *child);
/// The text of a leaf; null for any other node and for null.
const char *scan_text(const SCAN_AST *node);
/// The first child of a node; null for a leaf and for null.
SCAN_AST *scan_child(const SCAN_AST *node);
/// The text of a statement's value, its first child; null when that is no leaf.
const char *value_text(const SCAN_AST *statement);
/// A statement's value as a number; -1 when it has none.
int32_t value_number(const SCAN_AST *statement);
/// The texts of the leaves below a node, those of its lists of names too; none for null.
std::vector<const char *> scan_names(const SCAN_AST *node);
/// The first node of that kind in a sibling chain, or null; null for a null chain.
SCAN_AST *SCAN_FIND_AST(SCAN_AST *first, SCAN_KIND kind);
/// The first child of that kind, or null; null for a null node.
SCAN_AST *SCAN_FIND_CHILD(const SCAN_AST *node, SCAN_KIND kind);
/// Writes the debug listing: one line per node, children four blanks further in.
void SCAN_PRINT_AST(std::FILE *stream, const SCAN_AST *node, int32_t indent);

/// The children of a node; none for null.
inline sibling_range<SCAN_AST, &SCAN_AST::sibling> scan_children(const SCAN_AST *node) {
    return {scan_child(node)};
}
