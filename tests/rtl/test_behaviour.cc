// The generated logic in simulation, in both languages and with the same stimulus, against a reference TAP
// after IEEE 1149.1 that knows the state diagram, the registers and what each instruction of LARGE_TABLE
// does, and nothing of how the generated logic does it.
#include "support/template_text.hh"
#include "tests/rtl/tap_case.hh"
#include "tests/support/scratch.hh"

#include <array>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

namespace {

enum dr_state { TLR, RTI, SEL_DR, CAP_DR, SH_DR, EX1_DR, PAU_DR, EX2_DR, UPD_DR };
enum ir_state { SEL_IR = UPD_DR + 1, CAP_IR, SH_IR, EX1_IR, PAU_IR, EX2_IR, UPD_IR };

// Figure 6-1 of the standard: the next state for TMS 0 and 1.
constexpr int NEXT[16][2] = {{RTI, TLR},       {RTI, SEL_DR},    {CAP_DR, SEL_IR}, {SH_DR, EX1_DR},
                             {SH_DR, EX1_DR},  {PAU_DR, UPD_DR}, {PAU_DR, EX2_DR}, {SH_DR, UPD_DR},
                             {RTI, SEL_DR},    {CAP_IR, TLR},    {SH_IR, EX1_IR},  {SH_IR, EX1_IR},
                             {PAU_IR, UPD_IR}, {PAU_IR, EX2_IR}, {SH_IR, UPD_IR},  {RTI, SEL_DR}};

/// Outputs of one cycle, sampled in the low phase of TCK behind its falling edge; the bench packs them in
/// this order. OUT_TDO_DRIVEN: not at high impedance, or its enable port says so. OUT_CLOCK_ACTIVE: the data
/// registers will be clocked at the next rising edge. OUT_CHAIN: TDI on the way to the registers outside.
enum test_output { OUT_TDO_DRIVEN, OUT_TDO, OUT_SHIFT_DR, OUT_CLOCK_ACTIVE, OUT_UPDATE_DR, OUT_RESET };
enum command_output { OUT_MODE1 = OUT_RESET + 1, OUT_MODE2, OUT_MODE3, OUT_HIGHZ, OUT_CHIP_TEST };
enum enable_output { OUT_EN_A = OUT_CHIP_TEST + 1, OUT_EN_B2, OUT_EN_B1, OUT_EN_B0, OUT_EN_C };
enum scan_output { OUT_TEST_MODE = OUT_EN_C + 1, OUT_SCAN_MODE, OUT_CHAIN, OUTPUT_COUNT };

enum data_register { BYPASS, BOUNDARY, IDCODE, USERCODE, MYREG, USERDR };

/// What an instruction of LARGE_TABLE selects and raises.
struct meaning {
    data_register selects = BYPASS;
    std::set<int> raises;
};

const std::map<std::string, meaning> MEANINGS = {
    {"0000", {BOUNDARY, {OUT_MODE1, OUT_MODE3}}},
    {"1000", {BOUNDARY, {OUT_MODE1, OUT_MODE3}}},
    {"0001", {BOUNDARY, {OUT_MODE3}}},
    {"0010", {BOUNDARY, {OUT_MODE1, OUT_MODE2}}},
    {"0011", {IDCODE, {}}},
    {"1011", {IDCODE, {}}},
    {"0100", {USERCODE, {}}},
    {"0101", {BYPASS, {OUT_HIGHZ}}},
    {"0110", {BYPASS, {OUT_MODE1, OUT_MODE3}}},
    {"0111", {MYREG, {OUT_MODE1}}},
    {"1001", {MYREG, {OUT_CHIP_TEST}}},
    {"1010", {BYPASS, {OUT_TEST_MODE}}},
    {"1100", {USERDR, {OUT_EN_A, OUT_EN_B2, OUT_EN_B0, OUT_EN_C}}},
    {"1101", {USERDR, {OUT_EN_A, OUT_EN_B1}}},
};
constexpr const char *CLAMP_OPCODE = "0110";
const std::string CAPTURED = "0001", AFTER_RESET = "0011", ID_TEXT = "00010010001101000101011001111001";

/// Makes the stimulus with its expected outputs, a line per cycle: inputs (TMS, TDI, TRST, which is high when
/// there is none, the outputs of the boundary and of the two user registers), expected values, mask of the
/// values that count. `clamp_holds`: CLAMP blocks the update of the boundary register.
struct reference_tap {
    bool has_trst, clamp_holds;
    int at = TLR;
    bool known = false; ///< a reset has come
    std::string instruction = AFTER_RESET, ir = CAPTURED, id = ID_TEXT;
    char bypass = '0';
    std::mt19937 random{20010614}; // fixed, so that every run is the same
    std::string vectors{};
    int cycles = 0;
    std::set<std::pair<int, int>> arcs{}; ///< state and TMS of every transition taken

