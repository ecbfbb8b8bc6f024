// What `start` infers of small chips, what it says of what it can't know, and what it leaves alone.
#include "tests/support/expected_file.hh"
#include "tests/support/scratch.hh"

namespace {

constexpr const char *RIMKIT = RW_BIN_DIR "/rimkit ";

/// A chip with a pad of each kind that a Liberty file can tell; the core is a few gates.
const char *const START_PADS = R"(library (pads) {
  cell (PI)  { pad_cell : true; pin (P) { direction : input; is_pad : true; } pin (X) { direction : output; function : "P"; } }
  cell (PIN) { pad_cell : true; pin (P) { direction : input; is_pad : true; } pin (X) { direction : output; function : "!P"; } }
  cell (PG)  { pad_cell : true; pin (P) { direction : input; is_pad : true; } pin (RE) { direction : input; }
               pin (X) { direction : output; function : "P * RE"; } }
  cell (PO)  { pad_cell : true; pin (D) { direction : input; } pin (P) { direction : output; is_pad : true; function : "D"; } }
  cell (PT)  { pad_cell : true; pin (D, N) { direction : input; }
               pin (P) { direction : output; is_pad : true; function : "D"; three_state : "N"; } }
  cell (PB)  { pad_cell : true; pin (D, EN, TE_N, SR) { direction : input; }
               pin (P) { direction : inout; is_pad : true; function : "D"; three_state : "!EN + TE_N"; }
               pin (X) { direction : output; function : "P"; } }
  cell (PX)  { pad_cell : true; pin (D, S, T) { direction : input; }
               pin (P) { direction : inout; is_pad : true; function : "D"; three_state : "S ^ T"; }
               pin (X) { direction : output; function : "P"; } }
  cell (PD)  { pad_cell : true; pin (P) { direction : input; is_pad : true; complementary_pin : "M"; }
               pin (M) { direction : input; is_pad : true; } pin (X) { direction : output; function : "P"; } }
  cell (PE)  { pad_cell : true; pin (D) { direction : input; } pin (P) { direction : output; is_pad : true; function : "D"; }
               pin (M) { direction : output; is_pad : true; function : "!D"; } }
  cell (PA)  { pad_cell : true; pin (P) { direction : inout; is_pad : true; } }
  cell (PV)  { pad_cell : true; pin (P) { direction : inout; is_pad : true; function : "1"; } }
  cell (FF)  { ff (I, J) { clocked_on : "K"; next_state : "D"; } pin (K, D) { direction : input; }
               pin (Q) { direction : output; function : "I"; } }
}
)";

const char *const CELLS = R"(
module PI (input P, output X); endmodule
module PIN (input P, output X); endmodule
module PG (input P, RE, output X); endmodule
module PO (input D, output P); endmodule
module PT (input D, N, output P); endmodule
module PB (input D, EN, TE_N, SR, inout P, output X); endmodule
module PX (input D, S, T, inout P, output X); endmodule
module PD (input P, M, output X); endmodule
module PE (input D, output P, M); endmodule
module PA (inout P); endmodule
module PV (inout P); endmodule
module FF (input K, D, output Q); endmodule
module IV (input A, output Z); endmodule
module PM (input D, OEB, inout PAD, output X);
    wire on = ~OEB;
    bufif1 (PAD, D, on);
    assign X = PAD;
endmodule
)";

const char *const START_CHIP = R"(
module chip (ck, a, b, c, o, t, io, x, dp, dm, ep, em, ana, sup, sup2, free, mod, bare);
    input ck, b, c, dp, dm, free, bare;
    inout a, io, x, ana, sup, sup2, mod;
    output o, t, ep, em;
    wire k, nk, ai, bi, ci, ioi, xi, di, mi, q, r;
    PI pck (.P(ck), .X(k));
    IV iv (.A(k), .Z(nk));
    FF f0 (.K(nk), .D(ai), .Q(q));
    FF f1 (.K(nk), .D(bi), .Q(r));
    PI pa (.P(a), .X(ai));
    PIN pb (.P(b), .X(bi));
    PG pc (.P(c), .RE(q), .X(ci));
    PO po (.D(q), .P(o));
    PT pt (.D(r), .N(ci), .P(t));
    PB pio (.D(q), .EN(r), .TE_N(1'b0), .SR(1'b1), .P(io), .X(ioi));
    PX px (.D(ioi), .S(q), .T(r), .P(x), .X(xi));
    PD pd (.P(dp), .M(dm), .X(di));
    FF f2 (.K(nk), .D(xi), .Q());
    FF f3 (.K(nk), .D(di), .Q());
    PE pe (.D(r), .P(ep), .M(em));
    PA pan (.P(ana));
    PV ps (.P(sup));
    PV ps2 (.P(sup2));
    PI pf (.P(free));
    PM pm (.D(bare), .OEB(q), .PAD(mod), .X(mi));
    FF f4 (.K(nk), .D(mi), .Q());
