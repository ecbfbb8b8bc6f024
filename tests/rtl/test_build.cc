// jtag_init and jtagsyn as a run sees them: messages, statuses, commands and files.
#include "description/tables.hh"
#include "planning/tap_state.hh"
#include "rtl/tap_build.hh"
#include "rtl/tap_model.hh"
#include "support/run_state.hh"
#include "tests/rtl/tap_case.hh"
#include "tests/support/expected_file.hh"

#include <cstdio>
#include <functional>
#include <gtest/gtest.h>

namespace {

/// A folder to work in, inside of one that holds a kalmverin that notes its arguments, so that the files of a
/// run stand alone.
struct work_folder : scratch_folder {
    std::filesystem::path outer = dir;
    work_folder() {
        write("bin/kalmverin", "#!/bin/sh\necho \"$@\" >> ../commands\n[ ! -e ../fail ]\n");
        run("chmod +x bin/kalmverin; mkdir work");
        dir /= "work";
    }
    ~work_folder() {
        dir = outer;
    }
};

run_result build(
    const work_folder &folder, const tap_case &tap, const std::function<void()> &change = [] {}) {
    return run_child(folder, [&] {
        ::setenv("PATH", ((folder.outer / "bin:").string() + std::getenv("PATH")).c_str(), 1);
        set_up_tap(tap);
        change();
        jtag_init();
        jtagsyn();
    });
}

TEST(tap_init, every_name_that_the_library_does_not_give_has_a_default) {
    scratch_folder folder;
    run_result result = run_child(folder, [] {
        set_up_tap({"", LARGE_TABLE, "trst rst update highz mode1 mode2 mode3 extra2"});
        TAP_MODULE_NAME = TAP_INSTANCE_NAME = nullptr;
        jtag_init();
        std::printf("%s %s %s %s\n", TAP_CONTR->name, TAP_CONTR->trst, TAP_PORT[PORT_TRST].tap_pin,
                    TAP_EXTRA_PIN[1]);
    });
    expect_file("rtl/expected/default_names.txt", result.out);
}

TEST(tap_init, active_low_names_and_gaps_among_the_extra_pins) {
    scratch_folder folder;
    run_result result = run_child(folder, [] {
        set_up_tap({"", SMALL_TABLE, "extra3"});
        TAP_CONTR = nullptr;
        jtag_init(); // finds the cell; its fields change below
        TAP_CONTR->tdi = "-d", TAP_CONTR->first_bcell = "-x", TAP_CONTR->last_bcell = "-y";
        TAP_CONTR->extras[1] = nullptr, TAP_CONTR->extras[2] = "-z";
        std::fflush(stdout);
        std::printf("again\n");
        jtag_init();
        std::printf("%s %s %s %s %s %s\n", TAP_CONTR->tdi, TAP_PORT[PORT_TDI].tap_pin, TAP_CONTR->first_bcell,
                    TAP_CONTR->last_bcell, TAP_EXTRA_PIN[1], TAP_EXTRA_PIN[2]);
    });
    EXPECT_EQ(result.out.substr(result.out.find("again")),
              "again\n"
              "WARNING: low active in %FIRST_BCELL is of no sence.\n         '-' will be eliminated!\n\n"
              "WARNING: low active in %LAST_BCELL is of no sence.\n         '-' will be eliminated!\n\n"
              "WARNING: (chip.lib) can't find %EXTRA_2 in %TAP_CONTROLLER chip_tap.\n"
              "         Using default name -> EXTRA2.\n\n"
              "-d d x y EXTRA2 z\n");
}

TEST(tap_build, writes_its_files_and_has_the_port_only_module_read) {
    work_folder folder;
    run_result result = build(folder, {"", SMALL_TABLE, ""});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, " - Synthesizing RTL TAP module (chip_tap) ...\n"
                          "    .TAP module (chip_tap) was written into file 'chip_TAP.v'.\n\n");
    EXPECT_EQ(folder.read("../commands"), "-lib chip_TAP_empty.v\n");
    EXPECT_EQ(folder.run("ls").out,
              "chip_TAP.ac.tcl\nchip_TAP.dc.scr\nchip_TAP.pt.tcl\nchip_TAP.v\nchip_TAP_empty.v\n");