    char bit() {
        return random() % 2 ? '1' : '0';
    }

    meaning decoded() const {
        auto found = MEANINGS.find(instruction);
        return found == MEANINGS.end() ? meaning{} : found->second;
    }

    /// The rising edge: registers take what the state tells, then the state moves.
    void rise(bool tms, char tdi) {
        if (at == CAP_IR)
            ir = CAPTURED;
        if (at == SH_IR)
            ir = tdi + ir.substr(0, ir.size() - 1);
        if (at == CAP_DR) {
            bypass = '0';
            id = ID_TEXT;
        }
        if (at == SH_DR) {
            bypass = tdi;
            id = tdi + id.substr(0, id.size() - 1);
        }
        if (known)
            arcs.insert({at, tms});
        at = NEXT[at][tms];
    }

    char serial_out(const std::string &inputs) const {
        if (at == SH_IR)
            return ir.back();
        const char registers[] = {bypass, inputs[3], id.back(), '0', inputs[4], inputs[5]};
        return registers[decoded().selects];
    }

    void clock(bool tms, char tdi, bool trst = true) {
        std::string inputs = {tms ? '1' : '0', tdi, trst ? '1' : '0', bit(), bit(), bit()};
        rise(tms, tdi);
        bool reset = has_trst && !trst;
        if (reset) {
            at = TLR;
            known = true;
        }
        bool shifting = at == SH_DR || at == SH_IR;
        char tdo = serial_out(inputs); // before the instruction moves: at the same falling edge
        if (at == UPD_IR)
            instruction = ir;
        if (at == TLR)
            instruction = AFTER_RESET;
        std::array<char, OUTPUT_COUNT> value{}, mask{};
        value.fill('0');
        mask.fill(known ? '1' : '0');
        auto set = [&value](int output, bool high) { value[output] = high ? '1' : '0'; };
        for (int output : decoded().raises)
            set(output, true);
        set(OUT_TDO_DRIVEN, shifting);
        value[OUT_TDO] = tdo;
        mask[OUT_TDO] = known && shifting ? '1' : '0';
        set(OUT_SHIFT_DR, at == SH_DR);
        set(OUT_CLOCK_ACTIVE, at == CAP_DR || at == SH_DR);
        set(OUT_UPDATE_DR, at == UPD_DR && !(clamp_holds && instruction == CLAMP_OPCODE));
        set(OUT_RESET, at != TLR);
        if (at != SH_DR)
            value[OUT_EN_C] = '0'; // gated with SHIFT_DR
        set(OUT_SCAN_MODE, value[OUT_TEST_MODE] == '1' && tms);
        value[OUT_CHAIN] = tdi;
        vectors +=
            inputs + std::string(value.begin(), value.end()) + std::string(mask.begin(), mask.end()) + "\n";
        ++cycles;
    }

    void walk(const std::string &tms) {
        for (char bit_of_tms : tms)
            clock(bit_of_tms == '1', bit());
    }

    void five_ones() {
        walk("11111");
        known = true;
        at = TLR;
    }

    /// From Run-Test/Idle through a shift of `bits`, first bit first, back to Run-Test/Idle; pauses on the
    /// way.
    void scan(const std::string &way_to_shift, const std::string &bits) {
        walk(way_to_shift);
        for (size_t i = 0; i < bits.size(); ++i) {
            bool last = i + 1 == bits.size();
            bool pause = !last && random() % 8 == 0;
            clock(last || pause, bits[i]);
            if (pause)
                walk("0010");
        }
        walk("10");
    }

    void scan_instruction(const std::string &opcode) {
        scan("1100", std::string(opcode.rbegin(), opcode.rend()));
    }

    void scan_data(size_t length) {
        std::string bits;
        while (bits.size() < length)
            bits += bit();
        scan("100", bits);
    }

