// From the tree of the .bsc file to the settings and the small tables. Instructions and BIST blocks have
// files of their own (save_instructions.cc, save_bist.cc), and so have the pin files (pin_lists.cc).
#include "description/save_tables.hh"

#include "support/console.hh"
#include "support/faults.hh"
#include "support/text.hh"

#include <cstring>

namespace {

constexpr size_t REGISTER_BITS = 32;

bool has_register_length(const AST_NODE &pattern) {
    if (std::strlen(pattern.text) == REGISTER_BITS)
        return true;
    console_printf("\"%s\", line %d: Pattern '%s' is not 32 bits\n", BSC_FILE, pattern.line, pattern.text);
    return false;
}

} // namespace

void save_setting(const AST_NODE &node) {
    *bsc_keyword(node).setting = first_text(node);
}

void save_settings(const AST_NODE &node) {
    for (const AST_NODE &item : children(node))
        save_setting(item);
}

void save_idcode_register(const AST_NODE &node) {
    if (has_register_length(*node.first_child))
        IDCODE_REG = first_text(node);
}

void save_usercode_register(const AST_NODE &node) {
    DYNA_free(&USERCODE_REG);
    USERCODE_REG = DYNA_init<const char *>();
    for (const AST_NODE &pattern : children(node)) {
        if (has_register_length(pattern))
            append_row(USERCODE_REG, pattern.text);
    }
}

void save_skip_signal(const AST_NODE &node) {
    for (const AST_NODE &entry : children(node)) {
        auto *skip = new_record<SKIP_SIGNAL>();
        skip->name = first_text(entry);
        if (const AST_NODE *value = entry.first_child->next_sibling; value != nullptr) {
            skip->value = value->text;
            if (std::strlen(skip->value) != 1 || std::strchr("xX10", skip->value[0]) == nullptr)
                console_printf(
                    "WARNING: '%s' is illegal value of \"%s\" pin in %%SKIP_SIGNAL_NAME, ignored\n",
                    skip->value, skip->name);
        }
        add_record(SKIP_SIGNAL_HASH_TAB, skip);
    }
    append_all_records(SKIP_SIGNAL_HASH_TAB, SKIP_SIGNAL_TAB);
}

void save_unbounded_pins(const AST_NODE &node) {
    append_texts(node, UNBOUNDED_PIN_TAB);
}

void save_trans_buffer(const AST_NODE &node) {
    for (const AST_NODE &name : children(node))
        add_record(TRANS_BUF_HASH_TAB, name.text);
    append_all_records(TRANS_BUF_HASH_TAB, TRANS_BUF_TAB);
}

void save_connect_table(const AST_NODE &node) {
    CONNECT_ENTRY **end = &CONNECT_TABLE;
    while (*end != nullptr)
        end = &(*end)->next;
    for (const AST_NODE &connect : children(node)) {
        auto *entry = new_record<CONNECT_ENTRY>();
        const AST_NODE *operand = connect.first_child;
        if (connect.kind != CONNECT_PORT_NODE) {
            entry->from_instance = operand->text;
            operand = operand->next_sibling;
        }
        entry->from_port = operand->text;
        operand = operand->next_sibling;
        if (connect.kind != CONNECT_PIN_NODE) {
            entry->to_instance = operand->text;
            operand = operand->next_sibling;
        }
        entry->to_port = operand->text;
        *end = entry;
        end = &entry->next;
    }
}

void save_bsc_tab() {
    BL_MBIST_TAB = nullptr;
    BL_LBIST_TAB = nullptr;
    each_apart(children(*theAST), [](const AST_NODE &node) {
        // A bare list of words has no keyword, and no effect.
        if (node.keyword != nullptr && bsc_keyword(node).save != nullptr)
            bsc_keyword(node).save(node);
    });
}
