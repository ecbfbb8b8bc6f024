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

/// A file being parsed.
struct PARSER {
    SCAN_FILE_KIND kind; ///< what it has to be
    SCANNER scanner;
    std::vector<FRAME> frames{};
    int32_t body_block = -1; ///< block of the body that the statement has opened, or -1
};

int32_t token(const PARSER &parser) {
    return parser.scanner.value.type;
}

/// A fault at the token: a syntax error, or a message with the token's text.
[[noreturn]] void scan_yyerror(const PARSER &parser, const DFT_MESSAGE &message = MESSAGE_SYNTAX) {
    const SCANNER &scanner = parser.scanner;
    error_handler(scanner.file_name, scanner.line, message, scanner.value.shown);
    tree_error();
}

bool fits_integer(const char *text) {
    errno = 0;
    long long value = std::strtoll(text, nullptr, 10);
    return errno == 0 && value >= INT32_MIN && value <= INT32_MAX;
}

void check_number(const PARSER &parser, const SHAPE &shape) {
    const char *text = parser.scanner.value.text;
    if (shape.kind == SHAPE_BIT) {
        long value = std::strtol(text, nullptr, 10);
        if (value < 0 || value > 1)
            scan_yyerror(parser);
        return;
    }
    if (shape.kind != SHAPE_TOKEN)
        return;
    bool is_real = shape.token == TOKEN_REAL || shape.token == TOKEN_PERCENT;
    if ((shape.token == TOKEN_INTEGER && !fits_integer(text)) ||
        (is_real && !std::isfinite(std::strtod(text, nullptr))))
        scan_yyerror(parser, MESSAGE_NUMBER_RANGE);
}

/// Name of a kind as messages print it.
const char *shown_kind(SCAN_KIND kind) {
    std::string_view name = scan_kind_name(kind);
    if (name.ends_with("_NODE"))
        name.remove_suffix(5);
    return keep_text(name);
}

/// Splits <instance>.<pin>. The instance ends in _<number>, which ties it to one of the BIST controllers.
void append_pin_name(OPEN_NODE &node, int32_t line, const char *text) {
    const char *dot = std::strchr(text, '.');
    if (dot == nullptr) {
        SCAN_APPEND_CHILD(node, SCAN_MAKE_LEAF(IDENT_NODE, line, text));
        return;
    }
    const char *instance = keep_text(std::string_view(text, static_cast<size_t>(dot - text)));
    const char *bar = std::strchr(instance, '_');
    bool numbered =
        bar != nullptr && (std::strcmp(bar + 1, "0") == 0 || std::strtol(bar + 1, nullptr, 10) != 0);
    if (!numbered)
        scan_error_fail("ERROR : %s pin format error !\n", shown_kind(node.node->kind));
    SCAN_APPEND_CHILD(node, SCAN_MAKE_LEAF(IDENT_NODE, line, instance));
    SCAN_APPEND_CHILD(node, SCAN_MAKE_LEAF(IDENT_NODE, line, keep_text(dot + 1)));
}

void match_token(PARSER &parser, const SHAPE &shape, OPEN_NODE &node) {
    if (token(parser) != shape.token)
        scan_yyerror(parser);
    check_number(parser, shape);
    const SCANNER &scanner = parser.scanner;
    if (shape.kind == SHAPE_PIN_NAME)
        append_pin_name(node, scanner.line, scanner.value.text);
    else if (shape.with_leaf)
        SCAN_APPEND_CHILD(node, SCAN_MAKE_LEAF(shape.node, scanner.line, scanner.value.text));
    scan_next(parser.scanner);
}

bool starts_here(const PARSER &parser, const SHAPE &shape) {
    return shape.first.test(static_cast<size_t>(token(parser)));
}

void match(PARSER &parser, const SHAPE &shape, OPEN_NODE &node);

void match_parts(PARSER &parser, const SHAPE &shape, OPEN_NODE &node) {
    for (const SHAPE &part : shape.parts)
        match(parser, part, node);
}

void match_choice(PARSER &parser, const SHAPE &shape, OPEN_NODE &node) {
    for (const SHAPE &part : shape.parts) {
        if (starts_here(parser, part))
            return match(parser, part, node);
    }
    scan_yyerror(parser);
}

