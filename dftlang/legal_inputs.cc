// The values that ports may take together under a mode: illegal values are turned into legal ones, and rows
// that share a port are joined until no two rows of a mode do.
#include "dftlang/mapping.hh"
#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"
#include "support/console.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace {

using NAMES = std::vector<const char *>;

struct INPUT_ROW {
    NAMES ports;
    NAMES patterns;
    int32_t line;
};

struct MERGED_ROW {
    INPUT_ROW row;
    std::vector<INPUT_ROW> sources;
};

/// Pairs of patterns that one mode may cost. Real constraints need some thousands; a row of many ports would
/// otherwise never end.
constexpr size_t most_pattern_pairs = size_t(1) << 24;
constexpr size_t most_illegal_ports = 20;

size_t pattern_pairs;

void spend(size_t pairs, int32_t line) {
    pattern_pairs += pairs;
    if (pattern_pairs > most_pattern_pairs)
        error_handler(in_file_name, line, MESSAGE_TOO_MANY_INPUTS);
}

INPUT_ROW input_row(SCAN_AST &statement) {
    INPUT_ROW row = {{}, {}, statement.line};
    for (SCAN_AST &name : scan_children(SCAN_FIND_CHILD(&statement, IDENT_LIST_NODE)))
        row.ports.push_back(name.attribute);
    for (SCAN_AST &pattern : scan_children(SCAN_FIND_CHILD(&statement, PATTERN_LIST_NODE)))
        row.patterns.push_back(pattern.attribute);
    return row;
}

std::vector<INPUT_ROW> input_rows(SCAN_AST &mode, SCAN_KIND kind) {
    std::vector<INPUT_ROW> made;
    for (SCAN_AST &statement : scan_children(SCAN_FIND_CHILD(&mode, kind)))
        made.push_back(input_row(statement));
    return made;
}

void check_mapping_num_port_pat(const std::vector<INPUT_ROW> &inputs, bool illegal) {
    for (const INPUT_ROW &row : inputs) {
        for (const char *pattern : row.patterns) {
            if (std::strlen(pattern) != row.ports.size())
                error_handler(in_file_name, row.line, MESSAGE_PORT_COUNT, pattern);
            if (illegal && std::strpbrk(pattern, "XSZ") != nullptr)
                error_handler(in_file_name, row.line, MESSAGE_ILLEGAL_PATTERN, pattern);
        }
    }
}

/// The values of `count` ports as a text: port i is '1' when bit i of `value` is set.
std::string get_new_pattern(size_t value, size_t count) {
    std::string text(count, '0');
    for (size_t i = 0; i < count; i++)
        text[i] = (value >> i & 1) != 0 ? '1' : '0';
    return text;
}

/// Appends the complement of each illegal row to the legal ones.
void transfer_illegal_to_legal(const std::vector<INPUT_ROW> &illegal, std::vector<INPUT_ROW> &legal) {
    for (const INPUT_ROW &row : illegal) {
        if (row.ports.size() > most_illegal_ports)
            error_handler(in_file_name, row.line, MESSAGE_TOO_MANY_INPUTS);
        size_t values = size_t(1) << row.ports.size();
        spend(values, row.line);
        std::unordered_set<std::string_view> refused(row.patterns.begin(), row.patterns.end());
        INPUT_ROW made = {row.ports, {}, row.line};
        for (size_t value = 0; value < values; value++) {
            std::string pattern = get_new_pattern(value, row.ports.size());
            if (!refused.contains(pattern))
                made.patterns.push_back(keep_text(pattern));
        }
        if (!made.patterns.empty())
            legal.push_back(std::move(made));
    }
}

/// Positions of one port in two rows.
struct COMMON_PORT {
    size_t a;
    size_t b;
};

