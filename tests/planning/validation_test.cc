// The checks of the description files, seen as a user sees them: one small chip, one fault each, the whole
// message on the console and in the report, status 255, and nothing begun.
#include "tests/support/scratch.hh"

#include <gtest/gtest.h>
#include <string>

namespace {

constexpr const char *CELLS = R"(
module BC(si, so, sh, ck, up, md, di, po, sp, tck, oe); input si, sh, ck, up, md, di, sp, tck; output so, po; inout oe;
endmodule
module MX(si, so, sh, ck, up, md, di, po); input si, sh, ck, up, md, di; output so, po; endmodule
module PI(PAD, Y); input PAD; output Y; endmodule
module PO(A, PAD); input A; output PAD; endmodule
module BUF8(A, Z); input A; output Z; endmodule
module INV1(A, Z); input A; output Z; endmodule
module tapm(tdi, tdo, tms, tck, first, last, shift, clock, update, mode); input tdi, tms, tck, last;
output tdo, first, shift, clock, update, mode; endmodule
)";

constexpr const char *CHIP = R"(
module chip(a, y); input a; output y; wire n, m;
PI pa(.PAD(a), .Y(n)); INV1 u1(.A(n), .Z(m)); tapm OLD(.last(1'b0)); PO py(.A(m), .PAD(y));
M a(); N \a.b ();
endmodule
module M(); tapm \b.T (); endmodule
module N(); tapm T(); endmodule
)";

constexpr const char *LIB = R"(
%TAP_CONTROLLER tapm { %TDI tdi; %TDO tdo; %TMS tms; %TCK tck; %FIRST_BCELL first; %LAST_BCELL last;
  %SHIFT_DR shift; %CLOCK_DR clock; %UPDATE_DR update; %MODE_1 mode; }
%SCAN_CELL BC { %TDI si; %TDO so; %SHIFT_DR sh; %CLOCK_DR ck; %UPDATE_DR up; %MODE_1 md; %DATA_IN di; %DATA_OUT po; }
%SCAN_CELL MX { %TDI si; %TDO so; %SHIFT_DR sh; %CLOCK_DR ck; %UPDATE_DR up; %UPDATE_DR_OUT po; %DATA_IN di; %MODE_1 md; }
%SCAN_CELL MUX { %TDI si; %TDO so; %SHIFT_DR sh; %CLOCK_DR ck; }
%BUFFER PI { %INPUT PAD; %OUTPUT Y; }
%BUFFER PO { %INPUT A; %OUTPUT PAD; }
%BUFFER BUF8 { %INPUT A; %OUTPUT Z; }
)";

constexpr const char *BSC = R"(
%GLOBAL_TDI tdi; %GLOBAL_TDO tdo; %GLOBAL_TMS tms; %GLOBAL_TCK tck;
%TAP_MODULE { %MODULE_NAME tapm; %INSTANCE_NAME TAP; }
%SCAN_CELLS { %INPUT_SCAN BC; %OUTPUT_SCAN BC; }
%PIN_LIST { %FILE_NAME chip.pin; }
%INSTRUCTION_TABLE { %INSTRUCTION EXTEST = (00) ACCESS boundary; %INSTRUCTION SAMPLE = (01) ACCESS boundary;
  %INSTRUCTION BYPASS = (11) ACCESS bypass; }
%INSTRUCTION_CAPTURE (01);
)";

constexpr const char *PINS = "%PACKAGE_TYPE p 2;\n1 A a IN\n2 Y y OUT\n";

// One fault: in `file` the first `from` becomes `to`; the console must hold `message`. Options "existing"
// stands for the TAP that the design has.
struct FAULT_CASE {
    const char *file, *from, *to, *options, *message;
};

