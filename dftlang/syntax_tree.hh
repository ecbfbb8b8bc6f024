// The syntax tree that a parse leaves behind. Nothing outside this folder sees it.
//
// Nodes and texts live to the exit: the records made from a tree share its texts.
#pragma once

#include <cstdint>
#include <cstdio>

/// Node kinds; the number is the place in node_kinds.def.
enum SCAN_KIND : int32_t {
#define DFT_NODE(name) name,
#include "dftlang/node_kinds.def"
#undef DFT_NODE
    SCAN_KIND_COUNT
};

/// One construct. A leaf (IDENT, NUMBER, REAL_NUM, PERCENTAGE, PATTERN) has a text.
struct SCAN_AST {
    SCAN_KIND kind;
    int32_t line; ///< of the file, when the node was made
    const char *attribute;
    SCAN_AST *child;
    SCAN_AST *last_child; ///< so that a long list costs no walk
    SCAN_AST *sibling;
    SCAN_AST *parent;
};

/// Name of a kind, as messages and listings print it.
const char *scan_kind_name(SCAN_KIND kind);

SCAN_AST *SCAN_MAKE_AST(SCAN_KIND kind, int32_t line);
SCAN_AST *SCAN_MAKE_LEAF(SCAN_KIND kind, int32_t line, const char *text);
/// Appends one node at the end of the children and sets its parent.
void SCAN_APPEND_CHILD(SCAN_AST *node, SCAN_AST *child);
/// The first node of that kind in a sibling chain, or null; null for a null chain.
SCAN_AST *SCAN_FIND_AST(SCAN_AST *first, SCAN_KIND kind);
/// The first child of that kind, or null; null for a null node.
SCAN_AST *SCAN_FIND_CHILD(SCAN_AST *node, SCAN_KIND kind);
int32_t SCAN_CHILD_COUNT(const SCAN_AST *node);
/// Writes the debug listing: one line per node, children four blanks further in.
void SCAN_PRINT_AST(std::FILE *stream, const SCAN_AST *node, int32_t indent);

/// Sibling chains in a range-for.
struct SCAN_ITERATOR {
    SCAN_AST *node;
    SCAN_AST &operator*() const {
        return *node;
    }
    SCAN_ITERATOR &operator++() {
        node = node->sibling;
        return *this;
    }
    bool operator!=(const SCAN_ITERATOR &other) const {
        return node != other.node;
    }
};
struct SCAN_RANGE {
    SCAN_AST *first;
    SCAN_ITERATOR begin() const {
        return {first};
    }
    SCAN_ITERATOR end() const {
        return {nullptr};
    }
};
/// The children of a node; none for null.
inline SCAN_RANGE scan_children(const SCAN_AST *node) {
    return {node == nullptr ? nullptr : node->child};
}
