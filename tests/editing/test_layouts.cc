// The edit command files of one design per layout: pads and TAP in the places where a design may have them.
#include "tests/editing/chip_case.hh"

#include <regex>

namespace {

constexpr const char *PAD_CELLS =
    "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER TBUF; %INOUT_BUFFER BBUF; %INVERTER IBX;";
constexpr const char *CONNECTIONS =
    "%CONNECTION_TABLE { %CONNECT u2{CK} TO pck{C}; %CONNECT a TO pa{PAD}; %CONNECT py{PAD} TO y; }";

const CHIP LAYOUTS[] = {
    {.name = "pads_in_top", .design = "pads_in_top"},
    {.name = "external_idcode",
     .design = "pads_in_top",
     .options = "-add_tap -external_idcode",
     .like = "pads_in_top"},
    {.name = "connections", .design = "pads_in_top", .settings = CONNECTIONS, .like = "pads_in_top"},
    {.name = "tap_down_a_path",
     .design = "tap_down_a_path",
     .options = "-add_tap -external_idcode",
     .tap = "top_a.b.tap"},
    {.name = "pads_in_module", .design = "pads_in_module"},
    {.name = "pads_in_module_synch",
     .design = "pads_in_module",
     .options = "-add_tap -synch",
     .like = "pads_in_module"},
    {.name = "pads_two_down", .design = "pads_two_down"},
    {.name = "tap_beside_pads", .design = "pads_two_down", .tap = "C.tap", .like = "pads_two_down"},
    {.name = "tap_off_the_shared_part", .design = "pads_two_down", .tap = "A.B.tap", .like = "pads_two_down"},
    {.name = "pads_added", .design = "no_pads", .options = "-add_tap -add_pad", .settings = PAD_CELLS},
    {.name = "tap_exists", .design = "tap_exists", .options = "", .like = "pads_in_module"},
    // Pads in several modules.
    {.name = "multi_parent_and_child", .design = "parent_and_child", .roles = "%INPUT_SCAN BC_S;"},
    {.name = "multi_two_instances", .design = "two_instances", .roles = "%INPUT_SCAN BC_S;"},
};

/// The command files in the order in which the editor runs them. With pads in several modules one blank
/// stands behind "file", and the boundary registers are not told of.
std::vector<std::string> executed(const std::string &out) {
    static const std::regex line(R"(    \.Executing command file ( ?)\./rimweave_lib/(\w+)\.cmd \.\.\.\n)");
    std::vector<std::string> names, blanks;
    for (std::sregex_iterator at(out.begin(), out.end(), line), end; at != end; ++at) {
        blanks.push_back((*at)[1]);
        names.push_back((*at)[2]);
    }
    bool several = names.at(0).ends_with("_bs0");
    EXPECT_EQ(blanks, std::vector<std::string>(names.size(), several ? "" : " ")) << out;
    EXPECT_EQ(out.find(" - Synthesizing Boundary Registers") == std::string::npos, several);
    expect_part(out.substr(out.rfind("    .Executing")), "\n - Synthesis  done!\n\n");
    return names;
}

} // namespace

TEST(Layouts, CommandFiles) {
    for (const CHIP &input : LAYOUTS) {
        SCOPED_TRACE(input.name);
        chip_case chip(input);
        const std::string options = input.options.value_or("-add_tap");
        const std::vector<std::string> files = executed(succeed(chip.run(options)));
        expect_commands(input.name, chip.command_files_of(files), input.like);
        // The bundled tools carry the same commands out.
        chip.run_in_own_folder(options);
        expect_commands(input.name, chip.command_files_of(files), input.like);
    }
}
