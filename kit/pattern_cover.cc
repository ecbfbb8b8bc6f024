// What each pin is tried for: by SVF alone, by the bench, or by a tester that has the pins.
#include "kit/patterns.hh"

#include "support/text.hh"

namespace {

constexpr const char *ROLE_WORDS[] = {"test port", "input", "bidirectional", "output", "left alone"};

/// The line of SVF that has the step's effect: its own, or that of the scan ahead of it.
int32_t line_of(const std::vector<int32_t> &line_of_step, int32_t step) {
    while (step > 0 && line_of_step[static_cast<size_t>(step)] == 0)
        --step;
    return step < 0 ? 0 : line_of_step[static_cast<size_t>(step)];
}

std::string row_text(const std::string &pin, const char *what, int32_t step,
                     const std::vector<int32_t> &lines, int32_t looped) {
    if (step < 0)
        return "";
    std::string seen = looped >= 0 ? format_text("SVF line %d captures it", line_of(lines, looped))
                                   : std::string("needs a tester");
    return format_text("%-24s %-12s SVF line %-7d bench step %-7d %s\n", pin.c_str(), what,
                       line_of(lines, step), step, seen.c_str());
}

} // namespace

std::string pattern_cover(const PATTERN_LIST &list, const std::vector<int32_t> &line_of_step) {
    std::string text = "# What the patterns of " + list.design +
                       " try at each pin, first place of each.\n"
                       "# \"needs a tester\": SVF alone moves the pin or takes it, but can't see or set its "
                       "value; the bench does.\n";
    for (size_t i = 0; i < list.pins.size(); ++i) {
        const PATTERN_PIN &pin = list.pins[i];
        const PATTERN_COVER &cover = list.cover[i];
        std::string rows;
        constexpr const char *drives[] = {"drives 0", "drives 1", "releases"};
        constexpr const char *captures[] = {"captures 0", "captures 1"};
        for (size_t k = 0; k < 3; ++k)
            rows += row_text(pin.name, drives[k], cover.drives[k], line_of_step,
                             k < 2 ? cover.drives_looped : -1);
        for (size_t k = 0; k < 2; ++k)
            rows += row_text(pin.name, captures[k], cover.captures[k], line_of_step, cover.drives_looped);
        if (rows.empty())
            rows = format_text("%-24s %s%s\n", pin.name.c_str(), ROLE_WORDS[pin.role],
                               pin.role == PIN_TEST ? "" : ", no check");
        text += rows;
    }
    for (const std::string &note : list.notes)
        text += "# " + note + "\n";
    return text;
}
