// Sequences, and the instructions and cores that name them.
#include "dftlang/mapping.hh"
#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"
#include "support/text.hh"

#include <cstring>

NAME_PAIR *DONT_FIX_TAB = nullptr;

namespace {

FORCE_ROW force_row(SCAN_AST &statement) {
    SCAN_AST *pattern = SCAN_FIND_CHILD(&statement, PATTERN_NODE);
    int32_t kind = statement.kind == FORCE_NODE   ? FORCE_SIGNAL
                   : statement.kind == CLOCK_NODE ? FORCE_IS_CLOCK
                                                  : FORCE_FORCED_CLOCK;
    return {kind, value_text(&statement), scan_text(pattern), statement.line};
}

void map_timing(SCAN_AST &block, SEQUENCE &sequence) {
    const char *word = value_text(SCAN_FIND_CHILD(&block, TYPE_NODE));
    if (word == nullptr)
        append_row<const SCAN_AST *>(sequence.timing, &block);
    else if (std::strcmp(word, "LAUNCH") == 0)
        append_row<const SCAN_AST *>(sequence.launch_timing, &block);
    else if (std::strcmp(word, "CAPTURE") == 0)
        append_row<const SCAN_AST *>(sequence.capture_timing, &block);
    else
        scan_fail("Error: the %%TYPE must be LAUNCH or CAPTURE in the set timing block in the dft file !\n");
}

SEQUENCE *map_sequence(SCAN_AST &block) {
    auto *made = new SEQUENCE();
    made->name = value_text(&block);
    made->name_line = scan_child(&block)->line;
    made->line = block.line;
    for (SCAN_AST &statement : scan_children(SCAN_FIND_CHILD(&block, FORCE_LIST_NODE))) {
        FORCE_ROW row = force_row(statement);
        append_row(made->forces, row);
        if (row.kind != FORCE_SIGNAL)
            append_row(made->clocks, row);
    }
    fit_rows(made->forces);
    fit_rows(made->clocks);
    SCAN_AST *cycle_length = SCAN_FIND_CHILD(&block, CYCLE_LENGTH_NODE);
    made->cycle_length = cycle_length == nullptr ? 1 : value_number(cycle_length);
    made->frame_length = value_number(SCAN_FIND_CHILD(&block, FRAME_LENGTH_NODE));
    for (SCAN_AST &timing : scan_children(SCAN_FIND_CHILD(&block, SET_TIMING_LIST_NODE)))
        map_timing(timing, *made);
    return made;
}

/// How a statement of an instruction names its sequences.
struct SEQUENCE_FIELD {
    SCAN_KIND kind;
    int32_t order_code;
    SEQUENCE *SCAN_INSTRUCTION::*one;   ///< the first sequence of the first such statement
    SEQUENCE **SCAN_INSTRUCTION::*list; ///< all of them
    bool repeats;                       ///< further statements join the list
    const char *core_word;              ///< in the message of a core; null: cores have no such statement
};

constexpr SEQUENCE_FIELD sequence_fields[] = {
    {PREAMBLE_NODE, 2, &SCAN_INSTRUCTION::first_preamble, &SCAN_INSTRUCTION::preamble, false, "preamble"},
    {EXTRA_SEQ_NODE, 10, nullptr, &SCAN_INSTRUCTION::extra_sequences, true, "extra"},
    {SHIFT_NODE, 3, &SCAN_INSTRUCTION::shift, nullptr, false, "shift"},
    {PROPAGATE_NODE, 4, &SCAN_INSTRUCTION::propagate, nullptr, false, nullptr},
    {HOLD_NODE, 5, &SCAN_INSTRUCTION::hold, nullptr, false, "hold"},
    {RUNBIST_NODE, 6, &SCAN_INSTRUCTION::runbist, nullptr, false, nullptr},
    {CAPTURE_NODE, 7, &SCAN_INSTRUCTION::capture, nullptr, false, "capture"},
    {POSTAMBLE_NODE, 8, &SCAN_INSTRUCTION::first_postamble, &SCAN_INSTRUCTION::postamble, false, nullptr},
    {RAM_WRITE_NODE, 9, &SCAN_INSTRUCTION::ram_write, nullptr, false, nullptr},
};

/// Takes the sequences that one statement names. With `of_core` each must be there.
void take_sequences(const SEQUENCE_FIELD &field, SCAN_AST *statement, SCAN_INSTRUCTION &row, bool of_core) {
    const char **names = nullptr;
    append_names(statement, names);
    bool is_first = true;
    for (const char *name : rows(names)) {
        SEQUENCE *sequence = SCAN_FIND_SEQUENCE(name);
        if (sequence == nullptr && of_core)
            scan_fail("ERROR: Can not find %s sequence '%s' of the core.\n", field.core_word, name);
        if (is_first && field.one != nullptr)
            row.*field.one = sequence;
        if (sequence != nullptr && field.list != nullptr)
            append_row(row.*field.list, sequence);
        is_first = false;
    }
    DYNA_free(&names);
}

SCAN_INSTRUCTION map_instruction(SCAN_AST &block, bool of_core) {
    SCAN_INSTRUCTION row = {};
    row.name = value_text(&block);
    row.mode = value_text(SCAN_FIND_CHILD(&block, MODE_NODE));
    row.name_line = scan_child(&block)->line;
    row.line = block.line;
    for (const SEQUENCE_FIELD &field : sequence_fields) {
        SCAN_AST *statement = SCAN_FIND_CHILD(&block, field.kind);
        while (statement != nullptr) {
            take_sequences(field, statement, row, of_core);
            statement = field.repeats ? SCAN_FIND_AST(statement->sibling, field.kind) : nullptr;
        }
        if (field.list != nullptr)
            fit_rows(row.*field.list);
    }
    return row;
}

bool has_typed_timing(const SEQUENCE *sequence) {
    return sequence != nullptr && (sequence->launch_timing != nullptr || sequence->capture_timing != nullptr);
}

void note_order(SCAN_AST &block, int32_t instruction) {
    for (SCAN_AST *statement = scan_child(&block)->sibling; statement != nullptr;
         statement = statement->sibling) {
        int32_t code = statement->kind == MODE_NODE ? 1 : 0;
        for (const SEQUENCE_FIELD &field : sequence_fields) {
            if (field.kind == statement->kind)
                code = field.order_code;
        }
        append_row(DFT_OBJECT->instruction_order, {instruction, code});
    }
}

/// The statements of a core that are lists of targets or names.
struct CORE_TARGETS {
    SCAN_KIND kind;
    const char **CORE_ENTRY::*targets;
};

constexpr CORE_TARGETS core_targets[] = {
    {CLOCK_PORTS_NODE, &CORE_ENTRY::clock_ports},       {SET_RESET_PORTS_NODE, &CORE_ENTRY::set_reset_ports},
    {BIDI_PORTS_NODE, &CORE_ENTRY::bidi_ports},         {SCAN_IN_PORTS_NODE, &CORE_ENTRY::scan_in_ports},
    {SCAN_OUT_PORTS_NODE, &CORE_ENTRY::scan_out_ports},
};

void map_core_preamble(SCAN_AST &statement, CORE_ENTRY &core, const char *core_name) {
    const char **names = nullptr;
    append_names(&statement, names);
    for (const char *name : rows(names)) {
        SEQUENCE *sequence = SCAN_FIND_SEQUENCE(name);
        if (sequence == nullptr)
            scan_fail("ERROR: Can not find preamble sequence '%s' of the core '%s'.\n", name, core_name);
        append_row(core.preamble, sequence);
    }
    DYNA_free(&names);
}

void map_patset(SCAN_AST &block, CORE_ENTRY &core, const char *core_name) {
    const char **names = nullptr;
    append_names(SCAN_FIND_CHILD(&block, FORCE_LIST_NODE), names);
    for (const char *name : rows(names)) {
        if (SCAN_FIND_SEQUENCE(name) == nullptr)
            scan_fail("ERROR: Can not find sequence '%s' of the core '%s'.\n", name, core_name);
    }
    DYNA_free(&names);
    append_row<const SCAN_AST *>(core.patsets, &block);
}

void map_core_statement(SCAN_AST &statement, CORE_ENTRY &core, const char *core_name) {
    for (const CORE_TARGETS &row : core_targets) {
        if (row.kind == statement.kind)
            append_targets(&statement, core.*row.targets);
    }
    switch (statement.kind) {
    case TIE0_NODE:
        append_names(&statement, core.tie0);
        break;
    case TIE1_NODE:
        append_names(&statement, core.tie1);
        break;
    case PREAMBLE_NODE:
        map_core_preamble(statement, core, core_name);
        break;
    case PATSET_NODE:
        map_patset(statement, core, core_name);
        break;
    case INSTRUCTION_NODE:
        append_row(core.instructions, map_instruction(statement, true));
        break;
    case DONT_FIX_NODE:
        for (SCAN_AST &pair : scan_children(&statement)) {
            NAME_PAIR row = {scan_text(scan_child(&pair)), scan_text(scan_child(&pair)->sibling)};
            append_row(core.dont_fix, row);
            append_row(DONT_FIX_TAB, row);
        }
        break;
    default:
        break;
    }
}

void map_core(SCAN_AST &block) {
    CORE_ENTRY core = {};
    const char *shown_name = value_text(SCAN_FIND_CHILD(&block, CORE_NAME_NODE));
    core.dft_file = value_text(SCAN_FIND_CHILD(&block, DFT_FILE_NODE));
    core.lbist_file = value_text(SCAN_FIND_CHILD(&block, LBIST_FILE_NODE));
    for (SCAN_AST &statement : scan_children(&block))
        map_core_statement(statement, core, shown_name == nullptr ? "" : shown_name);
    for (SCAN_AST &statement : scan_children(&block)) {
        if (statement.kind != CORE_NAME_NODE)
            continue;
        core.name = value_text(&statement);
        core.line = statement.line;
        if (core.dft_file == nullptr)
            scan_fail("ERROR: Please specify dft file of core '%s' in top module dft file.\n", core.name);
        append_row(DFT_OBJECT->cores, core);
    }
}

} // namespace

