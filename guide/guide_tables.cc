#include "guide/guide_tables.hh"

#include "support/text.hh"

#include <cstring>

int32_t G_INST_LEN = 0;

void initialize() {
    if (DYNA_count(TAP_CELL_TAB) == 0)
        append_row(TAP_CELL_TAB, new_record<TAP_CELL>());
    if (DYNA_count(SCAN_CELL_TAB) == 0)
        append_row(SCAN_CELL_TAB, new_record<SCAN_CELL>());
    for (const INSTRUCTION &instruction : rows(INSTRUCTIONS)) {
        if (DYNA_count(instruction.patterns) == 0) // a block without %BINARY_CODE tells nothing
            continue;
        G_INST_LEN = static_cast<int32_t>(std::strlen(instruction.patterns[0]));
        break;
    }
    append_blank_pad();
}

int32_t check_inst_name(const char *name) {
    for (int32_t row = 0; row < DYNA_count(INSTRUCTIONS); ++row)
        if (same_text_no_case(INSTRUCTIONS[row].name, name))
            return row;
    INSTRUCTION added{};
    added.name = keep_text(name);
    append_row(INSTRUCTIONS, added);
    return DYNA_count(INSTRUCTIONS) - 1;
}

void delete_instruction(int32_t row) {
    free_instruction(INSTRUCTIONS[row]);
    DYNA_delete(&INSTRUCTIONS, row);
}

bool is_blank_pad(const BUFFER_CELL *pad) {
    return pad->name == nullptr && same_text(pad->function, " ");
}

void append_blank_pad() {
    BUFFER_CELL *blank = new_record<BUFFER_CELL>();
    blank->function = " ";
    append_row(BUFFER_TAB, blank);
}
