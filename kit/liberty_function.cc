#include "kit/liberty_function.hh"

#include <algorithm>
#include <optional>

namespace {

using TABLE = std::vector<uint64_t>;

constexpr size_t MOST_PINS = 16;
constexpr int DEEPEST = 200; // parentheses and inversions
constexpr char NAME = 'n', END = '\0';

/// An operator, '0', '1', or a name; && and || are taken as & and |, ~ as !.
struct FUNCTION_TOKEN {
    char kind;
    std::string_view name{};
};

std::vector<FUNCTION_TOKEN> tokens_in(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n\\", operators = "!'~^*&+|()",
                               enders = " \t\r\n\\!'~^*&+|()\"";
    std::vector<FUNCTION_TOKEN> tokens;
    for (size_t at = 0; (at = text.find_first_not_of(blanks, at)) != std::string_view::npos;) {
        char first = text[at];
        size_t end = at + 1;
        if (operators.find(first) != std::string_view::npos) {
            if ((first == '&' || first == '|') && end < text.size() && text[end] == first)
                ++end;
            tokens.push_back({first == '~' ? '!' : first == '|' ? '+' : first == '&' ? '*' : first});
        } else if (first == '"') {
            end = std::min(text.find('"', end), text.size());
            tokens.push_back({NAME, text.substr(at + 1, end - at - 1)});
            // The quotes of a name within a string are marked by backslashes.
            while (!tokens.back().name.empty() && tokens.back().name.back() == '\\')
                tokens.back().name.remove_suffix(1);
            end = std::min(end + 1, text.size());
        } else {
            end = std::min(text.find_first_of(enders, at), text.size());
            std::string_view name = text.substr(at, end - at);
            tokens.push_back({name == "0" || name == "1" ? first : NAME, name});
        }
        at = end;
    }
    tokens.push_back({END});
    return tokens;
}

std::vector<std::string> names_of(const std::vector<FUNCTION_TOKEN> &tokens) {
    std::vector<std::string> names;
    for (const FUNCTION_TOKEN &token : tokens)
        if (token.kind == NAME && std::find(names.begin(), names.end(), token.name) == names.end())
            names.emplace_back(token.name);
    return names;
}

constexpr uint64_t HIGH[] = {0xAAAAAAAAAAAAAAAA, 0xCCCCCCCCCCCCCCCC, 0xF0F0F0F0F0F0F0F0,
                             0xFF00FF00FF00FF00, 0xFFFF0000FFFF0000, 0xFFFFFFFF00000000};

// A table of fewer than six pins repeats itself within its one word.
size_t words_for(size_t pins) {
    return pins <= 6 ? 1 : size_t{1} << (pins - 6);
}

TABLE constant(size_t words, bool value) {
    return TABLE(words, value ? ~uint64_t{0} : 0);
}

TABLE table_of_pin(size_t words, size_t pin) {
    TABLE table(words);
    for (size_t word = 0; word < words; ++word)
        table[word] = pin < 6 ? HIGH[pin] : (word >> (pin - 6) & 1) != 0 ? ~uint64_t{0} : 0;
    return table;
}

template <class OPERATION> TABLE combined(TABLE a, const TABLE &b, OPERATION operation) {
    for (size_t word = 0; word < a.size(); ++word)
        a[word] = operation(a[word], b[word]);
    return a;
}

TABLE inverted(TABLE table) {
    for (uint64_t &word : table)
        word = ~word;
    return table;
}

TABLE both(TABLE a, const TABLE &b) {
    return combined(std::move(a), b, [](uint64_t x, uint64_t y) { return x & y; });
}

/// The function with the pin held at a value.
TABLE held(const TABLE &table, size_t pin, bool value) {
    TABLE result(table.size());
    for (size_t word = 0; word < table.size(); ++word) {
        if (pin >= 6) {
            size_t bit = size_t{1} << (pin - 6);
            result[word] = table[value ? word | bit : word & ~bit];
            continue;
        }
        uint64_t kept = table[word] & (value ? HIGH[pin] : ~HIGH[pin]);
        result[word] = kept | (value ? kept >> (1U << pin) : kept << (1U << pin));
    }
    return result;
}

bool is_constant(const TABLE &table, bool value) {
    return table == constant(table.size(), value);
}

/// Recursive descent over the tokens. No result for what is no expression.
struct PARSER {
    const std::vector<FUNCTION_TOKEN> &tokens;
    const std::vector<std::string> &names;
    size_t at = 0;
    int depth = 0;

    using RESULT = std::optional<TABLE>;

    char kind() const {
        return tokens[at].kind;
    }
    bool starts_operand() const {
        return kind() == NAME || kind() == '0' || kind() == '1' || kind() == '!' || kind() == '(';
    }

    RESULT any() {
        RESULT result = all();
        while (result && kind() == '+') {
            ++at;
            RESULT next = all();
            if (!next)
                return {};
            result = combined(std::move(*result), *next, [](uint64_t a, uint64_t b) { return a | b; });
        }
        return result;
    }

    RESULT all() {
        RESULT result = different();
        while (result && (kind() == '*' || starts_operand())) {
            at += kind() == '*' ? 1 : 0;
            RESULT next = different();
            if (!next)
                return {};
            result = both(std::move(*result), *next);
        }
        return result;
    }

    RESULT different() {
        RESULT result = operand();
        while (result && kind() == '^') {
            ++at;
            RESULT next = operand();
            if (!next)
                return {};
            result = combined(std::move(*result), *next, [](uint64_t a, uint64_t b) { return a ^ b; });
        }
        return result;
    }

