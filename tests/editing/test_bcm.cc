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
    expect_file("bcm_top.cmd", chip.commands({"chip_jtag"}));
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

TEST(Bcm, PadsBelowTheTopAreRefused) {
    constexpr const char *PADS = "module pads(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule\n";
    const struct {
        const char *what, *design, *message;
    } cases[] = {
        {"one module",
         "module chip(input a, ck); wire v; pads u(.p(a), .k(v)); FF f(.D(v), .CK(ck)); endmodule\n",
         "ERROR: the pad of port 'a' lies in module 'pads'.\n"
         "       Option -add_bcm needs all pads in the top module.\n\n"},
        {"a test port",
         "module chip(input a, ck, tdi); wire v, w; IBUF i(.PAD(a), .C(v)); pads u(.p(tdi), .k(w));\n"
         "FF f(.D(v), .CK(ck)); FF g(.D(w), .CK(ck)); endmodule\n",
         "ERROR: the pad of port 'tdi' lies in module 'pads'.\n"},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.what);
        CHIP_INPUT input;
        input.design = std::string(PADS) + each.design;
        input.pins = "1 PA a *\n2 CK ck *\n3 TDI tdi *\n";
        if (std::string(each.what) == "one module")
            input.pins = "1 PA a *\n2 CK ck *\n";
        chip_case chip(input);
        run_result result = chip.run("-add_bcm");
        EXPECT_EQ(result.status, 255);
        EXPECT_NE(result.out.find(each.message), std::string::npos) << result.out;
        EXPECT_FALSE(chip.scratch.has("rimweave_lib/chip_jtag.cmd"));
        EXPECT_FALSE(chip.scratch.has("chip_jtag.sdb"));
    }
}
