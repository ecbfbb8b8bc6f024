// Buffer names with '*', which stand for a family of cells: '*' covers any characters, also none. Every
// pattern is scored against the name by its literal characters, and the highest score wins.
#include "description/lookups.hh"

#include "support/console.hh"

#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int32_t NO_MATCH = -1;

/// What a wild-card name gives for covering `name`: the number of literal characters that count for it, or -1
/// when it does not cover the name. A pattern whose only '*' leads scores 0.
int32_t wild_card_score(const char *pattern_text, const char *name_text) {
    std::string_view pattern = pattern_text;
    std::string_view name = name_text;
    size_t first = pattern.find('*');
    size_t last = pattern.rfind('*');
    if (first == std::string_view::npos)
        return NO_MATCH;
    std::string_view head = pattern.substr(0, first);
    std::string_view tail = pattern.substr(last + 1);
    if (name.size() < head.size() + tail.size() || !name.starts_with(head) || !name.ends_with(tail))
        return NO_MATCH;
    // A lone suffix counts nothing, so that it never beats a prefix.
    if (first == last)
        return head.empty() ? 0 : static_cast<int32_t>(head.size() + tail.size());

    size_t score = head.size() + tail.size();
    std::string_view rest = name.substr(head.size(), name.size() - head.size() - tail.size());
    for (size_t star = first; star != last;) {
        size_t next = pattern.find('*', star + 1);
        std::string_view segment = pattern.substr(star + 1, next - star - 1);
        size_t place = rest.find(segment);
        if (place == std::string_view::npos)
            return NO_MATCH;
        rest.remove_prefix(place + segment.size());
        score += segment.size();
        star = next;
    }
    return static_cast<int32_t>(score);
}

} // namespace

const char *bs_name_transfer_wild_card_name(const char *name) {
    int32_t best = 0;
    std::vector<const char *> candidates;
    for (const char *pattern : rows(WILD_CARD_BUF_TAB)) {
        int32_t score = wild_card_score(pattern, name);
        if (score == NO_MATCH || score < best)
            continue;
        if (score > best)
            candidates.clear();
        best = score;
        candidates.push_back(pattern);
    }
    if (candidates.size() <= 1)
        return candidates.empty() ? nullptr : candidates.front();

    std::string list;
    for (const char *pattern : candidates)
        list.append(pattern).append(", ");
    vmr_fail("ERROR: BUFFER, %sin \"%s\" can match iopad '%s'.\n"
             "Please give a more specific name in \"%s\" to avoid ambiguous.\n",
             list.c_str(), LIB_FILE, name, LIB_FILE);
}
