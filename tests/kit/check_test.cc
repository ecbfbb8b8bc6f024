// rimkit check on one small chip with its register: each case changes the netlist or a file of the finished
// run, and says what must be found where.
#include "kit/check.hh"
#include "tests/support/chip/small_chip.hh"

#include <regex>
#include <set>

namespace {

constexpr const char *RIMKIT_CHECK = RW_BIN_DIR "/rimkit check ";

/// Pads of each direction, and a test port with pads.
CHIP checked_chip() {
    return {
        .design = R"(module chip(input a, ck, tdi, tms, tck, trst, inout b, output y, z, tdo);
GIN pa(.PAD(a), .EN(1'b1), .C(n_a)); CBUF pc(.PAD(ck), .C(n_ck)); BBUF pb(.I(n_y), .OEN(n_e), .PAD(b), .C(n_b));
OBUF py(.I(n_y), .PAD(y)); HBUF pz(.I(n_y), .EN(n_h), .PAD(z)); GATE h(.A(n_a), .B(n_a), .Z(n_h));
IBUF pi(.PAD(tdi)); IBUF pm(.PAD(tms)); IBUF pk(.PAD(tck)); IBUF pr(.PAD(trst));
TDOPAD po(.I(1'b0), .OEN(1'b0), .PAD(tdo));
GATE u(.A(n_a), .B(n_ck), .Z(n_y)); GATE v(.A(n_b), .B(n_a), .Z(n_e)); endmodule)",
        .pins = "1 A a *\n2 CK ck *\n3 B b *\n4 Y y *\n5 Z z *\n6 TDI tdi *\n7 TDO tdo *\n8 TMS tms *\n"
                "9 TCK tck *\n10 TRST trst *\n",
        .settings = "%GLOBAL_TRST trst; %INVERTER INVB;",
        .library =
            "%BUFFER TDOPAD { %INPUT I; %OUTPUT PAD; %EN_L OEN; } %BUFFER GIN { %INPUT PAD; %OUTPUT C; }",
        .tap_items = "%TRST trst; %TDO_EN tdo_en; %SIGNAL_BUFFER PLAIN; %GROUP_SIZE 4;",
        .cells =
            "module TDOPAD(input I, OEN, output PAD); endmodule "
            "module GIN(input PAD, EN, output C); endmodule module FEEDX(input A, output Z); endmodule "
            "module TWIN(input tdi, tms, tck, trst, last, output tdo, tdo_en, first, shift, clock, update, "
            "rst, mode1); endmodule",
        .changes = {{"chip.bsc", "tck, skip", "tck, trst, skip"}}};
}

using RULES = std::set<std::string>;

/// "severity number name" of all findings.
RULES rules_found(const std::string &output) {
    static const std::regex line(R"((error|warning|note): .* \[((\d+ )?[a-z-]+)\])");
    RULES found;
    for (std::sregex_iterator at(output.begin(), output.end(), line), end; at != end; ++at)
        found.insert((*at)[1].str() + " " + (*at)[2].str());
    return found;
}

class Check : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        folder = new chip_folder("planning");
        folder->lay_out(checked_chip());
        EXPECT_EQ(folder->run("-add_tap").status, 0);
        folder->scratch.write("pads.lib", R"(library (pads) { cell (GIN) {
pin (PAD) { is_pad : true; direction : input; } pin (EN) { direction : input; }
pin (C) { direction : output; function : "PAD EN"; } } })");
        // What the run was made from is older than anything that a case writes.
        folder->scratch.run("touch -d '1 hour ago' chip.lib chip.bsc chip.pin chip.sdb chip.c.sdb");
    }
    static void TearDownTestSuite() {
        delete folder;
    }
    static run_result check(const std::string &words = "chip") {
        return folder->scratch.run(RIMKIT_CHECK + ("--no-engines " + words));
    }
    static void read_netlist() {
        EXPECT_EQ(folder->scratch.run(RW_BIN_DIR "/kalmverin chip_jtag.v").err, "");
    }
    static chip_folder *folder;
};
chip_folder *Check::folder = nullptr;

