// Joining goes by rounds: each row takes in the later rows that share a port with it, and what was joined
// makes the rows of the next round, until none are related. The order of rows, ports, patterns and warnings
// follows from that, pair by pair. Most pairs change nothing: after a few rounds nearly every row holds all
// that its later ones hold. So a row is known by the rows that it was made of, its sources.
//
// A round in which no pair changed or warned leaves later rounds nothing to do but to drop rows.
#include "dftlang/join_inputs.hh"

#include "dftlang/messages.hh"
#include "support/console.hh"
#include "support/text.hh"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace {

using BITS = std::vector<uint64_t>;

/// Joining takes the third power of their number: ten seconds for so many.
constexpr size_t most_related_rows = 1000;

void set_bit(BITS &bits, size_t place) {
    bits[place / 64] |= uint64_t(1) << place % 64;
}

bool has_bit(const BITS &bits, size_t place) {
    return (bits[place / 64] >> place % 64 & 1) != 0;
}

bool meet(const BITS &a, const BITS &b) {
    for (size_t i = 0; i < a.size(); i++) {
        if ((a[i] & b[i]) != 0)
            return true;
    }
    return false;
}

bool covers(const BITS &a, const BITS &b) {
    for (size_t i = 0; i < a.size(); i++) {
        if ((b[i] & ~a[i]) != 0)
            return false;
    }
    return true;
}

/// A row under way. Ports and sources are numbers in its group.
struct JOIN {
    std::vector<size_t> ports;
    std::vector<std::string> patterns;
    std::vector<size_t> sources;
    BITS has_port;
    BITS has_source;
    bool has_repeats; ///< a port or a pattern stood twice in one of its sources
    bool is_used;     ///< it met another row in this round
    bool is_alive;    ///< it stands in the next round
    size_t group;
};

/// Rows that are related, by others in between too.
struct GROUP {
    std::vector<const char *> ports;
    std::vector<size_t> rows;     ///< the sources, as rows of the mode
    std::vector<size_t> alive;    ///< its rows under way
    size_t cursor;                ///< the next one of them in this round
    bool is_still;                ///< nothing has changed and nothing was said in this round
    std::vector<size_t> position; ///< of each port in the row that takes others in, or no_place
};

constexpr size_t no_place = static_cast<size_t>(-1);

struct KEPT {
    size_t round;
    size_t row;
    auto operator<=>(const KEPT &) const = default;
};

/// The joining of one mode.
struct JOINING {
    const std::vector<INPUT_ROW> &rows;
    std::vector<std::vector<size_t>> ports; ///< of each row, as numbers in its group
    std::vector<JOIN> joins;                ///< each begins as the row of its number
    std::vector<GROUP> groups;
    std::vector<size_t> active; ///< groups that still have rows
    std::vector<KEPT> kept;
    size_t held = 0; ///< patterns of all joins
    size_t mismatches = 0;
};

enum OUTCOME { UNCHANGED, CHANGED, NOTHING_LEFT };

void hold(JOINING &all, size_t more, int32_t line) {
    if (all.held + more > most_patterns)
        error_handler(in_file_name, line, MESSAGE_TOO_MANY_INPUTS);
}

void warn_mismatch(JOINING &all, GROUP &group, const char *port) {
    if (all.mismatches >= most_mismatches)
        return;
    group.is_still = false;
    error_printf("WARNING: the port '%s' in LEGAL_INPUT doesn't match.\n", port);
    if (++all.mismatches == most_mismatches)
        error_printf("WARNING: further ports in LEGAL_INPUT that don't match are not told.\n");
}

void warn_no_match(const JOINING &all, const GROUP &group, const JOIN &a) {
    error_printf("WARNING : the LEGAL_INPUTS as following don't match:\n");
    for (size_t source : a.sources) {
        const INPUT_ROW &row = all.rows[group.rows[source]];
        std::string text = format_text("          line-%d ", row.line);
        for (size_t i = 0; i < row.ports.size(); i++)
            text += std::string(row.ports[i]) + (i + 1 < row.ports.size() ? ", " : ";\n");
        text += "          =  ";
        for (size_t i = 0; i < row.patterns.size(); i++)
            text += row.patterns[i] + (i + 1 < row.patterns.size() ? ", " : ";\n");
        error_printf("%s", text.c_str());
    }
}

void add_port(GROUP &group, JOIN &a, size_t port) {
    group.position[port] = a.ports.size();
    set_bit(a.has_port, port);
    a.ports.push_back(port);
}

