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
    input.instructions = "%INSTRUCTION HIGHZ = (011) ACCESS BYPASS;";
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
    // The bundled editor takes every line.
    std::filesystem::remove_all(chip.scratch.dir / "tools");
    result = chip.run("-add_tap");
    EXPECT_EQ(result.status, 0) << result.out << result.err;
}

TEST(Cells, AHighImpedanceBufferNeedsTheCommand) {
    CHIP_INPUT input = kinds_input();
    input.instructions.clear();
    chip_case chip(input);
    run_result result = chip.run("-add_tap");
    EXPECT_EQ(result.status, 255);
    EXPECT_NE(result.out.find("pad 'phz0' needs the high impedance command of the TAP"), std::string::npos)
        << result.out;
}

namespace {

struct PAIR_CASE {
    const char *name, *options, *tap_items, *roles, *expected;
};

// One bidirectional port whose enable is driven by a gate, or that gets a pad.
const PAIR_CASE PAIRS[] = {
    {"output cell, control cell, input cell", "", "", "", R"(add BCELL1 BC_CTL
disconnect pb{OEN}
connect BCELL1{DI} f1{Q}
connect BCELL1{DO} pb{OEN}
add BCELL2 BC_IN
add BCELL0 BC_OUT
disconnect pb{C}
connect BCELL2{DO} f1{D}
connect BCELL2{DI} pb{C}
disconnect pb{I}
connect BCELL0{DI} f0{Q}
connect BCELL0{DO} pb{I}
)"},
    {"the %OE_MODE pin of the output cell is tied to the control cell", "", "",
     "%OUTPUT_SCAN BC_OE; %CONTROL_OE_SCAN BC_COE;", R"(add BCELL0 BC_OE
add BCELL1 BC_COE
disconnect pb{OEN}
connect BCELL1{DI} f1{Q}
connect BCELL1{DO} pb{OEN}
connect BCELL1{OM} BCELL0{OM}
add BCELL2 BC_IN
disconnect pb{C}
connect BCELL2{DO} f1{D}
connect BCELL2{DI} pb{C}
disconnect pb{I}
connect BCELL0{DI} f0{Q}
connect BCELL0{DO} pb{I}
)"},
};

} // namespace

TEST(Cells, ABidirectionalPortWithTwoCells) {
    for (const PAIR_CASE &pair : PAIRS) {
        SCOPED_TRACE(pair.name);
        CHIP_INPUT input;
        input.bidir_cell = false;
        input.roles = pair.roles;
        input.cells = "module BC_OE(input DI, SI, SE, CK, TK, UP, MD, OM, output DO, SO); endmodule\n"
                      "module BC_COE(input DI, SI, SE, CK, TK, UP, MD, output DO, SO, OM); endmodule\n";
        input.library =
            "%SCAN_CELL BC_OE { %DATA_IN DI; %DATA_OUT DO; %TDI SI; %TDO SO; %CLOCK_DR CK; %SHIFT_DR SE; "
            "%UPDATE_DR UP; %MODE_1 MD; %OE_MODE OM; }\n"
            "%SCAN_CELL BC_COE { %DATA_IN DI; %DATA_OUT DO; %TDI SI; %TDO SO; %CLOCK_DR CK; %SHIFT_DR SE; "
            "%UPDATE_DR UP; %MODE_1 MD; %OE_MODE OM; }\n";
        input.design =
            "module chip(inout b, input ck); wire i, c, e;\n"
            "BBUF pb(.I(i), .OEN(e), .PAD(b), .C(c)); FF f0(.CK(ck), .Q(i)); FF f1(.D(c), .CK(ck), .Q(e));\n"
            "endmodule\n";
        input.pins = "1 PB b *\n2 CK ck *\n";
        chip_case chip(input);
        run_result result = chip.run(std::string("-add_tap ") + pair.options);
        EXPECT_EQ(result.status, 0) << result.out << result.err;
        std::string lines = chip.commands({"chip_jtag"});
        size_t from = lines.find("add BCELL"), to = lines.find("connect BCELL0{SO}");
        ASSERT_NE(to, std::string::npos) << lines;
        EXPECT_EQ(lines.substr(from, to - from), pair.expected);
    }
}

TEST(Cells, TwoRowsOnOneNetMeetInEitherOrder) {
    // An input pad that feeds an output pad and an enable: whichever row comes first, each wire has one
    // driver.
    struct ORDER {
        const char *pins;
        std::vector<std::string> lines;
    };
    const ORDER orders[] = {
        {"1 PA a *\n2 PY y *\n3 PZ z *\n9 CK ck *\n",
         {"connect BCELL0{DI} pa{C}\n", "connect BCELL1{DI} BCELL0{DO}\n",
          "connect BCELL3{DI} BCELL0{DO}\n"}},
        {"1 PZ z *\n2 PY y *\n3 PA a *\n9 CK ck *\n",
         {"connect BCELL1{DI} pa{C}\n", "connect BCELL2{DI} pa{C}\n", "connect BCELL3{DO} g{D}\n"}},
    };
    for (const ORDER &order : orders) {
        CHIP_INPUT input;
        input.design =
            "module chip(input a, output y, output z, input ck); wire w, d; FF g(.D(w), .CK(ck)); IBUF "
            "pa(.PAD(a), .C(w));\n"
            "OBUF py(.I(w), .PAD(y)); FF f(.CK(ck), .Q(d)); TBUF pz(.I(d), .OEN(w), .PAD(z)); endmodule\n";
        input.pins = order.pins;
        chip_case chip(input);
        run_result result = chip.run("-add_tap");
        EXPECT_EQ(result.status, 0) << result.out << result.err;
        std::string lines = chip.commands({"chip_jtag"});
        for (const std::string &line : order.lines)
            EXPECT_NE(lines.find(line), std::string::npos) << line << lines;
        // The pads' own pins are driven by cells alone once the wires are cut.
        EXPECT_EQ(lines.find("{DO} py{I}\n", lines.find("{DO} py{I}\n") + 1), std::string::npos) << lines;
        EXPECT_EQ(lines.find("{DO} pz{OEN}\n", lines.find("{DO} pz{OEN}\n") + 1), std::string::npos) << lines;
    }
}
