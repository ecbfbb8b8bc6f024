// The tree between the parser of a .lib or .bsc file and its save step.
//
// A parser builds the tree of one file and leaves its root in theAST; the save step walks it in file order
// and fills the tables of description/tables.hh. Nodes are never freed.
#pragma once

#include "support/sibling_range.hh"

#include <cstdint>

/// What a node is. Items and statements that a keyword heads alone are ITEM_NODE: their keyword says the
/// rest.
enum NODE_KIND : int32_t {
    NO_NODE = -1,
    IDENT_NODE,
    INTEGER_NODE,
    PATTERN_NODE,
    PROGRAM_NODE,
    DUMMY, // a list under construction; its children move to the statement that owns them
    ITEM_NODE,
    IDENT_LIST_NODE,
    INST_LIST_NODE,
    INT_LIST_NODE,

    // The .lib file.
    TAP_CELL_NODE,
    SCAN_CELL_NODE,
    BUFFER_CELL_NODE,
    DIFF_V_BUFFER_CELL_NODE,
    DIFF_I_BUFFER_CELL_NODE,
    BS_BUFFER_NODE,
    EXTRA_NODE,

    // The .bsc file.
    INSTRUCTION_NODE,
    INST_NAME_NODE,
    ACCESS_NODE,
    ENABLE_NODE,
    EN_L_NODE,
    EN_H_NODE,
    FILE_NAME_NODE,
    CONNECT_NODE,
    CONNECT_PORT_NODE,
    CONNECT_PIN_NODE,
    SKIP_IDENT_NODE,
    MEMORY_BIST_ELEMENT_NODE,
    LOGIC_BIST_ELEMENT_NODE,
    CTRL_ORDER_NODE,
};

struct KEYWORD;

struct AST_NODE {
    NODE_KIND kind;
    int32_t line;     ///< the scanner's line when the node was made
    const char *text; ///< the token of a leaf, else null
    AST_NODE *first_child;
    AST_NODE *last_child; ///< lets a list of any length grow in constant time
    AST_NODE *next_sibling;
    const KEYWORD *keyword; ///< the keyword that heads the node, or null
};

/// One entry of a parser's stack.
struct TOKEN_VALUE {
    const char *text;       ///< the matched characters, kept to the exit
    int32_t type;           ///< the token
    int32_t line;           ///< line of the token
    AST_NODE *ast;          ///< a leaf for names and numbers; what a rule has built
    const KEYWORD *keyword; ///< the keyword that the token is, or null
};

extern AST_NODE *theAST; ///< root of the file parsed last

AST_NODE *MAKE_AST(NODE_KIND kind);
/// A leaf that holds a token's text.
AST_NODE *make_leaf(NODE_KIND kind, const char *text);
/// A node with the given children and their following siblings, in order; null children are left out.
AST_NODE *MAKE_SOLO_AST(NODE_KIND kind, AST_NODE *a);
AST_NODE *MAKE_DUET_AST(NODE_KIND kind, AST_NODE *a, AST_NODE *b);
AST_NODE *MAKE_TRIO_AST(NODE_KIND kind, AST_NODE *a, AST_NODE *b, AST_NODE *c);
AST_NODE *MAKE_QUARTET_AST(NODE_KIND kind, AST_NODE *a, AST_NODE *b, AST_NODE *c, AST_NODE *d);
/// The node that a keyword heads, of the kind that its row gives, with the children `a` and `b`.
AST_NODE *make_keyword_node(const TOKEN_VALUE &keyword, AST_NODE *a, AST_NODE *b = nullptr);
/// Moves `child` and its following siblings to the end of the parent's children. Returns the parent.
AST_NODE *APPEND_CHILD(AST_NODE *parent, AST_NODE *child);

/// The children of a node as a range: for (AST_NODE &child : children(node)).
inline sibling_range<AST_NODE, &AST_NODE::next_sibling> children(const AST_NODE &node) {
    return {node.first_child};
}
