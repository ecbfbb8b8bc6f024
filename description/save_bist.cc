// The memory and logic BIST blocks.
#include "description/save_tables.hh"

#include "support/text.hh"

#include <algorithm>

namespace {

void append_numbers(const AST_NODE &node, int32_t *&table) {
    for (const AST_NODE &number : children(node))
        append_row(table, number_value(BSC_FILE, number.line, number.text));
}

// The first spelling of a name stays.
void append_without_repeats(const AST_NODE &node, const char **&table) {
    for (const AST_NODE &name : children(node)) {
        auto names = rows(table);
        bool known = std::any_of(names.begin(), names.end(),
                                 [&](const char *earlier) { return same_text_no_case(earlier, name.text); });
        if (!known)
            append_row(table, name.text);
    }
}

// The name of the instruction heads an element; each other item has a keyword.
void save_mbist_item(MBIST_ENTRY &entry, const AST_NODE &item) {
    if (item.kind == INST_NAME_NODE)
        entry.instruction = first_text(item);
    else if (item.kind == CTRL_ORDER_NODE)
        append_numbers(item, entry.ctrl_order);
    else
        entry.*bsc_keyword(item).mbist = first_text(item);
}

void save_lbist_item(LBIST_ENTRY &entry, const AST_NODE &item) {
    if (item.kind == INST_NAME_NODE)
        entry.instruction = first_text(item);
    else if (item.kind == CTRL_ORDER_NODE)
        append_numbers(item, entry.ctrl_order);
    else if (const BSC_KEYWORD &keyword = bsc_keyword(item); keyword.lbist_names != nullptr)
        append_without_repeats(item, entry.*keyword.lbist_names);
    else
        entry.*keyword.lbist = first_text(item);
}

} // namespace

void bl_save_mbist_table(const AST_NODE &node) {
    if (BL_MBIST_TAB == nullptr)
        BL_MBIST_TAB = DYNA_init<MBIST_ENTRY>();
    for (const AST_NODE &element : children(node)) {
        MBIST_ENTRY &entry = append_row(BL_MBIST_TAB);
        for (const AST_NODE &item : children(element))
            save_mbist_item(entry, item);
    }
}

void bl_save_lbist_table(const AST_NODE &node) {
    if (BL_LBIST_TAB == nullptr)
        BL_LBIST_TAB = DYNA_init<LBIST_ENTRY>();
    // Items outside any %INSTRUCTION share one row.
    if (node.first_child->kind != LOGIC_BIST_ELEMENT_NODE) {
        LBIST_ENTRY &entry = append_row(BL_LBIST_TAB);
        for (const AST_NODE &item : children(node))
            save_lbist_item(entry, item);
        return;
    }
    for (const AST_NODE &element : children(node)) {
        LBIST_ENTRY &entry = append_row(BL_LBIST_TAB);
        for (const AST_NODE &item : children(element))
            save_lbist_item(entry, item);
    }
}