std::vector<COMMON_PORT> common_ports(const INPUT_ROW &a, const INPUT_ROW &b) {
    std::unordered_multimap<std::string_view, size_t> in_b;
    for (size_t j = 0; j < b.ports.size(); j++)
        in_b.emplace(b.ports[j], j);
    std::vector<COMMON_PORT> common;
    for (size_t i = 0; i < a.ports.size(); i++) {
        size_t first = common.size();
        auto [from, to] = in_b.equal_range(a.ports[i]);
        for (auto at = from; at != to; ++at)
            common.push_back({i, at->second});
        std::sort(common.begin() + static_cast<std::ptrdiff_t>(first), common.end(),
                  [](const COMMON_PORT &x, const COMMON_PORT &y) { return x.b < y.b; });
    }
    return common;
}

/// The first pair of positions at which the patterns differ, or the number of pairs.
size_t first_difference(const char *a, const char *b, const std::vector<COMMON_PORT> &common) {
    size_t i = 0;
    while (i < common.size() && a[common[i].a] == b[common[i].b])
        i++;
    return i;
}

void warn_no_match(const std::vector<INPUT_ROW> &sources) {
    error_printf("WARNING : the LEGAL_INPUTS as following don't match:\n");
    for (const INPUT_ROW &row : sources) {
        std::string text = format_text("          line-%d ", row.line);
        for (size_t i = 0; i < row.ports.size(); i++)
            text += std::string(row.ports[i]) + (i + 1 < row.ports.size() ? ", " : ";\n");
        text += "          =  ";
        for (size_t i = 0; i < row.patterns.size(); i++)
            text += std::string(row.patterns[i]) + (i + 1 < row.patterns.size() ? ", " : ";\n");
        error_printf("%s", text.c_str());
    }
    has_error = 1;
}

/// Joins two rows into `a`; false, with a warning, when no pattern is left.
bool combine_two_relative_legal(INPUT_ROW &a, const INPUT_ROW &b, const std::vector<INPUT_ROW> &sources) {
    std::vector<COMMON_PORT> common = common_ports(a, b);
    bool same = common.size() == a.ports.size() && common.size() == b.ports.size();
    std::vector<bool> is_common(b.ports.size(), false);
    for (const COMMON_PORT &pair : common)
        is_common[pair.b] = true;
    spend(a.patterns.size() * b.patterns.size(), b.line);
    INPUT_ROW made = {a.ports, {}, a.line};
    for (size_t j = 0; j < b.ports.size(); j++) {
        if (!is_common[j])
            made.ports.push_back(b.ports[j]);
    }
    std::unordered_set<std::string> taken;
    for (const char *pattern_a : a.patterns) {
        for (const char *pattern_b : b.patterns) {
            std::string text = same ? pattern_b : pattern_a;
            size_t differs = same ? common.size() : first_difference(pattern_a, pattern_b, common);
            if (differs < common.size()) {
                if (differs > 0)
                    error_printf("WARNING: the port '%s' in LEGAL_INPUT doesn't match.\n",
                                 a.ports[common[differs].a]);
                continue;
            }
            for (size_t j = 0; !same && j < b.ports.size(); j++) {
                if (!is_common[j])
                    text += pattern_b[j];
            }
            if (taken.insert(text).second)
                made.patterns.push_back(keep_text(text));
        }
    }
    if (made.patterns.empty()) {
        warn_no_match(sources);
        return false;
    }
    a = std::move(made);
    return true;
}

bool same_row(const INPUT_ROW &a, const INPUT_ROW &b) {
    return a.line == b.line && a.ports == b.ports &&
           a.patterns == b.patterns; // kept texts: equal ones are one
}

void add_source(std::vector<INPUT_ROW> &sources, const INPUT_ROW &row) {
    for (const INPUT_ROW &source : sources) {
        if (same_row(source, row))
            return;
    }
    sources.push_back(row);
}

