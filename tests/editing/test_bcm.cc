// All boundary cells in one module <top>_BCM: the top module's file.
#include "tests/editing/chip_case.hh"

namespace {

constexpr const char *OTHER_PINS =
    "1 Y y *\n2 PA a *\n3 Z0 z0 *\n4 Z1 z1 *\n5 PB b *\n6 CK ck *\n8 TDI tdi *\n10 TDO tdo *\n";
constexpr const char *CK_PINS = "1 PA a *\n2 CK ck *\n3 TDI tdi *\n10 TDO tdo *\n";

const CHIP ROWS[] = {
    {.name = "the top file", .design = "bcm", .file = "bcm_top"},
    {.name = "an input and an output cell",
     .design = "bcm",
     .pins = OTHER_PINS,
     .changes = {{"chip.bsc", "%BIDIR_SCAN BC_BI; ", ""}}},
    {.name = "cells with a pin for the enable",
     .design = "bcm",
     .pins = OTHER_PINS,
     .roles = "%OUTPUT_SCAN BC_OE; %CONTROL_OE_SCAN BC_COE;"},
    {.name = "a pad below the top",
     .design = "module pads(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule\n"
               "module chip(input a, ck); pads u(.p(a), .k(v)); FF f(.D(v), .CK(ck)); endmodule\n",
     .pins = CK_PINS},
    {.name = "the pad of a test port below the top",
     .design = "module pads(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule\n"
               "module chip(input a, ck, tdi); IBUF i(.PAD(a), .C(v)); pads u(.p(tdi), .k(w));\n"
               "FF f(.D(v), .CK(ck)); FF g(.D(w), .CK(ck)); endmodule\n",
     .pins = CK_PINS},
    {.name = "pads without cells in two modules",
     .design = "module pa(input p, output k); MUXC i(.PAD(p), .C(k)); endmodule\n"
               "module pb(input p, output k); MUXC i(.PAD(p), .C(k)); endmodule\n"
               "module chip(input a, c, d, ck); IBUF i(.PAD(a), .C(v)); pa u(.p(c), .k(w));\n"
               "pb x(.p(d), .k(y)); FF f(.D(v), .CK(w)); FF g(.D(v), .CK(y)); endmodule\n",
     .pins = "1 C0 c *\n4 D0 d *\n3 PA a *\n2 CK ck *\n",
     .roles = "%INPUT_MUX_SCAN BC_MI;",
     .tap_items = "%MODE_2 mode2; "},
    {.name = "a port without a pad",
     .design = "module chip(input a, ck); FF f(.D(a), .CK(ck)); endmodule\n",
     .pins = CK_PINS,
     .options = "-add_bcm -no_pad"},
    {.name = "what is cut and what is left out",
     .design = "module chip(input a, ck, output tdo); IBUF i(.PAD(a), .C(v)); FF f(.D(v), .CK(ck), .Q(q));\n"
               "OBUF po(.I(q), .PAD(tdo)); INV n(.A(q)); endmodule\n",
     .pins = CK_PINS,
     .settings = "%CONNECTION_TABLE { %CONNECT f{CK} TO ck; }"},
    {.name = "two enables, of which the pin list chooses the other",
     .design = "module chip(output z, input ck, output tdo); FF f(.CK(ck), .Q(q)); FF e(.CK(ck), .Q(w));\n"
               "TB2 pz(.I(q), .OEN(q), .EN(w), .PAD(z)); TB2 po(.I(q), .PAD(tdo)); endmodule\n",
     .pins = "1 Z z * PAD_EN_H\n2 CK ck *\n10 TDO tdo * PAD_EN_H\n"},
    {.name = "an input with an inverter and a mux, and a mode pin that is tied",
     .design =
         "module chip(input a, ck); MUXI i(.PAD(a), .C(v), .M(1'b0)); FF f(.D(v), .CK(ck)); endmodule\n",
     .pins = "1 PA -a *\n2 CK ck *\n",
     .roles = "%INPUT_MUX_SCAN BC_MI;",
     .settings = "%INVERTER INV; %INPUT_BUFFER IBUF;",
     .library = "%BUFFER INV { %INPUT A; %OUTPUT Z; }\n",
     .tap_items = "%MODE_2 mode2; "},
};

} // namespace

TEST(Bcm, LinesRefusalsAndWarnings) {
    run_rows("bcm", ROWS, {.options = "-add_bcm"});
}