const FAULT_CASE FAULTS[] = {
    // Cells: every fault of every role is reported before the run ends.
    {"lib", "%TDI si; ", "", "",
     "ERROR: (./chip.lib) can't find %TDI in %SCAN_CELL BC.\n\nERROR: (./chip.lib) can't find %TDI"},
    {"bsc", "%OUTPUT_SCAN BC;", "%OUTPUT_MUX_SCAN MUX;", "",
     "ERROR: (./chip.lib) can't find %UPDATE_DR in %SCAN_CELL MUX.\n"
     "       OUTPUT MUX SCAN 'MUX' should have %UPDATE_DR signal.\n"
     "ERROR: (./chip.lib) can't find %UPDATE_DR_OUT in %SCAN_CELL MUX.\n"
     "       OUTPUT MUX SCAN 'MUX' should have %UPDATE_DR_OUT signal.\n\n"
     "ERROR: can't find SDB file 'MUX.sdb' in default searching path.\n\n"},
    {"lib", "%DATA_OUT po; }", "%DATA_OUT po; %OE_MODE nosuch; }", "",
     "ERROR: (./chip.lib) can't find port 'nosuch' in SDB './BC.sdb' for SCAN_CELL 'BC'.\n\n"},
    {"lib", "%DATA_OUT po; }", "%DATA_OUT po; }", "-synch",
     "ERROR: (./chip.lib) can't find %TCK in %SCAN_CELL BC.\n"},
    // Fields: all that can be reached is reported.
    {"bsc", "%GLOBAL_TDI tdi; %GLOBAL_TDO tdo; %GLOBAL_TMS tms;", "", "-add_tap",
     "ERROR: can't find %GLOBAL_TDI in file './chip.bsc'.\nERROR: can't find %GLOBAL_TDO in file "
     "'./chip.bsc'.\n"
     "ERROR: can't find %GLOBAL_TMS in file './chip.bsc'.\n\n"},
    {"bsc", "%GLOBAL_TDI tdi;", "", "",
     "ERROR: (./chip.bsc) can't find TAP %INSTANCE_NAME 'TAP' in SDB file './chip.c.sdb'.\n\n"},
    {"bsc", "%INSTANCE_NAME TAP", "%INSTANCE_NAME u1", "",
     "ERROR: (./chip.bsc) %TAP_MODULE_NAME 'tapm' doesn't match\n       class name of 'INV1' in SDB file "
     "'./chip.c.sdb'.\n\n"},
    {"bsc", "%MODULE_NAME tapm; ", "", "", "ERROR: (./chip.bsc) can't find %MODULE_NAME in %TAP_MODULE.\n"},
    {"bsc", "%GLOBAL_TCK tck;", "%GLOBAL_TCK tck; %INOUT_BUFFER PI;", "-add_tap",
     "ERROR: (./chip.lib) can't find %INOUT in %BUFFER PI.\nERROR: (./chip.lib) can't find %EN_L or % EN_H "
     "in %BUFFER PI.\n\n"},
    {"lib", "%SHIFT_DR shift;", "%SHIFT_DR -shift;", "-add_tap",
     "ERROR: (./chip.lib) can't find %INV_BUFFER in %TAP_CONTROLLER.\n\n"},
    {"lib", "%MODE_1 mode;", "%MODE_1 mode; %GROUP_SIZE 8;", "-add_tap",
     "ERROR: (./chip.lib) can't find %SIGNAL_BUFFER in %TAP_CONTROLLER.\n\n"},
    {"lib", "%MODE_1 mode;", "%MODE_1 mode; %GROUP_SIZE 8; %SIGNAL_BUFFER NOPE;", "-add_tap",
     "ERROR: (./chip.lib) void declare %SIGNAL_BUFFER 'NOPE'\n       in %TAP_CONTROLLER.\n"
     "       Can't find definition of 'NOPE' in './chip.lib'.\n\n"},
    {"lib", "%MODE_1 mode;", "%MODE_1 mode; %DF_GROUP_SIZE 8;", "-add_tap -df_speed",
     "ERROR: (./chip.lib) can't find %SIGNAL_BUFFER or %DF_SIGNAL_BUFFER in %TAP_CONTROLLER.\n\n"},
    {"bsc", "%PIN_LIST { %FILE_NAME chip.pin; }", "", "-add_tap",
     "ERROR: (./chip.bsc) Please specify the following field:\n\n        %PIN_LIST {\n            "
     "%FILE_NAME\n        }\n\n"},
    {"bsc", "%OUTPUT_SCAN BC;", "%OUTPUT_SCAN BC; %INPUT_MUX_SCAN MX;", "",
     "WARNING: (./chip.lib) %MODE signals in INPUT MUX SCAN 'MX'.\n         But %MODE signals won't be "
     "connected.\n\n"},
    {"bsc", "%INSTANCE_NAME TAP;", "%INSTANCE_NAME a..b;", "-add_tap",
     "ERROR: (./chip.bsc) TAP %INSTANCE_NAME 'a..b' has an empty component.\n\n"},
    {"bsc", "%INSTANCE_NAME TAP;", "%INSTANCE_NAME a.b.T;", "",
     "ERROR: (./chip.bsc) TAP %INSTANCE_NAME 'a.b.T' is ambiguous in SDB file './chip.c.sdb'.\n"
     "       Please write one of:\n           a.b\\.T\n           a\\.b.T\n\n"},
    {"bsc", "%GLOBAL_TCK tck;", "%GLOBAL_TCK tck; %INVERTER NOPE;", "-add_tap -inverted",
     "ERROR: can't find the definition of buffer 'NOPE' in file './chip.lib'.\n\n"},
    // An existing TAP.
    {"bsc", "%GLOBAL_TCK tck;", "%GLOBAL_TCK tck; %GLOBAL_TRST trst;", "existing",
     "ERROR: (./chip.lib) can't find %TRST in %TAP_CONTROLLER tapm to match\n       %GLOBAL_TRST 'trst' in "
     "./chip.bsc.\n"},
    {"lib", "%FIRST_BCELL first;", "", "existing",
     "ERROR: (./chip.lib) can't find %FIRST_BCELL in %TAP_CONTROLLER tapm.\n"},
    {"lib", "%UPDATE_DR update;", "", "existing",
     "ERROR: (./chip.lib) can't find %UPDATE_DR in %TAP_CONTROLLER tapm.\n"},
    {"lib", "%DATA_OUT po; }", "%DATA_OUT po; %HIGHZ tck; %RST oe; %MODE_2 sp; %MODE_3 sp; }", "existing",
     "ERROR: (./chip.lib) can't find %HIGHZ_COMMANDin %TAP_CONTROLLER tapm.\n"
     "ERROR: (./chip.lib) can't find %TAP_RESET in %TAP_CONTROLLER tapm.\n"
     "ERROR: (./chip.lib) can't find %MODE_2 in %TAP_CONTROLLER tapm.\n"
     "ERROR: (./chip.lib) can't find %MODE_3 in %TAP_CONTROLLER tapm.\n\n"},
    {"lib", "%DATA_OUT po; }", "%DATA_OUT po; %EXTRA_1 sp; }", "existing",
     "ERROR: (./chip.lib) scan cell has more extra pins than %TAP_CONTROLLER tapm.\n"},
    // The TAP's buffers and the default pads.
    {"lib", "%MODE_1 mode;", "%MODE_1 mode; %DF_GROUP_SIZE 8; %DF_SIGNAL_BUFFER NOPE;", "-add_tap",
     "ERROR: (./chip.lib) void declare %DF_SIGNAL_BUFFER 'NOPE'\n       in %TAP_CONTROLLER.\n"
     "       Can't find definition of 'NOPE' in './chip.lib'.\n\n"},
    {"lib", "%BUFFER BUF8 { %INPUT A; %OUTPUT Z; }",
     "%BUFFER BUF8 { %INPUT A; }\n%BUFFER OTHER { %INPUT A; %OUTPUT Z; }", "-add_tap %SIGNAL_BUFFER=BUF8",
     "ERROR: (./chip.lib) can't find %OUTPUT in BUF8.\n"},
    {"lib", "%BUFFER BUF8 { %INPUT A; %OUTPUT Z; }", "%BUFFER BUF8 { %INPUT A; %OUTPUT Q; }",
     "-add_tap %SIGNAL_BUFFER=BUF8",
     "ERROR: (./chip.lib) %OUTPUT Q specified in %BUFFER BUF8.\n       can't be found in file "
     "'./BUF8.sdb'.\n"},
    {"lib", "%BUFFER BUF8 { %INPUT A; %OUTPUT Z; }", "%BUFFER GONE { %INPUT A; %OUTPUT Z; }",
     "-add_tap %INV_BUFFER=GONE", "ERROR: can't find SDB file 'GONE.sdb' in default searching path.\n\n"},
    {"bsc", "%GLOBAL_TCK tck;", "%GLOBAL_TCK tck; %OUTPUT_BUFFER NOPE; %INOUT_BUFFER NADA;", "-add_tap",
     "ERROR: void declare %OUTPUT_BUFFER  NOPE in file './chip.bsc'.\n"
     "       Can't find the definition of 'NOPE' in file './chip.lib'.\n"
     "ERROR: void declare %INOUT_BUFFER  NADA in file './chip.bsc'.\n"
     "       Can't find the definition of 'NADA' in file './chip.lib'.\n"},
    {"pin", "1 A a IN\n2 Y y OUT\n", "", "-add_tap",
     "ERROR: (chip.pin) empty file. Can't find non skip pin.\n\n"},
};