struct CHECK_FAULT {
    const char *name;
    std::vector<CHANGE> changes;
    const char *found; ///< severity, number and name
    const char *place; ///< of the finding's line
    const char *words = "chip";
};

constexpr const char *NETLIST = "chip_jtag.v";
constexpr const char *END = "endmodule";

const CHECK_FAULT CHECK_FAULTS[] = {
    {"no_reset", {{NETLIST, ".trst(pr_C)", ".trst(1'b1)"}}, "warning 4 power-up", "instance 'TAP'"},
    {"tdo_enable_of_the_core",
     {{NETLIST, ".OEN(po_OEN)", ".OEN(n_e)"}},
     "error 11 tdo",
     "instance 'po', net 'n_e', port 'tdo'"},
    {"tdo_upside_down",
     {{NETLIST, ".OEN(po_OEN)", ".OEN(w)"}, {NETLIST, END, "INVB g(.A(po_OEN), .Z(w)); endmodule"}},
     "error 11 tdo",
     "switched upside down"},
    {"tdo_cut", {{NETLIST, ".I(po_I)", ".I(n_y)"}}, "error 11 tdo", "TDO of the TAP does not reach its port"},
    {"tdo_always_on", {{NETLIST, ".OEN(po_OEN)", ".OEN(1'b0)"}}, "warning 11 tdo", "port 'tdo'"},
    {"chain_cut", {{NETLIST, ".si(BCELL2_si)", ".si()"}}, "error 13 chain", "instance 'BCELL3'"},
    {"chain_inverted",
     {{NETLIST, ".si(BCELL2_si)", ".si(w)"}, {NETLIST, END, "INVB g(.A(BCELL2_si), .Z(w)); endmodule"}},
     "error 13 chain",
     "the chain is inverted here"},
    {"cell_beside_the_chain",
     {{NETLIST, END, "BC_IN lone(.di(n_a), .si(n_a), .sh(BCELL4_sh), .ck(BCELL4_ck)); endmodule"}},
     "error 13 chain",
     "instance 'lone'"},
    {"other_order", {{"chip.bso", "BCELL4", "BCELL5"}}, "error 13 chain", "port 'y'"},
    {"port_without_cell",
     {{NETLIST, ".C(BCELL0_di)", ".C(n_a)"}, {NETLIST, ".\\do (n_a)", ".\\do ()"}},
     "error 15 cell-per-port",
     "instance 'pa', net 'n_a', port 'a'"},
    {"output_without_cell",
     {{NETLIST, ".I(BCELL4_do)", ".I(n_y)"}},
     "error 15 cell-per-port",
     "net 'n_y', port 'y'"},
    {"gate_before_a_pad",
     {{NETLIST, ".I(BCELL4_do)", ".I(w)"},
      {NETLIST, END, "GATE g(.A(BCELL4_do), .B(n_a), .Z(w)); endmodule"}},
     "error 16 wire-to-pad",
     "instance 'g', net 'w', port 'y'"},
    {"gate_behind_a_pad",
     {{NETLIST, ".C(BCELL0_di)", ".C(w)"},
      {NETLIST, END, "GATE g(.A(n_b), .B(w), .Z(BCELL0_di)); endmodule"}},
     "error 16 wire-to-pad",
     "instance 'g', net 'BCELL0_di', port 'a'"},
    {"inverter_before_a_pad",
     {{NETLIST, ".I(BCELL4_do)", ".I(w)"}, {NETLIST, END, "INVB g(.A(BCELL4_do), .Z(w)); endmodule"}},
     "warning 16 wire-to-pad",
     "instance 'BCELL4', port 'y'"},
    {"way_past_a_cell",
     {{NETLIST, "h (.A(n_a)", "h (.A(BCELL0_di)"}},
     "error 16 wire-to-pad",
     "instance 'h'"},
    {"cell_of_two_ways_at_another_pad",
     {{NETLIST, ".sp(BCELL2_sp)", ".sp(BCELL0_di)"}},
     "error 16 wire-to-pad",
     "pin sp of the boundary cell hangs on pad 'pa'"},
    {"other_wire_than_before", {{NETLIST, ".di(n_e)", ".di(n_h)"}}, "error 16 wire-to-pad", "port 'b'"},
    {"gate_before_an_enable",
     {{NETLIST, ".OEN(BCELL3_do)", ".OEN(w)"},
      {NETLIST, END, "GATE g(.A(BCELL3_do), .B(n_a), .Z(w)); endmodule"}},
     "error 17 enables",
     "instance 'g', net 'w', port 'b'"},
    {"enable_of_the_core",
     {{NETLIST, ".EN(BCELL6_do)", ".EN(n_h)"}},
     "error 17 enables",
     "net 'n_h', port 'z'"},
    {"second_driver",
     {{NETLIST, END, "GATE g(.A(n_a), .Z(BCELL3_do)); endmodule"}},
     "error 17 enables",
     "port 'b'"},
    {"pads_of_both_polarities",
     {{NETLIST, ".EN(BCELL6_do)", ".EN(BCELL3_do)"}},
     "warning 18 off-values",
     "0 turns off z, 1 turns off b (instance 'BCELL3')"},
    {"pad_follows_core",
     {{NETLIST, ".EN(1'b1)", ".EN(n_y)"}},
     "warning 27 pad-follows-core",
     "instance 'pa', net 'n_y', port 'a'"},
    {"pad_follows_core_that_needs_it",
     {{NETLIST, ".EN(1'b1)", ".EN(n_y)"}},
     "error 27 pad-follows-core",
     "the core drives EN of pad GIN: a",
     "--liberty pads.lib chip"},
    {"cell_pin_open", {{NETLIST, ".m(BCELL2_m)", ".m()"}}, "error 28 open-pins", "instance 'BCELL2'"},
    {"clock_pin_open",
     {{NETLIST, ".ck(BCELL4_ck)", ".ck()"}},
     "error 28 open-pins",
     "pin ck of the boundary cell hangs on nothing"},
    {"cell_pin_tied", {{NETLIST, ".r(BCELL3_r)", ".r(1'b0)"}}, "error 28 open-pins", "net 'GND'"},
    {"mode_of_the_core",
     {{NETLIST, ".m(BCELL2_m)", ".m(n_a)"}},
     "error 28 open-pins",
     "instance 'BCELL2', net 'n_a'"},
    {"mode_and_shift_exchanged",
     {{NETLIST, ".sh(BCELL4_sh)", ".sh(BCELL5_m)"}},
     "error 28 open-pins",
     "not on shift"},
    {"mode_turned_round",
     {{NETLIST, ".m(BCELL5_m)", ".m(w)"}, {NETLIST, END, "INVB g(.A(BCELL5_m), .Z(w)); endmodule"}},
     "error 28 open-pins",
     "pin m of the boundary cell sees the signal turned round"},
    {"tap_pin_open", {{NETLIST, ".tms(pm_C)", ".tms()"}}, "error 28 open-pins", "pin tms of the TAP"},
    {"pad_pin_open", {{NETLIST, ".I(BCELL2_do)", ".I()"}}, "warning 28 open-pins", "instance 'pb', port 'b'"},
    {"pad_tied_off",
     {{NETLIST, ".OEN(BCELL3_do)", ".OEN(1'b1)"}},
     "warning 28 open-pins",
     "OEN of pad BBUF: b"},
    {"cell_on_a_core_clock",
     {{NETLIST, ".ck(BCELL4_ck)", ".ck(n_ck)"}},
     "error 29 test-clocks",
     "instance 'BCELL4', net 'n_ck'"},
    {"cell_on_the_other_edge",
     {{NETLIST, ".ck(BCELL4_ck)", ".ck(w)"}, {NETLIST, END, "INVB g(.A(BCELL4_ck), .Z(w)); endmodule"}},
     "error 29 test-clocks",
     "instance 'BCELL4', net 'w'"},
    {"core_on_tck",
     {{NETLIST, ".B(n_ck)", ".B(pk_C)"}},
     "error 29 test-clocks",
     "instance 'u', net 'pk_C', port 'tck'"},
    {"core_on_a_test_clock",
     {{NETLIST, ".B(n_ck)", ".B(BCELL4_ck)"}},
     "error 29 test-clocks",
     "clock of the TAP"},
    {"update_on_the_capture_clock",
     {{NETLIST, ".up(BCELL5_up)", ".up(BCELL4_ck)"}},
     "error 30 same-edge",
     "instance 'BCELL5', net 'BCELL4_ck'"},
    {"wide_tree", {{"chip.lib", "%GROUP_SIZE 4", "%GROUP_SIZE 3"}}, "note 31 trees", "clock goes to 4 pins"},
    {"core_gates_tck",
     {{NETLIST, ".tck(pk_C)", ".tck(w)"}, {NETLIST, END, "GATE g(.A(pk_C), .B(n_a), .Z(w)); endmodule"}},
     "error 32 tap-inputs",
     "instance 'g', net 'w'"},
    {"tck_through_an_unknown_gate",
     {{NETLIST, ".tck(pk_C)", ".tck(w)"}, {NETLIST, END, "FEEDX g(.A(pk_C), .Z(w)); endmodule"}},
     "warning 32 tap-inputs",
     "TCK comes through 'g'"},
    {"test_ports_exchanged",
     {{NETLIST, ".tms(pm_C)", ".tms(pi_C)"}, {NETLIST, ".tdi(pi_C)", ".tdi(pm_C)"}},
     "error 32 tap-inputs",
     "TDI of the TAP is not wired to the port 'tdi'"},
    {"opcode_with_x", {{"chip.bsc", "(01)", "(0X)"}}, "warning 34 private-opcodes", "SAMPLE"},
    {"own_pin",
     {{"chip.bsc", "ACCESS bypass", "ACCESS bypass ENABLE own(1)"}},
     "warning 34 private-opcodes",
     "BYPASS drives own of the TAP"},
    {"no_such_private_instruction",
     {{"chip.bsc", "%GLOBAL_TDI", "%INSTRUCTION_PRIVATE SECRET; %GLOBAL_TDI"}},
     "warning 34 private-opcodes",
     "SECRET, which is no instruction"},
    {"tdo_at_another_port",
     {{NETLIST, ".I(po_I)", ".I(n_y)"}, {NETLIST, ".I(BCELL4_do)", ".I(po_I)"}},
     "error 32 tap-inputs",
     "TDO of the TAP is not wired to the port 'tdo'"},
    {"two_taps",
     {{NETLIST, END, "tapm second(.tdi(n_a)); endmodule"}},
     "error 32 tap-inputs",
     "instance 'second'"},
    {"no_tap", {{NETLIST, "tapm TAP", "TWIN TAP"}}, "error outputs", "no instance of the TAP 'tapm'"},
};