endmodule
)";

struct StartOfAChip : testing::Test {
    scratch_folder scratch;
    StartOfAChip() {
        scratch.write("pads.lib", START_PADS);
        scratch.write("cells.v", CELLS);
        scratch.write("chip.v", START_CHIP);
        scratch.write("bad.v", "module PI (input P\n");
    }
    run_result start(const std::string &options) const {
        return scratch.run(RIMKIT + ("start --liberty pads.lib --cells cells.v " + options + " chip"));
    }
};

TEST_F(StartOfAChip, IsDraftedWithAReasonForEachLine) {
    run_result result = start("--idcode 1,0x1234,0x55 --package QFP64");
    succeed(result);
    std::string library = scratch.read("chip.lib");
    expect_file("kit/expected/start.txt", section("start", result) +
                                              library.substr(library.find("// Pads.")) +
                                              scratch.read("chip.bsc") + scratch.read("chip.pin"));
}

TEST_F(StartOfAChip, KeepsWhatIsThere) {
    scratch.write("chip.bsc", "mine\n");
    expect_part(start("").err, "chip.bsc is there already");
    EXPECT_EQ(scratch.read("chip.bsc"), "mine\n");
    succeed(start("--force"));
    EXPECT_EQ(scratch.read("chip.bsc~"), "mine\n");
    std::string first = scratch.read("chip.lib") + scratch.read("chip.bsc") + scratch.read("chip.pin");
    succeed(start("--force"));
    EXPECT_EQ(scratch.read("chip.lib") + scratch.read("chip.bsc") + scratch.read("chip.pin"), first);
}

TEST_F(StartOfAChip, TakesTheOrderOfThePackage) {
    scratch.write("pins.csv", "pin,port,name\n1,b,B\n2,sup,VDD\nA3,pio,GP\n4,sup2,VDD\n5,,NC\n6,ck,\n");
    succeed(start("--pins pins.csv"));
    std::string pins = scratch.read("chip.pin");
    for (const char *row : {"%ALLOWED_MULTIPLE { VDD ; }", "1     B                      b ",
                            "A3    GP                     io ", "5     NC                     *",
                            "6     ck                     ck ", "please check: it has no row in pins.csv"})
        expect_part(pins, row);
    EXPECT_LT(pins.find(" io "), pins.find(" ck "));
}

TEST_F(StartOfAChip, RefusesWhatItCantTake) {
    const struct {
        const char *words;
        int status;
        const char *says;
    } cases[] = {
        {"start --liberty pads.lib --cells cells.v --idcode 1,2 chip", 2,
         "--idcode takes VERSION,PART,MANUFACTURER"},
        {"start --liberty pads.lib --cells cells.v --idcode 16,2,3 chip", 2, "'16' is no version of 4 bits"},
        {"start --liberty pads.lib --cells cells.v --idcode 1,2,127 chip", 2, "is reserved"},
        {"start --liberty pads.lib --cells cells.v --test-ports tclk=a chip", 2, "not 'tclk'"},
        {"start", 2, "one DESIGN"},
        {"start --libarty pads.lib chip", 2, "there is no option '--libarty'"},
        {"launch chip", 2, "there is no verb 'launch'"},
        {"start --cells cells.v --netlist none.v chip", 255, "there is no netlist 'none.v'"},
        {"start --liberty none.lib --cells cells.v chip", 255, "none.lib"},
        {"start --cells bad.v chip", 255, "kalmverin ended with status 255; to repeat it: kalmverin"},
        {"start --liberty pads.lib --cells cells.v --boundary-cells pads.lib chip", 255,
         "there is no %SCAN_CELL"},
        {"run --liberty pads.lib --cells cells.v chip -vhdll", 2, "rimweave has no switch '-vhdll'"},
    };
    for (const auto &row : cases) {
        run_result result = scratch.run(RIMKIT + std::string(row.words));
        EXPECT_EQ(result.status, row.status) << row.words << result.err;
        expect_part(result.err, row.says);
    }
}

TEST_F(StartOfAChip, RunsToItsEnd) {
    run_result result =
        scratch.run(RIMKIT + std::string("run --liberty pads.lib --cells cells.v --synch chip"));
    EXPECT_NE(result.status, 0); // two enables of an expression: the draft asks for the pin
    expect_part(scratch.read("chip.lib"), "%EN_H           ;  // please check: which pin?");
    std::string library = scratch.read("chip.lib");
    library.replace(library.find("%EN_H           ;"), 17, "%EN_H S;");
    scratch.write("chip.lib", library);
    result = scratch.run(RIMKIT +
                         std::string("run --no-delivery --liberty pads.lib --cells cells.v --synch chip"));
    succeed(result);
    expect_part(result.err, "$ rimweave chip -add_tap -synch");
    expect_part(result.out, "boundary register: ");
    expect_part(scratch.read("chip_jtag.v"), "RIM_BC_1_IN_S");
}

} // namespace
