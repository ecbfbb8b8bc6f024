// All boundary cells in one module <top>_BCM: the top module's file.
#include "tests/editing/chip_case.hh"

namespace {

constexpr const char *DESIGN =
    "module chip(input a, n, output y, z0, z1, inout b, c1, input ck, tdi, tms, output tdo);\n"
    "wire av, nv, yv, ev, zv, bv, bo, cv, co, ckv;\n"
    "IBUF pa(.PAD(a), .C(av)); IBUF pn(.PAD(n), .C(nv)); OBUF py(.I(yv), .PAD(y));\n"
    "TBUF pz0(.I(zv), .OEN(ev), .PAD(z0)); TBUF pz1(.I(yv), .OEN(ev), .PAD(z1));\n"
    "BBUF pb(.I(bo), .OEN(ev), .PAD(b), .C(bv));\n"
    "IBUF pck(.PAD(ck), .C(ckv)); IBUF pi(.PAD(tdi)); TBUF po(.I(1'b0), .OEN(1'b1), .PAD(tdo));\n"
    "FF f(.D(av), .CK(ckv), .Q(yv)); FF g(.D(nv), .CK(ckv), .Q(ev)); FF h(.D(bv), .CK(ckv), .Q(bo));\n"
    "FF k(.D(av), .CK(ckv), .Q(zv)); endmodule\n";

constexpr const char *PINS =
    "1 PA a *\n2 PN n IN\n3 Y y *\n4 Z0 z0 *\n5 Z1 z1 *\n6 PB b *\n7 CK ck *\n8 TDI tdi *\n"
    "10 TDO tdo *\n";

} // namespace

TEST(Bcm, TheTopFile) {
    CHIP_INPUT input;
    input.design = DESIGN;
    input.pins = PINS;
    chip_case chip(input);
    run_result result = chip.run("-add_bcm");
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    expect_commands("bcm_top", chip.commands({"chip_jtag"}));
}

TEST(Bcm, PairsOfCellsAndSharedControls) {
    struct BCM_CASE {
        const char *what, *roles, *library;
        bool bidir_cell;
        const char *expected;
    };
    const BCM_CASE cases[] = {
        {"an input and an output cell", "", "", false,
         "disconnect pb{C}\nconnect chip_BCM{BCELL5_OUT} h{D}\nconnect chip_BCM{BCELL5_IN} pb{C}\n"
         "disconnect pb{I}\nconnect chip_BCM{BCELL6_IN} h{Q}\nconnect chip_BCM{BCELL6_OUT} pb{I}\n"
         "disconnect pb{OEN}\nconnect chip_BCM{BCELL3_OUT} pb{OEN}\n"},
        {"cells with a pin for the enable", "%OUTPUT_SCAN BC_OE; %CONTROL_OE_SCAN BC_OC;",
         "%SCAN_CELL BC_OE { %DATA_IN DI; %DATA_OUT DO; %TDI SI; %TDO SO; %CLOCK_DR CK; %SHIFT_DR SE; "
         "%UPDATE_DR UP; %MODE_1 MD; %OE_MODE OM; }\n"
         "%SCAN_CELL BC_OC { %DATA_IN DI; %DATA_OUT DO; %TDI SI; %TDO SO; %CLOCK_DR CK; %SHIFT_DR SE; "
         "%UPDATE_DR UP; %MODE_1 MD; %OE_MODE OM; }\n",
         true,
         "disconnect pz0{OEN}\nconnect chip_BCM{BCELL3_IN}  g{Q}\nconnect chip_BCM{BCELL3_OUT}  pz0{OEN}\n"
         "connect chip_BCM{BCELL3_OUT}  chip_BCM{BCELL2_OE}\n"},
    };
    for (const BCM_CASE &each : cases) {
        SCOPED_TRACE(each.what);
        CHIP_INPUT input;
        input.design = DESIGN;
        input.cells = "module BC_OE(input DI, SI, SE, CK, UP, MD, OM, output DO, SO); endmodule\n"
                      "module BC_OC(input DI, SI, SE, CK, UP, MD, output DO, SO, OM); endmodule\n";
        input.pins = "1 Y y *\n2 PA a *\n3 Z0 z0 *\n4 Z1 z1 *\n5 PB b *\n6 CK ck *\n";
        input.roles = each.roles;
        input.library = each.library;
        input.bidir_cell = each.bidir_cell;
        chip_case chip(input);
        run_result result = chip.run("-add_bcm");
        EXPECT_EQ(result.status, 0) << result.out << result.err;
        std::string text = chip.commands({"chip_jtag"});
        EXPECT_NE(text.find(each.expected), std::string::npos) << text;
    }
}