void match(PARSER &parser, const SHAPE &shape, OPEN_NODE &node) {
    switch (shape.kind) {
    case SHAPE_SEQUENCE:
        match_parts(parser, shape, node);
        break;
    case SHAPE_CHOICE:
        match_choice(parser, shape, node);
        break;
    case SHAPE_OPTION:
        if (starts_here(parser, shape))
            match_parts(parser, shape, node);
        break;
    case SHAPE_REPEAT:
        while (starts_here(parser, shape))
            match_parts(parser, shape, node);
        break;
    case SHAPE_NODE: {
        OPEN_NODE made = SCAN_OPEN_AST(shape.node, parser.scanner.line);
        match_parts(parser, shape, made);
        SCAN_APPEND_CHILD(node, made.node);
        break;
    }
    case SHAPE_BODY:
        if (token(parser) != '{')
            scan_yyerror(parser);
        parser.body_block = shape.block; // the caller takes the next token when the block is open
        break;
    default:
        match_token(parser, shape, node);
        break;
    }
}

/// The list node of a kind in the frame, made at its first use.
OPEN_NODE &list_node(FRAME &frame, SCAN_KIND kind, int32_t line) {
    for (OPEN_NODE &list : frame.lists) {
        if (list.node->kind == kind)
            return list;
    }
    OPEN_NODE list = SCAN_OPEN_AST(kind, line);
    SCAN_APPEND_CHILD(frame.node, list.node);
    return frame.lists.emplace_back(list);
}

/// A statement of the innermost block is complete; `line` is that of its last token.
void finish_statement(PARSER &parser, size_t place, SCAN_AST *node, int32_t line) {
    FRAME &frame = parser.frames.back();
    const STATEMENT &statement = frame.block->statements[place];
    if (statement.warns_again && frame.stands.test(place))
        error_handler(parser.scanner.file_name, line, MESSAGE_REPEATED, shown_kind(statement.kind));
    frame.stands.set(place);
    SCAN_APPEND_CHILD(
        statement.list == DUMMY ? frame.node : list_node(frame, statement.list, parser.scanner.line), node);
}

/// What a block must hold.
void check_missing(const FRAME &frame, const char *file_name, int32_t line) {
    const BLOCK &block = *frame.block;
    for (size_t i = 0; i < block.statements.size(); i++) {
        if (!block.statements[i].needed.empty() && !frame.stands.test(i))
            error_handler(file_name, line, MESSAGE_MISSING, std::string(block.statements[i].needed).c_str());
    }
    for (const PAIR_CHECK &check : block.pairs) {
        bool a = frame.stands.test(check.statement_a);
        bool b = frame.stands.test(check.statement_b);
        const BLOCK_PAIR &pair = *check.pair;
        if (pair.rule == PAIR_ONE_OF && !a && !b)
            error_handler(file_name, line, MESSAGE_NEITHER, pair.keyword_a, pair.shown_b);
        if (pair.rule == PAIR_NOT_BOTH && a && b)
            error_handler(file_name, line, MESSAGE_BOTH, pair.keyword_a, pair.shown_b);
    }
}

void close_block(PARSER &parser) {
    const SCANNER &scanner = parser.scanner;
    FRAME closed = std::move(parser.frames.back());
    parser.frames.pop_back();
    if (closed.node.node->kind == ATPG_CONSTAINTS_NODE)
        check_atpg_scan_opt_duplicate(scan_child(closed.node.node));
    check_missing(closed, scanner.file_name, scanner.line);
    if (closed.stands.none() && !closed.block->is_checked)
        error_handler(scanner.file_name, scanner.line, MESSAGE_EMPTY_BODY, closed.opened_by->keyword.c_str());
    finish_statement(parser, closed.opened_at, closed.node.node, scanner.line);
    scan_next(parser.scanner);
}

struct REFUSED_IN_PATH_FILE {
    const char *keyword;
    const char *text;
};

constexpr REFUSED_IN_PATH_FILE refused_in_path_file[] = {
    {"%MULTICYCLE_PATH", "In multicycle path file , should just exist the PATH list!\n"},
    {"%FALSE_PATH", "In false path file , should just exist the PATH list!\n"},
};

