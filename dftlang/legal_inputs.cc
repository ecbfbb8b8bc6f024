// The values that ports may take together under a mode: illegal values are turned into legal ones, and rows
// that share a port are joined.
#include "dftlang/join_inputs.hh"
#include "dftlang/mapping.hh"
#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace {

/// The values of a row of illegal inputs are gone through one by one.
constexpr size_t most_illegal_ports = 20;

INPUT_ROW input_row(SCAN_AST &statement) {
    INPUT_ROW row = {{}, {}, statement.line};
    for (SCAN_AST &name : scan_children(SCAN_FIND_CHILD(&statement, IDENT_LIST_NODE)))
        row.ports.push_back(scan_text(&name));
    for (SCAN_AST &pattern : scan_children(SCAN_FIND_CHILD(&statement, PATTERN_LIST_NODE)))
        row.patterns.emplace_back(scan_text(&pattern));
    return row;
}

std::vector<INPUT_ROW> input_rows(SCAN_AST &mode, SCAN_KIND kind) {
    std::vector<INPUT_ROW> made;
    for (SCAN_AST &statement : scan_children(SCAN_FIND_CHILD(&mode, kind)))
        made.push_back(input_row(statement));
    return made;
}

void check_mapping_num_port_pat(const std::vector<INPUT_ROW> &inputs, bool illegal) {
    for (const INPUT_ROW &row : inputs) {
        for (const std::string &pattern : row.patterns) {
            if (pattern.size() != row.ports.size())
                error_handler(in_file_name, row.line, MESSAGE_PORT_COUNT, pattern.c_str());
            if (illegal && pattern.find_first_of("XSZ") != std::string::npos)
                error_handler(in_file_name, row.line, MESSAGE_ILLEGAL_PATTERN, pattern.c_str());
        }
    }
}

/// The values of `count` ports as a text: port i is '1' when bit i of `value` is set.
std::string get_new_pattern(size_t value, size_t count) {
    std::string text(count, '0');
    for (size_t i = 0; i < count; i++)
        text[i] = (value >> i & 1) != 0 ? '1' : '0';
    return text;
}

/// Appends the complement of each illegal row to the legal ones.
void transfer_illegal_to_legal(const std::vector<INPUT_ROW> &illegal, std::vector<INPUT_ROW> &legal) {
    size_t held = 0;
    for (const INPUT_ROW &row : illegal) {
        size_t values = size_t(1) << std::min(row.ports.size(), most_illegal_ports);
        held += values;
        if (row.ports.size() > most_illegal_ports || held > most_patterns)
            error_handler(in_file_name, row.line, MESSAGE_TOO_MANY_INPUTS);
        std::unordered_set<std::string_view> refused(row.patterns.begin(), row.patterns.end());
        INPUT_ROW made = {row.ports, {}, row.line};
        for (size_t value = 0; value < values; value++) {
            std::string pattern = get_new_pattern(value, row.ports.size());
            if (!refused.contains(pattern))
                made.patterns.push_back(std::move(pattern));
        }
        if (!made.patterns.empty())
            legal.push_back(std::move(made));
    }
}

} // namespace

void map_atpg_constraints(SCAN_AST *block) {
    for (SCAN_AST &node : scan_children(block)) {
        ATPG_MODE &mode = DFT_OBJECT->atpg_constraints.emplace_back();
        mode.mode = value_text(&node);
        std::vector<INPUT_ROW> illegal = input_rows(node, ILLEGAL_INPUTS_LIST_NODE);
        mode.given = input_rows(node, LEGAL_INPUTS_LIST_NODE);
        check_mapping_num_port_pat(illegal, true);
        check_mapping_num_port_pat(mode.given, false);
        transfer_illegal_to_legal(illegal, mode.given);
        mode.legal = combine_relative_legal_inputs(mode.given);
    }
}