TEST_F(Check, ACleanChipIsClean) {
    run_result result = check();
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    EXPECT_EQ(rules_found(result.out), RULES{}) << result.out;
    expect_part(result.out, "; 14 of 34 rules checked");
}

TEST_F(Check, FindsEachFaultAtItsPlace) {
    for (const CHECK_FAULT &fault : CHECK_FAULTS) {
        SCOPED_TRACE(fault.name);
        std::vector<std::pair<const char *, std::string>> before;
        for (const CHANGE &change : fault.changes) {
            std::string text = folder->scratch.read(change.file);
            before.emplace(before.begin(), change.file, text);
            size_t at = text.find(change.from);
            ASSERT_NE(at, text.npos) << change.from;
            folder->scratch.write(change.file, text.replace(at, std::string(change.from).size(), change.to));
        }
        read_netlist();
        folder->scratch.run("touch -d '1 hour ago' chip.lib chip.bsc");
        run_result result = check(fault.words);
        EXPECT_TRUE(rules_found(result.out).contains(fault.found)) << result.out << result.err;
        expect_part(result.out, fault.place);
        EXPECT_EQ(result.status, result.out.find("error: ") != result.out.npos ? 1 : 0);
        for (const auto &[file, text] : before)
            folder->scratch.write(file, text);
        read_netlist();
    }
    folder->scratch.run("touch -d '1 hour ago' chip.lib chip.bsc");
    EXPECT_EQ(check().status, 0);
}

