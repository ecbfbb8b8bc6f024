// Walks the grammar table. Bodies of blocks are always last in a statement, so that open blocks are a stack
// of frames and nesting costs no stack of the program.
#include "dftlang/parser.hh"

#include "dftlang/checks.hh"
#include "dftlang/grammar.hh"
#include "dftlang/messages.hh"
#include "support/text.hh"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>

SCAN_AST *scan_root[SCAN_FILE_KINDS];
int32_t sl_lockup_latch_flag = 0;
int32_t parse_path_fileG = 0;

namespace {

struct FILE_ROW {
    const char *block;
    const char *name; ///< in the message for a file of another kind
};

constexpr FILE_ROW file_rows[SCAN_FILE_KINDS] = {
    {"DFT", "dft"},
    {"MAP", "map"},
    {"PATH_FILE", "path"},
    {"PSO", "instance"},
    {"LOCKUP_FILE", "lockup latch"},
};

/// An open block, or the file itself.
struct FRAME {
    const BLOCK *block;
    OPEN_NODE node;
    std::bitset<most_statements> stands; ///< statements met, by their place in the block
    std::vector<OPEN_NODE> lists;        ///< list nodes made so far, one per kind
    const STATEMENT *opened_by;          ///< null for the file
    size_t opened_at;                    ///< its place in the block around
};

std::vector<FRAME> frames;
int32_t token;
int32_t token_line;    ///< line of `token`
int32_t previous_line; ///< line of the token before it, the last one of a statement that has been read
int32_t body_block;    ///< block of the body that the statement has opened, or -1

void next() {
    previous_line = token_line;
    token = scan_yylex();
    token_line = scan_yylineno;
}

[[noreturn]] void scan_yyerror() {
    error_handler(in_file_name, scan_yylineno, MESSAGE_SYNTAX, scan_yylval.shown);
    tree_error();
}

[[noreturn]] void out_of_range() {
    error_handler(in_file_name, scan_yylineno, MESSAGE_NUMBER_RANGE, scan_yylval.text);
    tree_error();
}

bool fits_integer(const char *text) {
    errno = 0;
    long long value = std::strtoll(text, nullptr, 10);
    return errno == 0 && value >= INT32_MIN && value <= INT32_MAX;
}

void check_number(const SHAPE &shape) {
    if (shape.kind == SHAPE_BIT) {
        if (!fits_integer(scan_yylval.text) || std::strtol(scan_yylval.text, nullptr, 10) < 0 ||
            std::strtol(scan_yylval.text, nullptr, 10) > 1)
            scan_yyerror();
        return;
    }
    if (shape.kind != SHAPE_TOKEN)
        return;
    if (token == TOKEN_INTEGER && !fits_integer(scan_yylval.text))
        out_of_range();
    if ((token == TOKEN_REAL || token == TOKEN_PERCENT) &&
        !std::isfinite(std::strtod(scan_yylval.text, nullptr)))
        out_of_range();
}

/// Splits <instance>.<pin>. The instance ends in _<number>, which ties it to one of the BIST controllers.
void append_pin_name(OPEN_NODE &node, const char *text) {
    const char *dot = std::strchr(text, '.');
    if (dot == nullptr) {
        SCAN_APPEND_CHILD(node, SCAN_MAKE_LEAF(IDENT_NODE, scan_yylineno, text));
        return;
    }
    const char *instance = keep_text(std::string_view(text, static_cast<size_t>(dot - text)));
    const char *bar = std::strchr(instance, '_');
    bool numbered =
        bar != nullptr && (std::strcmp(bar + 1, "0") == 0 || std::strtol(bar + 1, nullptr, 10) != 0);
    if (!numbered) {
        std::string keyword = scan_kind_name(node.node->kind);
        keyword.resize(keyword.size() - std::strlen("_NODE"));
        scan_error_fail("ERROR : %s pin format error !\n", keyword.c_str());
    }
    SCAN_APPEND_CHILD(node, SCAN_MAKE_LEAF(IDENT_NODE, scan_yylineno, instance));
    SCAN_APPEND_CHILD(node, SCAN_MAKE_LEAF(IDENT_NODE, scan_yylineno, keep_text(dot + 1)));
}

void match_token(const SHAPE &shape, OPEN_NODE &node) {
    if (token != shape.token)
        scan_yyerror();
    check_number(shape);
    if (shape.kind == SHAPE_PIN_NAME)
        append_pin_name(node, scan_yylval.text);
    else if (shape.with_leaf)
        SCAN_APPEND_CHILD(node, SCAN_MAKE_LEAF(shape.node, scan_yylineno, scan_yylval.text));
    next();
}

bool starts_here(const SHAPE &shape) {
    return shape.first.test(static_cast<size_t>(token));
}

void match(const SHAPE &shape, OPEN_NODE &node);

void match_parts(const SHAPE &shape, OPEN_NODE &node) {
    for (const SHAPE &part : shape.parts)
        match(part, node);
}

void match_choice(const SHAPE &shape, OPEN_NODE &node) {
    for (const SHAPE &part : shape.parts) {
        if (starts_here(part)) {
            match(part, node);
            return;
        }
    }
    if (!shape.may_be_empty)
        scan_yyerror();
}

void match(const SHAPE &shape, OPEN_NODE &node) {
    switch (shape.kind) {
    case SHAPE_SEQUENCE:
        match_parts(shape, node);
        break;
    case SHAPE_CHOICE:
        match_choice(shape, node);
        break;
    case SHAPE_OPTION:
        if (starts_here(shape))
            match_parts(shape, node);
        break;
    case SHAPE_REPEAT:
        while (starts_here(shape))
            match_parts(shape, node);
        break;
    case SHAPE_NODE: {
        OPEN_NODE made = SCAN_OPEN_AST(shape.node, scan_yylineno);
        match_parts(shape, made);
        SCAN_APPEND_CHILD(node, made.node);
        break;
    }
    case SHAPE_BODY:
        if (token != '{')
            scan_yyerror();
        body_block = shape.block; // the caller takes the next token when the block is open
        break;
    default:
        match_token(shape, node);
        break;
    }
}

/// The list node of a kind in the frame, made at its first use.
OPEN_NODE &list_node(FRAME &frame, SCAN_KIND kind) {
    for (OPEN_NODE &list : frame.lists) {
        if (list.node->kind == kind)
            return list;
    }
    OPEN_NODE list = SCAN_OPEN_AST(kind, scan_yylineno);
    SCAN_APPEND_CHILD(frame.node, list.node);
    return frame.lists.emplace_back(list);
}

/// Name of a kind in the repetition warning.
const char *shown_kind(SCAN_KIND kind) {
    std::string_view name = scan_kind_name(kind);
    if (name.ends_with("_NODE"))
        name.remove_suffix(5);
    return keep_text(name);
}

/// A statement of the frame is complete; `line` is that of its last token.
void finish_statement(FRAME &frame, size_t place, SCAN_AST *node, int32_t line) {
    const STATEMENT &statement = frame.block->statements[place];
    if (statement.repetition == REPEATS_WITH_WARNING && frame.stands.test(place))
        error_handler(in_file_name, line, MESSAGE_REPEATED, shown_kind(statement.kind));
    frame.stands.set(place);
    SCAN_APPEND_CHILD(statement.list == DUMMY ? frame.node : list_node(frame, statement.list), node);
}

/// What a block must hold.
void check_missing(const FRAME &frame, int32_t line) {
    const BLOCK &block = *frame.block;
    for (size_t i = 0; i < block.statements.size(); i++) {
        if (!block.statements[i].needed.empty() && !frame.stands.test(i))
            error_handler(in_file_name, line, MESSAGE_MISSING,
                          std::string(block.statements[i].needed).c_str());
    }
    for (const PAIR_CHECK &check : block.pairs) {
        bool a = frame.stands.test(check.statement_a);
        bool b = frame.stands.test(check.statement_b);
        const char *shown_a = check.pair->shown_a == nullptr ? check.pair->keyword_a : check.pair->shown_a;
        const char *shown_b = check.pair->shown_b == nullptr ? check.pair->keyword_b : check.pair->shown_b;
        if (check.pair->rule == PAIR_ONE_OF && !a && !b)
            error_handler(in_file_name, line, MESSAGE_NEITHER, shown_a, shown_b);
        if (check.pair->rule == PAIR_NOT_BOTH && a && b)
            error_handler(in_file_name, line, MESSAGE_BOTH, shown_a, shown_b);
    }
}

void close_block() {
    int32_t line = scan_yylineno;
    FRAME closed = std::move(frames.back());
    frames.pop_back();
    if (closed.node.node->kind == ATPG_CONSTAINTS_NODE)
        check_atpg_scan_opt_duplicate(scan_child(closed.node.node));
    check_missing(closed, line);
    if (closed.stands.none() && !closed.block->is_checked)
        empty_body_error(closed.opened_by->keyword.c_str(), line);
    finish_statement(frames.back(), closed.opened_at, closed.node.node, line);
    next();
}

struct REFUSED_IN_PATH_FILE {
    const char *keyword;
    const char *text;
};

constexpr REFUSED_IN_PATH_FILE refused_in_path_file[] = {
    {"%MULTICYCLE_PATH", "In multicycle path file , should just exist the PATH list!\n"},
    {"%FALSE_PATH", "In false path file , should just exist the PATH list!\n"},
};

void refuse_in_path_file() {
    if (parse_path_fileG == 0)
        return;
    for (const REFUSED_IN_PATH_FILE &row : refused_in_path_file) {
        if (token == keyword_lookup(row.keyword))
            scan_fail("%s", row.text);
    }
}

/// The statements that start with the token, by their places.
const std::vector<size_t> &statement_places(const BLOCK &block) {
    auto found = block.by_token.find(token);
    if (found == block.by_token.end()) {
        refuse_in_path_file();
        scan_yyerror();
    }
    return found->second;
}

/// Which one of several statements of a keyword it is. What they have in common in front is read; `part` is
/// then the place in which they differ.
size_t told_apart(const BLOCK &block, std::vector<size_t> places, OPEN_NODE &node, size_t &part) {
    for (;; part++) {
        auto shape = [&](size_t place) -> const SHAPE & { return block.statements[place].shape.parts[part]; };
        std::erase_if(places, [&](size_t place) { return !starts_here(shape(place)); });
        if (places.empty())
            scan_yyerror();
        if (places.size() == 1)
            return places[0];
        match(shape(places[0]), node);
    }
}

void parse_statement() {
    const BLOCK &block = *frames.back().block;
    const std::vector<size_t> &places = statement_places(block);
    OPEN_NODE node = SCAN_OPEN_AST(block.statements[places[0]].kind, scan_yylineno);
    if (block.statements[places[0]].with_text)
        SCAN_APPEND_CHILD(node, SCAN_MAKE_LEAF(IDENT_NODE, scan_yylineno, scan_yylval.text));
    next();
    body_block = -1;
    size_t part = 0;
    size_t place = places.size() == 1 ? places[0] : told_apart(block, places, node, part);
    const STATEMENT &statement = block.statements[place];
    node.node->kind = statement.kind;
    for (; part < statement.shape.parts.size(); part++)
        match(statement.shape.parts[part], node);
    if (body_block < 0)
        return finish_statement(frames.back(), place, node.node, previous_line);
    if (frames.size() > deepest_block)
        error_handler(in_file_name, scan_yylineno, MESSAGE_DEPTH);
    const BLOCK *opened = &grammar_blocks()[static_cast<size_t>(body_block)];
    frames.push_back({opened, node, {}, {}, &statement, place});
    next();
}

/// The kind of the file, by its first token.
SCAN_FILE_KIND file_kind() {
    for (int32_t kind = 0; kind < SCAN_FILE_KINDS; kind++) {
        const BLOCK &block = grammar_blocks()[static_cast<size_t>(grammar_block(file_rows[kind].block))];
        bool accepted = kind != LOCKUP_FILE_KIND || sl_lockup_latch_flag != 0;
        if (accepted && block.by_token.contains(token))
            return static_cast<SCAN_FILE_KIND>(kind);
    }
    scan_yyerror();
}

} // namespace

void scan_yyparse(SCAN_FILE_KIND expected) {
    scan_start();
    scan_yylineno = 1;
    scan_root[expected] = nullptr;
    grammar_blocks();
    next();
    if (token == TOKEN_END)
        return;
    SCAN_FILE_KIND kind = file_kind();
    if (kind != expected) {
        refuse_in_path_file();
        error_handler(in_file_name, scan_yylineno, MESSAGE_WRONG_KIND, file_rows[expected].name);
    }
    OPEN_NODE root = SCAN_OPEN_AST(PROGRAM_NODE, scan_yylineno);
    const BLOCK &block = grammar_blocks()[static_cast<size_t>(grammar_block(file_rows[kind].block))];
    frames.clear();
    frames.push_back({&block, root, {}, {}, nullptr, 0});
    while (token != TOKEN_END || frames.size() > 1) {
        if (token == '}' && frames.size() > 1)
            close_block();
        else
            parse_statement();
    }
    frames.clear();
    scan_root[kind] = root.node;
    if (kind == DFT_FILE_KIND)
        check_dft_semantic(root.node);
}
