// The lines of the cell kinds, and of cells whose pads stand on one net.
#include "tests/editing/chip_case.hh"

namespace {

constexpr const char *CELLS = R"(
module EBUF(input EN, output PAD); endmodule
module MUXI(input PAD, T, M, output C); endmodule
module MUXO(input I, T, M, output PAD); endmodule
module MUXT(input I, T, M, OEN, output PAD); endmodule
module MXB(input I, OEN, T, M, inout PAD, output C); endmodule
module BSIN(input PAD, SI, SE, CK, UP, MD, output C, SO); endmodule
module BSOUT(input I, SI, SE, CK, UP, MD, output PAD, SO); endmodule
module TRB(input A, output Z); endmodule
module BC_OBS(input DI, SI, SE, CK, output SO); endmodule
module BC_MI(input DI, SI, SE, CK, UP, output UO, SO); endmodule
module BC_MB(input DI, SP, SI, SE, CK, UP, output SY, UO, SO); endmodule
)";

constexpr const char *LIBRARY = R"(
%BUFFER EBUF { %OUTPUT PAD; %EN_H EN; }
%BUFFER MUXI { %INPUT PAD; %OUTPUT C; %MUX_IN2 T; %MODE_2 M; }
%BUFFER MUXO { %INPUT I; %OUTPUT PAD; %MUX_IN1 T; %MODE_1 M; }
%BUFFER MUXT { %INPUT I; %OUTPUT PAD; %MUX_IN1 T; %MODE_1 M; %EN_L OEN; }
%BUFFER MXB { %INPUT I; %INOUT PAD; %OUTPUT C; %EN_L OEN; %MUX_IN1 T; %MODE_1 M; %FUNCTION inout; }
%BS_BUFFER BSIN { %INPUT PAD; %OUTPUT C; %TDI SI; %TDO SO; %SHIFT_DR SE; %CLOCK_DR CK; %UPDATE_DR UP; %MODE_1 MD; }
%BS_BUFFER BSOUT { %INPUT I; %OUTPUT PAD; %TDI SI; %TDO SO; %SHIFT_DR SE; %CLOCK_DR CK; %UPDATE_DR UP; %MODE_1 MD; }
%BUFFER TRB { %INPUT A; %OUTPUT Z; }
%SCAN_CELL BC_OBS { %DATA_IN DI; %TDI SI; %TDO SO; %CLOCK_DR CK; %SHIFT_DR SE; }
%SCAN_CELL BC_MI { %DATA_IN DI; %UPDATE_DR_OUT UO; %TDI SI; %TDO SO; %CLOCK_DR CK; %SHIFT_DR SE; %UPDATE_DR UP; }
%SCAN_CELL BC_MB { %DATA_IN DI; %SYS_PIN SP; %SYS_IN SY; %UPDATE_DR_OUT UO; %TDI SI; %TDO SO; %CLOCK_DR CK;
                   %SHIFT_DR SE; %UPDATE_DR UP; }
)";

constexpr const char *PINS = R"(
1 CLK clk *
2 PA a *
3 INV -inv *
4 OBS obs * BSC(BC_OBS)
5 MI mi *
6 THRU thru *
7 BSI bsi *
8 Y y LEFT
9 P0 t0 *
10 T1 t1 *
11 HZ0 hz0 *
12 HZ1 hz1 *
13 EN_O en_o *
14 MO mo *
15 MT mt *
16 BSO bso *
17 FEED feed *
18 PIO io *
19 MB mb *
20 INTERNAL g0{Q} *
21 OBSERVE g1{D} *
30 TDI tdi *
31 TMS tms *
32 TCK tck *
33 TDO tdo *
)";

CHIP_INPUT kinds_input() {
    CHIP_INPUT input;
    input.design = test_file("designs/cell_kinds.v");
    input.cells = CELLS;
    input.library = LIBRARY;
    input.pins = PINS;
    input.tap_items = "%MODE_2 mode2; %HIGHZ_COMMAND highz; %SIGNAL_BUFFER BUFX; ";
    input.settings = "%TRANSPARENT_BUFFER { TRB; } %INVERTER IBX;";
    input.roles =
        "%INPUT_MUX_SCAN BC_MI; %OUTPUT_MUX_SCAN BC_MI; %BIDIR_MUX_SCAN BC_MB; %INTERNAL_SCAN BC_IN; "
        "%OBSERVE_ONLY_SCAN BC_OBS;";
    return input;
}

} // namespace

TEST(Cells, EachKindWritesItsLines) {
    chip_case chip(kinds_input());
    run_result result = chip.run("-add_tap");
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    expect_file("cell_kinds.cmd", chip.commands({"chip_jtag"}));
}
