// rimkit doctor on one small chip: each case changes its files, and says what must be found where.
#include "kit/doctor_rules.hh"
#include "tests/support/chip/small_chip.hh"

#include <regex>
#include <set>

namespace {

/// A chip with pads of each direction; the changes of a case are made in its files.
CHIP usual_chip() {
    return {.design = R"(module chip(input a, ck, inout b, output y, z);
IBUF pa(.PAD(a), .C(n_a)); CBUF pc(.PAD(ck), .C(n_ck)); BBUF pb(.I(n_y), .OEN(n_e), .PAD(b), .C(n_b));
OBUF py(.I(n_y), .PAD(y)); HBUF pz(.I(n_y), .EN(n_h), .PAD(z)); GATE h(.A(n_a), .Z(n_h));
GATE u(.A(n_a), .B(n_ck), .Z(n_y)); GATE v(.A(n_b), .B(n_a), .Z(n_e)); endmodule)",
            .pins = "1 A a *\n2 CK ck *\n3 B b *\n4 Y y *\n5 Z z *\n"};
}

using FOUND = std::set<std::string>;

/// "FILE:LINE severity rule" of all findings but notes.
FOUND found_in(const std::string &output) {
    static const std::regex line(R"((?:(\S+): )?(error|warning): .* \[([a-z-]+)\])");
    FOUND found;
    for (std::sregex_iterator at(output.begin(), output.end(), line), end; at != end; ++at)
        found.insert((*at)[1].str() + " " + (*at)[2].str() + " " + (*at)[3].str());
    return found;
}

class Doctor : public ::testing::Test {
  protected:
    /// The library of the small chips has cells that TCK clocks.
    run_result examine(const std::string &words = "chip -synch") const {
        return folder.scratch.run(RW_BIN_DIR "/rimkit doctor " + words);
    }
    chip_folder folder{"planning"};
};

TEST_F(Doctor, ACleanChipIsCleanAndItsRunEnds) {
    folder.lay_out(usual_chip());
    for (const char *switches : {" -synch", " -synch -vhdl -opath lib"}) {
        run_result result = examine(std::string("chip") + switches);
        EXPECT_EQ(result.status, 0) << result.out << result.err;
        EXPECT_FALSE(folder.scratch.has("rimweave_lib"));
        EXPECT_FALSE(folder.scratch.has("chip_TAP.v"));
    }
    EXPECT_EQ(folder.run("-add_tap").status, 0);
    expect_part(examine("chip").out,
                "chip.lib:1: warning: cell BC_IN has a %TCK pin, which stays open without -synch");
}

struct FAULT {
    const char *name;
    std::vector<CHANGE> changes;
    FOUND found;
    const char *part = ""; ///< of the output: a cure
};