// What the status of a run does not tell.
TEST_F(Check, LooksAtTheFilesOfTheRun) {
    const struct {
        const char *before, *after, *found;
    } cases[] = {
        {"mv chip.bso kept", "mv kept chip.bso", "chip.bso: error: the run has not written this file"},
        {"mv chip_TAP.v kept", "mv kept chip_TAP.v", "chip_TAP.v: error: the run has not written this file"},
        {"touch -d '1 hour' chip.pin", "touch -d '1 hour ago' chip.pin",
         "chip_jtag.v: error: this file is older than what it is made from"},
        {"cp chip_jtag.v kept; sed -i s/tapm/x/ chip_jtag.v", "mv kept chip_jtag.v",
         "chip_jtag.v: error: the netlist has no instance of the TAP 'tapm'"},
        {"cp chip_jtag.v kept; sed -i 's/ BCELL0 / x /' chip_jtag.v", "mv kept chip_jtag.v",
         "chip_jtag.v: error: the netlist lacks the boundary cell next to TDO, 'BCELL0'"},
        {"mv chip_jtag.c.sdb kept", "mv kept chip_jtag.c.sdb",
         "not checked: 1 tap-states, 2 five-ones, 3 trst, 4 power-up, 5 open-inputs"},
    };
    for (const auto &fault : cases) {
        folder->scratch.run(fault.before);
        run_result result = check();
        expect_part(result.out, fault.found);
        EXPECT_EQ(result.status, 1) << fault.before;
        folder->scratch.run(fault.after);
    }
    EXPECT_EQ(check().status, 0);
    folder->scratch.run("mkdir out; mv chip_jtag.* chip_TAP.* out");
    EXPECT_EQ(check("--opath out chip").status, 0);
    folder->scratch.run("mv out/* .");
}

