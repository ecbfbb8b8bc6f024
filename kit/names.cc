#include "kit/names.hh"

#include "support/text.hh"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace {

bool is_letter(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

/// Letters, digits and `more` behind a first letter.
bool has_form(std::string_view name, std::string_view more) {
    size_t first = name.find_first_not_of('_');
    if (first > 1 || first >= name.size() || !is_letter(name[first]))
        return false;
    return std::all_of(name.begin(), name.end(), [more](char c) {
        return is_letter(c) || std::isdigit(static_cast<unsigned char>(c)) != 0 || more.find(c) != more.npos;
    });
}

constexpr std::string_view PIN_FILE_WORDS[] = {
    "BSC",    "PAD",    "I",  "O",   "C",  "IO",   "I_ONLY", "O_ONLY", "PAD_EN_L", "PAD_EN_H",
    "ACCESS", "ENABLE", "TO", "AND", "OR", "NAND", "NOR",    "XOR",    "XNOR"};

// Each list begins with the surest name.
constexpr std::string_view OUTPUT_PINS[] = {"c",  "y",   "z", "o",   "in",   "di",       "din",
                                            "zi", "cin", "q", "out", "dout", "pad2core", "i_core"};
constexpr std::string_view INPUT_PINS[] = {"a", "i", "out", "do", "dout", "d", "data", "din", "core2pad"};
constexpr std::string_view LOW_ENABLES[] = {"oen", "oe_n", "oeb", "oe_b", "noe", "oez", "en_n",
                                            "enb", "ten",  "tn",  "e_n",  "gn",  "t",   "ts"};
constexpr std::string_view HIGH_ENABLES[] = {"oe", "en", "e", "oe_h", "eo", "out_en"};

template <size_t N> int rank_in(const std::string_view (&list)[N], const std::string &name) {
    const std::string_view *found = std::find(std::begin(list), std::end(list), name);
    return found != std::end(list) ? static_cast<int>(found - std::begin(list)) : -1;
}

} // namespace

bool kit_port_name_fits(std::string_view name) {
    return has_form(name, "_.[]") &&
           std::find(std::begin(PIN_FILE_WORDS), std::end(PIN_FILE_WORDS), name) == std::end(PIN_FILE_WORDS);
}

bool kit_cell_name_fits(std::string_view name) {
    return has_form(name, "_[]");
}

bool kit_is_power_name(std::string_view name) {
    std::string low = lower_case(name);
    for (size_t skip = 0; skip <= 2 && skip < low.size(); ++skip) // VDD, DVDD, IOVDD
        for (std::string_view stem : {"vdd", "vss", "vcc", "vee", "gnd", "vpp", "vpwr", "vgnd", "vnb", "vpb",
                                      "vnw", "vpw", "vswitch"})
            if (low.compare(skip, stem.size(), stem) == 0)
                return true;
    return false;
}

bool kit_is_clock_pin_name(std::string_view name) {
    std::string low = lower_case(name);
    if (low == "ck" || low == "cp" || low == "ckn" || low == "cpn")
        return true;
    return low.find("clk") != low.npos || low.find("clock") != low.npos;
}

PIN_HABIT kit_pin_habit(std::string_view pin, bool is_output, int &rank) {
    std::string low = lower_case(pin);
    if (is_output) {
        rank = rank_in(OUTPUT_PINS, low);
        return rank >= 0 ? HABIT_OUTPUT : HABIT_NONE;
    }
    if ((rank = rank_in(INPUT_PINS, low)) >= 0)
        return HABIT_INPUT;
    if ((rank = rank_in(LOW_ENABLES, low)) >= 0)
        return HABIT_EN_LOW;
    rank = rank_in(HIGH_ENABLES, low);
    return rank >= 0 ? HABIT_EN_HIGH : HABIT_NONE;
}

KIT_BIT kit_bit(const std::string &name) {
    size_t open = name.rfind('[');
    if (open == name.npos || open == 0 || name.back() != ']' || name.size() - open > 12 ||
        name.size() - open < 3 || name.find_first_not_of("0123456789", open + 1) != name.size() - 1)
        return {name, -1};
    return {name.substr(0, open), std::stol(name.substr(open + 1))};
}

bool kit_counts_before(const std::string &a, const std::string &b) {
    size_t i = 0, j = 0;
    auto number = [](const std::string &text, size_t &at) {
        size_t first = at;
        while (at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0)
            ++at;
        std::string digits = text.substr(first, at - first);
        digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
        return digits;
    };
    while (i < a.size() && j < b.size()) {
        if (std::isdigit(static_cast<unsigned char>(a[i])) != 0 &&
            std::isdigit(static_cast<unsigned char>(b[j])) != 0) {
            std::string x = number(a, i), y = number(b, j);
            if (x != y)
                return x.size() != y.size() ? x.size() < y.size() : x < y;
        } else if (a[i] != b[j]) {
            return a[i] < b[j];
        } else {
            ++i;
            ++j;
        }
    }
    return a.size() - i != b.size() - j ? i == a.size() : a < b;
}
