// From the tree of the .lib file to the library tables.
#include "description/save_tables.hh"

#include "support/console.hh"

#include <cstring>
#include <string>

namespace {

// The ways of a pad to hold its level, of which it has one only, as the message shows them.
struct EXCLUSIVE_FLAG {
    int32_t BUFFER_CELL::*field;
    const char *name;
};
constexpr EXCLUSIVE_FLAG exclusive_flags[] = {
    {&BUFFER_CELL::weak_0, "'WEAK_0',"},
    {&BUFFER_CELL::weak_1, "'WEAK_1',"},
    {&BUFFER_CELL::pull_0, "'PULL_0',"},
    {&BUFFER_CELL::pull_1, "'PULL_1',"},
};

/// The highest number of an extra pin: a table has a row for each number up to the highest one in use.
constexpr int32_t MAX_EXTRA = 1024;

// %EXTRA_<n> name: the children are the name and the number.
void save_extra(const AST_NODE &node, const char **&extras) {
    const AST_NODE &number = *node.first_child->next_sibling;
    int32_t n = number_value(LIB_FILE, number.line, number.text);
    if (n < 1 || n > MAX_EXTRA)
        console_fail("\"%s\", line %d: Number '%s' of %%EXTRA_ is not in 1 to %d\n", LIB_FILE, number.line,
                     number.text, MAX_EXTRA);
    while (DYNA_count(extras) < n)
        append_row(extras, static_cast<const char *>(nullptr));
    extras[n - 1] = first_text(node);
}

void check_exclusive_flags(const BUFFER_CELL &cell) {
    std::string names;
    int32_t count = 0;
    for (const EXCLUSIVE_FLAG &flag : exclusive_flags) {
        if (cell.*flag.field != 0) {
            names += flag.name;
            ++count;
        }
    }
    if (count > 1)
        console_fail("Error: %s file %s Should be mutually exclusive in %%BUFFER %s\n", LIB_FILE,
                     names.c_str(), cell.name);
}

void save_buffer_item(BUFFER_CELL &cell, const AST_NODE &item) {
    const LIB_KEYWORD &keyword = lib_keyword(item);
    if (keyword.buffer != nullptr)
        cell.*keyword.buffer = first_text(item);
    if (keyword.flag != nullptr)
        cell.*keyword.flag = 1;
}

// The cell of one name of the head. All names of a head have the same attributes.
void save_named_buffer(const char *name, BUFFER_KIND kind, const AST_NODE *items) {
    auto *cell = new_record<BUFFER_CELL>();
    cell->name = name;
    cell->kind = kind;
    if (std::strchr(name, '*') != nullptr)
        append_row(WILD_CARD_BUF_TAB, name);
    for (; items != nullptr; items = items->next_sibling)
        save_buffer_item(*cell, *items);
    // The modes of a buffer with a scan cell inside belong to the scan cell of the same name.
    if (kind == BUFFER_BS)
        cell->mode_1 = cell->mode_2 = cell->mode_3 = nullptr;
    check_exclusive_flags(*cell);
    add_record(BUFFER_HASH_TAB, cell);
}

void save_scan_item(SCAN_CELL &cell, const AST_NODE &item) {
    const LIB_KEYWORD &keyword = lib_keyword(item);
    if (item.kind == EXTRA_NODE)
        save_extra(item, cell.extras);
    if (keyword.names != nullptr)
        append_texts(item, cell.*keyword.names);
    if (keyword.scan != nullptr)
        cell.*keyword.scan = first_text(item);
}

void save_named_scan_cell(const char *name, bool is_bs_buffer, const AST_NODE *items) {
    auto *cell = new_record<SCAN_CELL>();
    cell->name = name;
    cell->oe_mode_type = -1;
    cell->is_bs_buffer = is_bs_buffer ? 1 : 0;
    cell->std_names = DYNA_init<const char *>();
    cell->order = DYNA_init<const char *>();
    cell->extras = DYNA_init<const char *>();
    for (; items != nullptr; items = items->next_sibling)
        save_scan_item(*cell, *items);
    if (DYNA_count(cell->std_names) == 0)
        append_row(cell->std_names, name);
    add_record(SCAN_CELL_HASH_TAB, cell);
}

void save_tap_item(TAP_CELL &cell, const AST_NODE &item) {
    const LIB_KEYWORD &keyword = lib_keyword(item);
    if (item.kind == EXTRA_NODE)
        save_extra(item, cell.extras);
    if (keyword.size != nullptr)
        cell.*keyword.size = number_value(LIB_FILE, item.first_child->line, first_text(item));
    if (keyword.tap != nullptr)
        cell.*keyword.tap = first_text(item);
}

void save_tap_cell(const AST_NODE &node) {
    auto *cell = new_record<TAP_CELL>();
    cell->name = first_text(node);
    cell->group_size = -1;
    cell->df_group_size = -1;
    cell->extras = DYNA_init<const char *>();
    for (const AST_NODE *item = node.first_child->next_sibling; item != nullptr; item = item->next_sibling)
        save_tap_item(*cell, *item);
    add_record(TAP_CELL_HASH_TAB, cell);
}

void save_scan_cell(const AST_NODE &node) {
    const AST_NODE &head = *node.first_child;
    const AST_NODE *items = head.next_sibling;
    if (node.kind != BS_BUFFER_NODE) {
        save_named_scan_cell(head.text, false, items);
        return;
    }
    for (const AST_NODE &name : children(head))
        save_named_scan_cell(name.text, true, items);
}

void save_buffer_cell(const AST_NODE &node) {
    // Both enumerations list the heads of buffers in one order.
    auto kind = static_cast<BUFFER_KIND>(node.kind - BUFFER_CELL_NODE);
    const AST_NODE &names = *node.first_child;
    for (const AST_NODE &name : children(names))
        save_named_buffer(name.text, kind, names.next_sibling);
}

} // namespace

void save_lib_tab() {
    for (const AST_NODE &node : children(*theAST)) {
        if (node.kind == TAP_CELL_NODE) {
            save_tap_cell(node);
            continue;
        }
        if (node.kind != SCAN_CELL_NODE)
            save_buffer_cell(node);
        if (node.kind == SCAN_CELL_NODE || node.kind == BS_BUFFER_NODE)
            save_scan_cell(node);
    }
    append_all_records(TAP_CELL_HASH_TAB, TAP_CELL_TAB);
    append_all_records(SCAN_CELL_HASH_TAB, SCAN_CELL_TAB);
    append_all_records(BUFFER_HASH_TAB, BUFFER_TAB);
}
