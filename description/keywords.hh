// The keywords of the three languages, one row each: the scanner takes the token from it, the grammar where
// it may stand, and the save step what it fills.
#pragma once

#include "description/syntax_tree.hh"
#include "description/tables.hh"

#include <string_view>
#include <unordered_map>

struct KEYWORD {
    const char *name;
    int32_t token;              ///< keywords that stand in the same places share one
    NODE_KIND kind = ITEM_NODE; ///< the node that it heads
};

/// The blocks of the .lib file, a bit for each kind of head.
enum LIB_BLOCK : int32_t {
    TAP_BLOCK = 1 << TAP_CELL_NODE,
    SCAN_BLOCK = 1 << SCAN_CELL_NODE,
    BUFFER_BLOCK = 1 << BUFFER_CELL_NODE, // %BUFFER, %INV_BUFFER
    DIFF_BLOCK = 1 << DIFF_V_BUFFER_CELL_NODE | 1 << DIFF_I_BUFFER_CELL_NODE,
    BS_BLOCK = 1 << BS_BUFFER_NODE, // its items fill a buffer and a scan cell
    PAD_BLOCKS = BUFFER_BLOCK | DIFF_BLOCK | BS_BLOCK
};

/// A keyword of the .lib language, with the fields of the three records that it fills; null for none.
struct LIB_KEYWORD : KEYWORD {
    int32_t blocks = 0; ///< LIB_BLOCK: where it may stand as an item
    const char *TAP_CELL::*tap = nullptr;
    const char *SCAN_CELL::*scan = nullptr;
    const char *BUFFER_CELL::*buffer = nullptr;
    int32_t BUFFER_CELL::*flag = nullptr;     ///< set to 1
    int32_t TAP_CELL::*size = nullptr;        ///< takes the number
    const char **SCAN_CELL::*names = nullptr; ///< takes every name of a list
};

/// A keyword of the .bsc language. A null member is one that it has no use for.
struct BSC_KEYWORD : KEYWORD {
    void (*save)(const AST_NODE &node) = nullptr; ///< saves a statement, or an item of a block of settings
    const char **setting = nullptr;               ///< the global that takes its name
    GATE_KIND gate = GATE_NONE;
    // Items of the BIST blocks.
    const char *LBIST_ENTRY::*lbist = nullptr;
    const char **LBIST_ENTRY::*lbist_names = nullptr; ///< takes every name of a list
    const char *MBIST_ENTRY::*mbist = nullptr;        ///< takes the first name
};

/// The row of that keyword, compared as a whole and with regard to case; null for any other text.
const KEYWORD *lib_keyword_lookup(const char *text);
const KEYWORD *bsc_keyword_lookup(const char *text);
const KEYWORD *pin_keyword_lookup(const char *text);

/// The row of the keyword that heads a node of the .lib or .bsc file.
inline const LIB_KEYWORD &lib_keyword(const AST_NODE &node) {
    return static_cast<const LIB_KEYWORD &>(*node.keyword);
}
inline const BSC_KEYWORD &bsc_keyword(const AST_NODE &node) {
    return static_cast<const BSC_KEYWORD &>(*node.keyword);
}

using KEYWORD_HASH = std::unordered_map<std::string_view, const KEYWORD *>;

/// The rows of a table by name.
template <class ROWS> KEYWORD_HASH load_keywords(const ROWS &rows) {
    KEYWORD_HASH hash;
    for (const KEYWORD &keyword : rows)
        hash.emplace(keyword.name, &keyword);
    return hash;
}

inline const KEYWORD *find_keyword(const KEYWORD_HASH &hash, const char *text) {
    auto found = hash.find(text);
    return found != hash.end() ? found->second : nullptr;
}
