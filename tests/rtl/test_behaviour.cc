// The generated logic in simulation, in both languages and with the same stimulus, against the reference TAP.
#include "support/template_text.hh"
#include "tests/rtl/tap_case.hh"
#include "tests/rtl/tap_reference.hh"
#include "tests/support/scratch.hh"

#include <gtest/gtest.h>

namespace {

// Inputs change 5 ns ahead of the rising edge; TDO must not change with it; outputs are looked at 4 ns behind
// the falling edge. Letters: T TRST, D an enable port for TDO, S -synch.
const char *const BENCH_V = R"(
   |`timescale 1ns/1ns
   |module bench;
   |    localparam IN = <IN>, OUT = <OUT>, CYCLES = <CYCLES>;
   |    reg [IN+2*OUT-1:0] vectors [0:CYCLES-1];
   |    reg [IN-1:0] in;
   |    reg [OUT-1:0] value, mask;
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
   |    wire [OUT-1:0] out = {driven, tdo, shift_dr, active, update_dr, reset, mode1, mode2, mode3, highz,
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
   |            #4 if (((out ^ value) & mask) !== {OUT{1'b0}}) begin
   |                errors = errors + 1;
   |                if (errors < 5) $display("cycle %0d: is %b, should be %b, mask %b", i, out, value, mask);
   |            end
   |        end
   |        $display("%0d cycles, %0d errors", i, errors);
   |    end
   |endmodule
)";

const char *const BENCH_VHDL = R"(
   |library IEEE;
   |use IEEE.std_logic_1164.all;
   |use std.textio.all;
   |entity bench is
   |end bench;
   |architecture TEST of bench is
   |    signal i: std_logic_vector(5 downto 0) := "000000";
   |    signal o: std_logic_vector(<OUT>-1 downto 0);
   |    signal tck: std_logic := '0';
   |    signal tdo, tdo_en, clock_dr, first, myreg_in, userdr_in: std_logic;
   |begin
   |    dut: entity work.chip_tap port map (TMS => i(5), TDI => i(4), TCK => tck, TDO => tdo,
T  |        TRST => i(3),
D  |        TDO_EN => tdo_en,
   |        BOUNDARY_out => i(2), MYREG_out => i(1), USERDR_out => i(0), first_Bcell => first,
   |        MYREG_in => myreg_in, USERDR_in => userdr_in, CLOCK_DR => clock_dr,
   |        SHIFT_DR => o(16), UPDATE_DR => o(14), RESET => o(13), MODE1 => o(12), MODE2 => o(11), MODE3 => o(10),
   |        HIGHZ => o(9), CHIP_TEST => o(8), en_a => o(7), en_b => o(6 downto 4), en_c => o(3),
   |        velmora_test_mode => o(2), velmora_scan_mode => o(1));
D  |    o(18) <= tdo_en;
d  |    o(18) <= '0' when tdo = 'Z' else '1';
   |    o(17) <= tdo;
S  |    o(15) <= clock_dr;
s  |    o(15) <= not clock_dr;
   |    o(0) <= first when first = myreg_in and first = userdr_in else 'X';
   |    process
   |        file vectors: text open read_mode is "vectors";
   |        variable l: line;
   |        variable v: bit_vector(<IN>+2*<OUT>-1 downto 0);
   |        variable cycles, errors: integer := 0;
   |        variable old_tdo, expected: std_logic;
   |    begin
   |        while not endfile(vectors) loop
   |            readline(vectors, l);
   |            read(l, v);
   |            wait for 1 ns;
   |            i <= to_stdlogicvector(v(v'high downto 2*<OUT>));
   |            old_tdo := tdo;
   |            wait for 5 ns;
   |            tck <= '1';
   |            wait for 5 ns;
   |            if cycles > 8 and tdo /= old_tdo and i(3) = '1' then errors := errors + 1; end if;
   |            wait for 5 ns;
   |            tck <= '0';
   |            wait for 4 ns;
   |            for k in o'range loop
   |                expected := to_stdulogic(v(<OUT>+k));
   |                if v(k) = '1' and o(k) /= expected then
   |                    errors := errors + 1;
   |                    report "cycle " & integer'image(cycles) & ", output " & integer'image(k);
   |                end if;
   |            end loop;
   |            cycles := cycles + 1;
   |        end loop;
   |        write(l, integer'image(cycles) & " cycles, " & integer'image(errors) & " errors");
   |        writeline(output, l);
   |        wait;
   |    end process;
   |end TEST;
)";

struct simulator {
    const char *file, *bench_file, *bench, *command;
    bool vhdl;
};
const simulator SIMULATORS[] = {
    {"tap.v", "bench.v", BENCH_V, "iverilog -g2001 -o bench.vvp bench.v tap.v && vvp -n bench.vvp", false},
    {"tap.vhd", "bench.vhd", BENCH_VHDL,
     "ghdl -a --std=93 tap.vhd bench.vhd && ghdl -e --std=93 bench && ghdl -r --std=93 bench", true},
};

TEST(tap_behaviour, both_languages_follow_the_standard) {
    const std::string common = " update rst mode1 mode2 mode3 idcode usercode";
    const struct {
        const char *needs, *letters;
    } variants[] = {
        {"trst", "T"}, {"", ""}, {"synch trst", "ST"}, {"synch tdo_en", "SD"}, {"tdo_en trst", "DT"}};
    for (const auto &variant : variants)
        for (const simulator &simulator : SIMULATORS) {
            SCOPED_TRACE(std::string(variant.needs) + " in " + simulator.file);
            std::string needs = variant.needs + common + (simulator.vhdl ? " vhdl" : "");
            bool has_trst = std::string(variant.letters).find('T') != std::string::npos;
            reference_run reference = make_reference_run(has_trst, !simulator.vhdl);
            EXPECT_EQ(reference.arcs.size(), 32u);
            scratch_folder scratch;
            scratch.write(simulator.file, rtl_of({"", LARGE_TABLE, needs}));
            scratch.write("vectors", reference.vectors);
            scratch.write(simulator.bench_file,
                          expand_template(simulator.bench, {variant.letters,
                                                            {{"IN", std::to_string(INPUT_COUNT)},
                                                             {"OUT", std::to_string(OUTPUT_COUNT)},
                                                             {"CYCLES", std::to_string(reference.cycles)}},
                                                            {}}));
            run_result result = scratch.run(simulator.command);
            EXPECT_EQ(result.status, 0);
            EXPECT_NE(result.out.find(std::to_string(reference.cycles) + " cycles, 0 errors"),
                      std::string::npos)
                << result.out << result.err;
        }
}

} // namespace