/// For each row, the later rows that share a port with it, in order.
std::vector<std::vector<size_t>> related_rows(const std::vector<MERGED_ROW> &all) {
    std::unordered_map<std::string_view, std::vector<size_t>> by_port;
    std::vector<std::vector<size_t>> related(all.size());
    for (size_t i = all.size(); i-- > 0;) {
        for (const char *port : all[i].row.ports) {
            std::vector<size_t> &later = by_port[port];
            spend(later.size(), all[i].row.line);
            related[i].insert(related[i].end(), later.begin(), later.end());
        }
        for (const char *port : all[i].row.ports)
            by_port[port].push_back(i);
        std::sort(related[i].begin(), related[i].end());
        related[i].erase(std::unique(related[i].begin(), related[i].end()), related[i].end());
        std::erase(related[i], i);
    }
    return related;
}

/// One round: joins each row with the later ones related to it. Rows that are related to none go to `kept`;
/// what was joined is the result.
std::vector<MERGED_ROW> join_round(const std::vector<MERGED_ROW> &all, std::vector<MERGED_ROW> &kept) {
    std::vector<std::vector<size_t>> related = related_rows(all);
    std::vector<bool> used(all.size(), false);
    std::vector<MERGED_ROW> joined;
    for (size_t i = 0; i < all.size(); i++) {
        MERGED_ROW merged = all[i];
        bool matches = !related[i].empty();
        for (size_t other : related[i]) {
            used[i] = used[other] = true;
            for (const INPUT_ROW &source : all[other].sources)
                add_source(merged.sources, source);
            matches = combine_two_relative_legal(merged.row, all[other].row, merged.sources);
            if (!matches)
                break;
        }
        if (matches)
            joined.push_back(std::move(merged));
    }
    for (size_t i = 0; i < all.size(); i++) {
        if (!used[i])
            kept.push_back(all[i]);
    }
    return joined;
}

LEGAL_ROW legal_row(const INPUT_ROW &row) {
    LEGAL_ROW made = {nullptr, nullptr, row.line};
    for (const char *port : row.ports)
        append_row(made.ports, port);
    for (const char *pattern : row.patterns)
        append_row(made.patterns, pattern);
    return made;
}

/// Joins related rows until none are left, and stores them: rows that needed no joining first.
void combine_relative_legal_inputs(const std::vector<INPUT_ROW> &legal, ATPG_MODE &mode) {
    std::vector<MERGED_ROW> all;
    for (const INPUT_ROW &row : legal)
        all.push_back({row, {row}});
    std::vector<MERGED_ROW> kept;
    size_t unjoined = 0;
    for (bool first_round = true; !all.empty(); first_round = false) {
        all = join_round(all, kept);
        if (first_round)
            unjoined = kept.size();
    }
    for (size_t i = 0; i < kept.size(); i++) {
        append_row(mode.legal, legal_row(kept[i].row));
        if (i < unjoined)
            continue;
        MERGED_LEGAL merged = {legal_row(kept[i].row), nullptr};
        for (const INPUT_ROW &source : kept[i].sources)
            append_row(merged.sources, legal_row(source));
        append_row(mode.combine_legal, merged);
    }
}

} // namespace

void map_atpg_constraints(SCAN_AST *block) {
    for (SCAN_AST &node : scan_children(block)) {
        pattern_pairs = 0;
        ATPG_MODE mode = {value_text(&node), nullptr, nullptr, nullptr};
        copy_body(&node, mode.statements);
        std::vector<INPUT_ROW> illegal = input_rows(node, ILLEGAL_INPUTS_LIST_NODE);
        std::vector<INPUT_ROW> legal = input_rows(node, LEGAL_INPUTS_LIST_NODE);
        check_mapping_num_port_pat(illegal, true);
        check_mapping_num_port_pat(legal, false);
        transfer_illegal_to_legal(illegal, legal);
        combine_relative_legal_inputs(legal, mode);
        append_row(DFT_OBJECT->atpg_constraints, mode);
    }
}
