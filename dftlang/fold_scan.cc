// The scrambled section, which holds fold scan blocks as digits.
#include "dftlang/mapping.hh"

#include "dftlang/scan_interface.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

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
    SCAN_KIND block;
};

constexpr TAG_RANGE tag_ranges[] = {
    {2200, 3000, CFG_FOLD_SCAN_IN_NODE},  {3200, 4000, CFG_FOLD_SCAN_IN_NODE},
    {4200, 5000, CFG_FOLD_SCAN_IN_NODE},  {5200, 6000, CFG_FOLD_SCAN_OUT_NODE},
    {6200, 7000, CFG_FOLD_SCAN_OUT_NODE}, {7200, 8000, CFG_FOLD_SCAN_OUT_NODE},
};

/// The block that a tag opens; DUMMY for a tag of no meaning.
SCAN_KIND opened_block(std::string_view row) {
    int32_t tag = std::atoi(std::string(row.substr(0, 4)).c_str());
    for (const TAG_RANGE &range : tag_ranges) {
        if (tag >= range.first && tag <= range.last)
            return range.block;
    }
    return DUMMY;
}

void append_leaf(OPEN_NODE &open, const char *text) {
    SCAN_APPEND_CHILD(open, SCAN_MAKE_LEAF(IDENT_NODE, open.node->line, text));
}

/// A group with its name, then "pass" or "xor" for each operation.
void append_group(OPEN_NODE &port, std::string_view row, size_t operations) {
    OPEN_NODE group = SCAN_OPEN_AST(CFG_GROUP_NODE, port.node->line);
    append_leaf(group, decoded(row.substr(operations)));
    for (char c : row.substr(0, operations))
        append_leaf(group, c == '0' ? "pass" : "xor");
    SCAN_APPEND_CHILD(port, group.node);
}

OPEN_NODE open_port(OPEN_NODE &list, SCAN_KIND kind, std::string_view digits) {
    OPEN_NODE port = SCAN_OPEN_AST(kind, list.node->line);
    OPEN_NODE name = SCAN_OPEN_AST(CFG_PORT_NAME_NODE, list.node->line);
    append_leaf(name, decoded(digits));
    SCAN_APPEND_CHILD(port, name.node);
    SCAN_APPEND_CHILD(list, port.node);
    return port;
}

} // namespace

void sl_decrypt() {
    SCAN_AST *root = DFT_OBJECT->file;
    SCAN_AST *section = SCAN_FIND_CHILD(root, CIPHERTEXT_NODE);
    if (section == nullptr || SCAN_FIND_CHILD(root, CFG_FOLD_SCAN_IN_LIST_NODE) != nullptr ||
        SCAN_FIND_CHILD(root, CFG_FOLD_SCAN_OUT_LIST_NODE) != nullptr)
        return;
    OPEN_NODE in = SCAN_OPEN_AST(CFG_FOLD_SCAN_IN_LIST_NODE, section->line);
    OPEN_NODE out = SCAN_OPEN_AST(CFG_FOLD_SCAN_OUT_LIST_NODE, section->line);
    OPEN_NODE port = {nullptr, nullptr}; // the one last opened
    for (std::string_view row : scan_names(section)) {
        if (!is_digit(row[0])) // a sign in front of the digits
            row.remove_prefix(1);
        size_t operations = std::min(row.find_first_not_of("01"), row.size());
        SCAN_KIND opened = operations == 0 ? opened_block(row) : DUMMY;
        if (opened != DUMMY)
            port = open_port(opened == CFG_FOLD_SCAN_IN_NODE ? in : out, opened,
                             row.substr(std::min<size_t>(4, row.size())));
        else if (operations > 0 && port.node != nullptr)
            append_group(port, row, operations);
    }
    OPEN_NODE file = SCAN_REOPEN_AST(root);
    for (OPEN_NODE *list : {&in, &out}) {
        if (list->node->child != nullptr)
            SCAN_APPEND_CHILD(file, list->node);
    }
}
