// Compiles the grammar table. A fault in it is a fault of this program: it ends the run at the first read.
#include "dftlang/grammar.hh"

#include "dftlang/messages.hh"
#include "support/text.hh"

#include <algorithm>
#include <cctype>
#include <utility>

namespace {

struct TOKEN_WORD {
    std::string_view word;
    int32_t token;
    SCAN_KIND leaf;
    SHAPE_KIND shape;
};

constexpr TOKEN_WORD token_words[] = {
    {"name", TOKEN_NAME, IDENT_NODE, SHAPE_TOKEN},
    {"string", TOKEN_STRING, IDENT_NODE, SHAPE_TOKEN},
    {"pattern", TOKEN_PATTERN, PATTERN_NODE, SHAPE_TOKEN},
    {"integer", TOKEN_INTEGER, NUMBER_NODE, SHAPE_TOKEN},
    {"real", TOKEN_REAL, REAL_NUM_NODE, SHAPE_TOKEN},
    {"percent", TOKEN_PERCENT, PERCENTAGE_NODE, SHAPE_TOKEN},
    {"digits", TOKEN_INTEGER, NUMBER_NODE, SHAPE_DIGITS},
    {"bit", TOKEN_INTEGER, NUMBER_NODE, SHAPE_BIT},
    {"pin-name", TOKEN_NAME, IDENT_NODE, SHAPE_PIN_NAME},
};

/// Keys are texts of the table.
struct COMPILER {
    std::vector<BLOCK> blocks;
    std::unordered_map<std::string_view, int32_t> block_ids;
    std::unordered_map<std::string_view, int32_t> keywords; ///< with their tokens
    std::unordered_map<std::string_view, SHAPE> shapes;
    std::unordered_map<std::string_view, SCAN_KIND> kinds;
};

COMPILER &compiler() {
    static auto *const the_compiler = new COMPILER;
    return *the_compiler;
}

bool is_word_character(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '%' || c == '-' || c == '#';
}

/// A kind that the code does not know gets its number now.
SCAN_KIND kind_of(std::string_view name) {
    auto found = compiler().kinds.find(name);
    if (found != compiler().kinds.end())
        return found->second;
    const char *kept = keep_text(name);
    return compiler().kinds[kept] = scan_add_kind(kept);
}

/// Number of a block; a name met before its block gets its place now.
int32_t block_id(std::string_view name) {
    COMPILER &all = compiler();
    auto [found, is_new] = all.block_ids.try_emplace(name, static_cast<int32_t>(all.blocks.size()));
    if (is_new)
        all.blocks.emplace_back().name = name;
    return found->second;
}

/// Token of a word that is not of the table's own language. What the table uses is a keyword.
int32_t word_token_number(std::string_view word) {
    if (word == "name")
        return TOKEN_NAME;
    if (word[0] != '%' && !std::isupper(static_cast<unsigned char>(word[0])))
        tree_error();
    auto &keywords = compiler().keywords;
    int32_t token = TOKEN_KEYWORDS + static_cast<int32_t>(keywords.size());
    if (token == TOKEN_LIMIT)
        tree_error();
    return keywords.try_emplace(word, token).first->second;
}

/// Reads one shape; `rest` is what is left of its text.
struct SHAPE_READER {
    std::string_view rest;

