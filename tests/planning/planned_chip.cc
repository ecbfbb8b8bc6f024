#include "tests/planning/planned_chip.hh"

#include "tests/support/expected_file.hh"

#include <regex>
#include <set>
#include <sstream>

namespace {

constexpr const char *BSC = R"(
%GLOBAL_TDI tdi; %GLOBAL_TDO tdo; %GLOBAL_TMS tms; %GLOBAL_TCK tck;
%SKIP_SIGNAL_NAMES { tdi, tdo, tms, tck, skip, hold; }
%TAP_MODULE { %MODULE_NAME @; %INSTANCE_NAME TAP; }
%PIN_LIST { %FILE_NAME chip.pin; }
%INSTRUCTION_TABLE { %INSTRUCTION EXTEST = (00) ACCESS boundary; %INSTRUCTION SAMPLE = (01) ACCESS boundary;
  <HIGHZ> %INSTRUCTION BYPASS = (11) ACCESS bypass; }
%INSTRUCTION_CAPTURE (01);
)";
constexpr const char *TAP = "%TAP_CONTROLLER @ { %TDI tdi; %TDO tdo; %TMS tms; %TCK tck; %FIRST_BCELL first; "
                            "%LAST_BCELL last; %SHIFT_DR shift; %CLOCK_DR clock; ";
constexpr const char *SCAN_PINS = "%TDI si; %TDO so; %SHIFT_DR sh; %CLOCK_DR ck; %TCK tk;";

std::string replaced(std::string text, const std::string &what, const std::string &with) {
    for (size_t at; (at = text.find(what)) != text.npos;)
        text.replace(at, what.size(), with);
    return text;
}

std::string with_scan_pins(const std::string &text) {
    return replaced(text, "$", SCAN_PINS);
}

/// `text` from behind the first `from` up to the next `to`.
std::string between(const std::string &text, const std::string &from, const std::string &to) {
    size_t begin = text.find(from);
    begin = begin == text.npos ? 0 : begin + from.size();
    return text.substr(begin, text.find(to, begin) - begin);
}

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

planning_folder::planning_folder() {
    std::filesystem::create_directories(scratch.dir / "lib");
    run_result read =
        scratch.run(RW_BIN_DIR "/kalmverin -lib " RW_SOURCE_DIR "/tests/planning/designs/cells.v -opath lib");
    EXPECT_EQ(read.status, 0) << read.err;
}

void planning_folder::read(const PLANNED_CHIP &chip) const {
    static const std::string library =
        with_scan_pins(read_whole(RW_SOURCE_DIR "/tests/planning/designs/chip.lib"));
    for (const char *left : {"rimweave_lib", "chip.bso"})
        std::filesystem::remove_all(scratch.dir / left);
    scratch.write("chip.v", chip.design);
    // An existing TAP has a name of its own, as the program leaves a cell of the one that it adds.
    const char *tap = std::string(chip.options).find("-add_tap") != std::string::npos ? "tapm" : "oldtap";
    std::string library_text = library + with_scan_pins(chip.library) + replaced(TAP, "@", tap) +
                               chip.tap_pins + chip.tap_items + "}\n";
    scratch.write("chip.lib", library_text);
    std::string bsc = replaced(BSC, "@", tap);
    bool has_highz = library_text.find("%HIGHZ_COMMAND") != std::string::npos;
    bsc = replaced(bsc, "<HIGHZ>", has_highz ? "%INSTRUCTION HIGHZ = (10) ACCESS bypass;" : "");
    scratch.write("chip.bsc", bsc + "%SCAN_CELLS { " + chip.roles + " }\n" + chip.settings);
    scratch.write("chip.pin", std::string("%PACKAGE_TYPE chip 20001;\n") + chip.pins);
    run_result result = scratch.run(RW_BIN_DIR "/kalmverin chip.v");
    EXPECT_EQ(result.err, "");
}

run_result planning_folder::insert(const PLANNED_CHIP &chip) const {
    return scratch.run(std::string(RW_BIN_DIR "/rimweave chip -no_expand ") + chip.options);
}

run_result planning_folder::run(const PLANNED_CHIP &chip) const {
    read(chip);
    return insert(chip);
}

std::string planning_folder::outcome(const run_result &result, int shows) const {
    constexpr const char *RULE = "====================================================\n";
    std::string report = between(result.out, std::string("Report\n") + RULE, RULE);
    if ((shows & WHOLE_REPORT) == 0) // without the TAP's pins, the pins of each cell and the trees
        report = lines_where(between(report, "-\n\n", "\n\n  --"),
                             [](const std::string &line) { return line.rfind("  ** Add", 0) == 0; });
    std::string text = "== messages\n" + messages_of(result.out) + "== report\n" + report;
    std::set<std::filesystem::path> commands;
    if ((shows & NO_CMD) == 0)
        for (const auto &entry : std::filesystem::directory_iterator(scratch.dir / "rimweave_lib"))
            if (entry.path().extension() == ".cmd")
                commands.insert(entry.path().filename());
    for (const std::filesystem::path &name : commands) {
        std::string whole = scratch.read("rimweave_lib/" + name.string());
        text += "== " + name.string() + "\n" + shown_commands(whole, shows);
    }
    // The five lines of the head are the same in every file.
    std::string order = scratch.read("chip.bso");
    size_t head = 0;
    for (int line = 0; line < 5; ++line)
        head = order.find('\n', head) + 1;
    return text + "== chip.bso\n" + order.substr(head);
}

void planning_folder::expect_outcomes(std::span<const PLANNED_CHIP> chips) const {
    for (const PLANNED_CHIP &chip : chips) {
        SCOPED_TRACE(chip.name);
        run_result result = run(chip);
        EXPECT_EQ(result.status, 0) << result.out;
        expect_file(std::string("planning/expected/") + chip.name + ".txt", outcome(result, chip.shows));
    }
}

std::string messages_of(const std::string &console) {
    std::istringstream lines(
        between(console, "chip.lib.\n\n\n", "\n\n\n====================================================\n"));
    std::string kept;
    bool after_progress = false;
    for (std::string line; std::getline(lines, line);) {
        bool is_progress = line.rfind(" - Synthesi", 0) == 0 || line.rfind("    .", 0) == 0;
        if (!is_progress && !(after_progress && line.empty())) // with the empty line behind it
            kept += lines.eof() ? line : line + "\n";
        after_progress = is_progress;
    }
    return kept;
}