TEST_F(Check, TellsMachinesAndRefuses) {
    std::string text = folder->scratch.read(NETLIST);
    folder->scratch.write(NETLIST, std::regex_replace(text, std::regex("\\.tms\\(pm_C\\)"), ".tms()"));
    read_netlist();
    run_result result = check("--json --strict chip");
    EXPECT_EQ(result.status, 1);
    for (
        const char *part :
        {R"("severity": "error", "number": 28, "rule": "open-pins", "text": "pin tms of the TAP hangs on nothing")",
         R"("instance": "TAP", "net": "", "port": "", "effect": ")",
         R"({"number": 14, "rule": "unselected-registers", "why": "left out)", R"("checked": 1)"})
        expect_part(result.out, part);
    folder->scratch.write(NETLIST, text);
    read_netlist();
    EXPECT_EQ(check("").status, 2);
    EXPECT_EQ(check("other").status, 255);
    std::string design = folder->scratch.read("chip_jtag.c.sdb");
    folder->scratch.write("chip_jtag.c.sdb", design.substr(0, design.size() / 2));
    EXPECT_EQ(check().status, 255);
    folder->scratch.write("chip_jtag.c.sdb", design);
}

/// The words with one blank between them.
std::string in_one_line(const std::string &text) {
    return std::regex_replace(text, std::regex("\\s+"), " ");
}

TEST(CheckManual, HasASectionOfEachRule) {
    std::string manual = read_whole(RW_SOURCE_DIR "/docs/rimkit_check.md");
    for (const CHECK_RULE &rule : check_rules) {
        std::string number = rule.number > 0 ? std::to_string(rule.number) + " " : "";
        std::string head = "\n### " + number + rule.name + "\n";
        expect_part(manual, head);
        std::string section = in_one_line(between(manual, head, "\n### "));
        expect_part(section, std::string("Effect: ") + rule.effect + ".");
        expect_part(section, std::string("Cure: ") + rule.cure + ".");
        if (rule.open != nullptr)
            expect_part(section, std::string("Not checked yet: ") + rule.open + ".");
    }
}

} // namespace