    void skip_blanks() {
        while (!rest.empty() && rest[0] == ' ')
            rest.remove_prefix(1);
    }
    bool take(std::string_view text) {
        skip_blanks();
        if (!rest.starts_with(text))
            return false;
        rest.remove_prefix(text.size());
        return true;
    }
    void need(std::string_view text) {
        if (!take(text))
            tree_error();
    }
    std::string_view word() {
        size_t length = 0;
        while (length < rest.size() && is_word_character(rest[length]))
            length++;
        std::string_view text = rest.substr(0, length);
        rest.remove_prefix(length);
        return text;
    }
    SHAPE choice();
    SHAPE sequence();
    SHAPE element();
    SHAPE plain_element();
    SHAPE word_element();
};

void add_first(SHAPE &shape) {
    switch (shape.kind) {
    case SHAPE_CHOICE:
        for (const SHAPE &part : shape.parts)
            shape.first |= part.first;
        break;
    case SHAPE_BODY:
        shape.first.set('{');
        break;
    case SHAPE_SEQUENCE:
    case SHAPE_NODE:
    case SHAPE_OPTION:
    case SHAPE_REPEAT:
        shape.may_be_empty = true;
        for (const SHAPE &part : shape.parts) {
            if (shape.may_be_empty)
                shape.first |= part.first;
            shape.may_be_empty = shape.may_be_empty && part.may_be_empty;
        }
        if (shape.kind == SHAPE_OPTION || shape.kind == SHAPE_REPEAT)
            shape.may_be_empty = true;
        break;
    default:
        shape.first.set(static_cast<size_t>(shape.token));
        break;
    }
}

SHAPE token_shape(int32_t token, bool with_leaf = false, SCAN_KIND leaf = DUMMY,
                  SHAPE_KIND kind = SHAPE_TOKEN) {
    return {.kind = kind, .token = token, .with_leaf = with_leaf, .node = leaf};
}

SHAPE SHAPE_READER::choice() {
    SHAPE made;
    made.kind = SHAPE_CHOICE;
    do
        made.parts.push_back(sequence());
    while (take("|"));
    if (made.parts.size() == 1)
        return std::move(made.parts[0]);
    add_first(made);
    return made;
}

SHAPE SHAPE_READER::sequence() {
    SHAPE made;
    for (skip_blanks(); !rest.empty() && std::string_view(")]>|").find(rest[0]) == std::string_view::npos;
         skip_blanks())
        made.parts.push_back(element());
    add_first(made);
    return made;
}

SHAPE SHAPE_READER::element() {
    SHAPE made = plain_element();
    add_first(made);
    if (!rest.starts_with('*'))
        return made;
    rest.remove_prefix(1);
    SHAPE repeat = {.kind = SHAPE_REPEAT, .parts = {std::move(made)}};
    add_first(repeat);
    return repeat;
}

SHAPE SHAPE_READER::plain_element() {
    SHAPE made;
    if (take("(")) {
        made = choice();
        need(")");
    } else if (take("[")) {
        made = {.kind = SHAPE_OPTION, .parts = {choice()}};
        need("]");
    } else if (take("{")) {
        made = {.kind = SHAPE_BODY, .block = block_id(word())};
        need("}");
    } else if (take("<")) {
        SCAN_KIND node = kind_of(word());
        made = {.kind = SHAPE_NODE, .node = node, .parts = {choice()}};
        need(">");
    } else if (take("'")) {
        made = token_shape(rest[0]);
        rest.remove_prefix(1);
        need("'");
    } else if (take("=>")) {
        made = token_shape(TOKEN_ARROW);
    } else if (take("@")) {
        made = token_shape(word_token_number(word()), true, IDENT_NODE);
    } else if (is_word_character(rest[0])) {
        made = word_element();
    } else {
        made = token_shape(rest[0]);
        rest.remove_prefix(1);
    }
    return made;
}

SHAPE SHAPE_READER::word_element() {
    std::string_view text = word();
    for (const TOKEN_WORD &row : token_words) {
        if (row.word == text)
            return token_shape(row.token, true, row.leaf, row.shape);
    }
    auto found = compiler().shapes.find(text);
    if (found != compiler().shapes.end())
        return found->second;
    return token_shape(word_token_number(text));
}

/// The mark `name` behind a statement, with or without a text in parentheses.
struct MARK {
    bool stands;
    std::string_view text;
};

MARK find_mark(std::string_view marks, std::string_view name) {
    for (size_t at = marks.find(name); at != std::string_view::npos; at = marks.find(name, at + 1)) {
        std::string_view behind = marks.substr(at + name.size());
        if (behind.empty() || behind[0] == ' ')
            return {true, {}};
        if (behind[0] == '(')
            return {true, behind.substr(1, behind.find(')') - 1)};
    }
    return {false, {}};
}

SCAN_KIND list_kind(SCAN_KIND kind) {
    std::string name = scan_kind_name(kind);
    return kind_of(name.insert(name.rfind("_NODE"), "_LIST"));
}

/// The statement of one keyword, with the shape and the marks of its line.
STATEMENT statement_of(std::string_view keyword, const SHAPE &shape, std::string_view marks) {
    STATEMENT made = {};
    made.keyword = keyword;
    made.shape = shape;
    MARK as = find_mark(marks, "#as");
    std::string own_kind = made.keyword.substr(keyword[0] == '%' ? 1 : 0) + "_NODE";
    made.kind = kind_of(as.stands ? as.text : std::string_view(own_kind));
    made.warns_again = find_mark(marks, "#1").stands;
    MARK list = find_mark(marks, "#list");
    if (find_mark(marks, "#n").stands)
        made.list = list.stands ? kind_of(list.text) : list_kind(made.kind);
    else
        made.list = DUMMY;
    made.with_text = find_mark(marks, "#text").stands;
    MARK needed = find_mark(marks, "#need");
    if (needed.stands)
        made.needed = needed.text.empty() ? keyword : needed.text;
    return made;
}

void add_statements(int32_t number, std::string_view line) {
    size_t marks_at = line.find(" #");
    std::string_view marks = marks_at == std::string_view::npos ? std::string_view() : line.substr(marks_at);
    SHAPE_READER reader{line.substr(0, marks_at)};
    std::vector<std::string_view> keywords;
    do {
        reader.skip_blanks();
        keywords.push_back(reader.word());
    } while (reader.take(","));
    SHAPE shape = reader.sequence();
    BLOCK &block = compiler().blocks[static_cast<size_t>(number)]; // found behind the bodies of the shape
    if (!reader.rest.empty() || block.statements.size() + keywords.size() > most_statements)
        tree_error();
    for (std::string_view keyword : keywords) {
        block.by_token[word_token_number(keyword)].push_back(block.statements.size());
        block.statements.push_back(statement_of(keyword, shape, marks));
        block.is_checked = block.is_checked || !block.statements.back().needed.empty();
    }
}

size_t statement_place(const BLOCK &block, std::string_view keyword) {
    for (size_t i = 0; i < block.statements.size(); i++) {
        if (block.statements[i].keyword == keyword)
            return i;
    }
    tree_error();
}

void add_pairs() {
    for (const BLOCK_PAIR *pair = block_pairs; pair->block != nullptr; pair++) {
        BLOCK &block = compiler().blocks[static_cast<size_t>(block_id(pair->block))];
        block.is_checked = true;
        block.pairs.push_back(
            {pair, statement_place(block, pair->keyword_a), statement_place(block, pair->keyword_b)});
    }
}

void read_line(std::string_view line, int32_t &block) {
    if (line.starts_with("shape ")) {
        SHAPE_READER reader{line.substr(6)};
        std::string_view name = reader.word();
        compiler().shapes[name] = reader.choice();
    } else if (line.starts_with("words ")) {
        SHAPE_READER reader{line.substr(6)};
        int32_t token = word_token_number(reader.word());
        for (reader.skip_blanks(); !reader.rest.empty(); reader.skip_blanks())
            compiler().keywords[reader.word()] = token;
    } else if (line.starts_with("block ")) {
        block = block_id(line.substr(6));
    } else if (!line.empty()) {
        add_statements(block, line);
    }
}

void compile() {
    COMPILER &all = compiler();
    for (int32_t kind = 0; kind < SCAN_KIND_COUNT; kind++)
        all.kinds[scan_kind_name(static_cast<SCAN_KIND>(kind))] = static_cast<SCAN_KIND>(kind);
    int32_t block = -1;
    for (const char *const *part = grammar_text; *part != nullptr; part++) {
        std::string_view rest = *part;
        while (!rest.empty()) {
            size_t length = std::min(rest.find('\n'), rest.size());
            read_line(rest.substr(0, length), block);
            rest.remove_prefix(std::min(length + 1, rest.size()));
        }
    }
    add_pairs();
    for (const BLOCK &made : all.blocks) {
        if (made.statements.empty())
            tree_error();
    }
}

} // namespace

const std::vector<BLOCK> &grammar_blocks() {
    if (compiler().blocks.empty())
        compile();
    return compiler().blocks;
}

int32_t grammar_block(std::string_view name) {
    grammar_blocks();
    return compiler().block_ids.at(name);
}

int32_t keyword_lookup(std::string_view text) {
    auto found = compiler().keywords.find(text);
    return found == compiler().keywords.end() ? -1 : found->second;
}