/// Positions of one port in two rows.
struct COMMON_PORT {
    size_t a;
    size_t b;
    auto operator<=>(const COMMON_PORT &) const = default;
};

using PATTERNS = std::vector<const std::string *>;

/// Finds the patterns of a row that agree with one of another at some common ports, in their order.
struct MATCHER {
    const std::vector<std::string> &patterns;
    std::vector<COMMON_PORT> common;
    std::unordered_map<std::string, PATTERNS> index; ///< of many patterns, by what stands at the ports
    PATTERNS found;
};

/// A look at each pattern is quicker than an index of so few.
constexpr size_t few_patterns = 8;

const PATTERNS &matches_of(MATCHER &matcher, const std::string &pattern) {
    const std::vector<COMMON_PORT> &common = matcher.common;
    if (matcher.patterns.size() <= few_patterns) {
        matcher.found.clear();
        for (const std::string &other : matcher.patterns) {
            auto agrees = [&](const COMMON_PORT &pair) { return pattern[pair.a] == other[pair.b]; };
            if (std::all_of(common.begin(), common.end(), agrees))
                matcher.found.push_back(&other);
        }
        return matcher.found;
    }
    std::string key(common.size(), ' ');
    if (matcher.index.empty()) {
        for (const std::string &other : matcher.patterns) {
            for (size_t i = 0; i < common.size(); i++)
                key[i] = other[common[i].b];
            matcher.index[key].push_back(&other);
        }
    }
    for (size_t i = 0; i < common.size(); i++)
        key[i] = pattern[common[i].a];
    auto found = matcher.index.find(key);
    return found == matcher.index.end() ? matcher.found : found->second;
}

/// In no order.
std::vector<COMMON_PORT> common_ports(const GROUP &group, const JOIN &a, const JOIN &b) {
    std::vector<COMMON_PORT> common;
    common.reserve(b.ports.size());
    for (size_t j = 0; j < b.ports.size(); j++) {
        if (!has_bit(a.has_port, b.ports[j]))
            continue;
        if (!a.has_repeats) {
            common.push_back({group.position[b.ports[j]], j});
            continue;
        }
        for (size_t i = 0; i < a.ports.size(); i++) {
            if (a.ports[i] == b.ports[j])
                common.push_back({i, j});
        }
    }
    return common;
}

/// The first port at which two patterns differ that agree at the first of all; null when there is none.
const COMMON_PORT *later_difference(const std::vector<COMMON_PORT> &common, const std::string &a,
                                    const std::string &b) {
    const COMMON_PORT *found = nullptr;
    for (const COMMON_PORT &pair : common) {
        if (a[pair.a] != b[pair.b] && (found == nullptr || pair < *found))
            found = &pair;
    }
    return found;
}

std::vector<std::string> without_repeats(std::vector<std::string> patterns) {
    std::unordered_set<std::string> known;
    std::erase_if(patterns, [&known](const std::string &pattern) { return !known.insert(pattern).second; });
    return patterns;
}

/// The patterns of two rows that agree, and a warning for each pair that agrees at first and then differs.
std::vector<std::string> agreeing_patterns(JOINING &all, GROUP &group, const JOIN &a, const JOIN &b,
                                           const std::vector<COMMON_PORT> &common) {
    std::vector<size_t> fresh;
    for (size_t j = 0; j < b.ports.size(); j++) {
        if (!has_bit(a.has_port, b.ports[j]))
            fresh.push_back(j);
    }
    MATCHER by_first = {b.patterns, {*std::min_element(common.begin(), common.end())}, {}, {}};
    MATCHER by_all = {b.patterns, common, {}, {}};
    std::vector<std::string> made;
    for (const std::string &pattern : a.patterns) {
        bool is_told = all.mismatches < most_mismatches;
        for (const std::string *other : matches_of(is_told ? by_first : by_all, pattern)) {
            const COMMON_PORT *differs = is_told ? later_difference(common, pattern, *other) : nullptr;
            if (differs != nullptr) {
                warn_mismatch(all, group, group.ports[a.ports[differs->a]]);
                continue;
            }
            hold(all, made.size(), all.rows[group.rows[b.sources[0]]].line);
            std::string &text = made.emplace_back(pattern);
            for (size_t j : fresh)
                text += (*other)[j];
        }
    }
    return made;
}

bool same_ports(const JOIN &a, const JOIN &b) {
    return a.ports.size() == b.ports.size() && a.has_port == b.has_port;
}

