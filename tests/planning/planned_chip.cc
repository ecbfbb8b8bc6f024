#include "tests/planning/planned_chip.hh"

#include <regex>
#include <sstream>

namespace {

template <class F> std::string lines_where(const std::string &text, F keep) {
    std::istringstream lines(text);
    std::string kept;
    for (std::string line; std::getline(lines, line);)
        if (keep(line))
            kept += line + "\n";
    return kept;
}

/// The commands that concern cells and pads: without the ports and pins of the TAP, the trees and the chain.
std::string cell_commands(const std::string &commands) {
    static const std::regex other(
        R"(^(edit|path|save|quit)|^add (\w+ (input|output)$|TAP )|_buf_|_s[io]\b|^connect BCELL\w+\{hz\}|)"
        R"(\{(so|si|ck|sh|tk|up|m|r|m2|shift|clock|update|rst|first|last|t\w\w|chain_\w+)\}|)"
        R"(^(?!.*\{S2?\}).*\{mode\d\})");
    return lines_where(commands, [](const std::string &line) { return !std::regex_search(line, other); });
}

std::string shown_commands(const std::string &commands, int shows) {
    if ((shows & WHOLE_CMD) != 0)
        return commands;
    if ((shows & TREE_LINES) == 0)
        return cell_commands(commands);
    return lines_where(commands, [](const std::string &line) { return line.find("_buf_") != line.npos; });
}

} // namespace

run_result planning_folder::insert(const CHIP &chip) const {
    return run("-no_expand " + chip.options.value_or("-add_tap"));
}

run_result planning_folder::plan(CHIP chip) const {
    if (chip.tap_items.value_or("").find("%HIGHZ_COMMAND") != std::string::npos)
        chip.instructions = "%INSTRUCTION HIGHZ = (10) ACCESS bypass;";
    lay_out(chip);
    return insert(chip);
}

std::string planning_folder::outcome(const run_result &result, int shows) const {
    constexpr const char *RULE = "====================================================\n";
    std::string report = between(result.out, std::string("Report\n") + RULE, RULE);
    if ((shows & WHOLE_REPORT) == 0) // without the TAP's pins, the pins of each cell and the trees
        report = lines_where(between(report, "-\n\n", "\n\n  --"),
                             [](const std::string &line) { return line.rfind("  ** Add", 0) == 0; });
    std::string text = "== messages\n" + messages_of(result.out) + "== report\n" + report;
    if ((shows & NO_CMD) == 0)
        for (const std::string &name : command_files())
            text += "== " + name + ".cmd\n" + shown_commands(commands(name), shows);
    // The five lines of the head are the same in every file.
    std::string order = scratch.read("chip.bso");
    size_t head = 0;
    for (int line = 0; line < 5; ++line)
        head = order.find('\n', head) + 1;
    return text + "== chip.bso\n" + order.substr(head);
}

void planning_folder::expect_outcomes(std::span<const CHIP> chips) const {
    for (const CHIP &chip : chips) {
        SCOPED_TRACE(chip.name);
        run_result result = plan(chip);
        EXPECT_EQ(result.status, 0) << result.out;
        expect_file(std::string("planning/expected/") + chip.name + ".txt", outcome(result, chip.shows));
    }
}