    folder.run("mkdir lib 'out dir'");
    result = build(folder, {"", SMALL_TABLE, "vhdl"}, [] {
        JTAG_OPTION[OPT_OPATH] = 1;
        OPATH = "out dir";
        TOP_MODULE = "a;b";
    });
    EXPECT_EQ(result.out, " - Synthesizing RTL TAP module (chip_tap) ...\n"
                          "    .TAP module (chip_tap) was written into file 'out dir/a;b_TAP.vhd'.\n\n");
    EXPECT_EQ(folder.read("../commands"), "-lib chip_TAP_empty.v\n-lib a;b_TAP_empty.v -opath lib\n");
    EXPECT_EQ(folder.run("ls 'out dir'").out,
              "a;b_TAP.ac.tcl\na;b_TAP.dc.scr\na;b_TAP.pt.tcl\na;b_TAP.vhd\n");
}

TEST(tap_build, faults_of_files_and_tools_end_the_run) {
    work_folder folder;
    folder.write("../fail", "");
    run_result result = build(folder, {"", SMALL_TABLE, ""});
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.out, "    Please check the \"RIMWEAVE.log\" file.\n");
    EXPECT_TRUE(folder.has("RIMWEAVE.log"));

    std::filesystem::remove(folder.outer / "fail");
    result = build(folder, {"", SMALL_TABLE, ""}, [] {
        JTAG_OPTION[OPT_OPATH] = 1;
        OPATH = "nowhere";
    });
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.out, "ERROR: can't open file 'nowhere/chip_TAP.v'.\n\n");
}

TEST(tap_build, tables_that_give_broken_rtl_are_refused_before_any_file_is_written) {
    const std::string base = SMALL_TABLE;
    std::string said;
    const struct {
        std::string table, needs;
    } cases[] = {
        {"EXTEST 00 boundary\nBYPASS 11 bypass\n", ""},
        {"EXTEST 00 boundary a\nSAMPLE 01 boundary A=10\nBYPASS 11 bypass\n", ""},
        {"EXTEST 00 boundary[24]\nSAMPLE 01 boundary\nBYPASS 11 bypass\n", ""},
        {base + "idcode 010 bypass\n", ""},
        {base + "HIGHZ 010 x\nCLAMP 010 x\n", ""},
        {base + "M 0110 bypass\n", ""},
        {base + "M - bypass\n", ""},
        {base + "M 012 bypass\n", ""},
        {"EXTEST 0 boundary\nSAMPLE 1 boundary\nBYPASS 1 bypass\n", ""},
        {base + "M 010 bypass a=2\n", ""},
        {base + "M 010 a.b\n", ""},
        {base + "M 010 bypass wire\n", ""},
        {base + "M 010 bypass signal\n", "vhdl"},
        {base + "M 010 bypass a__b\n", "vhdl"},
        {base + "M 010 bypass tdi\n", "vhdl"},
        {base + "M 010 bypass INST\n", ""},
        {base + "IDCODE 010 idcode\nUSERCODE 011 idcode\n", "idcode"},
    };
    for (const auto &one : cases) {
        work_folder folder;
        run_result result = build(folder, {"", one.table, one.needs});
        said += section(one.table + one.needs, result);
        EXPECT_EQ(folder.run("ls").out, "");
    }
    expect_file("rtl/expected/refusals.txt", said);
}

TEST(tap_build, what_works_otherwise_than_expected_is_told) {
    const std::string base = SMALL_TABLE;
    std::string said;
    const struct {
        std::string table, needs;
    } cases[] = {
        {base, "nocapture"},
        {base + "M 0X1,011 bypass\nN 01X bypass\nO 001 bypass\n", ""},
        {base + "USERCODE 010 USERCODE\n", ""},
        {base + "M 010 bypass a:AND:nosuch\n", ""},
        {base + "M 010 bypass a=101\nN 011 bypass a=000\n", ""},
    };
    for (const auto &one : cases)
        for (const char *language : {"", " vhdl"}) {
            work_folder folder;
            run_result result = build(folder, {"", one.table, one.needs + language});
            said += section(one.table + one.needs + language, result);
        }
    expect_file("rtl/expected/warnings.txt", said);
}

} // namespace
