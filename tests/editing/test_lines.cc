// The lines of the rarer cells, pads and places of the TAP: one row each, on a small chip that the row
// changes.
#include "tests/editing/chip_case.hh"

namespace {

constexpr const char *BBH_PINS = "1 B b * PAD(BBH)\n9 CK ck *\n";

const CHIP ADDED_PADS[] = {
    {.name = "the core reads, the port's own cell has a high enable", .pins = BBH_PINS},
    {.name = "the core drives, the port's own cell has a high enable", .design = "drives", .pins = BBH_PINS},
    {.name = "the core reads, and the input cell only observes", .roles = "%INPUT_SCAN BC_OBS;"},
    {.name = "the port feeds another port",
     .design = "module chip(inout b, output z, input ck); assign z = b; endmodule\n",
     .pins = "1 B b *\n2 Z z *\n9 CK ck *\n"},
    {.name = "the port leads to a pin of both directions",
     .design = "module chip(inout b, input ck); MACRO g(.IO(b)); endmodule\n"},
    {.name = "the enable of an added TDO pad is tied when the TAP has none",
     .settings = "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER TBUF; %INOUT_BUFFER BBUF;",
     .changes = {{"chip.lib", "%TDO_EN TDO_EN; ", ""}}},
};

const CHIP CELL_LINES[] = {
    {.name = "an %OE_MODE pin that the cell drives is left alone",
     .roles = "%OUTPUT_SCAN BC_COE; %CONTROL_OE_SCAN BC_COE;",
     .changes = {{"chip.bsc", "%BIDIR_SCAN BC_BI; ", ""}}},
    {.name = "an internal pin that is floating",
     .roles = "%INTERNAL_SCAN BC_IN;",
     .changes = {{"chip.v", "endmodule", "INV n(.A(c)); endmodule"},
                 {"chip.pin", "9 CK", "10 INTERNAL n{Z} *\n9 CK"}}},
    {.name = "internal pins at ports and on a constant",
     .roles = "%INTERNAL_SCAN BC_IN;",
     .changes = {{"chip.v", "input ck", "input ck, d, output x"},
                 {"chip.v", "endmodule", "INV n(.A(d), .Z(x)); INV m(.A(1'b0)); endmodule"},
                 {"chip.pin", "9 CK", "10 INTERNAL n{Z} *\n11 INTERNAL n{A} *\n12 INTERNAL m{A} *\n9 CK"}}},
};

/// A TDO pad in the top, beside the module of the pads.
constexpr const char *TDO_BESIDE_PADS =
    "module pads(input a, output c); IBUF pa(.PAD(a), .C(c)); endmodule\n"
    "module chip(input a, ck, output tdo); wire c, t; pads p(.a(a), .c(c)); FF f(.D(c), .CK(ck), .Q(t));\n"
    "TBUF po(.I(t), .OEN(1'b0), .PAD(tdo)); endmodule\n";

/// What the design has on a pin that is to hang on the other side from now on.
const CHIP TAKEN_PINS[] = {
    {.name = "a driven enable of a TDO pad beside the pads' module",
     .design = TDO_BESIDE_PADS,
     .changes = {{"chip.v", ".OEN(1'b0)", ".OEN(c)"}}},
    {.name = "an enable that is tied above the module of the TDO pad",
     .design = "module io(input t, e, output tdo); TBUF po(.I(t), .OEN(e), .PAD(tdo)); endmodule\n"
               "module chip(input a, ck, output tdo); wire c, q; IBUF pa(.PAD(a), .C(c));\n"
               "FF f(.D(c), .CK(ck), .Q(q)); io x(.t(q), .e(1'b0), .tdo(tdo)); endmodule\n"},
    {.name = "a cell in the core does not reach its net by a pin that the TAP has taken",
     .design = "module chip(input a, ck, output tdo); wire c, q; IBUF pa(.PAD(a), .C(c)); INV n(.A(q));\n"
               "FF f(.D(c), .CK(ck), .Q(q)); OBUF po(.I(q), .PAD(tdo)); endmodule\n",
     .pins = "2 INTERNAL f{Q} *\n1 A a *\n10 TDO tdo *\n9 CK ck *\n",
     .roles = "%INTERNAL_SCAN BC_IN;"},
    {.name = "nor does an input cell, in the pads' module",
     .design = "module pads(input a, output c, input t, output tdo); IBUF pa(.PAD(a), .C(c));\n"
               "TBUF po(.I(t), .OEN(c), .PAD(tdo)); endmodule\n"
               "module chip(input a, ck, output tdo); wire c; pads p(.a(a), .c(c), .tdo(tdo));\n"
               "FF f(.D(c), .CK(ck)); endmodule\n",
     .changes = {{"chip.lib", "%OUTPUT PAD; %EN_L OEN; }", "%FUNCTION out; %OUTPUT PAD; %EN_L OEN; }"}}},
    {.name = "a TDO port without a pad that the core drives",
     .design = "module chip(input a, ck, output tdo); wire q; FF f(.D(a), .CK(ck), .Q(q));\n"
               "INV g(.A(q), .Z(tdo)); endmodule\n",
     .options = "-add_tap -no_pad"},
    {.name = "a port that feeds nothing but such a port",
     .design = "module chip(input a, ck, output tdo); FF f(.CK(ck)); assign tdo = a; endmodule\n",
     .options = "-add_tap -no_pad"},
    {.name = "a TDO port without a pad beside pads in two modules",
     .design = "pads_in_two_modules",
     .options = "-add_tap -no_pad",
     .changes = {{"chip.v", "io x(.t(q), .e(1'b0), .tdo(tdo));", "INV g(.A(q), .Z(tdo)); io x();"}}},
    {.name = "a TDO pad below the top, fed and tied there, beside pads in two modules",
     .design = "pads_in_two_modules"},
    {.name = "a tied output of a TAP down a path that the cell inside a pad needs",
     .design = "tied_tap",
     .options = "",
     .tap_items = "%MODE_2 xtra; ",
     .tap = "m.t",
     .changes = {{"chip.v", "IBUF pa", "BSIN pa"},
                 {"chip.lib", "%MODE_1 MD; }\n%BS_BUFFER BSOUT", "%MODE_2 MD; }\n%BS_BUFFER BSOUT"}}},
    {.name = "a tied output of a TAP that the multiplexer of a pad needs",
     .design = "tied_tap",
     .options = "",
     .roles = "%INPUT_MUX_SCAN BC_MI;",
     .tap_items = "%MODE_2 xtra; ",
     .tap = "m.t",
     .changes = {{"chip.v", "IBUF pa", "MUXI pa"}}},
    {.name = "a tied output of a TAP that a high-impedance buffer needs",
     .design = "tied_tap",
     .pins = "1 A a *\n2 Z z *\n9 CK ck *\n",
     .options = "",
     .tap_items = "%HIGHZ_COMMAND xtra; %SIGNAL_BUFFER BUFX; ",
     .tap = "m.t",
     .changes = {{"chip.v", "chip(input a", "chip(output z, input a"},
                 {"chip.v", "IBUF pa", "TBUF pz(.I(c), .OEN(1'b0), .PAD(z)); IBUF pa"}}},
};

const CHIP PLACES[] = {
    {.name = "a new port whose name is taken",
     .changes = {{"chip.v", "pads(input a", "pads(input chain_in, a"}}},
    {.name = "the enable of the TDO pad does not leave its module",
     .changes = {{"chip.v", ".OEN(te)", ".OEN(1'b0)"}}},
    {.name = "the TDO pad is reached from the pads' module, and freed in the top",
     .tap = "p.tap",
     .changes = {{"chip.v", ".tdo(tdo));", ".tdo(tdo), .to(c), .te(1'b1));"}}},
    {.name = "connections of the user with the TAP among the pads",
     .settings = "%CONNECTION_TABLE { %CONNECT f{CK} TO ck; }",
     .tap = "p.tap"},
    {.name = "the cells stand in the top, the pads of TDI and TDO below",
     .changes = {{"chip.v", "module pads(", "module unused(); endmodule\nmodule cells("},
                 {"chip.v", "pads p(.a(a), .c(c), .q(q), .y(y));",
                  "cells n(); unused u(); IBUF pa(.PAD(a), .C(c)); OBUF py(.I(q), .PAD(y));"}}},
    {.name = "what the top drives onto a TDO pad without an enable is cut",
     .design = "module pads(input a, output c, input t, output tdo); IBUF pa(.PAD(a), .C(c));\n"
               "OBUF po(.I(t), .PAD(tdo)); endmodule\n"
               "module chip(input a, ck, output tdo); wire c, q; pads p(.a(a), .c(c), .t(q), .tdo(tdo));\n"
               "FF f(.D(c), .CK(ck), .Q(q)); endmodule\n",
     .pins = "1 A a *\n10 TDO tdo *\n9 CK ck *\n"},
    {.name = "standard ports without pads beside a pad module",
     .design = "module pads(input a, output c); IBUF pa(.PAD(a), .C(c)); endmodule\n"
               "module chip(input a, ck, tdi, output tdo); wire c; pads p(.a(a), .c(c)); INV g(.A(tdi));\n"
               "FF f(.D(c), .CK(ck)); INV h(.A(tdo)); endmodule\n",
     .pins = "1 A a *\n6 TDI tdi *\n10 TDO tdo *\n9 CK ck *\n",
     .options = "-add_tap -no_pad"},
    {.name = "the TAP stands with the pads of TDI, that of TMS one level up",
     .design = "module pads(input a, output c, input t); IBUF pa(.PAD(a), .C(c)); IBUF pt(.PAD(t)); "
               "endmodule\n"
               "module AA(input a, output c, input t, m); IBUF pm(.PAD(m)); pads p(.a(a), .c(c), .t(t));\n"
               "endmodule\n"
               "module chip(input a, tdi, tms, tck, ck); wire c; AA A(.a(a), .c(c), .t(tdi), .m(tms));\n"
               "IBUF pk(.PAD(tck)); FF f(.D(c), .CK(ck)); endmodule\n",
     .pins = "1 A a *\n6 TDI tdi *\n8 TCK tck *\n7 TMS tms *\n9 CK ck *\n",
     .tap = "A.p.tap"},
    {.name = "all standard ports in the pads' module, TRST too, TDO on a bidirectional pad",
     .design = "module pads(input a, tdi, tms, tck, trst, output c, i, input t, inout tdo); IBUF pa(.PAD(a), "
               ".C(c));\n"
               "IBUF pi(.PAD(tdi), .C(i)); IBUF pm(.PAD(tms)); IBUF pk(.PAD(tck)); IBUF pr(.PAD(trst));\n"
               "BBUF po(.I(t), .OEN(1'b1), .PAD(tdo)); endmodule\n"
               "module chip(input a, ck, tdi, tms, tck, trst, inout tdo); wire c;\n"
               "pads p(.a(a), .c(c), .tdi(tdi), .tms(tms), .tck(tck), .trst(trst), .tdo(tdo));\n"
               "FF f(.D(c), .CK(ck)); endmodule\n",
     .pins = "1 A a *\n6 TDI tdi *\n7 TMS tms *\n8 TCK tck *\n11 TRST trst *\n10 TDO tdo *\n9 CK ck *\n",
     .tap_items = "%TRST TRST; ",
     .changes = {{"chip.bsc", "%GLOBAL_TCK tck;", "%GLOBAL_TCK tck; %GLOBAL_TRST trst;"},
                 {"chip.bsc", "tck, ck;", "tck, ck, trst;"}}},
    {.name = "a standard port that is new, the TAP two levels above the pads",
     .design = "three_down",
     .options = "-add_tap -synch",
     .roles = "%INPUT_SCAN BC_X; %OUTPUT_SCAN BC_X;",
     .tap_items = "%HIGHZ_COMMAND highz; %SIGNAL_BUFFER BUFX; %EXTRA_1 xtra; ",
     .tap = "k.tap",
     .instructions = "%INSTRUCTION HIGHZ = (011) ACCESS BYPASS;",
     .file = "tap_two_levels_above_the_pads"},
    {.name = "the path of the TAP names no instance", .design = "usual", .tap = "none.tap"},
    {.name = "a module on the TAP's path has a port of the TAP's name",
     .design = "tap_down_a_path",
     .pins = "1 A a *\n9 CK ck *\n",
     .tap = "top_a.b.tap",
     .changes = {{"chip.v", "module B(input i,", "module B(input i, shiftDR,"}}},
    {.name = "no port gets a cell", .design = "usual", .pins = "9 CK ck *\n"},
    {.name = "the pad of TDI stands in a module that it does not leave",
     .design = "module sub(input tdi); IBUF pi(.PAD(tdi)); endmodule\n"
               "module chip(input a, input tdi, input ck); wire w; IBUF pa(.PAD(a), .C(w));\n"
               "FF f(.D(w), .CK(ck)); sub s(.tdi(tdi)); endmodule\n",
     .pins = "1 PA a *\n2 CK ck *\n3 TDI tdi *\n"},
};

} // namespace

TEST(Lines, OfPinsThatTheTapTakes) {
    run_rows("taken_pins", TAKEN_PINS, {.pins = "1 A a *\n10 TDO tdo *\n9 CK ck *\n", .options = "-add_tap"});
}

TEST(Lines, OfAddedPads) {
    run_rows("added_pads", ADDED_PADS,
             {.design = "reads",
              .pins = "1 B b *\n9 CK ck *\n",
              .options = "-add_tap -add_pad",
              .settings = "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER OBUF; %INOUT_BUFFER BBUF;"});
}

TEST(Lines, OfCells) {
    run_rows("cells", CELL_LINES);
}

TEST(Lines, OfPlaces) {
    run_rows("places", PLACES, {.design = "pad_module", .options = "-add_tap"});
}
