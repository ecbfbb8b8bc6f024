#include "tests/editing/chip_case.hh"

#include <regex>
#include <sstream>

namespace {

/// All command files, each of which has to be whole.
std::string whole_command_files(const chip_case &chip) {
    std::string lines;
    for (const std::string &name : chip.command_files()) {
        lines += chip.commands(name);
        EXPECT_TRUE(lines.ends_with("save\nquit\n")) << name;
    }
    return lines;
}

/// Lines that most rows have, in one.
std::string shortened(std::string text) {
    const std::pair<std::string, std::string> blocks[] = {
        {"add tdi input\nconnect tdi TAP{TDI}\nadd tms input\nconnect tms TAP{TMS}\nadd tck input\n"
         "connect tck TAP{TCK}\n",
         "(new test ports)\n"},
        {"add shiftDR input\nadd clockDR input\nadd updateDR input\nadd mode1 input\nadd chain_in input\n"
         "add chain_out output\n",
         "(new ports of the cells)\n"},
    };
    for (const auto &[block, name] : blocks)
        for (size_t at; (at = text.find(block)) != text.npos;)
            text.replace(at, block.size(), name);
    return text;
}

/// What the run says, below the name of the row, and what it writes but for the chain pins that the usual
/// chip wires so.
std::string run_row(const CHIP &row, const std::string &usual) {
    SCOPED_TRACE(row.name);
    chip_case chip(row);
    const std::string options = row.options.value_or("-add_tap");
    succeed(chip.scratch.run("PATH=" RW_BIN_DIR ":$PATH; " + std::string(row.before)));
    std::string before = chip.scratch.read("chip.sdb");
    run_result result = chip.run(options);
    run_result said = {result.status, messages_of(result.out), result.err};
    EXPECT_EQ(chip.scratch.read("chip.sdb"), before);
    std::string lines = whole_command_files(chip);
    if (*row.file != '\0')
        expect_commands(row.file, lines);
    if (result.status == 0) {
        std::filesystem::remove_all(chip.scratch.dir / "tools");
        succeed(chip.run(options));
    }
    std::string text = section(row.name, said);
    std::istringstream all(result.status == 0 && *row.file == '\0' ? lines : "");
    static const std::regex of_chain(R"(BCELL\d+\{(S[IOE]|CK|UP|M\d?|R)\})");
    for (std::string line; std::getline(all, line);)
        if (usual.find("\n" + line + "\n") == usual.npos || !std::regex_search(line, of_chain))
            text += line + "\n";
    return shortened(text);
}

} // namespace

void run_rows(const std::string &name, std::span<const CHIP> table, const CHIP &base) {
    chip_case usual({});
    succeed(usual.run("-add_tap"));
    std::string text;
    for (CHIP row : table) {
        if (row.design.empty())
            row.design = base.design;
        if (row.design.find(' ') != row.design.npos && !row.pins) // a file brings its own
            row.pins = base.pins;
        for (auto field : {&CHIP::options, &CHIP::roles, &CHIP::settings, &CHIP::tap_items})
            if (!(row.*field))
                row.*field = base.*field;
        text += run_row(row, usual.commands("chip_jtag"));
    }
    expect_file("editing/expected/rows_of_" + name + ".txt", text);
}

chip_case::chip_case(const CHIP &chip) : chip_folder("editing") {
    lay_out(chip);
    for (const char *tool : {"kalmedit", "kalmlist", "kalmflat"})
        make_tool(tool, "exit 0");
}

void chip_case::run_in_own_folder(const std::string &options) const {
    succeed(scratch.run("rm -r tools rimweave_lib; mkdir d; cp *.sdb d; mv lib/BC_*.sdb d\n"
                        "for file in *.sdb; do echo other >$file; done; " RW_BIN_DIR "/rimweave d/chip " +
                        options));
    EXPECT_TRUE(scratch.has("chip_jtag.v") && scratch.has("chip_jtag_flat.v"));
}

void chip_case::make_tool(const std::string &name, const std::string &text) const {
    std::string path = scratch.write("tools/" + name, "#!/bin/sh\n" + text + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

std::string chip_case::command_files_of(const std::vector<std::string> &names) const {
    std::string text;
    for (const std::string &name : names)
        text += "== " + name + "\n" + commands(name);
    return text;
}

void expect_commands(const std::string &name, const std::string &text, const std::string &like) {
    const std::string folder = "editing/expected/";
    expect_file(folder + name + ".cmd", text, like.empty() ? "" : folder + like + ".cmd");
}