namespace {

constexpr const char *CK_PINS = "1 PA a *\n2 CK ck *\n3 TDI tdi *\n10 TDO tdo *\n";
/// The user's module of all cells, as far as these chips reach it.
constexpr const char *BCM = "module chip_BCM(input BCELL0_IN, BCM_TDI, BCM_TMS, BCM_TCK, BCELL1_IN, "
                            "BCELL2_IN, output BCELL0_OUT, BCM_TDO,"
                            " BCM_TDO_EN, BCELL2_OUT); endmodule\n";

const CHIP_ROW ROWS[] = {
    {.what = "a pad below the top",
     .input = {.design = "module pads(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule\n"
                         "module chip(input a, ck); pads u(.p(a), .k(v)); FF f(.D(v), .CK(ck)); endmodule\n",
               .pins = CK_PINS},
     .options = "-add_bcm",
     .expected = "ERROR: the pad of port 'a' lies in module 'pads'.\n"
                 "       Option -add_bcm needs all pads in the top module.\n\n"},
    {.what = "the pad of a test port below the top",
     .input = {.design = "module pads(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule\n"
                         "module chip(input a, ck, tdi); IBUF i(.PAD(a), .C(v)); pads u(.p(tdi), .k(w));\n"
                         "FF f(.D(v), .CK(ck)); FF g(.D(w), .CK(ck)); endmodule\n",
               .pins = CK_PINS},
     .options = "-add_bcm",
     .expected = "ERROR: the pad of port 'tdi' lies in module 'pads'.\n"},
    {.what = "pads without cells in two modules",
     .input = {.design = "module pa(input p, output k); MUXC i(.PAD(p), .C(k)); endmodule\n"
                         "module pb(input p, output k); MUXC i(.PAD(p), .C(k)); endmodule\n"
                         "module chip(input a, c, d, ck); IBUF i(.PAD(a), .C(v)); pa u(.p(c), .k(w));\n"
                         "pb x(.p(d), .k(y)); FF f(.D(v), .CK(w)); FF g(.D(v), .CK(y)); endmodule\n",
               .cells = "module MUXC(input PAD, T, S, output C); endmodule\n",
               .tap_items = "%MODE_2 mode2; ",
               .library = "%BUFFER MUXC { %FUNCTION CLOCK; %INPUT PAD; %OUTPUT C; %MUX_IN2 T; %MODE_2 S; }\n",
               .roles = "%INPUT_MUX_SCAN BC_MI;",
               .pins = "1 C0 c *\n4 D0 d *\n3 PA a *\n2 CK ck *\n"},
     .options = "-add_bcm",
     .expected = "ERROR: Option -add_bcm can not support multiple IO-PAD modules.\n\n"},
    {.what = "a port without a pad",
     .input = {.design = "module chip(input a, ck); FF f(.D(a), .CK(ck)); endmodule\n", .pins = CK_PINS},
     .options = "-add_bcm -no_pad",
     .expected = "ERROR: port 'a' has no pad. Option -add_bcm needs a pad at each port with a cell.\n\n"},
    {.what = "what is cut and what is left out",
     .input =
         {.design =
              "module chip(input a, ck, output tdo); IBUF i(.PAD(a), .C(v)); FF f(.D(v), .CK(ck), .Q(q));\n"
              "OBUF po(.I(q), .PAD(tdo)); INV n(.A(q)); endmodule\n",
          .cells = BCM,
          .settings = "%CONNECTION_TABLE { %CONNECT f{CK} TO ck; }",
          .pins = CK_PINS},
     .options = "-add_bcm",
     .expected = "WARNING: option -add_bcm does not carry out %CONNECTION_TABLE.\n\n"
                 " - Synthesizing Boundary Registers in gate level ...\n\n"
                 "    .Editing command file    ./rimweave_lib/chip_jtag.cmd ...\n"
                 "WARNING: Pin 'I' of 'po' is driven by the design.\n",
     .status = 0,
     .lines = "disconnect po{I}\nconnect po{I} chip_BCM{BCM_TDO}\ndisconnect  i{C}\n"},
    {.what = "two enables, of which the pin list chooses the other",
     .input =
         {.design =
              "module chip(output z, input ck, output tdo); FF f(.CK(ck), .Q(q)); FF e(.CK(ck), .Q(w));\n"
              "TB2 pz(.I(q), .OEN(q), .EN(w), .PAD(z)); TB2 po(.I(q), .PAD(tdo)); endmodule\n",
          .cells = "module TB2(input I, OEN, EN, output PAD); endmodule\n"
                   "module chip_BCM(input BCELL0_IN, BCELL1_IN, BCM_TDI, BCM_TMS, BCM_TCK, "
                   "output BCELL0_OUT, BCELL1_OUT, BCM_TDO, BCM_TDO_EN); endmodule\n",
          .library = "%BUFFER TB2 { %INPUT I; %OUTPUT PAD; %EN_L OEN; %EN_H EN; }\n",
          .pins = "1 Z z * PAD_EN_H\n2 CK ck *\n10 TDO tdo * PAD_EN_H\n"},
     .options = "-add_bcm",
     .expected = "WARNING: the pin list chooses enable 'EN' of pad 'pz' of port 'z'.\n"
                 "         Option -add_bcm drives its enable 'OEN' all the same.\n"
                 "         Please use a pad cell with one enable.\n\n",
     .status = 0,
     .lines = "connect po{EN} chip_BCM{BCM_TDO_EN}\ndisconnect  pz{I}\n"},
    {.what = "an input with an inverter and a mux, and a mode pin that is tied",
     .input =
         {.design =
              "module chip(input a, ck); MUXI i(.PAD(a), .C(v), .M(1'b0)); FF f(.D(v), .CK(ck)); endmodule\n",
          .cells = "module chip_BCM(input BCELL0_IN, BCM_TDI, BCM_TMS, BCM_TCK, output BCELL0_UPD_OUT, "
                   "BCELL0_MODE2,"
                   " BCM_TDO, BCM_TDO_EN); endmodule\n",
          .tap_items = "%MODE_2 mode2; ",
          .library = "%BUFFER INV { %INPUT A; %OUTPUT Z; }\n",
          .roles = "%INPUT_MUX_SCAN BC_MI;",
          .settings = "%INVERTER INV; %INPUT_BUFFER IBUF;",
          .pins = "1 PA -a *\n2 CK ck *\n"},
     .options = "-add_bcm",
     .expected = "WARNING: Pin %MODE_2 of pad 'i'(MUXI) connected to GND.\n"
                 "         %MODE_2 'M' will be disconnected and reconnected to TAP.\n",
     .status = 0,
     .lines =
         "connect chip_BCM{BCELL0_UPD_OUT} i{T}\nadd B_PAD_INV0 INV\nconnect B_PAD_INV0{A} i{C}\n"
         "connect B_PAD_INV0{Z} chip_BCM{BCELL0_IN}\ndisconnect i{M}\nconnect chip_BCM{BCELL0_MODE2} i{M}\n"},
};

} // namespace

TEST(Bcm, RefusalsAndWarnings) {
    run_rows(ROWS);
}
