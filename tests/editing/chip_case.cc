#include "tests/editing/chip_case.hh"

namespace {

std::string read_whole(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

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

} // namespace

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

run_result chip_case::run(const std::string &options) const {
    return scratch.run("PATH=$PWD/tools:$PATH " RW_BIN_DIR "/rimweave chip " + options);
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

void expect_file(const std::string &name, const std::string &text) {
    std::string path = RW_SOURCE_DIR "/tests/editing/expected/" + name;
    if (std::getenv("RW_WRITE_EXPECTED") != nullptr)
        std::ofstream(path, std::ios::binary) << text;
    EXPECT_EQ(text, read_whole(path));
}
