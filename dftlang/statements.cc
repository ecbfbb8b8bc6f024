// Values of single statements, and statements copied whole.
#include "dftlang/mapping.hh"

#include "dftlang/messages.hh"
#include "support/text.hh"

#include <cstdlib>
#include <string_view>

namespace {

bool is_leaf(const SCAN_AST &node) {
    return node.attribute != nullptr;
}

/// A node that only collects statements of one kind.
bool is_collection(const SCAN_AST &node) {
    std::string_view name = scan_kind_name(node.kind);
    const SCAN_AST *first = node.child;
    return name.ends_with("_LIST_NODE") && first != nullptr && !is_leaf(*first) &&
           first->kind != IDENT_LIST_NODE;
}

bool is_value_list(SCAN_KIND kind) {
    return kind == IDENT_LIST_NODE || kind == PATTERN_LIST_NODE || kind == PIN_LIST_NODE;
}

} // namespace

const char *value_text(SCAN_AST *statement) {
    SCAN_AST *value = statement == nullptr ? nullptr : statement->child;
    return value == nullptr ? nullptr : value->attribute;
}

int32_t value_number(SCAN_AST *statement) {
    const char *text = value_text(statement);
    return text == nullptr ? -1 : static_cast<int32_t>(std::strtol(text, nullptr, 10));
}

DFT_VALUE GET_VALUE(SCAN_AST *statement) {
    DFT_VALUE value = {-1, -1.0};
    if (statement == nullptr)
        return value;
    SCAN_AST *leaf = statement->child;
    if (leaf != nullptr && leaf->kind == NUMBER_NODE)
        value.number = static_cast<int32_t>(std::strtol(leaf->attribute, nullptr, 10));
    else if (leaf != nullptr && leaf->kind == PERCENTAGE_NODE)
        value.fraction = std::strtod(leaf->attribute, nullptr) / 100.0;
    else
        tree_error();
    return value;
}

void append_names(SCAN_AST *node, const char **&names) {
    for (SCAN_AST &child : scan_children(node)) {
        if (child.attribute != nullptr)
            append_row(names, child.attribute);
        else if (child.kind == IDENT_LIST_NODE)
            append_names(&child, names);
    }
}

const char *target_text(SCAN_AST *target) {
    const char *name = value_text(target);
    SCAN_AST *pin = target->child == nullptr ? nullptr : target->child->sibling;
    return pin == nullptr ? name : keep_format("%s{%s}", name, pin->attribute);
}

void append_targets(SCAN_AST *statement, const char **&targets) {
    for (SCAN_AST &target : scan_children(SCAN_FIND_CHILD(statement, PIN_LIST_NODE)))
        append_row(targets, target_text(&target));
}

DFT_STATEMENT copy_statement(SCAN_AST *node) {
    std::string_view keyword = scan_kind_name(node->kind);
    if (keyword.ends_with("_NODE"))
        keyword.remove_suffix(5);
    DFT_STATEMENT row = {keep_text(keyword), nullptr, nullptr, node->line};
    for (SCAN_AST &child : scan_children(node)) {
        if (is_leaf(child)) {
            append_row(row.values, child.attribute);
        } else if (is_value_list(child.kind)) {
            for (SCAN_AST &value : scan_children(&child))
                append_row(row.values, value.kind == PIN_NODE ? target_text(&value) : value.attribute);
        } else if (is_collection(child)) {
            copy_body(&child, row.body);
        } else {
            append_row(row.body, copy_statement(&child));
        }
    }
    return row;
}

void copy_body(SCAN_AST *node, DFT_STATEMENT *&rows) {
    for (SCAN_AST &child : scan_children(node)) {
        if (is_leaf(child) || is_value_list(child.kind))
            continue;
        if (is_collection(child))
            copy_body(&child, rows);
        else
            append_row(rows, copy_statement(&child));
    }
}