/// Joins the patterns pair by pair. Of two rows of the same ports the later one's patterns stand alone.
OUTCOME join_pairs(JOINING &all, GROUP &group, JOIN &a, const JOIN &b) {
    bool has_repeats = a.has_repeats || b.has_repeats;
    bool same = !has_repeats && same_ports(a, b);
    if (same && a.patterns == b.patterns)
        return UNCHANGED;
    std::vector<COMMON_PORT> common;
    if (!same) {
        common = common_ports(group, a, b);
        same = common.size() == a.ports.size() && common.size() == b.ports.size();
    }
    std::vector<std::string> made = same ? b.patterns : agreeing_patterns(all, group, a, b, common);
    if (has_repeats)
        made = without_repeats(std::move(made));
    size_t ports = a.ports.size();
    const BITS before = a.has_port;
    for (size_t port : b.ports) { // one that a row names twice stays twice
        if (!has_bit(before, port))
            add_port(group, a, port);
    }
    bool is_changed = a.ports.size() != ports || made != a.patterns;
    all.held += made.size() - a.patterns.size();
    a.patterns = std::move(made);
    a.has_repeats = has_repeats;
    if (a.patterns.empty()) {
        warn_no_match(all, group, a);
        return NOTHING_LEFT;
    }
    return is_changed ? CHANGED : UNCHANGED;
}

OUTCOME combine_two_relative_legal(JOINING &all, GROUP &group, JOIN &a, const JOIN &b) {
    size_t first_new = a.sources.size();
    if (!covers(a.has_source, b.has_source)) {
        for (size_t source : b.sources) {
            if (!has_bit(a.has_source, source))
                a.sources.push_back(source);
            set_bit(a.has_source, source);
        }
    }
    bool has_new = a.sources.size() > first_new;
    OUTCOME outcome = join_pairs(all, group, a, b);
    return outcome == UNCHANGED && has_new ? CHANGED : outcome;
}

/// One row of a round: takes in the later rows that share a port with what it was at the round's beginning.
void take_turn(JOINING &all, size_t row) {
    JOIN &a = all.joins[row];
    GROUP &group = all.groups[a.group];
    group.cursor++;
    BITS start = a.has_port;
    for (size_t i = 0; i < a.ports.size(); i++)
        group.position[a.ports[i]] = i;
    a.is_alive = false;
    for (size_t later = group.cursor; later < group.alive.size(); later++) {
        JOIN &b = all.joins[group.alive[later]];
        if (!meet(start, b.has_port))
            continue;
        a.is_used = b.is_used = true;
        OUTCOME outcome = combine_two_relative_legal(all, group, a, b);
        group.is_still = group.is_still && outcome == UNCHANGED;
        a.is_alive = outcome != NOTHING_LEFT;
        if (!a.is_alive)
            break;
    }
    for (size_t port : a.ports)
        group.position[port] = no_place;
}

void let_go(JOINING &all, size_t row) {
    all.held -= all.joins[row].patterns.size();
    all.joins[row] = JOIN();
}

/// What is left of a group for the next round. A row that met no other is done; one that was taken in, or has
/// nothing left, goes.
void end_round(JOINING &all, GROUP &group, size_t round) {
    std::vector<size_t> alive;
    for (size_t row : group.alive) {
        JOIN &join = all.joins[row];
        if (join.is_alive)
            alive.push_back(row);
        else if (!join.is_used)
            all.kept.push_back({round, row});
        else
            let_go(all, row);
        join.is_used = false;
    }
    group.alive = std::move(alive);
}

/// The rounds that are left to a group in which nothing changes any more: each drops the rows that have no
/// later one. A row that no earlier one takes in stays, and is done when all later ones have gone.
void end_still_group(JOINING &all, GROUP &group, size_t round) {
    std::vector<size_t> rounds(group.alive.size(), 1);
    std::vector<bool> is_taken(group.alive.size(), false);
    for (size_t i = group.alive.size(); i-- > 0;) {
        for (size_t later = i + 1; later < group.alive.size(); later++) {
            if (meet(all.joins[group.alive[i]].has_port, all.joins[group.alive[later]].has_port)) {
                rounds[i] = std::max(rounds[i], rounds[later] + 1);
                is_taken[later] = true;
            }
        }
    }
    for (size_t i = 0; i < group.alive.size(); i++) {
        if (is_taken[i])
            let_go(all, group.alive[i]);
        else
            all.kept.push_back({round + rounds[i], group.alive[i]});
    }
    group.alive.clear();
}

