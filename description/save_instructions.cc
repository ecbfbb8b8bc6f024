// The instruction table and the capture patterns.
#include "description/save_tables.hh"

#include "support/console.hh"

#include <cstring>

namespace {

// An enable drives a signal of the chip: it has a level for each bit, and "don't care" is none. A text that
// is no pattern has been told by the parser and stays; who builds with it may refuse it.
const char *enable_value(const AST_NODE &pattern, const char *signal) {
    bool is_pattern = pattern.text[std::strspn(pattern.text, "01Xx")] == '\0';
    if (is_pattern && std::strpbrk(pattern.text, "Xx") != nullptr)
        console_fail("\"%s\", line %d: Enable pattern '%s' of '%s' may hold 0 and 1 only\n", BSC_FILE,
                     pattern.line, pattern.text, signal);
    return pattern.text;
}

// One row of the four parallel tables. The first child is the signal; a pattern or a gate may follow.
void save_enable(INSTRUCTION &instruction, const AST_NODE &node) {
    const char *signal = first_text(node);
    const char *value = node.kind == EN_H_NODE ? "1" : node.kind == EN_L_NODE ? "0" : nullptr;
    const char *gate_signal = nullptr;
    int32_t gate_kind = GATE_NONE;
    if (const AST_NODE *second = node.first_child->next_sibling; second != nullptr) {
        if (node.kind == ENABLE_NODE) {
            value = enable_value(*second, signal);
        } else {
            gate_signal = first_text(*second);
            gate_kind = bsc_keyword(*second).gate;
        }
    }
    append_row(instruction.enable_pins, signal);
    append_row(instruction.enable_values, value);
    append_row(instruction.gate_signals, gate_signal);
    append_row(instruction.gate_kinds, gate_kind);
}

void save_instruction(const AST_NODE &node) {
    INSTRUCTION instruction{};
    for (const AST_NODE &item : children(node)) {
        switch (item.kind) {
        case INST_NAME_NODE:
            instruction.name = first_text(item);
            break;
        case INST_LIST_NODE:
            DYNA_free(&instruction.patterns);
            instruction.patterns = DYNA_init<const char *>();
            append_patterns(item, instruction.patterns);
            break;
        case ACCESS_NODE:
            instruction.register_name = first_text(item);
            break;
        default:
            save_enable(instruction, item);
        }
    }
    if (instruction.register_name == nullptr)
        instruction.register_name = "bypass";
    append_row(INSTRUCTIONS, instruction);
}

} // namespace

int32_t check_pattern_list(const AST_NODE &pattern, const char **table, const OPCODE_SET &earlier) {
    // The patterns of a table have one length.
    if (DYNA_count(table) > 0 && std::strlen(table[0]) != std::strlen(pattern.text)) {
        error_printf("\"%s\", line %d: Size of '%s' and '%s' are not equivalence\n", BSC_FILE, pattern.line,
                     pattern.text, table[0]);
        return 0;
    }
    if (earlier.first_that_meets(pattern.text) >= 0) {
        error_printf("\"%s\", line %d: Pattern '%s' has been appeared previous\n", BSC_FILE, pattern.line,
                     pattern.text);
        return 0;
    }
    return 1;
}

void append_patterns(const AST_NODE &node, const char **&table) {
    OPCODE_SET earlier;
    for (const char *pattern : rows(table))
        earlier.add(pattern);
    for (const AST_NODE &pattern : children(node)) {
        if (check_pattern_list(pattern, table, earlier) == 0)
            continue;
        append_row(table, pattern.text);
        if (pattern.next_sibling != nullptr)
            earlier.add(pattern.text);
    }
}

void save_instruction_table(const AST_NODE &node) {
    for (const AST_NODE &instruction : children(node))
        save_instruction(instruction);
}

void save_instruction_capture(const AST_NODE &node) {
    DYNA_free(&INST_CAPTURE);
    INST_CAPTURE = DYNA_init<const char *>();
    append_patterns(node, INST_CAPTURE);
}

void save_instruction_private(const AST_NODE &node) {
    append_texts(node, INST_PRIVATE);
}
