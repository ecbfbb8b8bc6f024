// The program as a user meets it before any design is read: its streams, its report, its exit status.
#include "tests/support/expected_file.hh"

#include <regex>

namespace {

const std::string rimweave = RW_BIN_DIR "/rimweave";

const std::string help = read_whole(RW_SOURCE_DIR "/tests/run/help.expected");

/// The text with each banner as "<banner>\n"; everything in it but the build text, year and time is compared
/// here.
std::string without_banner(const std::string &text) {
    static const std::regex banner(
        "\n=+ RIMWEAVE V2\\.6\\.0 \\([^)]+\\) Linux =+\n\nCopyright \\(c\\) [0-9]{4} The rimweave "
        "developers\\. All "
        "rights reserved\\.\n\nTIME: [A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9:]{8} [0-9]{4}\n\n");
    return std::regex_replace(text, banner, "<banner>\n");
}

/// The status and the console of a run, below its arguments.
std::string told(const char *arguments, const run_result &result) {
    return section(arguments, {result.status, without_banner(result.out), result.err});
}

} // namespace

TEST(CommandLine, HelpAndFaults) {
    std::string text;
    for (const char *arguments :
         {"", "-?", "-HELP chip", "-? -bogus chip", "-bogus", "-bogus -? chip", "a b", "-bogus -bad chip",
          "-add chip", "chip -opath", "chip -opath ''", "- - a b", "dir/", "''", "$(printf '%05000d' 0)"}) {
        scratch_folder scratch;
        text += told(arguments, scratch.run(rimweave + " " + arguments));
        EXPECT_EQ(scratch.run("ls -A").out, "") << arguments; // neither a report nor a working folder
    }
    for (size_t at; (at = text.find(help)) != text.npos;)
        text.replace(at, help.size(), "<help>\n");
    expect_file("run/faults.expected", text);
}

TEST(CommandLine, BannerRuleFillsTheLine) {
    scratch_folder scratch;
    std::string out = scratch.run(rimweave + " x").out;
    std::string rule = out.substr(1, out.find('\n', 1) - 1);
    EXPECT_TRUE(rule.size() == 78 || rule.size() == 77) << rule;
    EXPECT_EQ(rule.find(' '), (rule.size() - (rule.rfind(' ') - rule.find(' ') + 1)) / 2) << rule;
}

TEST(CommandLine, SelectedOptionsAndConflicts) {
    std::string text;
    for (const char *arguments :
         {"chip", "-synch -no_expand -no_pad -external_idcode -dont_share_control -debug chip",
          "-ADD_TAP chip -Add_Tap",
          "chip -dont_share_control -synch -df_speed -opath . -vhdl -add_pad -add_bcm -no_pad -no_expand "
          "-external_idcode -add_tap",
          "-add_tap_only chip", "-add_tap -add_tap_only chip", "-add_bcm -add_tap_only chip",
          "dir/chip.sdb"}) {
        scratch_folder scratch;
        run_result result = scratch.run(rimweave + " " + arguments);
        text += told(arguments, result);
        EXPECT_EQ(scratch.read("chip.rwv.rpt"), result.out) << arguments;
        EXPECT_EQ(scratch.run("ls -A").out, "chip.rwv.rpt\nrimweave_lib\n") << arguments;
    }
    expect_file("run/options.expected", text);
}

TEST(CommandLine, NamesOfDesignAndReport) {
    struct {
        const char *arguments, *report, *message;
    } const cases[] = {
        {"chip.v", "chip.v.rwv.rpt", "BSC file 'chip.v.bsc'"},
        {"chip.c.sdb", "chip.c.rwv.rpt", "SDB file 'chip.c.c.sdb'"},
        {"../x/chip.sdb", "chip.rwv.rpt", "SDB file '../x/chip.c.sdb'"},
        {"-opath out/// chip", "out/chip.rwv.rpt", "Selected option:  -opath out.\n"},
        {"'a;touch b'", "a;touch b.rwv.rpt", "BSC file 'a;touch b.bsc'"},
    };
    for (const auto &one : cases) {
        scratch_folder scratch;
        scratch.write("out/keep", "");
        run_result result = scratch.run(rimweave + " " + one.arguments);
        EXPECT_EQ(result.status, 255) << one.arguments;
        EXPECT_TRUE(scratch.has(one.report)) << one.arguments;
        EXPECT_NE(result.out.find(one.message), std::string::npos) << result.out;
    }
}

