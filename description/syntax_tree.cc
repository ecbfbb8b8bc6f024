#include "description/syntax_tree.hh"

#include "description/hash_tables.hh"
#include "description/keywords.hh"
#include "description/reading.hh"

AST_NODE *theAST = nullptr;

AST_NODE *MAKE_AST(NODE_KIND kind) {
    AST_NODE *node = new_record<AST_NODE>();
    node->kind = kind;
    node->line = current_line != nullptr ? *current_line : 0;
    return node;
}

AST_NODE *make_leaf(NODE_KIND kind, const char *text) {
    AST_NODE *node = MAKE_AST(kind);
    node->text = text;
    return node;
}

AST_NODE *MAKE_SOLO_AST(NODE_KIND kind, AST_NODE *a) {
    return APPEND_CHILD(MAKE_AST(kind), a);
}

AST_NODE *MAKE_DUET_AST(NODE_KIND kind, AST_NODE *a, AST_NODE *b) {
    return APPEND_CHILD(MAKE_SOLO_AST(kind, a), b);
}

AST_NODE *MAKE_TRIO_AST(NODE_KIND kind, AST_NODE *a, AST_NODE *b, AST_NODE *c) {
    return APPEND_CHILD(MAKE_DUET_AST(kind, a, b), c);
}

AST_NODE *MAKE_QUARTET_AST(NODE_KIND kind, AST_NODE *a, AST_NODE *b, AST_NODE *c, AST_NODE *d) {
    return APPEND_CHILD(MAKE_TRIO_AST(kind, a, b, c), d);
}

AST_NODE *make_keyword_node(const TOKEN_VALUE &keyword, AST_NODE *a, AST_NODE *b) {
    AST_NODE *node = MAKE_DUET_AST(keyword.keyword->kind, a, b);
    node->keyword = keyword.keyword;
    return node;
}

AST_NODE *APPEND_CHILD(AST_NODE *parent, AST_NODE *child) {
    if (child == nullptr)
        return parent;
    if (parent->last_child == nullptr)
        parent->first_child = child;
    else
        parent->last_child->next_sibling = child;
    for (; child != nullptr; child = child->next_sibling)
        parent->last_child = child;
    return parent;
}