void join_round(JOINING &all, size_t round) {
    std::vector<size_t> turns;
    for (size_t number : all.active) {
        GROUP &group = all.groups[number];
        group.cursor = 0;
        group.is_still = true;
        turns.insert(turns.end(), group.alive.begin(), group.alive.end());
    }
    std::sort(turns.begin(), turns.end());
    for (size_t row : turns)
        take_turn(all, row);
    for (size_t number : all.active) {
        end_round(all, all.groups[number], round);
        if (all.groups[number].is_still)
            end_still_group(all, all.groups[number], round);
    }
    std::erase_if(all.active, [&all](size_t number) { return all.groups[number].alive.empty(); });
}

/// For each row the first row that it is related to.
std::vector<size_t> first_related(const std::vector<INPUT_ROW> &rows) {
    std::vector<size_t> first(rows.size());
    std::iota(first.begin(), first.end(), size_t(0));
    auto root = [&first](size_t row) {
        while (first[row] != row)
            row = first[row] = first[first[row]];
        return row;
    };
    std::unordered_map<std::string_view, size_t> by_port;
    for (size_t row = 0; row < rows.size(); row++) {
        for (const char *port : rows[row].ports) {
            size_t other = root(by_port.try_emplace(port, row).first->second), own = root(row);
            first[std::max(other, own)] = std::min(other, own);
        }
    }
    for (size_t row = 0; row < rows.size(); row++)
        first[row] = root(row);
    return first;
}

/// Splits the rows into groups and numbers the ports of each.
void make_groups(JOINING &all) {
    std::vector<size_t> first = first_related(all.rows);
    std::unordered_map<size_t, size_t> group_of;
    std::unordered_map<std::string_view, size_t> number_of; // a port is in one group alone
    for (size_t row = 0; row < all.rows.size(); row++) {
        auto [found, is_new] = group_of.try_emplace(first[row], all.groups.size());
        if (is_new)
            all.groups.emplace_back();
        GROUP &group = all.groups[found->second];
        group.rows.push_back(row);
        if (group.rows.size() > most_related_rows)
            error_handler(in_file_name, all.rows[row].line, MESSAGE_TOO_MANY_INPUTS);
        std::vector<size_t> &ports = all.ports.emplace_back();
        for (const char *port : all.rows[row].ports) {
            ports.push_back(number_of.try_emplace(port, group.ports.size()).first->second);
            if (ports.back() == group.ports.size())
                group.ports.push_back(port);
        }
    }
}

void begin_joins(JOINING &all) {
    make_groups(all);
    all.joins.resize(all.rows.size());
    for (size_t number = 0; number < all.groups.size(); number++) {
        GROUP &group = all.groups[number];
        group.alive = group.rows;
        group.position.assign(group.ports.size(), no_place);
        all.active.push_back(number);
        for (size_t source = 0; source < group.rows.size(); source++) {
            size_t row = group.rows[source];
            JOIN &join = all.joins[row];
            join.ports = all.ports[row];
            join.patterns = all.rows[row].patterns;
            join.sources = {source};
            join.has_port.resize(group.ports.size() / 64 + 1);
            join.has_source.resize(group.rows.size() / 64 + 1);
            set_bit(join.has_source, source);
            size_t repeats = 0;
            for (size_t port : join.ports) {
                repeats += has_bit(join.has_port, port) ? 1 : 0;
                set_bit(join.has_port, port);
            }
            join.has_repeats = repeats > 0 || without_repeats(join.patterns).size() < join.patterns.size();
            join.is_used = false;
            join.group = number;
            hold(all, join.patterns.size(), all.rows[row].line);
            all.held += join.patterns.size();
        }
    }
}

JOINED_ROW joined_row(const JOINING &all, size_t row) {
    const JOIN &join = all.joins[row];
    const GROUP &group = all.groups[join.group];
    JOINED_ROW made = {{{}, join.patterns, all.rows[row].line}, {}};
    for (size_t port : join.ports)
        made.row.ports.push_back(group.ports[port]);
    for (size_t source : join.sources)
        made.sources.push_back(group.rows[source]);
    return made;
}

} // namespace

std::vector<JOINED_ROW> combine_relative_legal_inputs(const std::vector<INPUT_ROW> &rows) {
    JOINING all{rows, {}, {}, {}, {}, {}};
    begin_joins(all);
    for (size_t round = 1; !all.active.empty(); round++)
        join_round(all, round);
    std::ranges::sort(all.kept);
    std::vector<JOINED_ROW> made;
    for (const KEPT &kept : all.kept)
        made.push_back(joined_row(all, kept.row));
    return made;
}