SEQUENCE *SCAN_FIND_SEQUENCE(const char *name) {
    auto found = DFT_OBJECT->index->sequences.find(name);
    return found == DFT_OBJECT->index->sequences.end() ? nullptr : found->second;
}

SCAN_INSTRUCTION *SCAN_FIND_INSTRUCTION(const char *name) {
    auto found = DFT_OBJECT->index->instructions.find(name);
    return found == DFT_OBJECT->index->instructions.end() ? nullptr
                                                          : &DFT_OBJECT->instructions[found->second];
}

void map_sequences(SCAN_AST *list) {
    for (SCAN_AST &block : scan_children(list)) {
        SEQUENCE *sequence = map_sequence(block);
        append_row(DFT_OBJECT->sequences, sequence);
        DFT_OBJECT->index->sequences.try_emplace(sequence->name, sequence);
    }
}

void map_instructions(SCAN_AST *list) {
    for (SCAN_AST &block : scan_children(list)) {
        int32_t number = DYNA_count(DFT_OBJECT->instructions);
        const SCAN_INSTRUCTION &row = append_row(DFT_OBJECT->instructions, map_instruction(block, false));
        DFT_OBJECT->index->instructions.try_emplace(row.name, number);
        note_order(block, number);
        if (has_typed_timing(row.first_preamble) || has_typed_timing(row.shift) || has_typed_timing(row.hold))
            scan_fail("ERROR: LAUNCH/CAPTURE type timing block only can exist in the capture sequence!\n");
    }
}

void map_cores(SCAN_AST *list) {
    for (SCAN_AST &block : scan_children(list))
        map_core(block);
}