std::string with_change(std::string text, const FAULT_CASE &fault, const char *file) {
    if (std::string(file) == fault.file) {
        size_t at = text.find(fault.from);
        EXPECT_NE(at, std::string::npos) << fault.from;
        text.replace(at, std::string(fault.from).size(), fault.to);
    }
    return text;
}

// The console of a run with its first lines (banner, options, input files) cut away.
std::string behind_the_head(const std::string &console) {
    size_t at = console.find("chip.lib.\n\n\n");
    return at == std::string::npos ? console : console.substr(at + 12);
}

TEST(Validation, FaultsAreReportedWholeAndEndTheRun) {
    scratch_folder scratch;
    scratch.write("cells.v", CELLS);
    scratch.write("chip.v", CHIP);
    ASSERT_EQ(scratch.run(RW_BIN_DIR "/kalmverin -lib cells.v && " RW_BIN_DIR "/kalmverin chip.v").status, 0);
    for (const FAULT_CASE &fault : FAULTS) {
        SCOPED_TRACE(std::string(fault.options) + " " + fault.file + ": '" + fault.from + "' -> '" +
                     fault.to + "'");
        std::string options = fault.options;
        std::string lib = with_change(LIB, fault, "lib");
        std::string bsc = with_change(BSC, fault, "bsc");
        if (options == "existing") {
            options.clear();
            bsc.replace(bsc.find("%INSTANCE_NAME TAP"), 18, "%INSTANCE_NAME OLD");
        }
        // "%KEYWORD=cell" among the options adds that item to the TAP cell.
        if (size_t at = options.find(" %"); at != std::string::npos) {
            std::string item = options.substr(at + 1);
            item[item.find('=')] = ' ';
            lib.replace(lib.find("%MODE_1 mode;"), 13, "%MODE_1 mode; " + item + ";");
            options.resize(at);
        }
        scratch.write("chip.lib", lib);
        scratch.write("chip.bsc", bsc);
        std::string pins = with_change(PINS, fault, "pin");
        if (size_t at = options.find(" -inverted"); at != std::string::npos) {
            pins.replace(pins.find(" a "), 3, " -a ");
            options.resize(at);
        }
        scratch.write("chip.pin", pins);
        std::filesystem::remove_all(scratch.dir / "rimweave_lib");
        run_result result = scratch.run(std::string(RW_BIN_DIR "/rimweave chip -no_expand ") + options);
        bool is_warning = std::string(fault.message).rfind("WARNING", 0) == 0;
        EXPECT_EQ(result.status, 255);
        EXPECT_NE(behind_the_head(result.out).find(fault.message), std::string::npos)
            << result.out << result.err;
        EXPECT_NE(scratch.read("chip.rwv.rpt").find(fault.message), std::string::npos);
        if (!is_warning && std::string(fault.options).find("-add_tap") == std::string::npos) {
            EXPECT_FALSE(scratch.has("rimweave_lib/chip_jtag.cmd"));
        }
    }
}

