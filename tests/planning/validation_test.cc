// The checks of the description files, seen as a user sees them: one small chip, one fault each, the whole
// message on the console and in the report, status 255, and nothing begun.
#include "tests/planning/planned_chip.hh"

namespace {

const CHIP CHECKED = {
    .design = "module chip(input a, output y); wire n, m; IBUF pa(.PAD(a), .C(n)); PLAIN u1(.A(n), .Z(m));\n"
              "oldtap OLD(.last(1'b0)); OBUF py(.I(m), .PAD(y)); M a(); N \\a.b (); endmodule\n"
              "module M(); oldtap \\b.T (); endmodule\nmodule N(); oldtap T(); endmodule\n",
    .pins = "1 A a IN\n2 Y y OUT\n",
    .roles = "%INPUT_SCAN BC_OUT; %OUTPUT_SCAN BC_OUT;",
    .library = "%SCAN_CELL MUX { $ }\n"
               "%SCAN_CELL BC_MX { $ %UPDATE_DR up; %UPDATE_DR_OUT uo; %DATA_IN di; %MODE_1 m; }\n",
    .tap_pins = "%UPDATE_DR update; %MODE_1 mode1;"};

// One fault: in `file` the first `from` becomes `to`; the console must hold `message`. Options "existing"
// stands for the TAP that the design has.
const struct {
    const char *file, *from, *to, *options, *message;
} FAULTS[] = {
    // Cells: every fault of every role is reported before the run ends.
    {"chip.lib", "BC_OUT { %TDI si; ", "BC_OUT { ", "",
     "ERROR: (./chip.lib) can't find %TDI in %SCAN_CELL BC_OUT.\n\nERROR: (./chip.lib) can't find %TDI"},
    {"chip.bsc", "%OUTPUT_SCAN BC_OUT;", "%OUTPUT_MUX_SCAN MUX;", "",
     "ERROR: (./chip.lib) can't find %UPDATE_DR in %SCAN_CELL MUX.\n"
     "       OUTPUT MUX SCAN 'MUX' should have %UPDATE_DR signal.\n"
     "ERROR: (./chip.lib) can't find %UPDATE_DR_OUT in %SCAN_CELL MUX.\n"
     "       OUTPUT MUX SCAN 'MUX' should have %UPDATE_DR_OUT signal.\n\n"
     "ERROR: can't find SDB file 'MUX.sdb' in default searching path.\n\n"},
    {"chip.lib", "%MODE_1 m; }", "%MODE_1 m; %OE_MODE nosuch; }", "",
     "ERROR: (./chip.lib) can't find port 'nosuch' in SDB './lib/BC_OUT.sdb' for SCAN_CELL 'BC_OUT'.\n\n"},
    {"chip.lib", "%CLOCK_DR ck; %TCK tk; %DATA_IN di; %DATA_OUT do; %UPDATE_DR",
     "%CLOCK_DR ck; %DATA_IN di; %DATA_OUT do; %UPDATE_DR", "-synch",
     "ERROR: (./chip.lib) can't find %TCK in %SCAN_CELL BC_OUT.\n"},
    // Fields: all that can be reached is reported.
    {"chip.bsc", "%GLOBAL_TDI tdi; %GLOBAL_TDO tdo; %GLOBAL_TMS tms;", "", "-add_tap",
     "ERROR: can't find %GLOBAL_TDI in file './chip.bsc'.\nERROR: can't find %GLOBAL_TDO in file "
     "'./chip.bsc'.\n"
     "ERROR: can't find %GLOBAL_TMS in file './chip.bsc'.\n\n"},
    {"chip.bsc", "%GLOBAL_TDI tdi;", "", "",
     "ERROR: (./chip.bsc) can't find TAP %INSTANCE_NAME 'TAP' in SDB file './chip.c.sdb'.\n\n"},
    {"chip.bsc", "%INSTANCE_NAME TAP", "%INSTANCE_NAME u1", "",
     "ERROR: (./chip.bsc) %TAP_MODULE_NAME 'oldtap' doesn't match\n       class name of 'PLAIN' in SDB file "
     "'./chip.c.sdb'.\n\n"},
    {"chip.bsc", "%MODULE_NAME oldtap; ", "", "",
     "ERROR: (./chip.bsc) can't find %MODULE_NAME in %TAP_MODULE.\n"},
    {"chip.bsc", "%GLOBAL_TCK tck;", "%GLOBAL_TCK tck; %INOUT_BUFFER IBUF;", "-add_tap",
     "ERROR: (./chip.lib) can't find %INOUT in %BUFFER IBUF.\nERROR: (./chip.lib) can't find %EN_L or % EN_H "
     "in %BUFFER IBUF.\n\n"},
    {"chip.lib", "%SHIFT_DR shift;", "%SHIFT_DR -shift;", "-add_tap",
     "ERROR: (./chip.lib) can't find %INV_BUFFER in %TAP_CONTROLLER.\n\n"},
    {"chip.lib", "%MODE_1 mode1;", "%MODE_1 mode1; %GROUP_SIZE 8;", "-add_tap",
     "ERROR: (./chip.lib) can't find %SIGNAL_BUFFER in %TAP_CONTROLLER.\n\n"},
    {"chip.lib", "%MODE_1 mode1;", "%MODE_1 mode1; %GROUP_SIZE 8; %SIGNAL_BUFFER NOPE;", "-add_tap",
     "ERROR: (./chip.lib) void declare %SIGNAL_BUFFER 'NOPE'\n       in %TAP_CONTROLLER.\n"
     "       Can't find definition of 'NOPE' in './chip.lib'.\n\n"},
    {"chip.lib", "%MODE_1 mode1;", "%MODE_1 mode1; %DF_GROUP_SIZE 8;", "-add_tap -df_speed",
     "ERROR: (./chip.lib) can't find %SIGNAL_BUFFER or %DF_SIGNAL_BUFFER in %TAP_CONTROLLER.\n\n"},
    {"chip.bsc", "%PIN_LIST { %FILE_NAME chip.pin; }", "", "-add_tap",
     "ERROR: (./chip.bsc) Please specify the following field:\n\n        %PIN_LIST {\n            "
     "%FILE_NAME\n        }\n\n"},
    {"chip.bsc", "%OUTPUT_SCAN BC_OUT;", "%OUTPUT_SCAN BC_OUT; %INPUT_MUX_SCAN BC_MX;", "",
     "WARNING: (./chip.lib) %MODE signals in INPUT MUX SCAN 'BC_MX'.\n         But %MODE signals won't be "
     "connected.\n\n"},
    {"chip.bsc", "%INSTANCE_NAME TAP;", "%INSTANCE_NAME a..b;", "-add_tap",
     "ERROR: (./chip.bsc) TAP %INSTANCE_NAME 'a..b' has an empty component.\n\n"},
    {"chip.bsc", "%INSTANCE_NAME TAP;", "%INSTANCE_NAME a.b.T;", "",
     "ERROR: (./chip.bsc) TAP %INSTANCE_NAME 'a.b.T' is ambiguous in SDB file './chip.c.sdb'.\n"
     "       Please write one of:\n           a.b\\.T\n           a\\.b.T\n\n"},
    // An existing TAP.
    {"chip.bsc", "%GLOBAL_TCK tck;", "%GLOBAL_TCK tck; %GLOBAL_TRST trst;", "existing",
     "ERROR: (./chip.lib) can't find %TRST in %TAP_CONTROLLER oldtap to match\n       %GLOBAL_TRST 'trst' in "
     "./chip.bsc.\n"},
    {"chip.lib", "%FIRST_BCELL first;", "", "existing",
     "ERROR: (./chip.lib) can't find %FIRST_BCELL in %TAP_CONTROLLER oldtap.\n"},
    {"chip.lib", "%UPDATE_DR update;", "", "existing",
     "ERROR: (./chip.lib) can't find %UPDATE_DR in %TAP_CONTROLLER oldtap.\n"},
    {"chip.lib", "%MODE_1 m; }", "%MODE_1 m; %HIGHZ tk; %RST up; %MODE_2 up; %MODE_3 up; }", "existing",
     "ERROR: (./chip.lib) can't find %HIGHZ_COMMANDin %TAP_CONTROLLER oldtap.\n"
     "ERROR: (./chip.lib) can't find %TAP_RESET in %TAP_CONTROLLER oldtap.\n"
     "ERROR: (./chip.lib) can't find %MODE_2 in %TAP_CONTROLLER oldtap.\n"
     "ERROR: (./chip.lib) can't find %MODE_3 in %TAP_CONTROLLER oldtap.\n\n"},
    {"chip.lib", "%MODE_1 m; }", "%MODE_1 m; %EXTRA_1 up; }", "existing",
     "ERROR: (./chip.lib) scan cell has more extra pins than %TAP_CONTROLLER oldtap.\n"},
    // The TAP's buffers and the default pads.
    {"chip.lib", "%MODE_1 mode1;", "%MODE_1 mode1; %DF_GROUP_SIZE 8; %DF_SIGNAL_BUFFER NOPE;", "-add_tap",
     "ERROR: (./chip.lib) void declare %DF_SIGNAL_BUFFER 'NOPE'\n       in %TAP_CONTROLLER.\n"
     "       Can't find definition of 'NOPE' in './chip.lib'.\n\n"},
    // A block behind the TAP's.
    {"chip.lib", "%MODE_1 mode1;",
     "%SIGNAL_BUFFER GATE; }\n%BUFFER GATE { %INPUT A; }\n%BUFFER OTHER { %INPUT A; %OUTPUT Z;", "-add_tap",
     "ERROR: (./chip.lib) can't find %OUTPUT in GATE.\n"},
    {"chip.lib", "%MODE_1 mode1;", "%SIGNAL_BUFFER GATE; }\n%BUFFER GATE { %INPUT A; %OUTPUT Q;", "-add_tap",
     "ERROR: (./chip.lib) %OUTPUT Q specified in %BUFFER GATE.\n       can't be found in file "
     "'./lib/GATE.sdb'.\n"},
    {"chip.lib", "%MODE_1 mode1;", "%INV_BUFFER GONE; }\n%BUFFER GONE { %INPUT A; %OUTPUT Z;", "-add_tap",
     "ERROR: can't find SDB file 'GONE.sdb' in default searching path.\n\n"},
    {"chip.bsc", "%GLOBAL_TCK tck;", "%GLOBAL_TCK tck; %OUTPUT_BUFFER NOPE; %INOUT_BUFFER NADA;", "-add_tap",
     "ERROR: void declare %OUTPUT_BUFFER  NOPE in file './chip.bsc'.\n"
     "       Can't find the definition of 'NOPE' in file './chip.lib'.\n"
     "ERROR: void declare %INOUT_BUFFER  NADA in file './chip.bsc'.\n"
     "       Can't find the definition of 'NADA' in file './chip.lib'.\n"},
    {"chip.pin", "1 A a IN\n2 Y y OUT\n", "", "-add_tap",
     "ERROR: (chip.pin) empty file. Can't find non skip pin.\n\n"},
};

TEST(Validation, FaultsAreReportedWholeAndEndTheRun) {
    planning_folder folder;
    for (const auto &[file, from, to, options, message] : FAULTS) {
        SCOPED_TRACE(std::string(options) + " " + file + ": '" + from + "' -> '" + to + "'");
        CHIP chip = CHECKED;
        chip.options = options;
        if (options == std::string("existing")) {
            chip.options = "";
            chip.tap = "OLD";
        }
        chip.changes = {{file, from, to}};
        folder.lay_out(chip);
        run_result result = folder.insert(chip);
        EXPECT_EQ(result.status, 255);
        size_t head = result.out.find("chip.lib.\n\n\n");
        EXPECT_NE(result.out.find(message, head == std::string::npos ? 0 : head + 12), std::string::npos)
            << result.out << result.err;
        EXPECT_NE(folder.scratch.read("chip.rwv.rpt").find(message), std::string::npos);
        bool is_warning = std::string(message).starts_with("WARNING");
        EXPECT_FALSE(!is_warning && *chip.options != "-add_tap" &&
                     folder.scratch.has("rimweave_lib/chip_jtag.cmd"));
    }
}

// The boundary order file can't be written: the user says whether the run goes on without it.
TEST(Validation, BoundaryOrderFileThatCantBeWritten) {
    planning_folder folder;
    folder.lay_out(CHECKED);
    std::filesystem::create_directory(folder.scratch.dir / "chip.bso");
    for (const std::string answer : {"y\n", "Y\n", "n\n", "yes\n", ""}) {
        SCOPED_TRACE(answer);
        run_result result = folder.run("-no_expand -add_tap", answer);
        std::string report = folder.scratch.read("chip.rwv.rpt");
        const std::string warning = "WARNING: can't open file 'chip.bso' to output information of pins.\n\n";
        EXPECT_NE(result.out.find(warning + "         Continue excuting? (y/n) : "), std::string::npos);
        EXPECT_NE(report.find(warning), std::string::npos);
        EXPECT_EQ(report.find("Continue"), std::string::npos);
        EXPECT_EQ(result.status, answer == "y\n" || answer == "Y\n" ? 0 : 255);
        EXPECT_EQ(result.out.find("Boundary-scan Pin List"), std::string::npos);
    }
}

} // namespace
