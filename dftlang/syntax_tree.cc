#include "dftlang/syntax_tree.hh"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>

namespace {

auto &node_name_tab = *new std::vector<const char *>{
#define DFT_NODE(name) #name,
#include "dftlang/node_kinds.def"
#undef DFT_NODE
};

constexpr size_t block_nodes = 4096;

/// Nodes never move and live to the exit.
SCAN_AST *new_node() {
    static auto *const blocks = new std::vector<std::unique_ptr<SCAN_AST[]>>;
    static size_t used = block_nodes;
    if (used == block_nodes) {
        blocks->push_back(std::make_unique_for_overwrite<SCAN_AST[]>(block_nodes));
        used = 0;
    }
    return &blocks->back()[used++];
}

bool is_leaf(SCAN_KIND kind) {
    return kind == IDENT_NODE || kind == NUMBER_NODE || kind == REAL_NUM_NODE || kind == PERCENTAGE_NODE ||
           kind == PATTERN_NODE;
}

} // namespace

const char *scan_kind_name(SCAN_KIND kind) {
    return node_name_tab[static_cast<size_t>(kind)];
}

SCAN_KIND scan_add_kind(const char *name) {
    node_name_tab.push_back(name);
    return static_cast<SCAN_KIND>(node_name_tab.size() - 1);
}

SCAN_AST *SCAN_MAKE_LEAF(SCAN_KIND kind, int32_t line, const char *text) {
    SCAN_AST *made = new_node();
    *made = {.kind = kind, .line = line, .attribute = text, .sibling = nullptr};
    return made;
}

OPEN_NODE SCAN_OPEN_AST(SCAN_KIND kind, int32_t line) {
    SCAN_AST *made = new_node();
    *made = {.kind = kind, .line = line, .child = nullptr, .sibling = nullptr};
    return {made, nullptr};
}

OPEN_NODE SCAN_REOPEN_AST(SCAN_AST *node) {
    OPEN_NODE open = {node, nullptr};
    for (SCAN_AST &child : scan_children(node))
        open.last_child = &child;
    return open;
}

void SCAN_APPEND_CHILD(OPEN_NODE &open, SCAN_AST *child) {
    (open.last_child == nullptr ? open.node->child : open.last_child->sibling) = child;
    open.last_child = child;
}

const char *scan_text(const SCAN_AST *node) {
    return node != nullptr && is_leaf(node->kind) ? node->attribute : nullptr;
}

SCAN_AST *scan_child(const SCAN_AST *node) {
    return node == nullptr || is_leaf(node->kind) ? nullptr : node->child;
}

const char *value_text(const SCAN_AST *statement) {
    return scan_text(scan_child(statement));
}

int32_t value_number(const SCAN_AST *statement) {
    const char *text = value_text(statement);
    return text == nullptr ? -1 : static_cast<int32_t>(std::strtol(text, nullptr, 10));
}

std::vector<const char *> scan_names(const SCAN_AST *node) {
    std::vector<const char *> names;
    for (SCAN_AST &child : scan_children(node)) {
        if (scan_text(&child) != nullptr)
            names.push_back(scan_text(&child));
        else if (child.kind == IDENT_LIST_NODE)
            std::ranges::copy(scan_names(&child), std::back_inserter(names));
    }
    return names;
}

SCAN_AST *SCAN_FIND_AST(SCAN_AST *first, SCAN_KIND kind) {
    while (first != nullptr && first->kind != kind)
        first = first->sibling;
    return first;
}

SCAN_AST *SCAN_FIND_CHILD(const SCAN_AST *node, SCAN_KIND kind) {
    return SCAN_FIND_AST(scan_child(node), kind);
}

void SCAN_PRINT_AST(std::FILE *stream, const SCAN_AST *node, int32_t indent) {
    std::fprintf(stream, "%*s%s", indent, "", scan_kind_name(node->kind));
    if (is_leaf(node->kind))
        std::fprintf(stream, " [%s]", node->attribute);
    std::fprintf(stream, "\n");
    for (SCAN_AST &child : scan_children(node))
        SCAN_PRINT_AST(stream, &child, indent + 4);
}