const FAULT FAULTS[] = {
    {"pin_without_port",
     {{"chip.pin", "A a ", "A aa "}},
     {"chip.pin:2 error pin-without-port", "chip.pin warning port-without-row"}},
    {"pin_in_other_case",
     {{"chip.pin", "A a ", "A A "}},
     {"chip.pin:2 error name-case", "chip.pin warning port-without-row"},
     "write a in the row of A"},
    {"number_twice", {{"chip.pin", "2 CK", "1 CK"}}, {"chip.pin:3 error pin-twice"}},
    {"names_twice",
     {{"chip.pin", "CK ck", "A a"}, {"chip.pin", "Y y", "Y a"}},
     {"chip.pin warning port-without-row", "chip.pin:2 error shared-wire", "chip.pin:3 error pin-twice",
      "chip.pin:5 error pin-twice"}},
    {"package_too_small", {{"chip.pin", "20001", "3"}}, {"chip.pin error package-count"}},
    {"words_that_do_not_belong",
     {{"chip.pin", "1 A a *", "1 A a * }"}, {"chip.lib", "%TDI si;", "%TDI;"}},
     {"chip.pin:2 error syntax", "chip.lib:1 error syntax"}},
    {"cell_not_described",
     {{"chip.lib", "%BUFFER IBUF", "%BUFFER X"}},
     {"chip.pin:2 error undescribed-cell"}},
    {"cell_in_other_case",
     {{"chip.lib", "%BUFFER IBUF", "%BUFFER Ibuf"}},
     {"chip.lib:14 error name-case"},
     "%BUFFER IBUF instead of Ibuf"},
    {"floating_port", {{"chip.v", "PAD(a)", "PAD(q)"}}, {"chip.pin:2 error floating-pad"}},
    {"pad_without_output", {{"chip.lib", "%OUTPUT C;", "%FUNCTION x;"}}, {"chip.lib:14 error pad-lacks-pin"}},
    {"pad_pin_misspelt", {{"chip.lib", "%OUTPUT C;", "%OUTPUT D;"}}, {"chip.pin:2 error pad-pin-unknown"}},
    {"pad_pins_exchanged",
     {{"chip.lib", "%INPUT PAD; %OUTPUT C;", "%INPUT C; %OUTPUT PAD;"}},
     {"chip.lib:14 error pad-pin-direction"}},
    {"port_declared_inout",
     {{"chip.v", "input a, ck, inout b", "inout a, b, input ck"}},
     {"chip.pin:2 error inout-on-one-way-pad"},
     "kalmverin -as_input a"},
    {"power_in_the_chain",
     {{"chip.v", "y, z)", "y, VDD)"}, {"chip.v", "PAD(z)", "PAD(VDD)"}, {"chip.pin", "Z z", "Z VDD"}},
     {"chip.pin:6 warning power-in-chain"}},
    {"no_control_cell",
     {{"chip.bsc", "%CONTROL_SCAN BC_CTL;", ""}},
     {"chip.bsc error role-missing"},
     "%CONTROL_SCAN CELL; among the %SCAN_CELLS of chip.bsc"},
    {"role_without_block",
     {{"chip.bsc", "%BIDIR_SCAN BC_BI", "%BIDIR_SCAN BC_NO"}},
     {"chip.bsc:8 error role-cell-unknown", "chip.bsc:8 error role-missing"}},
    {"cells_lack_pins",
     {{"chip.lib", "%UPDATE_DR up; %MODE_1 m; }", "%MODE_1 m; }"}, {"chip.lib", "%DATA_IN di; }", "}"}},
     {"chip.lib:2 error cell-lacks-pin", "chip.lib:3 error cell-lacks-pin"}},
    {"cell_pin_misspelt",
     {{"chip.lib", "%DATA_IN di; }", "%DATA_IN DI; }"}},
     {"chip.lib:2 error cell-pin-unknown"},
     "%DATA_IN di;"},
    {"no_test_port", {{"chip.bsc", "%GLOBAL_TDI tdi;", ""}}, {"chip.bsc error test-port-undeclared"}},
    {"group_of_one",
     {{"chip.lib", "%SHIFT_DR shift;", "%SHIFT_DR shift; %SIGNAL_BUFFER PLAIN;\n%GROUP_SIZE 1;"}},
     {"chip.lib:43 error group-size"}},
    {"unknown_buffer",
     {{"chip.lib", "%SHIFT_DR shift;", "%SHIFT_DR shift; %SIGNAL_BUFFER NONE; %GROUP_SIZE 4;"}},
     {"chip.lib error tap-buffer"}},
    {"no_extest",
     {{"chip.bsc", "%INSTRUCTION EXTEST = (00) ACCESS boundary;", ""}},
     {"chip.bsc error instruction-missing"}},
    {"opcodes",
     {{"chip.bsc", "(00)", "(01)"}, {"chip.bsc", "(11)", "(10)"}},
     {"chip.bsc:5 warning opcode-collision", "chip.bsc:6 warning bypass-opcode"}},
    {"capture", {{"chip.bsc", "CAPTURE (01)", "CAPTURE (10)"}}, {"chip.bsc:7 warning capture-value"}},
    {"capture_too_long", {{"chip.bsc", "CAPTURE (01)", "CAPTURE (101)"}}, {"chip.bsc:7 error code-length"}},
    {"idcode_without_register",
     {{"chip.bsc", "%INSTRUCTION BYPASS", "%INSTRUCTION IDCODE = (10) ACCESS idcode; %INSTRUCTION BYPASS"}},
     {"chip.bsc:6 warning idcode", "chip.bsc:6 warning register-undriven"}},
    {"idcode_of_a_reserved_maker",
     {{"chip.bsc", "%INSTRUCTION BYPASS", "%INSTRUCTION IDCODE = (10) ACCESS idcode; %INSTRUCTION BYPASS"},
      {"chip.bsc", "CAPTURE (01);", "CAPTURE (01);\n%IDCODE_REGISTER 00010000000000000001000011111110;"}},
     {"chip.bsc:8 warning idcode"},
     "%IDCODE_REGISTER 00010000000000000001000011111111;"},
};

TEST_F(Doctor, FindsEachFaultAtItsLine) {
    for (const FAULT &fault : FAULTS) {
        SCOPED_TRACE(fault.name);
        CHIP chip = usual_chip();
        chip.changes = fault.changes;
        folder.lay_out(chip);
        run_result result = examine();
        EXPECT_EQ(found_in(result.out), fault.found) << result.out << result.err;
        EXPECT_EQ(result.status, 1);
        expect_part(result.out, fault.part);
    }
}

