#include "dftlang/syntax_tree.hh"

#include <deque>

namespace {

constexpr const char *node_name_tab[] = {
#define DFT_NODE(name) #name,
#include "dftlang/node_kinds.def"
#undef DFT_NODE
};

std::deque<SCAN_AST> &nodes() {
    static auto *const store = new std::deque<SCAN_AST>; // nodes never move and live to the exit
    return *store;
}

bool is_leaf(SCAN_KIND kind) {
    return kind == IDENT_NODE || kind == NUMBER_NODE || kind == REAL_NUM_NODE || kind == PERCENTAGE_NODE ||
           kind == PATTERN_NODE;
}

} // namespace

const char *scan_kind_name(SCAN_KIND kind) {
    return node_name_tab[kind];
}

SCAN_AST *SCAN_MAKE_AST(SCAN_KIND kind, int32_t line) {
    return SCAN_MAKE_LEAF(kind, line, nullptr);
}

SCAN_AST *SCAN_MAKE_LEAF(SCAN_KIND kind, int32_t line, const char *text) {
    return &nodes().emplace_back(SCAN_AST{kind, line, text, nullptr, nullptr, nullptr, nullptr});
}

void SCAN_APPEND_CHILD(SCAN_AST *node, SCAN_AST *child) {
    if (node->last_child == nullptr)
        node->child = child;
    else
        node->last_child->sibling = child;
    node->last_child = child;
    child->parent = node;
}

SCAN_AST *SCAN_FIND_AST(SCAN_AST *first, SCAN_KIND kind) {
    while (first != nullptr && first->kind != kind)
        first = first->sibling;
    return first;
}

SCAN_AST *SCAN_FIND_CHILD(SCAN_AST *node, SCAN_KIND kind) {
    return node == nullptr ? nullptr : SCAN_FIND_AST(node->child, kind);
}

int32_t SCAN_CHILD_COUNT(const SCAN_AST *node) {
    int32_t count = 0;
    for ([[maybe_unused]] SCAN_AST &child : scan_children(node))
        count++;
    return count;
}

void SCAN_PRINT_AST(std::FILE *stream, const SCAN_AST *node, int32_t indent) {
    std::fprintf(stream, "%*s%s", indent, "", scan_kind_name(node->kind));
    if (is_leaf(node->kind))
        std::fprintf(stream, " [%s]", node->attribute);
    std::fprintf(stream, "\n");
    for (SCAN_AST &child : scan_children(node))
        SCAN_PRINT_AST(stream, &child, indent + 4);
}
