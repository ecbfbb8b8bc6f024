// Files: found, saved, left alone; and the road from the first menu to a chip.
#include "tests/guide/guide_run.hh"

#include <map>
#include <regex>
#include <vector>

namespace {

const std::string uart_chip = RW_SOURCE_DIR "/examples/uart_chip/";

void lay_out_description(const guide_folder &guide) {
    succeed(guide.scratch.run("cp " + uart_chip + "chip.bsc " + uart_chip + "chip.lib " + uart_chip +
                              "chip.pin ."));
}

void lay_out_cells(const guide_folder &guide) {
    run_result result = guide.scratch.run("mkdir -p lib; cp " + uart_chip +
                                          "cells.v .; " RW_BIN_DIR "/kalmverin -lib cells.v -opath lib");
    ASSERT_EQ(result.status, 0) << result.out << result.err;
}

/// Name to text of the files that the guide may touch.
std::map<std::string, std::string> description_files(const guide_folder &guide) {
    std::map<std::string, std::string> files;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(guide.scratch.dir))
        if (entry.is_regular_file() && entry.path().extension() != ".rpt")
            files[entry.path().filename()] =
                guide.scratch.read(entry.path().lexically_relative(guide.scratch.dir).string());
    return files;
}

std::vector<std::string> lines_of(const std::string &text) {
    std::vector<std::string> lines;
    for (size_t start = 0; start < text.size(); start = text.find('\n', start) + 1)
        lines.push_back(text.substr(start, text.find('\n', start) + 1 - start));
    return lines;
}

} // namespace

// The guide has no word for %TDO_EN, so the pad of this TDO is one that always drives.
TEST(GuideFiles, FromNothingToASimulatedChip) {
    guide_folder guide;
    lay_out_cells(guide);
    std::string chip =
        std::regex_replace(beside_the_tests("../../../examples/uart_chip/chip.v"),
                           std::regex("TPAD( +pad_tdo +\\(.I\\(1'b0\\)), .OEN\\(1'b1\\)"), "OPAD$1");
    guide.scratch.write("chip.v", chip);
    ASSERT_EQ(guide.scratch.run(RW_BIN_DIR "/kalmverin chip.v").status, 0);
    run_result result = guide.session(beside_the_tests("first_chip.in"), "-add_tap");
    ASSERT_EQ(result.status, 0) << result.out << result.err;
    expect_part(result.out, "Enter Command : File was written to chip.bsc\nFile was written to chip.lib\n"
                            "File was written to chip.pin\n\n - Reading input files ...\n");
    // Nothing of the session is told in the report.
    std::string report = guide.scratch.read("chip.rwv.rpt");
    EXPECT_FALSE(holds(report, "Menu") || holds(report, "File was written")) << report;
    for (const auto &[verb, said] :
         {std::pair{"patterns", "BENCH PASS"}, std::pair{"prove", "is, at rest, the chip"}}) {
        result = guide.scratch.run(std::string(RW_BIN_DIR "/rimkit ") + verb + " --cells cells.v chip");
        EXPECT_EQ(result.status, 0) << result.out << result.err;
        expect_part(result.out, said);
    }
}

// A saved file holds what the guide can edit and nothing else; it is written where it was found.
TEST(GuideFiles, ExistingFilesAreEdited) {
    guide_folder guide;
    lay_out_cells(guide);
    lay_out_description(guide);
    guide.scratch.run("mv chip.lib lib");
    run_result result = guide.session(beside_the_tests("edited.in"));
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    expect_part(result.out, "File was written to ./chip.bsc\nFile was written to ./lib/chip.lib\n"
                            "File was written to chip.pin\n");
    EXPECT_FALSE(guide.scratch.has("chip.lib"));
    std::string lib = guide.scratch.read("lib/chip.lib"), bsc = guide.scratch.read("chip.bsc"),
                pin = guide.scratch.read("chip.pin");
    for (const char *part :
         {"%GLOBAL_TRST     nreset;", "%INSTANCE_NAME    tap_1;", "%CLOCK_SCAN      BC_CLK;",
          "INTEST = (0011)  ACCESS  BOUNDARY;", "%FILE_NAME  chip.pin;"})
        expect_part(bsc, part);
    for (const char *part : {"%GROUP_SIZE     4;", "%BUFFER        CKPAD\n {\n  %FUNCTION    CLOCK;\n",
                             "%BUFFER        TBUF\n {\n  %FUNCTION    BUF;\n  %INPUT       A"})
        expect_part(lib, part);
    EXPECT_FALSE(holds(lib, "%TDO_EN")) << lib;
    EXPECT_EQ(lines_of(pin).at(0), "%PACKAGE_TYPE My_Chip 46;\n");
    EXPECT_EQ(lines_of(pin).at(1), "2  XTAL  clk  CLK\n");
    EXPECT_EQ(lines_of(pin).at(2), "4  RST_N  rst_n  IN\n");
}

