// The memory and logic BIST blocks.
#include "description/save_tables.hh"

#include "support/text.hh"

#include <algorithm>

namespace {

constexpr TEXT_FIELD<MBIST_ENTRY> mbist_fields[] = {
    {INST_NAME_NODE, &MBIST_ENTRY::instruction},
    {CNT_FILE_NODE, &MBIST_ENTRY::cnt_file}, // a block has one such file: the first name counts
    {BL_SEL_INST_NODE, &MBIST_ENTRY::sel_instruction},
};

constexpr TEXT_FIELD<LBIST_ENTRY> lbist_fields[] = {
    {INST_NAME_NODE, &LBIST_ENTRY::instruction},
    {DFT_FILE_NODE, &LBIST_ENTRY::dft_file},
    {BL_SCAN_INST_NODE, &LBIST_ENTRY::scan_instruction},
    {BL_DEBUG_INST_NODE, &LBIST_ENTRY::debug_instruction},
    {BL_LBIST_INST_NODE, &LBIST_ENTRY::lbist_instruction},
    {INSTANCE_NAME_NODE, &LBIST_ENTRY::instance_name},
    {BL_SEL_INST_NODE, &LBIST_ENTRY::sel_instruction},
};

struct LBIST_LIST {
    NODE_KIND kind;
    const char **LBIST_ENTRY::*list;
};
constexpr LBIST_LIST lbist_lists[] = {
    {CNT_FILE_NODE, &LBIST_ENTRY::cnt_files},
    {BL_DIAG_INST_NODE, &LBIST_ENTRY::diag_instructions},
    {BL_DIAG_CNT_NODE, &LBIST_ENTRY::diag_cnt_files},
    {BL_TEST_SETING_NODE, &LBIST_ENTRY::tests},
};

void append_numbers(const AST_NODE &node, int32_t *&table) {
    for (const AST_NODE &number : children(node))
        append_row(table, number_value(DFT_FILE, number.line, number.text));
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

void save_lbist_item(LBIST_ENTRY &entry, const AST_NODE &item) {
    if (item.kind == CTRL_ORDER_NODE) {
        append_numbers(item, entry.ctrl_order);
        return;
    }
    for (const LBIST_LIST &list : lbist_lists) {
        if (list.kind == item.kind) {
            append_without_repeats(item, entry.*list.list);
            return;
        }
    }
    save_text_field(entry, item, lbist_fields);
}

} // namespace

void bl_save_mbist_table(const AST_NODE &node) {
    if (BL_MBIST_TAB == nullptr)
        BL_MBIST_TAB = DYNA_init<MBIST_ENTRY>();
    for (const AST_NODE &element : children(node)) {
        MBIST_ENTRY &entry = append_row(BL_MBIST_TAB);
        for (const AST_NODE &item : children(element)) {
            if (item.kind == CTRL_ORDER_NODE)
                append_numbers(item, entry.ctrl_order);
            else
                save_text_field(entry, item, mbist_fields);
        }
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