TEST(CommandLine, ReportFallsBackToItsSecondName) {
    struct {
        const char *prepare, *arguments, *report;
        std::string warning;
    } const cases[] = {
        {"true", "-opath gone chip", "chip.rpt", "gone/chip.rwv.rpt"},
        {"mkdir chip.rwv.rpt", "chip", "chip.rpt", "chip.rwv.rpt"},
        {"mkdir chip.x.rwv.rpt", "chip.x", "chip.rpt", "chip.x.rwv.rpt"},
        {"mkdir .x.rwv.rpt", ".x", ".x.rpt", ".x.rwv.rpt"},
        {"mkdir one two chip.rwv.rpt; export VELMORA_DIRS=one:two", "chip", "one/chip.rpt", "chip.rwv.rpt"},
    };
    for (const auto &one : cases) {
        scratch_folder scratch;
        run_result result = scratch.run(std::string(one.prepare) + "; " + rimweave + " " + one.arguments);
        std::string out = without_banner(result.out);
        std::string start =
            "<banner>\n\nWARNING: can't create report file '" + one.warning + "'.\n\n<banner>\n";
        EXPECT_EQ(out.substr(0, start.size()), start) << one.arguments;
        EXPECT_EQ(without_banner(scratch.read(one.report)), out.substr(out.rfind("<banner>")))
            << one.arguments;
    }
    scratch_folder scratch;
    run_result result = scratch.run("mkdir chip.rwv.rpt chip.rpt; " + rimweave + " chip");
    EXPECT_EQ(without_banner(result.out), "<banner>\n\nWARNING: can't create report file 'chip.rwv.rpt'.\n\n"
                                          "\n\nCan not open output report filename 'chip.rpt'!\n\n");
    EXPECT_EQ(result.status, 255);
}

TEST(CommandLine, HostileSurroundings) {
    struct {
        const char *before, *after;
        int status;
        const char *says;
    } const cases[] = {
        {"", " chip >&-", 255, ""},
        {"", " -help >/dev/full", 255,
         "ERROR: not all of the output could be written (No space left on device).\n"},
        {"ln -s /dev/full chip.rwv.rpt; ", " chip", 255,
         "ERROR: not all of the report could be written (No space left on device).\n"},
        {"", " chip <&- >&- 2>&-", 255, ""},
        {"mkdir d; cd d; rmdir ../d; ", " chip", 255, "can't open default directory"},
        {"touch rimweave_lib; ", " chip", 255,
         "\n\nERROR: can't open default directory .\\'rimweave_lib'.\n\n"},
        {"mkdir d; cd d; rmdir ../d; VELMORA=/ ", " chip", 255,
         "FATAL Can not get current working directory!. Please check file server.\n"},
        {"ln -s a b; ln -s b a; VELMORA=a ", " chip", 255,
         "FATAL Please remove self-link 'a->b->a' before proceeding!"},
        {"env -i ", " chip", 255, "can't find BSC file"},
        {"set -o pipefail; ", " chip | true", 255, ""},
    };
    for (const auto &one : cases) {
        scratch_folder scratch;
        std::string command = one.before + rimweave + one.after;
        scratch.write("script", command + "\n");
        run_result result = scratch.run("bash script");
        EXPECT_EQ(result.status, one.status) << command << "\n" << result.out << result.err;
        EXPECT_NE((result.out + result.err).find(one.says), std::string::npos)
            << command << result.out << result.err;
    }
    scratch_folder scratch; // with its output closed a run must not write over its own report
    scratch.run(rimweave + " chip >&-");
    EXPECT_TRUE(
        without_banner(scratch.read("chip.rwv.rpt")).starts_with("<banner>\nERROR: can't find BSC file"));
}
