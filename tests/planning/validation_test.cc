// The checks of the description files, seen as a user sees them: one small chip, one fault each, the whole
// message on the console and in the report, status 255, and nothing begun.
#include "tests/planning/planned_chip.hh"

#include <sstream>

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

// One fault: in `file` the first `from` becomes `to`. Options "existing"
// stands for the TAP that the design has.
const struct {
    const char *file, *from, *to, *options;
} FAULTS[] = {
    // Cells: every fault of every role is reported before the run ends.
    {"chip.lib", "BC_OUT { %TDI si; ", "BC_OUT { ", ""},
    {"chip.bsc", "%OUTPUT_SCAN BC_OUT;", "%OUTPUT_MUX_SCAN MUX;", ""},
    {"chip.lib", "%MODE_1 m; }", "%MODE_1 m; %OE_MODE nosuch; }", ""},
    {"chip.lib", "%CLOCK_DR ck; %TCK tk; %DATA_IN di; %DATA_OUT do; %UPDATE_DR",
     "%CLOCK_DR ck; %DATA_IN di; %DATA_OUT do; %UPDATE_DR", "-synch"},
    // Fields: all that can be reached is reported.
    {"chip.bsc", "%GLOBAL_TDI tdi; %GLOBAL_TDO tdo; %GLOBAL_TMS tms;", "", "-add_tap"},
    {"chip.bsc", "%GLOBAL_TDI tdi;", "", ""},
    {"chip.bsc", "%INSTANCE_NAME TAP", "%INSTANCE_NAME u1", ""},
    {"chip.bsc", "%MODULE_NAME oldtap; ", "", ""},
    {"chip.bsc", "%GLOBAL_TCK tck;", "%GLOBAL_TCK tck; %INOUT_BUFFER IBUF;", "-add_tap"},
    {"chip.lib", "%SHIFT_DR shift;", "%SHIFT_DR -shift;", "-add_tap"},
    {"chip.lib", "%MODE_1 mode1;", "%MODE_1 mode1; %GROUP_SIZE 8;", "-add_tap"},
    {"chip.lib", "%MODE_1 mode1;", "%MODE_1 mode1; %GROUP_SIZE 8; %SIGNAL_BUFFER NOPE;", "-add_tap"},
    {"chip.lib", "%MODE_1 mode1;", "%MODE_1 mode1; %DF_GROUP_SIZE 8;", "-add_tap -df_speed"},
    {"chip.bsc", "%PIN_LIST { %FILE_NAME chip.pin; }", "", "-add_tap"},
    {"chip.bsc", "%OUTPUT_SCAN BC_OUT;", "%OUTPUT_SCAN BC_OUT; %INPUT_MUX_SCAN BC_MX;", ""},
    {"chip.bsc", "%INSTANCE_NAME TAP;", "%INSTANCE_NAME a..b;", "-add_tap"},
    {"chip.bsc", "%INSTANCE_NAME TAP;", "%INSTANCE_NAME a.b.T;", ""},
    // An existing TAP.
    {"chip.bsc", "%GLOBAL_TCK tck;", "%GLOBAL_TCK tck; %GLOBAL_TRST trst;", "existing"},
    {"chip.lib", "%FIRST_BCELL first;", "", "existing"},
    {"chip.lib", "%UPDATE_DR update;", "", "existing"},
    {"chip.lib", "%MODE_1 m; }", "%MODE_1 m; %HIGHZ tk; %RST up; %MODE_2 up; %MODE_3 up; }", "existing"},
    {"chip.lib", "%MODE_1 m; }", "%MODE_1 m; %EXTRA_1 up; }", "existing"},
    // The TAP's buffers and the default pads.
    {"chip.lib", "%MODE_1 mode1;", "%MODE_1 mode1; %DF_GROUP_SIZE 8; %DF_SIGNAL_BUFFER NOPE;", "-add_tap"},
    // A block behind the TAP's.
    {"chip.lib", "%MODE_1 mode1;",
     "%SIGNAL_BUFFER GATE; }\n%BUFFER GATE { %INPUT A; }\n%BUFFER OTHER { %INPUT A; %OUTPUT Z;", "-add_tap"},
    {"chip.lib", "%MODE_1 mode1;", "%SIGNAL_BUFFER GATE; }\n%BUFFER GATE { %INPUT A; %OUTPUT Q;", "-add_tap"},
    {"chip.lib", "%MODE_1 mode1;", "%INV_BUFFER GONE; }\n%BUFFER GONE { %INPUT A; %OUTPUT Z;", "-add_tap"},
    {"chip.bsc", "%GLOBAL_TCK tck;", "%GLOBAL_TCK tck; %OUTPUT_BUFFER NOPE; %INOUT_BUFFER NADA;", "-add_tap"},
    {"chip.pin", "1 A a IN\n2 Y y OUT\n", "", "-add_tap"},
};

TEST(Validation, FaultsAreReportedWholeAndEndTheRun) {
    planning_folder folder;
    std::string text;
    for (const auto &[file, from, to, options] : FAULTS) {
        const std::string fault = std::string(options) + " " + file + ": '" + from + "' -> '" + to + "'";
        SCOPED_TRACE(fault);
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
        const std::string messages = messages_of(result.out);
        text += "== " + fault + "\n" + messages;
        const std::string report = folder.scratch.read("chip.rwv.rpt");
        std::istringstream lines(messages);
        for (std::string line; std::getline(lines, line);)
            expect_part(report, line);
        EXPECT_FALSE(messages.starts_with("ERROR") && *chip.options != "-add_tap" &&
                     folder.scratch.has("rimweave_lib/chip_jtag.cmd"));
    }
    expect_file("planning/expected/faults.txt", text);
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
