// The grammar table compiled: blocks, their statements, and the shape of each statement.
#pragma once

#include "dftlang/scanner.hh"
#include "dftlang/syntax_tree.hh"

#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

using TOKEN_SET = std::bitset<TOKEN_LIMIT>;

enum SHAPE_KIND : int32_t {
    SHAPE_TOKEN,    // one token, stored when it has a leaf kind
    SHAPE_BIT,      // an integer, 0 or 1
    SHAPE_DIGITS,   // an integer of any length
    SHAPE_PIN_NAME, // a name that may be split at its '.'
    SHAPE_SEQUENCE,
    SHAPE_CHOICE,
    SHAPE_OPTION,
    SHAPE_REPEAT,
    SHAPE_NODE, // a tree node around its parts
    SHAPE_BODY  // the statements of a block, in braces
};

struct SHAPE {
    SHAPE_KIND kind = SHAPE_SEQUENCE;
    int32_t token = 0;
    bool with_leaf = false;
    SCAN_KIND node = DUMMY; ///< leaf kind of a token, kind of a node
    int32_t block = -1;     ///< of a body
    std::vector<SHAPE> parts{};
    TOKEN_SET first{}; ///< tokens that it can start with
    bool may_be_empty = false;
};

struct STATEMENT {
    std::string keyword;
    SCAN_KIND kind;
    SHAPE shape;      ///< of what stands behind the keyword: a sequence
    bool warns_again; ///< of a further one in its block
    SCAN_KIND list;   ///< that collects the further ones; DUMMY: no list node
    bool with_text;
    std::string_view needed; ///< name in the warning when it is missing; empty: not needed
};

constexpr size_t most_statements = 64; ///< of one block; the width of a block's flags

/// Two statements of a block of which one must, or only one may, stand.
enum PAIR_RULE : int32_t { PAIR_NOT_BOTH, PAIR_ONE_OF };
struct BLOCK_PAIR {
    const char *block;
    PAIR_RULE rule;
    const char *keyword_a;
    const char *keyword_b;
    const char *shown_b = keyword_b; ///< name in the warning
};

struct PAIR_CHECK {
    const BLOCK_PAIR *pair;
    size_t statement_a;
    size_t statement_b;
};

struct BLOCK {
    std::string name;
    std::vector<STATEMENT> statements;
    std::unordered_map<int32_t, std::vector<size_t>>
        by_token; ///< statements by their first token, in table order
    std::vector<PAIR_CHECK> pairs;
    bool is_checked = false; ///< a statement is needed, or there is a pair
};

extern const char *const grammar_text[]; ///< closed by null
extern const BLOCK_PAIR block_pairs[];   ///< closed by a null block

/// All blocks; compiled from the table at the first call.
const std::vector<BLOCK> &grammar_blocks();
/// Place of a block in grammar_blocks(). The name must be in the table.
int32_t grammar_block(std::string_view name);
/// Token of a keyword, or -1. The table must be compiled.
int32_t keyword_lookup(std::string_view text);
