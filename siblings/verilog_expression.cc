// Expressions of a netlist: nets, selects, concatenations and numbers; constant expressions of ranges.
#include "siblings/verilog_reader.hh"
#include "siblings/verilog_words.hh"

#include <algorithm>
#include <cctype>
#include <limits>

namespace {

constexpr int32_t UNSIZED_WIDTH = 32;

// A number taken apart. Digits are those of the base; the size is 0 when none is written.
struct NUMBER {
    int64_t size = 0;
    char base = 'd';
    std::string digits;
};

NUMBER split_number(VLOG &reader) {
    NUMBER number;
    std::string text;
    for (char c : reader.scan.token.text)
        if (c != '_' && !std::isspace(static_cast<unsigned char>(c)))
            text += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    size_t tick = text.find('\'');
    if (tick == std::string::npos) {
        number.digits = text;
        return number;
    }
    for (size_t i = 0; i < tick; i++) {
        number.size = number.size * 10 + (text[i] - '0');
        if (number.size > VLOG_WIDTH_LIMIT)
            VSCAN_fail(reader.scan, "the number %s is too wide.", VSCAN_shown(reader.scan).c_str());
    }
    if (tick > 0 && number.size == 0)
        VSCAN_fail(reader.scan, "a number cannot have the size 0.");
    size_t at = tick + 1;
    if (at < text.size() && text[at] == 's')
        at++;
    number.base = at < text.size() ? text[at++] : '?';
    number.digits = text.substr(std::min(at, text.size()));
    return number;
}

uint64_t decimal_value(VLOG &reader, const std::string &digits) {
    uint64_t value = 0;
    for (char c : digits) {
        uint64_t digit = static_cast<uint64_t>(c - '0');
        if (c < '0' || c > '9' || value > (std::numeric_limits<uint64_t>::max() - digit) / 10)
            VSCAN_fail(reader.scan, "%s is no number that can be used here.",
                       VSCAN_shown(reader.scan).c_str());
        value = value * 10 + digit;
    }
    return value;
}

int bits_of_base(char base) {
    return base == 'b' ? 1 : base == 'o' ? 3 : base == 'h' ? 4 : 0;
}

// One character for each bit, '0', '1', 'x' or 'z', the leftmost first.
std::string number_bits(VLOG &reader, const NUMBER &number) {
    std::string bits;
    int step = bits_of_base(number.base);
    if (number.digits.empty() || (step == 0 && number.base != 'd'))
        VSCAN_fail(reader.scan, "%s is no number.", VSCAN_shown(reader.scan).c_str());
    if (number.digits.find_first_not_of("xz?") == std::string::npos && number.base == 'd') {
        bits = number.digits.substr(0, 1);
    } else if (step == 0) {
        for (uint64_t value = decimal_value(reader, number.digits); value != 0; value >>= 1)
            bits.insert(bits.begin(), static_cast<char>('0' + (value & 1)));
    } else {
        for (char c : number.digits) {
            int digit = c >= 'a' ? c - 'a' + 10 : c - '0';
            bool open = c == 'x' || c == 'z' || c == '?';
            if (!open && (digit < 0 || digit >= 1 << step))
                VSCAN_fail(reader.scan, "%s is no number.", VSCAN_shown(reader.scan).c_str());
            for (int bit = step - 1; bit >= 0; bit--)
                bits += open ? c : static_cast<char>('0' + (digit >> bit & 1));
        }
    }
    std::replace(bits.begin(), bits.end(), '?', 'z');
    size_t width = number.size != 0 ? static_cast<size_t>(number.size)
                                    : std::max(bits.size(), static_cast<size_t>(UNSIZED_WIDTH));
    char fill = bits.empty() || bits[0] == '1' ? '0' : bits[0];
    if (bits.size() < width)
        bits.insert(0, width - bits.size(), fill);
    return bits.substr(bits.size() - width);
}

bool append_number(VLOG &reader, std::vector<int32_t> &bits) {
    NUMBER number = split_number(reader);
    for (char c : number_bits(reader, number)) {
        if (c == 'x')
            bits.push_back(VLOG_unknown_net(reader.design, *reader.module));
        else
            bits.push_back(c == '0' ? NL_GND : c == '1' ? NL_VCC : NL_NONE);
    }
    VSCAN_next(reader.scan);
    return number.size != 0;
}

// Place of a bit in its vector, from the left.
int32_t bit_place(VLOG &reader, const VLOG_DECLARATION &declaration, int64_t index) {
    int64_t low = std::min(declaration.left, declaration.right);
    int64_t high = std::max(declaration.left, declaration.right);
    if (!declaration.vector || index < low || index > high)
        VSCAN_fail(reader.scan, "'%s' has no bit %lld.",
                   NL_string(reader.design.names, declaration.name).c_str(), static_cast<long long>(index));
    return static_cast<int32_t>(declaration.left >= declaration.right ? declaration.left - index
                                                                      : index - declaration.left);
}

void append_net(VLOG &reader, std::vector<int32_t> &bits) {
    int32_t name = VLOG_take_name(reader, "a net");
    VLOG_DECLARATION *found = VLOG_find_declaration(reader, name);
    if (found == nullptr) {
        if (reader.scan.no_implicit_nets)
            VSCAN_fail(reader.scan, "the net '%s' is not declared.",
                       NL_string(reader.design.names, name).c_str());
        found = &VLOG_declare(reader, name, false, 0, 0, true);
    }
    VLOG_DECLARATION declaration = *found;
    int32_t from = 0;
    int32_t to = VLOG_width(declaration) - 1;
    if (VLOG_is_symbol(reader, '[')) {
        VSCAN_next(reader.scan);
        from = to = bit_place(reader, declaration, VLOG_constant(reader));
        if (VLOG_is_symbol(reader, ':')) {
            VSCAN_next(reader.scan);
            to = bit_place(reader, declaration, VLOG_constant(reader));
            if (to < from)
                VSCAN_fail(reader.scan, "the part select of '%s' runs against its declaration.",
                           NL_string(reader.design.names, name).c_str());
        }
        VLOG_expect_symbol(reader, ']', "a select");
    }
    for (int32_t place = from; place <= to; place++)
        bits.push_back(declaration.first_net + place);
}

void append_list(VLOG &reader, std::vector<int32_t> &bits, int depth);

void append_item(VLOG &reader, std::vector<int32_t> &bits, int depth) {
    if (VLOG_is_symbol(reader, '{')) {
        append_list(reader, bits, depth + 1);
        return;
    }
    if (reader.scan.token.kind != TOKEN_NUMBER) {
        append_net(reader, bits);
        return;
    }
    NUMBER number = split_number(reader);
    std::string shown = VSCAN_shown(reader.scan);
    std::vector<int32_t> value;
    bool sized = append_number(reader, value);
    if (VLOG_is_symbol(reader, '{')) {
        // A replication: the number says how often.
        uint64_t times = number.base == 'd' ? decimal_value(reader, number.digits) : 0;
        value.clear();
        append_list(reader, value, depth + 1);
        if (times == 0 || times * value.size() > static_cast<uint64_t>(VLOG_WIDTH_LIMIT) ||
            times > static_cast<uint64_t>(VLOG_WIDTH_LIMIT))
            VSCAN_fail(reader.scan, "%s is no count for a replication.", shown.c_str());
        bits.insert(bits.end(), value.begin(), value.end());
        for (uint64_t i = 1; i < times; i++)
            for (int32_t net : value)
                bits.push_back(VLOG_own_net(reader.design, *reader.module, net));
        return;
    }
    if (!sized)
        VSCAN_fail(reader.scan, "the number %s in a concatenation has no size.", shown.c_str());
    bits.insert(bits.end(), value.begin(), value.end());
}

void append_list(VLOG &reader, std::vector<int32_t> &bits, int depth) {
    constexpr int DEPTH_LIMIT = 200;
    if (depth > DEPTH_LIMIT)
        VSCAN_fail(reader.scan, "concatenations are nested too deep.");
    VLOG_expect_symbol(reader, '{', "a concatenation");
    for (;;) {
        append_item(reader, bits, depth);
        if (static_cast<int64_t>(bits.size()) > VLOG_WIDTH_LIMIT)
            VSCAN_fail(reader.scan, "a concatenation is too wide.");
        if (!VLOG_is_symbol(reader, ','))
            break;
        VSCAN_next(reader.scan);
    }
    VLOG_expect_symbol(reader, '}', "a concatenation");
}

int64_t constant_sum(VLOG &reader, int depth);

int64_t constant_primary(VLOG &reader, int depth) {
    constexpr int DEPTH_LIMIT = 200;
    VSCAN &scan = reader.scan;
    if (depth > DEPTH_LIMIT)
        VSCAN_fail(scan, "an expression is nested too deep.");
    if (VLOG_is_symbol(reader, '-') || VLOG_is_symbol(reader, '+')) {
        bool negative = VLOG_is_symbol(reader, '-');
        VSCAN_next(scan);
        int64_t value = constant_primary(reader, depth + 1);
        return negative ? -value : value;
    }
    if (VLOG_is_symbol(reader, '(')) {
        VSCAN_next(scan);
        int64_t value = constant_sum(reader, depth + 1);
        VLOG_expect_symbol(reader, ')', "a constant expression");
        return value;
    }
    if (scan.token.kind == TOKEN_NUMBER) {
        std::string bits = number_bits(reader, split_number(reader));
        int64_t value = 0;
        for (char c : bits) {
            if (c == 'x' || c == 'z' || value > std::numeric_limits<int32_t>::max())
                VSCAN_fail(scan, "%s is no number that can be used here.", VSCAN_shown(scan).c_str());
            value = value * 2 + (c - '0');
        }
        VSCAN_next(scan);
        return value;
    }
    if (!VLOG_is_name(reader) || !reader.scratch.parameters.contains(scan.token.id))
        VSCAN_fail(scan, "%s is no constant.", VSCAN_shown(scan).c_str());
    int64_t value = reader.scratch.parameters[scan.token.id];
    VSCAN_next(scan);
    return value;
}

// Keeps every step of the arithmetic far from the limits of the type.
int64_t in_range(VLOG &reader, int64_t value) {
    constexpr int64_t LIMIT = int64_t{1} << 31;
    if (value < -LIMIT || value > LIMIT)
        VSCAN_fail(reader.scan, "the value of a constant expression is too large.");
    return value;
}

int64_t constant_product(VLOG &reader, int depth) {
    int64_t value = in_range(reader, constant_primary(reader, depth));
    while (VLOG_is_symbol(reader, '*') || VLOG_is_symbol(reader, '/') || VLOG_is_symbol(reader, '%')) {
        char symbol = reader.scan.token.symbol;
        VSCAN_next(reader.scan);
        int64_t right = in_range(reader, constant_primary(reader, depth));
        if (symbol != '*' && right == 0)
            VSCAN_fail(reader.scan, "a constant expression divides by 0.");
        value = in_range(reader, symbol == '*'   ? value * right
                                 : symbol == '/' ? value / right
                                                 : value % right);
    }
    return value;
}

int64_t constant_sum(VLOG &reader, int depth) {
    int64_t value = constant_product(reader, depth);
    while (VLOG_is_symbol(reader, '+') || VLOG_is_symbol(reader, '-')) {
        bool negative = VLOG_is_symbol(reader, '-');
        VSCAN_next(reader.scan);
        int64_t right = constant_product(reader, depth);
        value = in_range(reader, negative ? value - right : value + right);
    }
    return value;
}

} // namespace