// Ports that the pads of the chip show, and names that only the .bsc file has.
TEST_F(Doctor, LooksAtTestPortsAndAnalogPads) {
    CHIP chip = usual_chip();
    chip.design = R"(module chip(input a, tdi, tms, Tck, inout k, output tdo);
IBUF pa(.PAD(a), .C(n_a)); OBUF pt(.I(n_a), .PAD(tdo)); IBUF pi(.PAD(tdi), .C(n_i)); IBUF pm(.PAD(tms), .C(n_m));
IBUF pk(.PAD(Tck), .C(n_k)); BOND bk(.PAD(k)); GATE u(.A(n_a), .B(n_i)); GATE v(.A(n_m), .B(n_k)); endmodule)";
    chip.cells = "module BOND(inout PAD); endmodule";
    chip.pins = "1 A a *\n2 TDO tdo *\n3 TMS tms *\n4 K k *\n";
    chip.changes = {{"chip.bsc", "{ tdi, tdo, tms, tck", "{ tdi, tdo, tck"}};
    folder.lay_out(chip);
    run_result result = examine();
    FOUND expected = {"chip.bsc:1 warning name-case",          "chip.pin warning unlisted-test-port",
                      "chip.pin warning port-without-row",     "chip.pin:3 warning tdo-release",
                      "chip.pin:4 warning test-port-in-chain", "chip.pin:5 error bond-pad"};
    EXPECT_EQ(found_in(result.out), expected) << result.out;
    expect_part(result.out, "k among the %SKIP_SIGNAL_NAMES of chip.bsc");
}

// What does not hang together is found in one call, as a list for machines too.
TEST_F(Doctor, FindsAllAtOnce) {
    CHIP chip = usual_chip();
    chip.changes = {{"chip.pin", "A a ", "A aa "},
                    {"chip.pin", "4 Y y", "4 Y yy"},
                    {"chip.lib", "%BUFFER CBUF", "%BUFFER X"},
                    {"chip.bsc", "%CONTROL_SCAN BC_CTL;", ""},
                    {"chip.bsc", "%BIDIR_SCAN BC_BI", "%BIDIR_SCAN BC_NO"},
                    {"chip.bsc", "(00)", "(01)"},
                    {"chip.lib", "%DATA_IN di; }", "}"}};
    folder.lay_out(chip);
    run_result result = examine("--json chip");
    EXPECT_EQ(result.status, 1);
    for (const char *part :
         {R"("severity": "error", "rule": "pin-without-port", "file": "chip.pin", "line": 2, "object": "aa")",
          R"("rule": "pin-without-port", "file": "chip.pin", "line": 5)", R"("rule": "undescribed-cell")",
          R"("rule": "role-missing")",
          R"("rule": "role-cell-unknown", "file": "chip.bsc", "line": 8, "object": "BC_NO")",
          R"("rule": "opcode-collision")", R"("rule": "cell-lacks-pin", "file": "chip.lib", "line": 2)",
          R"("object": "y", "text")"})
        expect_part(result.out, part);
}

constexpr const char *PADS = R"(library (pads) {
cell (IBUF) { pin (PAD) { is_pad : true; direction : input; } pin (EN) { direction : input; }
              pin (C) { direction : output; function : "PAD EN"; } }
cell (HBUF) { pin (I) { direction : input; } pin (EN) { direction : input; }
              pin (PAD) { is_pad : true; direction : output; function : "I"; three_state : "EN"; } } })";

TEST_F(Doctor, AsksLibertyWhatAPadNeeds) {
    CHIP chip = usual_chip();
    chip.cells = "module IBUF(input PAD, EN, output C); endmodule";
    chip.changes = {{"chip.v", "IBUF pa(", "IBUF pa(.EN(n_y), "}};
    folder.lay_out(chip);
    folder.scratch.write("pads.lib", PADS);
    EXPECT_EQ(found_in(examine().out), FOUND{});
    run_result result = examine("--liberty pads.lib chip -synch");
    FOUND expected = {"chip.lib:14 warning pad-gated", "chip.lib:19 error enable-polarity"};
    EXPECT_EQ(found_in(result.out), expected) << result.out;
    chip.changes = {{"chip.v", "IBUF pa(", "IBUF pa(.EN(1'b0), "},
                    {"chip.lib", "%EN_H EN; }\n%BUFFER EBUF", "%EN_L EN; }\n%BUFFER EBUF"}};
    folder.lay_out(chip);
    result = examine("--liberty pads.lib chip -synch");
    EXPECT_EQ(found_in(result.out), FOUND{"chip.lib:14 warning pad-never-works"}) << result.out;
    folder.scratch.write("pads.lib", "library (pads) {");
    EXPECT_EQ(found_in(examine("--liberty pads.lib chip -synch").out),
              FOUND{"pads.lib error unreadable-liberty"});
}

