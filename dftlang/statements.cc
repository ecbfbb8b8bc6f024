// Values of single statements, and statements as a whole.
#include "dftlang/mapping.hh"

#include "dftlang/messages.hh"
#include "support/text.hh"

#include <cstdlib>
#include <string_view>

namespace {

/// A node that only collects statements of one kind.
bool is_collection(const SCAN_AST &node) {
    std::string_view name = scan_kind_name(node.kind);
    const SCAN_AST *first = scan_child(&node);
    return name.ends_with("_LIST_NODE") && first != nullptr && scan_text(first) == nullptr &&
           first->kind != IDENT_LIST_NODE;
}

bool is_value_list(SCAN_KIND kind) {
    return kind == IDENT_LIST_NODE || kind == PATTERN_LIST_NODE || kind == PIN_LIST_NODE;
}

void append_statements(const SCAN_AST *block, std::vector<DFT_STATEMENT> &made) {
    for (SCAN_AST &child : scan_children(block)) {
        if (scan_text(&child) != nullptr || is_value_list(child.kind))
            continue;
        if (is_collection(child))
            append_statements(&child, made);
        else
            made.push_back(dft_statement(&child));
    }
}

} // namespace

int32_t value_number(SCAN_AST *statement) {
    const char *text = value_text(statement);
    return text == nullptr ? -1 : static_cast<int32_t>(std::strtol(text, nullptr, 10));
}

DFT_VALUE GET_VALUE(SCAN_AST *statement) {
    DFT_VALUE value = {-1, -1.0};
    if (statement == nullptr)
        return value;
    SCAN_AST *leaf = scan_child(statement);
    if (leaf != nullptr && leaf->kind == NUMBER_NODE)
        value.number = static_cast<int32_t>(std::strtol(scan_text(leaf), nullptr, 10));
    else if (leaf != nullptr && leaf->kind == PERCENTAGE_NODE)
        value.fraction = std::strtod(scan_text(leaf), nullptr) / 100.0;
    else
        tree_error();
    return value;
}

void append_names(SCAN_AST *node, const char **&names) {
    for (SCAN_AST &child : scan_children(node)) {
        if (scan_text(&child) != nullptr)
            append_row(names, scan_text(&child));
        else if (child.kind == IDENT_LIST_NODE)
            append_names(&child, names);
    }
}

const char *target_text(SCAN_AST *target) {
    const char *name = value_text(target);
    SCAN_AST *pin = scan_child(target) == nullptr ? nullptr : scan_child(target)->sibling;
    return pin == nullptr ? name : keep_format("%s{%s}", name, scan_text(pin));
}

void append_targets(SCAN_AST *statement, const char **&targets) {
    for (SCAN_AST &target : scan_children(SCAN_FIND_CHILD(statement, PIN_LIST_NODE)))
        append_row(targets, target_text(&target));
}

DFT_STATEMENT dft_statement(const SCAN_AST *node) {
    std::string_view keyword = scan_kind_name(node->kind);
    if (keyword.ends_with("_NODE"))
        keyword.remove_suffix(5);
    DFT_STATEMENT row = {keyword, {}, dft_statements(node), node->line};
    for (SCAN_AST &child : scan_children(node)) {
        if (const char *text = scan_text(&child))
            row.values.push_back(text);
        else if (is_value_list(child.kind))
            for (SCAN_AST &value : scan_children(&child))
                row.values.push_back(value.kind == PIN_NODE ? target_text(&value) : scan_text(&value));
    }
    return row;
}

std::vector<DFT_STATEMENT> dft_statements(const SCAN_AST *block) {
    std::vector<DFT_STATEMENT> made;
    append_statements(block, made);
    return made;
}
