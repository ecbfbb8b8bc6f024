#include "tests/support/chip/small_chip.hh"

#include <algorithm>
#include <sstream>

namespace {

constexpr const char *SCAN_PINS = "%TDI si; %TDO so; %SHIFT_DR sh; %CLOCK_DR ck; %TCK tk;";

void fill(std::string &text, const std::string &hole, const given_text &given) {
    for (size_t at; (at = text.find("<" + hole + "=")) != text.npos;) {
        size_t usual = at + hole.size() + 2, end = text.find('>', usual);
        text.replace(at, end + 1 - at, given.value_or(text.substr(usual, end - usual)));
    }
}

/// The rows of the pin file that stand as comments in front of a design.
given_text own_pins(const std::string &design) {
    std::istringstream lines(design);
    given_text pins;
    for (std::string line; std::getline(lines, line) && line.starts_with("// ");)
        pins = pins.value_or("") + line.substr(3) + "\n";
    return pins;
}

/// An existing TAP has a name of its own, as the program leaves a cell of the one that it adds.
std::string tap_module(const CHIP &chip) {
    return chip.options.value_or("-add_tap").find("-add_tap") != std::string::npos ? "tapm" : "oldtap";
}

void read_cells(const scratch_folder &scratch, const std::string &file) {
    EXPECT_EQ(scratch.run(RW_BIN_DIR "/kalmverin -lib '" + file + "' -opath lib").err, "");
}

} // namespace

chip_folder::chip_folder(const std::string &tests) : designs(RW_SOURCE_DIR "/tests/" + tests + "/designs/") {
    std::filesystem::create_directories(scratch.dir / "lib");
    read_cells(scratch, designs + "cells.v");
}

void chip_folder::lay_out(const CHIP &chip) const {
    for (const char *left : {"rimweave_lib", "chip.bso"})
        std::filesystem::remove_all(scratch.dir / left);
    if (!chip.cells.empty())
        read_cells(scratch, scratch.write("cells.v", chip.cells));
    bool has_name = chip.design.find(' ') == chip.design.npos;
    const std::string name = chip.design.empty() ? "usual" : chip.design;
    const std::string design = has_name ? read_whole(designs + name + ".v") : name;
    for (const std::string file : {"chip.v", "chip.lib", "chip.bsc", "chip.pin"}) {
        std::string text = file == "chip.v" ? design : read_whole(designs + file);
        const std::pair<const char *, given_text> holes[] = {
            {"PINS", chip.pins ? chip.pins : own_pins(design)},
            {"ROLES", chip.roles},
            {"SETTINGS", chip.settings},
            {"LIBRARY", chip.library},
            {"TAP_ITEMS", chip.tap_items},
            {"TAP_PINS", chip.tap_pins},
            {"TAP", chip.tap},
            {"INSTRUCTIONS", chip.instructions},
            {"MODULE", tap_module(chip)},
        };
        for (const auto &[hole, given] : holes)
            fill(text, hole, given);
        for (size_t at; file == "chip.lib" && (at = text.find('$')) != text.npos;)
            text.replace(at, 1, SCAN_PINS);
        for (const CHANGE &change : chip.changes) {
            if (change.file != file)
                continue;
            size_t at = text.find(change.from);
            ASSERT_NE(at, text.npos) << change.from;
            text.replace(at, std::string(change.from).size(), change.to);
        }
        scratch.write(file, text);
    }
    EXPECT_EQ(scratch.run(RW_BIN_DIR "/kalmverin chip.v").err, "");
}

run_result chip_folder::run(const std::string &options, std::string_view input) const {
    return scratch.run("PATH=$PWD/tools:$PATH " RW_BIN_DIR "/rimweave chip " + options, input);
}

std::vector<std::string> chip_folder::command_files() const {
    std::vector<std::string> names;
    for (const auto &file : std::filesystem::directory_iterator(scratch.dir / "rimweave_lib"))
        if (file.path().extension() == ".cmd" && file.is_regular_file())
            names.push_back(file.path().stem());
    std::ranges::sort(names);
    return names;
}

std::string chip_folder::commands(const std::string &name) const {
    return scratch.read("rimweave_lib/" + name + ".cmd");
}

std::string between(const std::string &text, const std::string &from, const std::string &to) {
    size_t begin = text.find(from);
    begin = begin == text.npos ? 0 : begin + from.size();
    return text.substr(begin, text.find(to, begin) - begin);
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
