// The parser walks the grammar table with one token of foresight and goes no way twice: wherever it chooses,
// the token must decide. Two ways that begin alike, or a way that may end where it may also go on, would
// silently refuse a statement of the language.
#include "dftlang/grammar.hh"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

void expect(bool holds, const std::string &place, const char *fault) {
    EXPECT_TRUE(holds) << place << ": " << fault;
}

bool all_may_be_empty(const SHAPE &shape) {
    return std::ranges::all_of(shape.parts, &SHAPE::may_be_empty);
}

void check_shape(const SHAPE &shape, const TOKEN_SET &behind, bool is_last, const std::string &place);

void check_parts(const SHAPE &shape, TOKEN_SET behind, bool is_last, const std::string &place) {
    for (size_t i = shape.parts.size(); i-- > 0;) {
        const SHAPE &part = shape.parts[i];
        check_shape(part, behind, is_last && i + 1 == shape.parts.size(), place);
        behind = part.may_be_empty ? behind | part.first : part.first;
    }
}

/// `behind`: the tokens that may follow the shape; `is_last`: it ends the statement.
void check_shape(const SHAPE &shape, const TOKEN_SET &behind, bool is_last, const std::string &place) {
    TOKEN_SET begun;
    switch (shape.kind) {
    case SHAPE_CHOICE:
        for (const SHAPE &part : shape.parts) {
            expect(!part.may_be_empty, place, "an empty way is never chosen");
            expect((begun & part.first).none(), place, "two ways begin alike");
            begun |= part.first;
            check_shape(part, behind, is_last, place);
        }
        break;
    case SHAPE_OPTION:
    case SHAPE_REPEAT:
        expect((shape.first & behind).none(), place, "what may be left out begins like what follows");
        expect(!all_may_be_empty(shape), place, "what may be left out may be empty");
        if (shape.kind == SHAPE_REPEAT)
            check_parts(shape, behind | shape.first, false, place);
        else
            check_parts(shape, behind, is_last, place);
        break;
    case SHAPE_SEQUENCE:
        check_parts(shape, behind, is_last, place);
        break;
    case SHAPE_NODE:
        check_parts(shape, behind, false, place);
        break;
    case SHAPE_BODY:
        expect(is_last, place, "something stands behind a body");
        break;
    default:
        break;
    }
}

bool same_shape(const SHAPE &a, const SHAPE &b) {
    return a.kind == b.kind && a.token == b.token && a.with_leaf == b.with_leaf && a.node == b.node &&
           a.block == b.block && std::ranges::equal(a.parts, b.parts, same_shape);
}

/// Two statements of one keyword.
void check_told_apart(const STATEMENT &a, const STATEMENT &b, const std::string &place) {
    const std::vector<SHAPE> &a_parts = a.shape.parts, &b_parts = b.shape.parts;
    size_t part = 0;
    for (; part < std::min(a_parts.size(), b_parts.size()) && same_shape(a_parts[part], b_parts[part]);
         part++)
        expect(!a_parts[part].may_be_empty, place, "forms have something in common that may be left out");
    bool differ = part < a_parts.size() && part < b_parts.size() && !a_parts[part].may_be_empty &&
                  !b_parts[part].may_be_empty && (a_parts[part].first & b_parts[part].first).none();
    expect(differ, place, "forms are not told apart by a token");
    expect(a.with_text == b.with_text, place, "forms keep the keyword in different ways");
}

} // namespace

TEST(GrammarTable, IsFreeOfConflicts) {
    size_t statements = 0;
    for (const BLOCK &block : grammar_blocks()) {
        TOKEN_SET behind;
        behind.set('}').set(TOKEN_END);
        for (const auto &[token, places] : block.by_token)
            behind.set(static_cast<size_t>(token));
        for (const STATEMENT &statement : block.statements) {
            check_shape(statement.shape, behind, true, block.name + " " + statement.keyword);
            statements++;
        }
        for (const auto &[token, places] : block.by_token) {
            for (size_t i = 0; i < places.size(); i++) {
                for (size_t later = i + 1; later < places.size(); later++)
                    check_told_apart(block.statements[places[i]], block.statements[places[later]],
                                     block.name + " " + block.statements[places[i]].keyword);
            }
        }
    }
    EXPECT_GT(statements, 300u);
}
