// From the tree of the .bsc file to the settings and the small tables. Instructions and BIST blocks have
// files of their own (save_instructions.cc, save_bist.cc), and so have the pin files (pin_lists.cc).
#include "description/save_tables.hh"

#include "support/console.hh"
#include "support/text.hh"

#include <cstring>

namespace {

struct NAMED_TEXT {
    NODE_KIND kind;
    const char **text;
};

// Statements and items whose single name goes to a global.
constexpr NAMED_TEXT settings[] = {
    {GLOBAL_TDI_NODE, &GLOBAL_TDI},
    {GLOBAL_TDO_NODE, &GLOBAL_TDO},
    {GLOBAL_TMS_NODE, &GLOBAL_TMS},
    {GLOBAL_TCK_NODE, &GLOBAL_TCK},
    {GLOBAL_TRST_NODE, &GLOBAL_TRST},
    {INPUT_BUFFER_NODE, &INPUT_BUFFER},
    {OUTPUT_BUFFER_NODE, &OUTPUT_BUFFER},
    {INOUT_BUFFER_NODE, &INOUT_BUFFER},
    {INVERTER_NODE, &INVERTER},
    {INSTRUCTION_DISABLE_NODE, &INST_DISABLE},
    {INSTRUCTION_GUARD_NODE, &INST_GUARD},
    {MODULE_NAME_NODE, &TAP_MODULE_NAME},
    {INSTANCE_NAME_NODE, &TAP_INSTANCE_NAME},
    {OUTPUT_MUX_SCAN_NODE, &OUTPUT_MUX_SCAN},
    {OUTPUT_SCAN_NODE, &OUTPUT_SCAN},
    {INPUT_MUX_SCAN_NODE, &INPUT_MUX_SCAN},
    {INPUT_SCAN_NODE, &INPUT_SCAN},
    {CONTROL_OE_SCAN_NODE, &CONTROL_OE_SCAN},
    {CONTROL_OE_LOW_SCAN_NODE, &CONTROL_OE_LOW_SCAN},
    {CONTROL_OE_HIGH_SCAN_NODE, &CONTROL_OE_HIGH_SCAN},
    {CONTROL_MUX_SCAN_NODE, &CONTROL_MUX_SCAN},
    {CONTROL_SCAN_NODE, &CONTROL_SCAN},
    {CONTROL_LOW_SCAN_NODE, &CONTROL_LOW_SCAN},
    {CONTROL_HIGH_SCAN_NODE, &CONTROL_HIGH_SCAN},
    {BIDIR_MUX_SCAN_NODE, &BIDIR_MUX_SCAN},
    {BIDIR_SCAN_NODE, &BIDIR_SCAN},
    {BIDIR_HIGH_SCAN_NODE, &BIDIR_HIGH_SCAN},
    {BIDIR_LOW_SCAN_NODE, &BIDIR_LOW_SCAN},
    {CLOCK_MUX_SCAN_NODE, &CLOCK_MUX_SCAN},
    {CLOCK_SCAN_NODE, &CLOCK_SCAN},
    {INTERNAL_SCAN_NODE, &INTERNAL_SCAN},
    {OBSERVE_ONLY_SCAN_NODE, &OBSERVE_ONLY_SCAN},
    {CONTROL_HZ_SCAN_NODE, &CONTROL_HZ_SCAN},
};

void save_setting(const AST_NODE &node) {
    for (const NAMED_TEXT &setting : settings) {
        if (setting.kind == node.kind)
            *setting.text = first_text(node);
    }
}

void save_settings(const AST_NODE &node) {
    for (const AST_NODE &item : children(node))
        save_setting(item);
}

constexpr size_t REGISTER_BITS = 32;

bool has_register_length(const AST_NODE &pattern) {
    if (std::strlen(pattern.text) == REGISTER_BITS)
        return true;
    console_printf("\"%s\", line %d: Pattern '%s' is not 32 bits\n", DFT_FILE, pattern.line, pattern.text);
    return false;
}

void save_dft_idcode_register(const AST_NODE &node) {
    if (has_register_length(*node.first_child))
        IDCODE_REG = first_text(node);
}

void save_dft_instruction_private(const AST_NODE &node) {
    append_texts(node, INST_PRIVATE);
}

struct STATEMENT {
    NODE_KIND kind;
    void (*save)(const AST_NODE &node);
};

// Statements that are more than one name. %SKIP_MODULE_NAMES and a bare list have no effect.
constexpr STATEMENT statements[] = {
    {SCAN_CELLS_NODE, save_dft_scan_cell},
    {INSTRUCTION_TABLE_NODE, save_dft_instruction_table},
    {INSTRUCTION_CAPTURE_NODE, save_dft_instruction_capture},
    {INSTRUCTION_PRIVATE_NODE, save_dft_instruction_private},
    {IDCODE_REGISTER_NODE, save_dft_idcode_register},
    {USERCODE_REGISTER_NODE, save_dft_usercode_register},
    {TAP_MODULE_NODE, save_dft_tap_cell},
    {PIN_LIST_NODE, save_pin_list},
    {PACKAGE_LIST_NODE, save_package_list},
    {CONNECT_TABLE_NODE, save_connect_table},
    {MEMORY_BIST_NODE, bl_save_mbist_table},
    {LOGIC_BIST_NODE, bl_save_lbist_table},
    {SKIP_SIGNAL_NAMES_NODE, save_skip_signal},
    {UNBOUNDED_PINS_NODE, save_unbounded_pins},
    {TRANSPARENT_BUFFER_NODE, save_trans_buffer},
};

} // namespace

void save_dft_scan_cell(const AST_NODE &node) {
    save_settings(node);
}

void save_dft_tap_cell(const AST_NODE &node) {
    save_settings(node);
}

void save_dft_usercode_register(const AST_NODE &node) {
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

void save_dft_tab() {
    BL_MBIST_TAB = nullptr;
    BL_LBIST_TAB = nullptr;
    for (const AST_NODE &node : children(*theAST)) {
        save_setting(node);
        for (const STATEMENT &statement : statements) {
            if (statement.kind == node.kind)
                statement.save(node);
        }
    }
}