// Only one of the two is there, so that neither is read; a pin file is there that no description names.
TEST(GuideFiles, AFileThatWasNotReadIsKept) {
    guide_folder guide;
    lay_out_description(guide);
    guide.scratch.run(
        "rm chip.lib; mv chip.pin pins; echo mine > victim; ln -s victim chip.bsc~; chmod 600 pins");
    std::string bsc = guide.scratch.read("chip.bsc"), pins = guide.scratch.read("pins");
    EXPECT_EQ(guide.session("2\n1\n1\nA\n15\nsi\n22\n4\n6\n1\npins\n2\n1\nA\n\n\n3\n9\n").status, 0);
    EXPECT_EQ(guide.scratch.read("chip.bsc~"), bsc);
    EXPECT_EQ(guide.scratch.read("victim"), "mine\n");
    EXPECT_EQ(guide.scratch.read("pins~"), pins);
    EXPECT_EQ(guide.scratch.run("stat -c %a pins~").out, "600\n");
    // Now all three are read.
    EXPECT_EQ(guide.answer({"9"}).status, 0);
    EXPECT_EQ(guide.scratch.read("chip.bsc~"), bsc);
    EXPECT_EQ(guide.scratch.read("pins~"), pins);
    EXPECT_FALSE(guide.scratch.has("chip.lib~"));
    // What can't be kept is not written over.
    guide.scratch.run("rm chip.lib chip.bsc~; mkdir chip.bsc~");
    bsc = guide.scratch.read("chip.bsc");
    run_result result = guide.answer({"1", "1", "new", "6", "9"});
    EXPECT_EQ(result.status, 255);
    EXPECT_TRUE(result.out.ends_with("Can't open ./chip.bsc~ to write\n")) << result.out;
    EXPECT_EQ(guide.scratch.read("chip.bsc"), bsc);
}

// Roles and TAP names that were read or typed, but are in no file, must not reach the run.
TEST(GuideFiles, NothingButTheFilesReachesTheRun) {
    guide_folder guide;
    lay_out_cells(guide);
    EXPECT_EQ(guide.session(beside_the_tests("first_chip.in")).status, 0);
    std::string before = guide.scratch.read("chip_TAP.v");
    run_result result = guide.answer({"2", "2", "no_such_tap", "4", "4", "1", "1", "no_such_cell", "6", "5"});
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    EXPECT_EQ(guide.scratch.read("chip_TAP.v"), before);
}

TEST(GuideFiles, AbortLeavesAllFilesAlone) {
    guide_folder guide;
    lay_out_description(guide);
    auto before = description_files(guide);
    run_result result = guide.answer({"1", "1", "x", "6", "6", "2", "2", "a", "b", "c", "", "3", "10"});
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(description_files(guide), before);
    EXPECT_FALSE(holds(result.out, "written"));
}

// The input may end anywhere: every menu is left, nothing is saved, and the run goes on.
TEST(GuideFiles, EndOfInputAnywhere) {
    for (const char *name : {"all_fields.in", "every_menu.in"}) {
        std::vector<std::string> answers = lines_of(beside_the_tests(name));
        std::string input;
        guide_folder guide;
        size_t stride = answers.size() / 16 + 1;
        for (size_t count = 0; count < answers.size(); count += stride) {
            run_result result = guide.session(input);
            EXPECT_EQ(result.status, 255) << name << " " << count << result.err;
            ASSERT_TRUE(holds(result.out, "----- clear\nERROR: can't find BSC file 'chip.bsc'"))
                << name << " " << count;
            EXPECT_TRUE(description_files(guide).empty());
            for (size_t i = count; i < count + stride && i < answers.size(); ++i)
                input += answers[i];
        }
    }
    guide_folder guide;
    EXPECT_EQ(guide.scratch.run("exec <&-; " + guide.command("-add_tap_only")).status, 255);
    // What stands before the end is a whole answer.
    EXPECT_EQ(guide.session("1\n1\nabc\n6\n9").status, 0);
    expect_part(guide.scratch.read("chip.bsc"), "%GLOBAL_TDI      abc;\n");
}

TEST(GuideFiles, FilesThatCannotBeWritten) {
    struct {
        const char *before, *answers, *says;
    } const cases[] = {
        {"true", "6\n1\nnone/p\n2\n1\nA\n\n\n3\n8\n",
         "File was written to chip.bsc\nFile was written to chip.lib\nCan't open none/p to write\n"},
        {"mkdir chip.lib", "9\n", "File was written to chip.bsc\nCan't open ./chip.lib to write\n"},
        {"true", "6\n1\n/dev/full\n2\n1\nA\n\n\n3\n9\n",
         "ERROR: can't write file '/dev/full' (No space left on device).\n\n"},
    };
    for (const auto &one : cases) {
        guide_folder guide;
        guide.scratch.run(one.before);
        run_result result = guide.session(one.answers);
        EXPECT_EQ(result.status, 255);
        EXPECT_TRUE(result.out.ends_with(one.says)) << result.out;
        EXPECT_EQ(result.err, "");
    }
}
