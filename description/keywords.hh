// Loading of a language's keyword table into its hash.
#pragma once

#include "description/syntax_tree.hh"

#include <span>

/// Loads the rows into an empty hash; leaves a loaded one alone.
inline void load_keywords(BUCKET_TAB<KEYWORD> &table, std::span<KEYWORD> keywords) {
    if (table != nullptr)
        return;
    for (KEYWORD &keyword : keywords)
        add_record(table, &keyword);
}

/// The token of that keyword, or -1.
inline int32_t keyword_token(BUCKET_TAB<KEYWORD> table, const char *text) {
    const KEYWORD *keyword = find_record(table, text);
    return keyword != nullptr ? keyword->token : -1;
}