void refuse_in_path_file(const PARSER &parser) {
    if (parser.kind != PATH_FILE_KIND)
        return;
    for (const REFUSED_IN_PATH_FILE &row : refused_in_path_file) {
        if (token(parser) == keyword_lookup(row.keyword))
            scan_fail("%s", row.text);
    }
}

/// The statements that start with the token, by their places.
const std::vector<size_t> &statement_places(const PARSER &parser) {
    const BLOCK &block = *parser.frames.back().block;
    auto found = block.by_token.find(token(parser));
    if (found == block.by_token.end()) {
        refuse_in_path_file(parser);
        scan_yyerror(parser);
    }
    return found->second;
}

/// Which one of several statements of a keyword it is. What they have in common in front is read; `part` is
/// then the place in which they differ.
size_t told_apart(PARSER &parser, std::vector<size_t> places, OPEN_NODE &node, size_t &part) {
    const BLOCK &block = *parser.frames.back().block;
    for (;; part++) {
        auto shape = [&](size_t place) -> const SHAPE & { return block.statements[place].shape.parts[part]; };
        std::erase_if(places, [&](size_t place) { return !starts_here(parser, shape(place)); });
        if (places.empty())
            scan_yyerror(parser);
        if (places.size() == 1)
            return places[0];
        match(parser, shape(places[0]), node);
    }
}

void parse_statement(PARSER &parser) {
    SCANNER &scanner = parser.scanner;
    const BLOCK &block = *parser.frames.back().block;
    const std::vector<size_t> &places = statement_places(parser);
    OPEN_NODE node = SCAN_OPEN_AST(block.statements[places[0]].kind, scanner.line);
    if (block.statements[places[0]].with_text)
        SCAN_APPEND_CHILD(node, SCAN_MAKE_LEAF(IDENT_NODE, scanner.line, scanner.value.text));
    scan_next(scanner);
    parser.body_block = -1;
    size_t part = 0;
    size_t place = places.size() == 1 ? places[0] : told_apart(parser, places, node, part);
    const STATEMENT &statement = block.statements[place];
    node.node->kind = statement.kind;
    for (; part < statement.shape.parts.size(); part++)
        match(parser, statement.shape.parts[part], node);
    if (parser.body_block < 0)
        return finish_statement(parser, place, node.node, scanner.previous_line);
    if (parser.frames.size() > deepest_block)
        error_handler(scanner.file_name, scanner.line, MESSAGE_DEPTH);
    const BLOCK *opened = &grammar_blocks()[static_cast<size_t>(parser.body_block)];
    parser.frames.push_back({opened, node, {}, {}, &statement, place});
    scan_next(scanner);
}

const BLOCK &file_block(int32_t kind) {
    return grammar_blocks()[static_cast<size_t>(grammar_block(file_rows[kind].block))];
}

/// Refuses a file whose first token starts one of another kind, or of none.
void check_file_kind(const PARSER &parser) {
    if (file_block(parser.kind).by_token.contains(token(parser)))
        return;
    for (int32_t kind = 0; kind < LOCKUP_FILE_KIND; kind++) {
        if (!file_block(kind).by_token.contains(token(parser)))
            continue;
        refuse_in_path_file(parser);
        error_handler(parser.scanner.file_name, parser.scanner.line, MESSAGE_WRONG_KIND,
                      file_rows[parser.kind].name);
    }
    scan_yyerror(parser);
}

} // namespace

SCAN_AST *scan_yyparse(std::FILE *file, const char *file_name, SCAN_FILE_KIND kind, bool is_quiet) {
    PARSER parser = {kind, {file_name, is_quiet}};
    const BLOCK &block = file_block(kind);
    scan_start(parser.scanner, file);
    scan_next(parser.scanner);
    if (token(parser) == TOKEN_END) {
        scan_end(parser.scanner);
        return nullptr;
    }
    check_file_kind(parser);
    OPEN_NODE root = SCAN_OPEN_AST(PROGRAM_NODE, parser.scanner.line);
    parser.frames.push_back({&block, root, {}, {}, nullptr, 0});
    while (token(parser) != TOKEN_END || parser.frames.size() > 1) {
        if (token(parser) == '}' && parser.frames.size() > 1)
            close_block(parser);
        else
            parse_statement(parser);
    }
    scan_end(parser.scanner);
    if (kind == DFT_FILE_KIND)
        check_dft_semantic(root.node);
    return root.node;
}
