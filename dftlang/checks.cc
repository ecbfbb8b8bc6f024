#include "dftlang/checks.hh"

#include "dftlang/messages.hh"
#include "support/text.hh"

#include <cstring>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace {

using NAME_SET = std::unordered_set<std::string_view>;

/// Names of the blocks of a list.
NAME_SET block_names(SCAN_AST *list) {
    NAME_SET names;
    for (SCAN_AST &block : scan_children(list))
        names.insert(value_text(&block));
    return names;
}

void check_defined(SCAN_AST *leaf, const NAME_SET &names, const char *what) {
    if (leaf != nullptr && !names.contains(scan_text(leaf)))
        error_handler(in_file_name, leaf->line, MESSAGE_UNDEFINED, what, scan_text(leaf));
}

void check_instruction_names(SCAN_AST *root) {
    SCAN_AST *instructions = SCAN_FIND_CHILD(root, INSTRUCTION_LIST_NODE);
    if (instructions == nullptr)
        return;
    NAME_SET names = block_names(instructions);
    for (SCAN_AST &block : scan_children(SCAN_FIND_CHILD(root, CONNECT_SCAN_LIST_NODE))) {
        SCAN_AST *use = SCAN_FIND_CHILD(&block, SCAN_INSTRUCTION_NODE);
        check_defined(SCAN_FIND_CHILD(use, IDENT_NODE), names, "INSTRUCTION name");
    }
    for (SCAN_AST &block : scan_children(SCAN_FIND_CHILD(root, CONNECT_BIST_LIST_NODE))) {
        SCAN_AST *use = SCAN_FIND_CHILD(SCAN_FIND_CHILD(&block, BIST_INSTRUCTION_NODE), INSTRUCTION_NODE);
        check_defined(SCAN_FIND_CHILD(use, IDENT_NODE), names, "INSTRUCTION name");
    }
}

void check_sequence_names(SCAN_AST *root) {
    SCAN_AST *instructions = SCAN_FIND_CHILD(root, INSTRUCTION_LIST_NODE);
    SCAN_AST *sequences = SCAN_FIND_CHILD(root, SEQUENCE_LIST_NODE);
    if (instructions == nullptr || sequences == nullptr)
        return;
    NAME_SET names = block_names(sequences);
    for (SCAN_AST &block : scan_children(instructions)) {
        for (SCAN_AST *statement = scan_child(&block)->sibling; statement != nullptr;
             statement = statement->sibling) {
            if (statement->kind == MODE_NODE)
                continue;
            SCAN_AST *list = SCAN_FIND_CHILD(statement, IDENT_LIST_NODE);
            for (SCAN_AST &leaf : scan_children(list == nullptr ? statement : list))
                check_defined(&leaf, names, "SEQUENCE name");
        }
    }
}

/// Each pattern of the statement has a character for each of its names.
void check_atpg_pattern_length(SCAN_AST &statement) {
    size_t names = scan_names(SCAN_FIND_CHILD(&statement, IDENT_LIST_NODE)).size();
    for (SCAN_AST &pattern : scan_children(SCAN_FIND_CHILD(&statement, PATTERN_LIST_NODE))) {
        if (std::strlen(scan_text(&pattern)) != names)
            error_handler(in_file_name, pattern.line, MESSAGE_PATTERN_LENGTH, scan_text(&pattern));
    }
}

constexpr SCAN_KIND pattern_lists[] = {ILLEGAL_INPUTS_LIST_NODE, LEGAL_INPUTS_LIST_NODE, GRAY_CODE_LIST_NODE};

void check_patterns(SCAN_AST *root) {
    for (SCAN_AST &mode : scan_children(SCAN_FIND_CHILD(root, ATPG_CONSTAINTS_NODE))) {
        for (SCAN_KIND kind : pattern_lists) {
            for (SCAN_AST &statement : scan_children(SCAN_FIND_CHILD(&mode, kind)))
                check_atpg_pattern_length(statement);
        }
    }
}

} // namespace

void check_atpg_scan_opt_duplicate(SCAN_AST *first) {
    // Every later block of a mode is warned of once for each earlier one.
    std::unordered_map<std::string_view, int32_t> seen;
    for (SCAN_AST *mode = first; mode != nullptr; mode = mode->sibling) {
        const char *name = value_text(mode);
        for (int32_t earlier = seen[name]++; earlier > 0; earlier--)
            error_handler(in_file_name, mode->line, MESSAGE_REPEATED, keep_format("%%ATPG_MODE %s", name));
    }
}

void check_dft_semantic(SCAN_AST *root) {
    check_instruction_names(root);
    check_sequence_names(root);
    check_patterns(root);
}
