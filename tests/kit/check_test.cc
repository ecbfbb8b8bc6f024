// rimkit check on one small chip with its register: each case changes the netlist or a file of the finished
// run, and says what must be found where.
#include "kit/check.hh"
#include "tests/support/chip/small_chip.hh"

#include <regex>
#include <set>

namespace {

constexpr const char *RIMKIT_CHECK = RW_BIN_DIR "/rimkit check ";

/// Pads of each direction, and a test port with pads.
CHIP usual_chip() {
    return {.design = R"(module chip(input a, ck, tdi, tms, tck, trst, inout b, output y, z, tdo);
IBUF pa(.PAD(a), .C(n_a)); CBUF pc(.PAD(ck), .C(n_ck)); BBUF pb(.I(n_y), .OEN(n_e), .PAD(b), .C(n_b));
OBUF py(.I(n_y), .PAD(y)); HBUF pz(.I(n_y), .EN(n_h), .PAD(z)); GATE h(.A(n_a), .B(n_a), .Z(n_h));
IBUF pi(.PAD(tdi)); IBUF pm(.PAD(tms)); IBUF pk(.PAD(tck)); IBUF pr(.PAD(trst));
TDOPAD po(.I(1'b0), .OEN(1'b0), .PAD(tdo));
GATE u(.A(n_a), .B(n_ck), .Z(n_y)); GATE v(.A(n_b), .B(n_a), .Z(n_e)); endmodule)",
            .pins = "1 A a *\n2 CK ck *\n3 B b *\n4 Y y *\n5 Z z *\n6 TDI tdi *\n7 TDO tdo *\n8 TMS tms *\n"
                    "9 TCK tck *\n10 TRST trst *\n",
            .settings = "%GLOBAL_TRST trst; %INVERTER INVB;",
            .library = "%BUFFER TDOPAD { %INPUT I; %OUTPUT PAD; %EN_L OEN; }",
            .tap_items = "%TRST trst; %TDO_EN tdo_en; %SIGNAL_BUFFER PLAIN; %GROUP_SIZE 4;",
            .cells = "module TDOPAD(input I, OEN, output PAD); endmodule",
            .changes = {{"chip.bsc", "tck, skip", "tck, trst, skip"}}};
}

using FOUND = std::set<std::string>;

/// "severity number name" of all findings.
FOUND found_in(const std::string &output) {
    static const std::regex line(R"((error|warning|note): .* \[((\d+ )?[a-z-]+)\])");
    FOUND found;
    for (std::sregex_iterator at(output.begin(), output.end(), line), end; at != end; ++at)
        found.insert((*at)[1].str() + " " + (*at)[2].str());
    return found;
}

class Check : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        folder = new chip_folder("planning");
        folder->lay_out(usual_chip());
        EXPECT_EQ(folder->run("-add_tap").status, 0);
        // What the run was made from is older than anything that a case writes.
        folder->scratch.run("touch -d '1 hour ago' chip.lib chip.bsc chip.pin chip.sdb chip.c.sdb");
    }
    static void TearDownTestSuite() {
        delete folder;
    }
    static run_result check(const std::string &words = "chip") {
        return folder->scratch.run(RIMKIT_CHECK + words);
    }
    static void read_netlist() {
        EXPECT_EQ(folder->scratch.run(RW_BIN_DIR "/kalmverin chip_jtag.v").err, "");
    }
    static chip_folder *folder;
};
chip_folder *Check::folder = nullptr;

struct FAULT {
    const char *name;
    std::vector<CHANGE> changes;
    const char *found; ///< severity, number and name
    const char *place; ///< of the finding's line
};

constexpr const char *NETLIST = "chip_jtag.v";
constexpr const char *END = "endmodule";

const FAULT FAULTS[] = {
    {"no_reset", {{NETLIST, ".trst(pr_C)", ".trst(1'b1)"}}, "warning 4 power-up", "instance 'TAP'"},
    {"tdo_enable_of_the_core",
     {{NETLIST, ".OEN(po_OEN)", ".OEN(n_e)"}},
     "error 11 tdo",
     "instance 'po', net 'n_e', port 'tdo'"},
    {"tdo_upside_down",
     {{NETLIST, ".OEN(po_OEN)", ".OEN(w)"}, {NETLIST, END, "INVB g(.A(po_OEN), .Z(w)); endmodule"}},
     "error 11 tdo",
     "switched upside down"},
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
    {"cell_pin_open", {{NETLIST, ".m(BCELL2_m)", ".m()"}}, "error 28 open-pins", "instance 'BCELL2'"},
    {"cell_pin_tied", {{NETLIST, ".r(BCELL3_r)", ".r(1'b0)"}}, "error 28 open-pins", "net 'GND'"},
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
    {"test_ports_exchanged",
     {{NETLIST, ".tms(pm_C)", ".tms(pi_C)"}, {NETLIST, ".tdi(pi_C)", ".tdi(pm_C)"}},
     "error 32 tap-inputs",
     "TDI of the TAP is not wired to the port 'tdi'"},
    {"opcode_with_x", {{"chip.bsc", "(01)", "(0X)"}}, "warning 34 private-opcodes", "SAMPLE"},
    {"own_pin",
     {{"chip.bsc", "%INSTRUCTION SAMPLE",
       "%INSTRUCTION OWN = (10) ACCESS bypass %EN_H own; %INSTRUCTION SAMPLE"}},
     "warning 34 private-opcodes",
     "OWN drives own of the TAP"},
    {"no_tap", {{NETLIST, "tapm TAP", "GATE TAP"}}, "error outputs", "no instance of the TAP 'tapm'"},
};

TEST_F(Check, ACleanChipIsClean) {
    run_result result = check();
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    EXPECT_EQ(found_in(result.out), FOUND{}) << result.out;
    expect_part(result.out, "not checked: 1 tap-states");
}

TEST_F(Check, FindsEachFaultAtItsPlace) {
    for (const FAULT &fault : FAULTS) {
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
        run_result result = check();
        EXPECT_TRUE(found_in(result.out).contains(fault.found)) << result.out << result.err;
        expect_part(result.out, fault.place);
        EXPECT_EQ(result.status, result.out.find("error: ") != result.out.npos ? 1 : 0);
        for (const auto &[file, text] : before)
            folder->scratch.write(file, text);
        read_netlist();
    }
    folder->scratch.run("touch -d '1 hour ago' chip.lib chip.bsc");
    EXPECT_EQ(check().status, 0);
}

} // namespace