TEST_F(Doctor, BadFilesGetTheirMessage) {
    folder.lay_out(usual_chip());
    const scratch_folder &scratch = folder.scratch;
    std::string design = scratch.read("chip.c.sdb"), library = scratch.read("chip.lib");
    const struct {
        const char *file;
        std::string text;
        FOUND found;
    } cases[] = {
        {"chip.c.sdb",
         design.substr(0, design.size() / 2),
         {"chip.c.sdb error damaged-sdb", " error damaged-sdb"}},
        {"chip.c.sdb", "", {"chip.c.sdb error damaged-sdb"}},
        {"chip.lib",
         std::string("\x7f"
                     "ELF\0\1",
                     6),
         {"chip.lib:1 error syntax"}},
        {"chip.lib", "%SCAN_CELL " + std::string(9000, 'x'), {" error syntax"}},
        {"chip.bsc", "/* open", {"chip.bsc:1 error syntax"}},
        {"chip.bsc", "%PIN_LIST { %FILE_NAME no.pin; }", {"chip.bsc:1 error missing-file"}},
        {"chip.pin", "", {"chip.pin:1 error syntax"}},
    };
    for (const auto &bad : cases) {
        SCOPED_TRACE(std::string(bad.file) + bad.text.substr(0, 40));
        std::string before = scratch.read(bad.file);
        scratch.write(bad.file, bad.text);
        run_result result = examine();
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(found_in(result.out), bad.found) << result.out << result.err;
        scratch.write(bad.file, before);
    }
    EXPECT_EQ(found_in(examine("chip -synch -opath nowhere").out), FOUND{"nowhere error unwritable-folder"});
    EXPECT_EQ(
        scratch.run("touch -d '1 hour' chip.v; " RW_BIN_DIR "/rimkit doctor chip | grep -c stale-sdb").out,
        "2\n");
    EXPECT_EQ(scratch.run("TMPDIR=/nowhere " RW_BIN_DIR "/rimkit doctor chip").status, 255);
    EXPECT_EQ(examine("chip -no_such").status, 2);
    scratch.run("mkdir empty");
    run_result result = scratch.run("cd empty; " RW_BIN_DIR "/rimkit doctor chip");
    EXPECT_EQ(found_in(result.out), (FOUND{"chip.bsc error missing-file", "chip.lib error missing-file",
                                           "chip.sdb error missing-sdb", "chip.c.sdb error missing-sdb"}))
        << result.out << result.err;
}

TEST(DoctorManual, HasASectionOfEachRule) {
    std::string manual = read_whole(RW_SOURCE_DIR "/docs/rimkit_doctor.md");
    for (const DOCTOR_RULE &rule : doctor_rules)
        expect_part(manual, std::string("\n### ") + rule.name + "\n");
}

// The published chips, with the descriptions that were written for them by hand.
TEST(DoctorOfRealChips, FindsNoErrors) {
    std::filesystem::path chips = RW_SOURCE_DIR "/../shared/real";
    if (!std::filesystem::exists(chips))
        GTEST_SKIP();
    const struct {
        const char *folder, *design, *read;
    } cases[] = {{"as2650", "chip_top", "-as_input clk_PAD,rst_n_PAD chip_top.pnl.v"},
                 {"trc", "chip_top", "-as_input clk_PAD,rst_n_PAD,input_PAD chip_top.pnl.v"},
                 {"caravel", "caravel", "caravel.v chip_io.v constant_block.v"}};
    for (const auto &chip : cases) {
        SCOPED_TRACE(chip.folder);
        scratch_folder scratch;
        std::string macro = std::string(chip.folder) == "caravel" ? "-D USE_POWER_PINS " : "";
        run_result read =
            scratch.run("cp " + (chips / chip.folder).string() +
                        "/* . && (xz -d *.xz; mkdir lib; " RW_BIN_DIR "/kalmverin -lib " + macro +
                        "cells.v bscells.v -opath lib && " RW_BIN_DIR "/kalmverin " + chip.read + ")");
        EXPECT_EQ(read.status, 0) << read.err;
        run_result result = scratch.run(std::string(RW_BIN_DIR "/rimkit doctor ") + chip.design);
        EXPECT_EQ(result.status, 0) << result.out << result.err;
        expect_part(result.out, "\n0 errors, 0 warnings, ");
    }
}

} // namespace
