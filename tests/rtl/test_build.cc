// jtag_init and jtagsyn as a run sees them: messages, statuses, commands and files.
#include "description/tables.hh"
#include "planning/tap_state.hh"
#include "rtl/tap_build.hh"
#include "rtl/tap_model.hh"
#include "support/run_state.hh"
#include "tests/rtl/tap_case.hh"
#include "tests/support/scratch.hh"

#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>

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
    std::string expected = "WARNING: (chip.bsc) can't find %INSTANCE_NAME in %TAP_MODULE.\n"
                           "         Using default name -> TAP.\n\n"
                           "WARNING: (chip.bsc) can't find %MODULE_NAME in %TAP_MODULE.\n"
                           "         Using default name -> vmr_tap.\n\n";
    std::istringstream names("TDI TDI TDO TDO TMS TMS TCK TCK TRST -TRST SHIFT_DR SHIFT_DR CLOCK_DR CLOCK_DR "
                             "FIRST_BCELL first_Bcell LAST_BCELL BOUNDARY_out UPDATE_DR UPDATE_DR "
                             "HIGHZ_COMMAND HIGHZ TAP_RESET -RESET MODE_1 MODE1 MODE_2 MODE2 MODE_3 MODE3 "
                             "EXTRA_1 EXTRA1 EXTRA_2 EXTRA2");
    for (std::string keyword, name; names >> keyword >> name;)
        expected += std::string("WARNING: (chip.lib) can't find %") + keyword +
                    " in %TAP_CONTROLLER vmr_tap.\n         Using default name -> " + name + ".\n\n";
    EXPECT_EQ(result.out, expected + "vmr_tap -TRST TRST EXTRA2\n");
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
    const struct {
        std::string table, needs, message;
    } cases[] = {
        {"EXTEST 00 boundary\nBYPASS 11 bypass\n", "",
         "-add_tap option required INSTRUCTION\n"
         "       EXTEST, SAMPLE and BYPASS declared in %INSTRUCTION_TABLE.\n\n"},
        {"EXTEST 00 boundary a\nSAMPLE 01 boundary A=10\nBYPASS 11 bypass\n", "",
         "the length of enable pin 'a' are different in INSTRUCTION 'SAMPLE'.\n"},
        {"EXTEST 00 boundary[24]\nSAMPLE 01 boundary\nBYPASS 11 bypass\n", "",
         "INSTRUCTION EXTEST must access boundary register.\n\n"},
        {base + "idcode 010 bypass\n", "", "INSTRUCTION IDCODE must access IDCODE register.\n\n"},
        {base + "HIGHZ 010 x\nCLAMP 010 x\n", "", "INSTRUCTION CLAMP must access bypass register.\n\n"},
        {base + "M 0110 bypass\n", "", "opcode '0110' of INSTRUCTION 'M' is not 3 bits long"},
        {base + "M - bypass\n", "", "INSTRUCTION 'M' has no opcode"},
        {base + "M 012 bypass\n", "", "'012' is no opcode of INSTRUCTION 'M'"},
        {"EXTEST 0 boundary\nSAMPLE 1 boundary\nBYPASS 1 bypass\n", "",
         "an opcode must have two bits at least"},
        {base + "M 010 bypass a=2\n", "", "'2' is no value of enable pin 'a' in INSTRUCTION 'M'"},
        {base + "M 010 a.b\n", "", "'a.b_in' can't be a name in the Verilog"},
        {base + "M 010 bypass wire\n", "", "'wire' can't be a name in the Verilog"},
        {base + "M 010 bypass signal\n", "vhdl", "'signal' can't be a name in the VHDL"},
        {base + "M 010 bypass a__b\n", "vhdl", "'a__b' can't be a name in the VHDL"},
        {base + "M 010 bypass tdi\n", "vhdl",
         "port 'tdi' of TAP module 'chip_tap' has the name of another port"},
        {base + "M 010 bypass INST\n", "",
         "port 'INST' of TAP module 'chip_tap' has a name of its own logic"},
        {base + "IDCODE 010 idcode\nUSERCODE 011 idcode\n", "idcode", "USERCODE needs a %USERCODE_REGISTER"},
    };
    for (const auto &one : cases) {
        work_folder folder;
        run_result result = build(folder, {"", one.table, one.needs});
        EXPECT_EQ(result.status, 255) << one.message;
        EXPECT_EQ(result.out.find("ERROR: (chip.bsc) "), 0u) << result.out;
        EXPECT_NE(result.out.find(one.message), std::string::npos) << result.out;
        EXPECT_EQ(folder.run("ls").out, "");
    }
}

TEST(tap_build, what_works_otherwise_than_expected_is_told) {
    const std::string base = SMALL_TABLE;
    const struct {
        std::string table, needs, message;
    } cases[] = {
        {base, "nocapture", "can't find %INSTRUCTION_CAPTURE.\n         Using default pattern -> 001.\n\n"},
        {base + "M 0X1,011 bypass\nN 01X bypass\nO 001 bypass\n", "", // once for each, with the first of them
         "opcode '0X1' of INSTRUCTION 'M' collides with\n"
         "         opcode '001' of INSTRUCTION 'SAMPLE', which wins.\n\n"
         "WARNING: (chip.bsc) opcode '01X' of INSTRUCTION 'N' collides with\n"
         "         opcode '0X1' of INSTRUCTION 'M', which wins.\n\n"
         "WARNING: (chip.bsc) opcode '001' of INSTRUCTION 'O' collides with\n"
         "         opcode '001' of INSTRUCTION 'SAMPLE', which wins.\n\n"},
        {base + "USERCODE 010 USERCODE\n", "",
         "nothing drives register 'USERCODE' that INSTRUCTION 'USERCODE' selects"},
        {base + "M 010 bypass a:AND:nosuch\n", "",
         "can't find signal 'nosuch' in the TAP module\n         for the gate of enable pin 'a'.\n\n"},
        {base + "M 010 bypass a=101\nN 011 bypass a=000\n", "",
         "    WARNING: the dafault value of enable pin 'a' from\n             tap controller is '100'.\n"},
    };
    for (const auto &one : cases)
        for (const char *language : {"", " vhdl"}) {
            work_folder folder;
            run_result result = build(folder, {"", one.table, one.needs + language});
            EXPECT_EQ(result.status, 0);
            EXPECT_NE(result.out.find(one.message), std::string::npos) << result.out;
        }
}

} // namespace