    RESULT operand() {
        bool inverts = false;
        for (; kind() == '!'; ++at)
            inverts = !inverts;
        RESULT result = innermost();
        for (; result && kind() == '\''; ++at)
            inverts = !inverts;
        if (result && inverts)
            result = inverted(std::move(*result));
        return result;
    }

    RESULT innermost() {
        const FUNCTION_TOKEN &token = tokens[at];
        size_t words = words_for(names.size());
        if (token.kind == '0' || token.kind == '1') {
            ++at;
            return constant(words, token.kind == '1');
        }
        if (token.kind == NAME) {
            ++at;
            auto row = std::find(names.begin(), names.end(), token.name) - names.begin();
            return table_of_pin(words, static_cast<size_t>(row));
        }
        if (token.kind != '(' || ++depth > DEEPEST)
            return {};
        ++at;
        RESULT result = any();
        --depth;
        if (!result || kind() != ')')
            return {};
        ++at;
        return result;
    }
};

/// The values that a table needs, when it is nothing but their product.
LIBERTY_CONDITION product(const std::vector<std::string> &names, const TABLE &table) {
    LIBERTY_CONDITION result;
    if (is_constant(table, false))
        return result;
    result.when = is_constant(table, true) ? LIBERTY_WHEN::ALWAYS : LIBERTY_WHEN::LITERALS;
    for (size_t pin = 0; pin < names.size(); ++pin) {
        TABLE low = held(table, pin, false), high = held(table, pin, true);
        if (low == high)
            continue;
        result.pins.push_back(names[pin]);
        if (is_constant(low, false) || is_constant(high, false))
            result.literals.push_back({names[pin], is_constant(low, false)});
        else
            result.when = LIBERTY_WHEN::COMPLEX;
    }
    if (result.when == LIBERTY_WHEN::COMPLEX)
        result.literals.clear();
    return result;
}

LIBERTY_CONDITION unknown(const LIBERTY_FUNCTION &function) {
    LIBERTY_CONDITION result;
    if (function.state != LIBERTY_READ::NOTHING)
        result.when = LIBERTY_WHEN::COMPLEX;
    result.pins = function.names;
    return result;
}

size_t row_of(const LIBERTY_FUNCTION &function, std::string_view pin) {
    return static_cast<size_t>(std::find(function.names.begin(), function.names.end(), pin) -
                               function.names.begin());
}

} // namespace

LIBERTY_FUNCTION liberty_function(std::string_view text) {
    LIBERTY_FUNCTION function;
    std::vector<FUNCTION_TOKEN> tokens = tokens_in(text);
    if (tokens.size() == 1)
        return function;
    function.names = names_of(tokens);
    if (function.names.size() > MOST_PINS) {
        function.state = LIBERTY_READ::TOO_WIDE;
        return function;
    }
    PARSER parser{tokens, function.names};
    std::optional<TABLE> table = parser.any();
    bool whole = table && parser.kind() == END;
    function.state = whole ? LIBERTY_READ::DONE : LIBERTY_READ::BAD;
    if (whole)
        function.table = std::move(*table);
    return function;
}

std::vector<std::string> liberty_function_names(std::string_view text) {
    return names_of(tokens_in(text));
}

std::vector<std::string> liberty_function_pins(const LIBERTY_FUNCTION &function) {
    std::vector<std::string> pins;
    if (function.state == LIBERTY_READ::DONE)
        for (size_t pin = 0; pin < function.names.size(); ++pin)
            if (held(function.table, pin, false) != held(function.table, pin, true))
                pins.push_back(function.names[pin]);
    return pins;
}

bool liberty_function_is(const LIBERTY_FUNCTION &function, std::string_view pin, LIBERTY_SENSE sense) {
    size_t row = row_of(function, pin);
    if (function.state != LIBERTY_READ::DONE || row == function.names.size())
        return false;
    TABLE wanted = table_of_pin(function.table.size(), row);
    return function.table == (sense == LIBERTY_SENSE::DIRECT ? wanted : inverted(wanted));
}

LIBERTY_CONDITION liberty_function_shows(const LIBERTY_FUNCTION &function, std::string_view pin,
                                         LIBERTY_SENSE sense) {
    if (function.state != LIBERTY_READ::DONE)
        return unknown(function);
    size_t row = row_of(function, pin);
    if (row == function.names.size())
        return {};
    TABLE low = held(function.table, row, false), high = held(function.table, row, true);
    return product(function.names,
                   sense == LIBERTY_SENSE::DIRECT ? both(inverted(low), high) : both(low, inverted(high)));
}

LIBERTY_CONDITION liberty_function_true_when_all(const LIBERTY_FUNCTION &function) {
    return function.state == LIBERTY_READ::DONE ? product(function.names, function.table) : unknown(function);
}

LIBERTY_CONDITION liberty_function_true_when_any(const LIBERTY_FUNCTION &function) {
    if (function.state != LIBERTY_READ::DONE)
        return unknown(function);
    // It is false when all of them have the other value.
    LIBERTY_CONDITION result = product(function.names, inverted(function.table));
    if (result.when == LIBERTY_WHEN::ALWAYS || result.when == LIBERTY_WHEN::NEVER)
        result.when = result.when == LIBERTY_WHEN::ALWAYS ? LIBERTY_WHEN::NEVER : LIBERTY_WHEN::ALWAYS;
    for (LIBERTY_LITERAL &literal : result.literals)
        literal.value = !literal.value;
    return result;
}
