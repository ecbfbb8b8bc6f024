// The fold scan tables: from their blocks, or from the scrambled section that holds them as digits.
#include "dftlang/mapping.hh"

#include "dftlang/scan_interface.hh"
#include "support/text.hh"

#include <cstdlib>
#include <string>
#include <string_view>

namespace {

NAME_PAIR name_pair(SCAN_AST &node) {
    SCAN_AST *second = scan_child(&node)->sibling;
    return {scan_text(scan_child(&node)), scan_text(second)};
}

FOLD_GROUP fold_group(SCAN_AST &node, int32_t port) {
    FOLD_GROUP group = {};
    group.name = value_text(&node);
    group.port = port;
    size_t pair = 0;
    for (SCAN_AST *value = scan_child(&node)->sibling; value != nullptr; value = value->sibling) {
        if (value->kind == PIN_NODE)
            group.pairs[pair++] = name_pair(*value);
        else
            append_row(group.members, scan_text(value));
    }
    return group;
}

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

/// Four digits are one character: the first one masks the number of the other three.
const char *decoded(std::string_view digits) {
    std::string text;
    for (; digits.size() >= 4; digits.remove_prefix(4)) {
        int mask = digits[0] - '0';
        int code = std::atoi(std::string(digits.substr(1, 3)).c_str());
        text += static_cast<char>(mask ^ code);
    }
    return keep_text(text.c_str());
}

struct TAG_RANGE {
    int32_t first;
    int32_t last;
    FOLD_PORT *DFT_CONFIGURATION::*ports;
};

constexpr TAG_RANGE tag_ranges[] = {
    {2200, 3000, &DFT_CONFIGURATION::fold_scan_in},  {3200, 4000, &DFT_CONFIGURATION::fold_scan_in},
    {4200, 5000, &DFT_CONFIGURATION::fold_scan_in},  {5200, 6000, &DFT_CONFIGURATION::fold_scan_out},
    {6200, 7000, &DFT_CONFIGURATION::fold_scan_out}, {7200, 8000, &DFT_CONFIGURATION::fold_scan_out},
};

/// The table that a tag speaks of; null for a tag of no meaning.
const TAG_RANGE *tag_range(std::string_view row) {
    int32_t tag = std::atoi(std::string(row.substr(0, 4)).c_str());
    for (const TAG_RANGE &range : tag_ranges) {
        if (tag >= range.first && tag <= range.last)
            return &range;
    }
    return nullptr;
}

FOLD_GROUP scrambled_group(std::string_view row, size_t operations, int32_t port) {
    FOLD_GROUP group = {};
    for (char c : row.substr(0, operations))
        append_row<const char *>(group.operations, c == '0' ? "pass" : "xor");
    group.name = decoded(row.substr(operations));
    group.port = port;
    return group;
}

} // namespace

void map_fold_scan(SCAN_AST *list) {
    bool is_in = list->kind == CFG_FOLD_SCAN_IN_LIST_NODE;
    FOLD_PORT *&ports = is_in ? DFT_OBJECT->fold_scan_in : DFT_OBJECT->fold_scan_out;
    for (SCAN_AST &block : scan_children(list)) {
        FOLD_PORT port = {value_text(SCAN_FIND_CHILD(&block, CFG_PORT_NAME_NODE)), nullptr};
        for (SCAN_AST &group : scan_children(&block)) {
            if (group.kind == CFG_GROUP_NODE)
                append_row(port.groups, fold_group(group, DYNA_count(ports)));
        }
        append_row(ports, port);
    }
}

void sl_decrypt() {
    DFT_CONFIGURATION &made = *DFT_OBJECT;
    if (made.fold_scan_in != nullptr || made.fold_scan_out != nullptr)
        return;
    const TAG_RANGE *open = nullptr; // the table of the port last opened
    for (std::string_view row : rows(made.ciphertext)) {
        if (!row.empty() && !is_digit(row[0])) // a sign in front of the digits
            row.remove_prefix(1);
        size_t operations = std::min(row.find_first_not_of("01"), row.size());
        if (operations == 0) {
            const TAG_RANGE *range = tag_range(row);
            if (range == nullptr)
                continue;
            open = range;
            append_row(made.*open->ports, {decoded(row.substr(std::min<size_t>(4, row.size()))), nullptr});
        } else if (open != nullptr) {
            FOLD_PORT *ports = made.*open->ports;
            int32_t port = DYNA_count(ports) - 1;
            append_row(ports[port].groups, scrambled_group(row, operations, port));
        }
    }
}