    /// Resets in both ways, walks all arcs, and scans every opcode with a data register scan behind it.
    void whole_run() {
        if (has_trst)
            clock(true, '0', false);
        else
            five_ones();
        walk("00");
        scan_data(40); // the identification code is there without any instruction
        for (int opcode = 0; opcode < 16; ++opcode) {
            std::string text;
            for (int i = 3; i >= 0; --i)
                text += (opcode >> i) & 1 ? '1' : '0';
            scan_instruction(text);
            scan_data(36);
            scan_data(1 + opcode);
        }
        for (int i = 0; i < 1500; ++i)
            clock(random() % 2, bit(), random() % 64 != 0 || !has_trst);
        for (int steps = 1; steps < 40; ++steps) { // five ones from wherever the walk stands
            for (int i = 0; i < steps; ++i)
                clock(random() % 3 == 0, bit());
            walk("11111");
        }
    }
};

// For both languages: GHDL's synthesis makes Verilog of the VHDL, with the ports as they are; its registers
// start at 5, since an unknown state would stay unknown in gates. Inputs change 5 ns ahead of the rising
// edge; TDO must not change with it; outputs are looked at 4 ns behind the falling edge. Letters: T TRST, D
// an enable port for TDO, S -synch.
const char *const BENCH = R"(
   |`timescale 1ns/1ns
   |module bench;
   |    localparam OUTS = <OUTS>, CYCLES = <CYCLES>;
   |    reg [6+2*OUTS-1:0] vectors [0:CYCLES-1];
   |    reg [5:0] in;
   |    reg [OUTS-1:0] value, mask;
   |    reg tck, old_tdo, known;
   |    wire tdo, tdo_en, shift_dr, clock_dr, update_dr, reset, mode1, mode2, mode3, highz, chip_test;
   |    wire en_a, en_c, test_mode, scan_mode, first, myreg_in, userdr_in;
   |    wire [2:0] en_b;
   |    integer i, errors;
   |    chip_tap dut (.TMS(in[5]), .TDI(in[4]), .TCK(tck), .TDO(tdo),
T  |        .TRST(in[3]),
D  |        .TDO_EN(tdo_en),
   |        .BOUNDARY_out(in[2]), .MYREG_out(in[1]), .USERDR_out(in[0]), .first_Bcell(first),
   |        .MYREG_in(myreg_in), .USERDR_in(userdr_in), .SHIFT_DR(shift_dr), .CLOCK_DR(clock_dr),
   |        .UPDATE_DR(update_dr), .RESET(reset), .MODE1(mode1), .MODE2(mode2), .MODE3(mode3), .HIGHZ(highz),
   |        .CHIP_TEST(chip_test), .en_a(en_a), .en_b(en_b), .en_c(en_c), .velmora_test_mode(test_mode),
   |        .velmora_scan_mode(scan_mode));
D  |    wire driven = tdo_en;
d  |    wire driven = tdo !== 1'bz;
S  |    wire active = clock_dr;
s  |    wire active = ~clock_dr;
   |    wire chain = (first === myreg_in && first === userdr_in) ? first : 1'bx;
   |    wire [OUTS-1:0] now = {driven, tdo, shift_dr, active, update_dr, reset, mode1, mode2, mode3, highz,
   |                          chip_test, en_a, en_b, en_c, test_mode, scan_mode, chain};
   |    initial begin
   |        $readmemb("vectors", vectors);
   |        errors = 0;
   |        tck = 0;
   |        for (i = 0; i < CYCLES; i = i + 1) begin
   |            #1 {in, value, mask} = vectors[i];
   |            old_tdo = tdo;
   |            #5 tck = 1;
   |            #5 if (i > 8 && tdo !== old_tdo && in[3]) errors = errors + 1;
   |            #5 tck = 0;
   |            #4 if (((now ^ value) & mask) !== {OUTS{1'b0}}) begin
   |                errors = errors + 1;
   |                if (errors < 5) $display("cycle %0d: is %b, should be %b, mask %b", i, now, value, mask);
   |            end
   |        end
   |        $display("%0d cycles, %0d errors", i, errors);
   |    end
   |endmodule
)";

TEST(tap_behaviour, both_languages_follow_the_standard) {
    const std::string common = " update rst mode1 mode2 mode3 idcode usercode";
    const struct {
        const char *needs, *letters;
    } variants[] = {
        {"trst", "T"}, {"", ""}, {"synch trst", "ST"}, {"synch tdo_en", "SD"}, {"tdo_en trst", "DT"}};
    for (const auto &variant : variants)
        for (bool vhdl : {false, true}) {
            SCOPED_TRACE(variant.needs + std::string(vhdl ? " in VHDL" : " in Verilog"));
            reference_tap reference{std::string(variant.letters).find('T') != std::string::npos, !vhdl};
            reference.whole_run();
            EXPECT_EQ(reference.arcs.size(), 32u);
            const std::string cycles = std::to_string(reference.cycles);
            scratch_folder scratch;
            scratch.write(vhdl ? "tap.vhd" : "tap.v",
                          rtl_of({"", LARGE_TABLE, variant.needs + common + (vhdl ? " vhdl" : "")}));
            scratch.write("vectors", reference.vectors);
            scratch.write("bench.v", expand_template(
                                         BENCH, {variant.letters,
                                                 {{"OUTS", std::to_string(OUTPUT_COUNT)}, {"CYCLES", cycles}},
                                                 {}}));
            const std::string from_vhdl = "ghdl --synth --std=93 --out=verilog tap.vhd -e chip_tap | "
                                          "sed '/ reg /s/_q;/_q = 5;/' >tap.v && ";
            run_result result = scratch.run((vhdl ? from_vhdl : "") +
                                            "iverilog -g2001 -o bench bench.v tap.v && vvp -n bench");
            EXPECT_EQ(result.status, 0);
            EXPECT_NE(result.out.find(cycles + " cycles, 0 errors"), std::string::npos)
                << result.out << result.err;
        }
}

} // namespace