int64_t VLOG_constant(VLOG &reader) {
    return constant_sum(reader, 0);
}

bool VLOG_range(VLOG &reader, int32_t &left, int32_t &right) {
    if (!VLOG_is_symbol(reader, '['))
        return false;
    VSCAN_next(reader.scan);
    int64_t from = VLOG_constant(reader);
    VLOG_expect_symbol(reader, ':', "a range");
    int64_t to = VLOG_constant(reader);
    VLOG_expect_symbol(reader, ']', "a range");
    constexpr int64_t LIMIT = 1 << 30;
    if (from < 0 || to < 0 || from > LIMIT || to > LIMIT)
        VSCAN_fail(reader.scan, "the bounds %lld and %lld of a range lie outside of 0 to %lld.",
                   static_cast<long long>(from), static_cast<long long>(to), static_cast<long long>(LIMIT));
    if (std::max(from, to) - std::min(from, to) >= VLOG_WIDTH_LIMIT)
        VSCAN_fail(reader.scan, "a vector of %lld bits is too wide.",
                   static_cast<long long>(std::max(from, to) - std::min(from, to) + 1));
    left = static_cast<int32_t>(from);
    right = static_cast<int32_t>(to);
    return true;
}

bool VLOG_expression(VLOG &reader, std::vector<int32_t> &bits) {
    bool sized = true;
    if (VLOG_is_symbol(reader, '(')) {
        VSCAN_fail(reader.scan, "an expression has no place in a netlist.");
    } else if (VLOG_is_symbol(reader, '{')) {
        append_list(reader, bits, 0);
    } else if (reader.scan.token.kind == TOKEN_NUMBER) {
        sized = append_number(reader, bits);
    } else {
        append_net(reader, bits);
    }
    char next = reader.scan.token.symbol;
    if (next != '\0' && std::string_view("+-*/%&|^~!<>?").find(next) != std::string_view::npos)
        VSCAN_fail(reader.scan, "the operator '%c' has no place in a netlist.", next);
    return sized;
}
