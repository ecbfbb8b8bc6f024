// What the emission of the lines refuses or warns of: one row each, on a small chip that the row changes.
#include "sdb/navigation.hh"
#include "tests/editing/chip_case.hh"
#include "tests/support/sdb_writer.hh"

namespace {

constexpr const char *DEFAULT_PADS = "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER OBUF; %INOUT_BUFFER BBUF;";
constexpr const char *HIGHZ = "%HIGHZ_COMMAND highz; %SIGNAL_BUFFER BUFX; ";
constexpr const char *TRB_BUFFER = "%BUFFER TRB { %INPUT A; %OUTPUT Z; }";

const CHIP PADS[] = {
    {.name = "an output pad that nothing feeds",
     .design = "usual",
     .changes = {{"chip.v", "py(.I(q)", "py(.I(open)"}}},
    {.name = "a transparent buffer whose net has other readers",
     .changes = {{"chip.v", "OBUF py", "INV n(.A(t)); OBUF py"}}},
    {.name = "a transparent buffer that is not described", .changes = {{"chip.lib", TRB_BUFFER, ""}}},
    {.name = "a transparent buffer without %OUTPUT",
     .changes = {{"chip.lib", TRB_BUFFER, "%BUFFER TRB { %INPUT A; }"}}},
    {.name = "a transparent buffer without the %INPUT that is described",
     .changes = {{"chip.lib", TRB_BUFFER, "%BUFFER TRB { %INPUT Q; %OUTPUT Z; }"}}},
    {.name = "the pad cell of an input port",
     .design = "module chip(input a, ck); INV g(.A(a)); endmodule\n",
     .pins = "1 A a * PAD(IB2)\n",
     .options = "-add_tap -add_pad",
     .settings = DEFAULT_PADS},
    {.name = "a bidirectional cell for the output pads",
     .design = "reads",
     .options = "-add_tap -add_pad",
     .settings = "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER BBUF;"},
    {.name = "the pad cell of a bidirectional port has no %INOUT",
     .design = "reads",
     .pins = "1 B b * PAD(TBUF)\n9 CK ck *\n",
     .options = "-add_tap -add_pad",
     .settings = DEFAULT_PADS},
    {.name = "no pad cell for a bidirectional port",
     .design = "reads",
     .options = "-add_tap -add_pad",
     .settings = "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER OBUF;"},
    {.name = "no control cell for an added pad",
     .design = "reads",
     .options = "-add_tap -add_pad",
     .settings = DEFAULT_PADS,
     .changes = {{"chip.bsc", "%CONTROL_SCAN BC_CTL;", ""}}},
};

const CHIP ENABLES[] = {
    {.name = "an enable with readers alone",
     .changes = {{"chip.v", ".Q(en)", ""}, {"chip.v", ".CK(ck), )", ".CK(ck))"}}},
    {.name = "the command for high impedance has no instruction",
     .tap_items = HIGHZ,
     .changes = {{"chip.v", "pz(.I(q), .OEN(en)", "pz(.I(q), .OEN(1'b0)"}}},
    {.name = "differential pads on the command for high impedance",
     .tap_items = HIGHZ,
     .instructions = "%INSTRUCTION HIGHZ = (011) ACCESS BYPASS;",
     .changes = {{"chip.v", "output z,", "output z, zm, x, xm,"},
                 {"chip.v", "TBUF pz(.I(q), .OEN(en), .PAD(z))",
                  "DTB pz(.I(q), .OEN(1'b0), .PP(z), .PM(zm)); DTB px(.I(q), .OEN(1'b0), .PP(x), .PM(xm))"},
                 {"chip.pin", "4 PB", "5 ZM zm *\n6 PX x *\n7 XM xm *\n4 PB"}}},
};

const CHIP SIGNALS[] = {
    {.name = "no inverter for an active-low signal that a pad alone needs",
     .design = "old_tap_and_mux_pad",
     .roles = "%INPUT_MUX_SCAN BC_MI;",
     .tap_items = "%MODE_2 -mode2; "},
    {.name = "no inverting buffer for a tree",
     .design = "old_tap_and_mux_pad",
     .roles = "%INPUT_MUX_SCAN BC_MI;",
     .tap_items = "%MODE_2 -mode2; %GROUP_SIZE 4; %SIGNAL_BUFFER BUFX; "},
    {.name = "the TAP has no such signal",
     .design = "old_tap",
     .roles = "%INPUT_SCAN BC_X;",
     .tap_items = "%EXTRA_2 xtra; "},
    {.name = "a number of the extra pins is left out, with trees",
     .design = "old_tap",
     .roles = "%INPUT_SCAN BC_G;",
     .tap_items = "%EXTRA_2 xtra; %GROUP_SIZE 4; %SIGNAL_BUFFER BUFX; "},
    {.name = "the same with pads in several modules",
     .design = "siblings",
     .options = "-add_tap",
     .roles = "%INPUT_SCAN BC_G;",
     .tap_items = "%EXTRA_1 xtra1; %EXTRA_2 xtra; %GROUP_SIZE 4; %SIGNAL_BUFFER BUFX; "},
    {.name = "a signal that no cell but one of the pin file has",
     .pins = "1 PA a * BSC(BC_M2)\n2 PY y *\n3 PZ z *\n4 PB b *\n9 CK ck *\n",
     .options = "-add_tap",
     .tap_items = "%MODE_2 mode2; "},
    {.name = "a TAP down a path, with the clock of the cells",
     .design = "tap_in_module",
     .options = "-synch",
     .tap = "b.t"},
    {.name = "a constant on a standard pin of the TAP beside a pad module",
     .design = "module pads(input a, output c); IBUF pa(.PAD(a), .C(c)); endmodule\n"
               "module chip(input a, tdi, ck); wire c; pads p(.a(a), .c(c)); FF f(.D(c), .CK(ck));\n"
               "IBUF pi(.PAD(tdi)); tapm TAP(.TDI(1'b0)); endmodule\n",
     .pins = "1 A a *\n6 TDI tdi *\n9 CK ck *\n"},
};

/// A module that was read again since, without its pad j.
constexpr const char *READ_AGAIN_1 =
    "echo 'module pads(input a, output k, input tdi, output t); IBUF i(.PAD(a), .C(k));"
    " INV n(.A(tdi), .Z(t)); endmodule' >pads.v; kalmverin pads.v";
constexpr const char *READ_AGAIN_2 =
    "echo 'module pa(input p, output k, input tdi, output t); IBUF i(.PAD(p), .C(k));"
    " INV n(.A(tdi), .Z(t)); endmodule' >pa.v; kalmverin pa.v";

/// A cp that does something of its own for one copy.
#define CP_THAT(condition, action)                                                                           \
    "printf '#!/bin/sh\n[ $2 = " condition " ] && " action                                                   \
    "\nexec /bin/cp \"$@\"\n' >tools/cp; chmod +x tools/cp"

const CHIP FILES[] = {
    {.name = "a TAP path with pads in several modules", .tap = "u.TAP"},
    {.name = "a module is missing", .before = "rm pb.sdb"},
    {.name = "a port name is taken",
     .changes = {{"chip.v", "module pb(input p", "module pb(input shiftDR, p"}}},
    {.name = "a module can't be copied", .before = CP_THAT("pb_bs0.sdb", "exit 3")},
    {.name = "a command file can't be written at its end",
     .before = CP_THAT("pb_bs0.sdb", "mkdir rimweave_lib/pa_bs0.cmd")},
    {.name = "the top's command file can't be begun",
     .design = "usual",
     .before = "mkdir -p rimweave_lib/chip_jtag.cmd/x"},
    {.name = "the pads' command file can't be begun",
     .design = "in_one_module",
     .before = "mkdir -p rimweave_lib/pads_bs.cmd/x"},
    {.name = "the command file of the TAP's path can't be begun",
     .design = "tap_in_module",
     .options = "",
     .tap = "b.t",
     .before = "mkdir -p rimweave_lib/B_bs.cmd/x"},
    {.name = "the module of the pads is missing", .design = "in_one_module", .before = "rm pads.sdb"},
    {.name = "a module of the TAP's path is missing",
     .design = "tap_in_module",
     .options = "",
     .tap = "b.t",
     .before = "rm B.sdb"},
    {.name = "the pads' module was read again, without a pad",
     .design = "in_one_module",
     .before = READ_AGAIN_1},
    {.name = "one of several modules was read again, without a pad", .before = READ_AGAIN_2},
    {.name = "a constant on a TAP that stands beside pads in several modules",
     .options = "",
     .changes = {{"chip.v", "wire v, w, t;", "wire v, w, t; tapm TAP(.BC_LAST(1'b0));"}}},
    {.name = "pads in several modules, and a TAP that stands there already",
     .options = "",
     .changes = {{"chip.v", "wire v, w, t;", "wire v, w, t, o; tapm TAP(.TDI(t), .TDO(o));"},
                 {"chip.v", ".d(t)", ".d(o)"},
                 {"chip.v", "po(.I(g)", "po(.I(d)"},
                 {"chip.v", "IBUF j(.PAD(tdi), .C(t))", "IBUF j(.PAD(tdi)); INV h(.A(k), .Z(t))"}}},
};

} // namespace

TEST(Messages, OfPads) {
    run_rows(
        "pads", PADS,
        {.design = "transparent_buffers", .options = "-add_tap", .settings = "%TRANSPARENT_BUFFER { TRB; }"});
}

TEST(Messages, OfEnables) {
    run_rows("enables", ENABLES);
}

TEST(Messages, OfSignals) {
    run_rows("signals", SIGNALS, {.options = ""});
}

TEST(Messages, OfFiles) {
    run_rows("files", FILES, {.design = "siblings", .options = "-add_tap"});
}

TEST(Messages, ASupplyNetIsNamedAsTheSourceOfAnEnable) {
    chip_case chip({});
    for (const char *file : {"chip.sdb", "chip.c.sdb"}) { // as another program may have written them
        SDB_HANDLE *design = SDB_setup(SDB_open(chip.scratch.path(file).c_str(), "r+", 0));
        net_tab[node_tab[SDB_nl_search_node("pz", "OEN")].net].flags |= 0x10000000;
        SDB_close(design, 1);
        SDB_clear_current();
    }
    succeed(chip.run("-add_tap"));
    expect_part(chip.commands("chip_jtag"), "disconnect pz{OEN}\nconnect BCELL3{DI} en\n");
}
