#include "tests/editing/chip_case.hh"

#include "tests/support/expected_file.hh"

#include <algorithm>

namespace {

std::string replaced(std::string text, const std::string &what, const std::string &with) {
    for (size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size())
        text.replace(at, what.size(), with);
    return text;
}

constexpr const char *BSC = R"(
%GLOBAL_TDI tdi; %GLOBAL_TDO tdo; %GLOBAL_TMS tms; %GLOBAL_TCK tck;
%SKIP_SIGNAL_NAMES { tdi, tdo, tms, tck, ck; }
%TAP_MODULE { %MODULE_NAME tapm; %INSTANCE_NAME <TAP>; }
%SCAN_CELLS { %INPUT_SCAN BC_IN; %OUTPUT_SCAN BC_OUT; %BIDIR_SCAN BC_BI; %CONTROL_SCAN BC_CTL; <ROLES> }
<SETTINGS>
%PIN_LIST { %FILE_NAME chip.pin; }
%IDCODE_REGISTER 0001010101011100001111111111110X;
%INSTRUCTION_TABLE {
    %INSTRUCTION EXTEST = (000) ACCESS BOUNDARY;
    %INSTRUCTION SAMPLE = (001) ACCESS BOUNDARY;
    %INSTRUCTION IDCODE = (010) ACCESS IDCODE;
    %INSTRUCTION BYPASS = (111) ACCESS BYPASS;
    <INSTRUCTIONS>
}
%INSTRUCTION_CAPTURE (001);
)";

void apply(const CHANGE &change, std::string &text) {
    size_t at = text.find(change.from);
    ASSERT_NE(at, std::string::npos) << change.from;
    text.replace(at, std::string(change.from).size(), change.to);
}

bool is_of_design(const CHANGE &change) {
    return std::string_view(change.file) == "chip.v";
}

CHIP_INPUT input_of(const CHIP_ROW &row) {
    CHIP_INPUT input = row.input;
    if (input.design.empty())
        input.design = test_file(std::string("designs/") + row.design + ".v");
    if (input.pins.empty())
        input.pins = USUAL_PINS;
    input.cells = test_file("designs/more_cells.v") + input.cells;
    input.library = test_file("designs/more.lib") + input.library;
    for (const CHANGE &change : row.changes)
        if (is_of_design(change))
            apply(change, input.design);
    return input;
}

/// All command files, each of which has to be whole.
std::string whole_command_files(const chip_case &chip) {
    std::vector<std::string> names;
    for (const auto &file : std::filesystem::directory_iterator(chip.scratch.dir / "rimweave_lib"))
        if (file.path().extension() == ".cmd" && file.is_regular_file())
            names.push_back(file.path().stem());
    std::ranges::sort(names);
    std::string lines;
    for (const std::string &name : names) {
        lines += chip.scratch.read("rimweave_lib/" + name + ".cmd");
        EXPECT_TRUE(lines.ends_with("save\nquit\n")) << name;
    }
    return lines;
}

void run_row(const CHIP_ROW &row) {
    SCOPED_TRACE(row.what);
    chip_case chip(input_of(row));
    for (const CHANGE &change : row.changes) {
        if (is_of_design(change))
            continue;
        std::string text = chip.scratch.read(change.file);
        apply(change, text);
        chip.scratch.write(change.file, text);
    }
    run_result made_ready = chip.scratch.run("PATH=" RW_BIN_DIR ":$PATH; " + std::string(row.before));
    EXPECT_EQ(made_ready.status, 0) << made_ready.err;
    std::string before = chip.scratch.read("chip.sdb");
    run_result result = chip.run(row.options);
    EXPECT_EQ(result.status, row.status) << result.out << result.err;
    EXPECT_NE((result.out + result.err).find(row.expected), std::string::npos) << result.out << result.err;
    EXPECT_EQ(chip.scratch.read("chip.sdb"), before);
    std::string lines = whole_command_files(chip);
    EXPECT_NE(lines.find(row.lines), std::string::npos) << row.lines << "is not in\n" << lines;
    if (*row.file != '\0')
        expect_commands(row.file, lines);
    if (row.status != 0)
        return;
    std::filesystem::remove_all(chip.scratch.dir / "tools");
    result = chip.run(row.options);
    EXPECT_EQ(result.status, 0) << result.out << result.err;
}

} // namespace

void run_rows(std::span<const CHIP_ROW> table) {
    for (const CHIP_ROW &row : table)
        run_row(row);
}

chip_case::chip_case(const CHIP_INPUT &input) {
    scratch.write("cells.v", test_file("designs/cells.v") + input.cells);
    scratch.write("chip.v", input.design);
    std::string library = test_file("designs/chip.lib") + input.library;
    scratch.write("chip.lib", replaced(library, "%TDI TDI;", "%TDI TDI; " + input.tap_items));
    std::string bsc = replaced(replaced(BSC, "<TAP>", input.tap), "<ROLES>", input.roles);
    bsc = replaced(bsc, "<INSTRUCTIONS>", input.instructions);
    if (!input.bidir_cell)
        bsc = replaced(bsc, "%BIDIR_SCAN BC_BI; ", "");
    scratch.write("chip.bsc", replaced(bsc, "<SETTINGS>", input.settings));
    scratch.write("chip.pin", "%PACKAGE_TYPE QFP64 64;\n" + input.pins);
    std::filesystem::create_directories(scratch.dir / "lib");
    run_result read =
        scratch.run(RW_BIN_DIR "/kalmverin -lib cells.v -opath lib && " RW_BIN_DIR "/kalmverin chip.v");
    EXPECT_EQ(read.status, 0) << read.err;
    for (const char *tool : {"kalmedit", "kalmlist", "kalmflat"})
        make_tool(tool, "exit 0");
}

run_result chip_case::run(const std::string &options, std::string_view input) const {
    return scratch.run("PATH=$PWD/tools:$PATH " RW_BIN_DIR "/rimweave chip " + options, input);
}

run_result chip_case::run_in_own_folder(const std::string &options) const {
    return scratch.run("rm -r tools rimweave_lib; mkdir d; cp *.sdb d; mv lib/BC_*.sdb d\n"
                       "for file in *.sdb; do echo other >$file; done; " RW_BIN_DIR "/rimweave d/chip " +
                       options);
}

void chip_case::make_tool(const std::string &name, const std::string &text) const {
    std::string path = scratch.write("tools/" + name, "#!/bin/sh\n" + text + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

std::string chip_case::commands(const std::vector<std::string> &names) const {
    std::string text;
    for (const std::string &name : names)
        text += "== " + name + "\n" + scratch.read("rimweave_lib/" + name + ".cmd");
    return text;
}

std::string test_file(const std::string &name) {
    return read_whole(RW_SOURCE_DIR "/tests/editing/" + name);
}

void expect_commands(const std::string &name, const std::string &text, const std::string &like) {
    const std::string folder = "editing/expected/";
    expect_file(folder + name + ".cmd", text, like.empty() ? "" : folder + like + ".cmd");
}