// The boundary order file can't be written: the user says whether the run goes on without it.
TEST(Validation, BoundaryOrderFileThatCantBeWritten) {
    scratch_folder scratch;
    scratch.write("cells.v", CELLS);
    scratch.write("chip.v", CHIP);
    scratch.write("chip.lib", LIB);
    scratch.write("chip.bsc", BSC);
    scratch.write("chip.pin", PINS);
    std::filesystem::create_directory(scratch.dir / "chip.bso");
    ASSERT_EQ(scratch.run(RW_BIN_DIR "/kalmverin -lib cells.v && " RW_BIN_DIR "/kalmverin chip.v").status, 0);
    for (const char *answer : {"y\n", "Y\n", "n\n", "yes\n", ""}) {
        run_result result = scratch.run(RW_BIN_DIR "/rimweave chip -no_expand -add_tap", answer);
        const char *warning = "WARNING: can't open file 'chip.bso' to output information of pins.\n\n";
        EXPECT_NE(result.out.find(std::string(warning) + "         Continue excuting? (y/n) : "),
                  std::string::npos);
        EXPECT_NE(scratch.read("chip.rwv.rpt").find(warning), std::string::npos);
        EXPECT_EQ(scratch.read("chip.rwv.rpt").find("Continue"), std::string::npos);
        EXPECT_EQ(result.status, answer[0] == 'y' && answer[1] == '\n' ? 0
                                 : answer[0] == 'Y'                    ? 0
                                                                       : 255)
            << answer;
        EXPECT_EQ(result.out.find("Boundary-scan Pin List"), std::string::npos);
    }
}

} // namespace
