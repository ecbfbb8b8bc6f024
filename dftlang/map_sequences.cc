// Sequences, and the instructions and cores that name them.
#include "dftlang/mapping.hh"
#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"

#include <cstring>

namespace {

void check_timing(SCAN_AST &timing) {
    const char *word = value_text(SCAN_FIND_CHILD(&timing, TYPE_NODE));
    if (word != nullptr && std::strcmp(word, "LAUNCH") != 0 && std::strcmp(word, "CAPTURE") != 0)
        scan_fail("Error: the %%TYPE must be LAUNCH or CAPTURE in the set timing block in the dft file !\n");
}

/// True when the first sequence that the statement names has a timing for launch or capture.
bool has_typed_timing(SCAN_AST *statement) {
    std::vector<const char *> names = scan_names(statement);
    const SCAN_AST *sequence = names.empty() ? nullptr : SCAN_FIND_SEQUENCE(names[0]);
    for (SCAN_AST &timing : scan_children(SCAN_FIND_CHILD(sequence, SET_TIMING_LIST_NODE))) {
        if (SCAN_FIND_CHILD(&timing, TYPE_NODE) != nullptr)
            return true;
    }
    return false;
}

constexpr SCAN_KIND untimed_kinds[] = {PREAMBLE_NODE, SHIFT_NODE, HOLD_NODE};

/// The first name of the statement that no sequence has, or null.
const char *missing_sequence(SCAN_AST *statement) {
    for (const char *name : scan_names(statement)) {
        if (SCAN_FIND_SEQUENCE(name) == nullptr)
            return name;
    }
    return nullptr;
}

/// How a statement of a core's instruction names its sequences.
struct CORE_SEQUENCE {
    SCAN_KIND kind;
    const char *word;
    bool repeats; ///< further statements count too
};

constexpr CORE_SEQUENCE core_sequences[] = {
    {PREAMBLE_NODE, "preamble", false}, {EXTRA_SEQ_NODE, "extra", true},  {SHIFT_NODE, "shift", false},
    {HOLD_NODE, "hold", false},         {CAPTURE_NODE, "capture", false},
};

void check_core_instruction(SCAN_AST &block) {
    for (const CORE_SEQUENCE &row : core_sequences) {
        SCAN_AST *statement = SCAN_FIND_CHILD(&block, row.kind);
        while (statement != nullptr) {
            if (const char *name = missing_sequence(statement))
                scan_fail("ERROR: Can not find %s sequence '%s' of the core.\n", row.word, name);
            statement = row.repeats ? SCAN_FIND_AST(statement->sibling, row.kind) : nullptr;
        }
    }
}

void check_core_statement(SCAN_AST &statement, const char *core_name) {
    if (statement.kind == INSTRUCTION_NODE)
        check_core_instruction(statement);
    if (statement.kind == PREAMBLE_NODE) {
        if (const char *name = missing_sequence(&statement))
            scan_fail("ERROR: Can not find preamble sequence '%s' of the core '%s'.\n", name, core_name);
    }
    if (statement.kind == PATSET_NODE) {
        if (const char *name = missing_sequence(SCAN_FIND_CHILD(&statement, FORCE_LIST_NODE)))
            scan_fail("ERROR: Can not find sequence '%s' of the core '%s'.\n", name, core_name);
    }
}

void map_core(SCAN_AST &block) {
    const char *shown_name = value_text(SCAN_FIND_CHILD(&block, CORE_NAME_NODE));
    const char *dft_file = value_text(SCAN_FIND_CHILD(&block, DFT_FILE_NODE));
    const char *lbist_file = value_text(SCAN_FIND_CHILD(&block, LBIST_FILE_NODE));
    for (SCAN_AST &statement : scan_children(&block))
        check_core_statement(statement, shown_name == nullptr ? "" : shown_name);
    for (SCAN_AST &statement : scan_children(&block)) {
        if (statement.kind != CORE_NAME_NODE)
            continue;
        const char *name = value_text(&statement);
        if (dft_file == nullptr)
            scan_fail("ERROR: Please specify dft file of core '%s' in top module dft file.\n", name);
        append_row(DFT_OBJECT->cores, {name, dft_file, lbist_file, &block, statement.line});
    }
}

} // namespace

const SCAN_AST *SCAN_FIND_SEQUENCE(const char *name) {
    auto found = DFT_OBJECT->sequences.find(name);
    return found == DFT_OBJECT->sequences.end() ? nullptr : found->second;
}

void map_sequences(SCAN_AST *list) {
    for (SCAN_AST &block : scan_children(list)) {
        for (SCAN_AST &timing : scan_children(SCAN_FIND_CHILD(&block, SET_TIMING_LIST_NODE)))
            check_timing(timing);
        DFT_OBJECT->sequences.try_emplace(value_text(&block), &block);
    }
}

void map_instructions(SCAN_AST *list) {
    for (SCAN_AST &block : scan_children(list)) {
        for (SCAN_KIND kind : untimed_kinds) {
            if (has_typed_timing(SCAN_FIND_CHILD(&block, kind)))
                scan_fail(
                    "ERROR: LAUNCH/CAPTURE type timing block only can exist in the capture sequence!\n");
        }
    }
}

void map_cores(SCAN_AST *list) {
    for (SCAN_AST &block : scan_children(list))
        map_core(block);
}
