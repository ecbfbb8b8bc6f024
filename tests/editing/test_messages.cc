// What the emission of the lines refuses or warns of: one row each, on a small chip that the row changes.
#include "sdb/navigation.hh"
#include "sdb/sdb_writer.hh"
#include "tests/editing/chip_case.hh"

namespace {

constexpr const char *READS = "module chip(inout b, input ck); INV g(.A(b)); endmodule\n";
constexpr const char *B_PINS = "1 B b *\n9 CK ck *\n";
constexpr const char *DEFAULT_PADS = "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER OBUF; %INOUT_BUFFER BBUF;";
constexpr const char *HIGHZ = "%HIGHZ_COMMAND highz; %SIGNAL_BUFFER BUFX; ";
constexpr const char *HIGHZ_OPCODE = "%INSTRUCTION HIGHZ = (011) ACCESS BYPASS;";
constexpr const char *TRB_BUFFER = "%BUFFER TRB { %INPUT A; %OUTPUT Z; }";
/// A transparent buffer stands behind the input pad and one before the output pad.
const CHIP_INPUT TRANSPARENT = {
    .design = "module chip(input a, output y, input ck); wire c, t, q, u; IBUF pa(.PAD(a), .C(t)); TRB "
              "ta(.A(t), .Z(c));\n"
              "FF f(.D(c), .CK(ck), .Q(q)); TRB ty(.A(q), .Z(u)); OBUF py(.I(u), .PAD(y)); endmodule\n",
    .settings = "%TRANSPARENT_BUFFER { TRB; }",
    .pins = "1 PA a *\n2 PY y *\n9 CK ck *\n"};

const CHIP_ROW PADS[] = {
    {.what = "an output pad that nothing feeds",
     .changes = {{"chip.v", "py(.I(q)", "py(.I(open)"}},
     .expected = "ERROR: Output Pad 'py' is floating.\n"
                 "       Please correct your SDB or specify pin 'y' as skip signal.\n\n"},
    {.what = "a transparent buffer whose net has other readers",
     .input = TRANSPARENT,
     .changes = {{"chip.v", "OBUF py", "INV n(.A(t)); OBUF py"}},
     .expected = "WARNING: transparent buffer 'ta' shares its net at pad 'pa' with other pins.\n"
                 "         Boundary scan cell of port 'a' will be inserted next to the pad.\n\n",
     .status = 0,
     .lines = "disconnect pa{C}\nconnect BCELL0{DO} ta{A}\nconnect BCELL0{DI} pa{C}\n"},
    {.what = "a transparent buffer that is not described",
     .input = TRANSPARENT,
     .changes = {{"chip.lib", TRB_BUFFER, ""}},
     .expected = "FATAL: can't find the definition of buffer 'TRB' "},
    {.what = "a transparent buffer without %OUTPUT",
     .input = TRANSPARENT,
     .changes = {{"chip.lib", TRB_BUFFER, "%BUFFER TRB { %INPUT A; }"}},
     .expected = "ERROR: (./chip.lib) can't find %OUTPUT in %BUFFER TRB\n\n"},
    {.what = "a transparent buffer without the %INPUT that is described",
     .input = TRANSPARENT,
     .changes = {{"chip.lib", TRB_BUFFER, "%BUFFER TRB { %INPUT Q; %OUTPUT Z; }"}},
     .expected = "ERROR: (./chip.lib) %INPUT Q specified in %BUFFER TRB\n"
                 "       can't be found in file './chip.c.sdb'"},
    {.what = "the pad cell of an input port",
     .input = {.design = "module chip(input a, ck); INV g(.A(a)); endmodule\n",
               .cells = "module IB2(input P, IE, inout VDD, output Q); endmodule\n",
               .library = "%BUFFER IB2 { %INPUT P; %OUTPUT Q; }",
               .settings = DEFAULT_PADS,
               .pins = "1 A a * PAD(IB2)\n"},
     .options = "-add_tap -add_pad",
     .expected = "WARNING: these pins of added pads are not connected:\n         IB2: VDD, IE\n"
                 "         Please connect them in the netlist, or wrap the pad in a module that does.\n\n",
     .status = 0,
     .lines = "add B_PAD0 IB2\ndisconnect a\nconnect B_PAD0{P} a\nconnect g{A} BCELL0{DO}\n"
              "connect BCELL0{DI} B_PAD0{Q}\n"},
    {.what = "a bidirectional cell for the output pads",
     .input = {.design = READS, .settings = "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER BBUF;", .pins = B_PINS},
     .options = "-add_tap -add_pad",
     .expected =
         "ERROR: (./chip.bsc) %OUTPUT_BUFFER 'BBUF' is a bidirectional pad, which -add_pad can't use for one "
         "direction.\n       Please wrap it in a module with one input and one output, describe that "
         "module\n       in a %BUFFER of file './chip.lib' and name it instead.\n"},
    {.what = "the pad cell of a bidirectional port has no %INOUT",
     .input = {.design = READS, .settings = DEFAULT_PADS, .pins = "1 B b * PAD(TBUF)\n9 CK ck *\n"},
     .options = "-add_tap -add_pad",
     .expected = "ERROR: (./chip.lib) can't find %INOUT in %BUFFER TBUF.\n"},
    {.what = "no pad cell for a bidirectional port",
     .input = {.design = READS, .settings = "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER OBUF;", .pins = B_PINS},
     .options = "-add_tap -add_pad",
     .expected = "ERROR: (./chip.lib) can't find %EN_L or %EN_H in %BUFFER %INOUT_BUFFER\n"
                 "       to add a bidirectional pad to port 'b'.\n\n"},
    {.what = "no control cell for an added pad",
     .input = {.design = READS, .settings = DEFAULT_PADS, .pins = B_PINS},
     .changes = {{"chip.bsc", "%CONTROL_SCAN BC_CTL;", ""}},
     .options = "-add_tap -add_pad",
     .expected = "ERROR: (./chip.bsc) can't find the scan cells for port 'b' in %SCAN_CELLS.\n\n"},
};

const CHIP_ROW ENABLES[] = {
    {.what = "an enable with readers alone",
     .changes = {{"chip.v", ".Q(en)", ""}, {"chip.v", ".CK(ck), )", ".CK(ck))"}},
     .expected = "ERROR: Can not find the source of enable pin 'z' to connect to BCELL.\n"},
    {.what = "the command for high impedance has no instruction",
     .input = {.tap_items = HIGHZ},
     .changes = {{"chip.v", "pz(.I(q), .OEN(en)", "pz(.I(q), .OEN(1'b0)"}},
     .expected = "ERROR: (./chip.bsc) pad 'pz' needs the high impedance command of the TAP,\n"
                 "       which the TAP has only with an instruction HIGHZ in %INSTRUCTION_TABLE.\n\n"},
    {.what = "differential pads on the command for high impedance",
     .input = {.tap_items = HIGHZ, .instructions = HIGHZ_OPCODE},
     .changes = {{"chip.v", "output z,", "output z, zm, x, xm,"},
                 {"chip.v", "TBUF pz(.I(q), .OEN(en), .PAD(z))",
                  "DTB pz(.I(q), .OEN(1'b0), .PP(z), .PM(zm)); DTB px(.I(q), .OEN(1'b0), .PP(x), .PM(xm))"},
                 {"chip.pin", "4 PB", "5 ZM zm *\n6 PX x *\n7 XM xm *\n4 PB"}},
     .expected = "WARNING: the enable of differential pad 'px' won't be connected\n"
                 "         to the high impedance command of the TAP.\n\n",
     .status = 0,
     .lines = "add highz_buf0 BUFX\ndisconnect pz{OEN}\nconnect highz_buf0{Z} pz{OEN}\n"
              "connect highz_buf0{A} TAP{highz}\nadd BCELL3 BC_OUT\n"},
};

/// A cell that the pin file names for one port alone.
constexpr const char *M2_PINS = "1 PA a * BSC(BC_M2)\n2 PY y *\n3 PZ z *\n4 PB b *\n9 CK ck *\n";
constexpr const char *WITH_TAP_PINS =
    "1 A a *\n6 TDI tdi *\n7 TMS tms *\n8 TCK tck *\n10 TDO tdo *\n9 CK ck *\n";

constexpr const char *A_PINS = "1 A a *\n9 CK ck *\n";
constexpr const char *OLD_TAP =
    "module chip(input a, ck); wire c; IBUF pa(.PAD(a), .C(c)); FF f(.D(c), .CK(ck));\n"
    "tapm TAP(.BC_LAST(1'b1)); endmodule\n";
constexpr const char *MUX_PAD_ON_OLD_TAP =
    "module chip(input a, ck); wire c; MUXI pa(.PAD(a), .C(c)); FF f(.D(c), .CK(ck));\n"
    "tapm TAP(.BC_LAST(1'b1)); endmodule\n";
constexpr const char *SIBLING_PINS = "1 A a *\n2 B b *\n6 TDI tdi *\n10 TDO tdo *\n9 CK ck *\n";
constexpr const char *GAP_CELL = "module BC_G(input DI, SI, SE, CK, XB, output DO, SO); endmodule\n";
constexpr const char *GAP_LIBRARY =
    "%SCAN_CELL BC_G { %DATA_IN DI; %DATA_OUT DO; %TDI SI; %TDO SO; %CLOCK_DR CK; "
    "%SHIFT_DR SE; %EXTRA_2 XB; }\n";
constexpr const char *MUX_ROLE = "%INPUT_MUX_SCAN BC_MI;";

const CHIP_ROW SIGNALS[] = {
    {.what = "no inverter for an active-low signal that a pad alone needs",
     .input =
         {.design = MUX_PAD_ON_OLD_TAP, .tap_items = "%MODE_2 -mode2; ", .roles = MUX_ROLE, .pins = A_PINS},
     .options = "",
     .expected = "ERROR: (./chip.lib) can't find %INV_BUFFER in %TAP_CONTROLLER\n"
                 "       to bring the active low signal 'mode2' to the boundary cells.\n\n"},
    {.what = "no inverting buffer for a tree",
     .input = {.design = MUX_PAD_ON_OLD_TAP,
               .tap_items = "%MODE_2 -mode2; %GROUP_SIZE 4; %SIGNAL_BUFFER BUFX; ",
               .roles = MUX_ROLE,
               .pins = A_PINS},
     .options = "",
     .expected = "ERROR: (./chip.lib) no buffer cell is named in %TAP_CONTROLLER for signal 'mode2'.\n\n"},
    {.what = "the TAP has no such signal",
     .input =
         {.design = OLD_TAP, .tap_items = "%EXTRA_2 xtra; ", .roles = "%INPUT_SCAN BC_X;", .pins = A_PINS},
     .options = "",
     .expected =
         "ERROR: (./chip.lib) %TAP_CONTROLLER has no pin for the extra1 signal of the boundary cells.\n\n"},
    {.what = "a number of the extra pins is left out, with trees",
     .input = {.design = OLD_TAP,
               .cells = GAP_CELL,
               .tap_items = "%EXTRA_2 xtra; %GROUP_SIZE 4; %SIGNAL_BUFFER BUFX; ",
               .library = GAP_LIBRARY,
               .roles = "%INPUT_SCAN BC_G;",
               .pins = A_PINS},
     .options = "",
     .status = 0,
     .lines = "connect TAP{clockDR} clock_buf_1_1{A}\nadd extra2_buf_1_1 BUFX\n"
              "connect TAP{xtra} extra2_buf_1_1{A}\nconnect BCELL0{SO} TAP{BC_LAST}\n"},
    {.what = "the same with pads in several modules",
     .design = "siblings",
     .input = {.cells = GAP_CELL,
               .tap_items = "%EXTRA_1 xtra1; %EXTRA_2 xtra; %GROUP_SIZE 4; %SIGNAL_BUFFER BUFX; ",
               .library = GAP_LIBRARY,
               .roles = "%INPUT_SCAN BC_G;",
               .pins = SIBLING_PINS},
     .status = 0,
     .lines = "add clock_buf_1_1 BUFX\nconnect clock_buf_1_1{A} clockDR\nadd extra2_buf_1_1 BUFX\n"
              "connect extra2_buf_1_1{A} xtra\nconnect BCELL0{CK} clock_buf_1_1{Z}\n"},
    {.what = "a signal that no cell but one of the pin file has",
     .input = {.tap_items = "%MODE_2 mode2; ", .pins = M2_PINS},
     .status = 0,
     .lines = "connect BCELL0{M2} TAP{mode2}\n"},
    {.what = "a TAP down a path, with the clock of the cells",
     .design = "tap_in_module",
     .input = {.tap = "b.t", .pins = WITH_TAP_PINS},
     .options = "-synch",
     .status = 0,
     .lines =
         "add BCELL_TCK output\nconnect t{BCELL_TCK} BCELL_TCK\nadd BC_FIRST output\nconnect t{BC_FIRST} "
         "BC_FIRST\n"
         "add BC_LAST input\nconnect t{BC_LAST} BC_LAST\nsave\nquit\nedit chip_jtag\npath ./rimweave_lib \n"
         "replace b B_bs\nreplace p pads_bs\nconnect p{shiftDR} b{shiftDR}\n"},
    {.what = "a constant on a standard pin of the TAP beside a pad module",
     .input = {.design =
                   "module pads(input a, output c); IBUF pa(.PAD(a), .C(c)); endmodule\n"
                   "module chip(input a, tdi, ck); wire c; pads p(.a(a), .c(c)); FF f(.D(c), .CK(ck));\n"
                   "IBUF pi(.PAD(tdi)); tapm TAP(.TDI(1'b0)); endmodule\n",
               .pins = "1 A a *\n6 TDI tdi *\n9 CK ck *\n"},
     .options = "",
     .expected =
         "WARNING: Pin 'TDI' of TAP 'TAP' was connected to GND.\n         'TDI' will be disconnected.\n"
         "WARNING: Pin 'TMS' of TAP 'TAP' is not connected in the design.\n"
         "         It won't be connected to port 'tms'.\n",
     .status = 0,
     .lines = "disconnect TAP{TDI}\nreplace p pads_bs\nconnect pi{C} TAP{TDI}\n"},
};

const CHIP_INPUT IN_ONE_MODULE = {
    .design = "module pads(input a, output k, input tdi, output t); IBUF i(.PAD(a), .C(k));\n"
              "IBUF j(.PAD(tdi), .C(t)); endmodule\n"
              "module chip(input a, tdi, ck); wire c, t; INV g(.A(t));\n"
              "pads p(.a(a), .k(c), .tdi(tdi), .t(t)); FF f(.D(c), .CK(ck)); endmodule\n",
    .pins = "1 A a *\n6 TDI tdi *\n9 CK ck *\n"};
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

const CHIP_ROW FILES[] = {
    {.what = "a TAP path with pads in several modules",
     .design = "siblings",
     .input = {.tap = "u.TAP", .pins = SIBLING_PINS},
     .expected = "ERROR: Can not support hierarchic TAP controller for multiple IO-PAD modules.\n\n"},
    {.what = "a module is missing",
     .design = "siblings",
     .input = {.pins = SIBLING_PINS},
     .before = "rm pb.sdb",
     .expected = "ERROR: Can not find \"pb.sdb\" file.\n\n"},
    {.what = "a port name is taken",
     .design = "siblings",
     .input = {.pins = SIBLING_PINS},
     .changes = {{"chip.v", "module pb(input p", "module pb(input shiftDR, p"}},
     .expected = "ERROR: module 'pb' has a port 'shiftDR' already"},
    {.what = "a module can't be copied",
     .design = "siblings",
     .input = {.pins = SIBLING_PINS},
     .before = CP_THAT("pb_bs0.sdb", "exit 3"),
     .expected = "\nERROR: can not copy file \"./pb.sdb\" to file \"pb_bs0.sdb\".\n       Perhaps permission "
                 "deny ...\n\n"},
    {.what = "a command file can't be written at its end",
     .design = "siblings",
     .input = {.pins = SIBLING_PINS},
     .before = CP_THAT("pb_bs0.sdb", "mkdir rimweave_lib/pa_bs0.cmd"),
     .expected = "ERROR: can't open command file \"./rimweave_lib/pa_bs0.cmd\" to update SDB.\n"},
    {.what = "the top's command file can't be begun",
     .before = "mkdir -p rimweave_lib/chip_jtag.cmd/x",
     .expected = "ERROR: can't open ./rimweave_lib/chip_jtag.cmd to update sdb.\n\n"},
    {.what = "the pads' command file can't be begun",
     .input = IN_ONE_MODULE,
     .before = "mkdir -p rimweave_lib/pads_bs.cmd/x",
     .expected = "ERROR: can't open command file './rimweave_lib/pads_bs.cmd' to update SDB.\n\n"},
    {.what = "the command file of the TAP's path can't be begun",
     .design = "tap_in_module",
     .input = {.tap = "b.t", .pins = WITH_TAP_PINS},
     .options = "",
     .before = "mkdir -p rimweave_lib/B_bs.cmd/x",
     .expected = "ERROR: can't open command file \"./rimweave_lib/B_bs.cmd\" to update SDB.\n"},
    {.what = "the module of the pads is missing",
     .input = IN_ONE_MODULE,
     .before = "rm pads.sdb",
     .expected = "ERROR: Can't find file pads.sdb.\n\n"},
    {.what = "a module of the TAP's path is missing",
     .design = "tap_in_module",
     .input = {.tap = "b.t", .pins = WITH_TAP_PINS},
     .options = "",
     .before = "rm B.sdb",
     .expected = "ERROR: Can not find \"B.sdb\" file.\n\n"},
    {.what = "the pads' module was read again, without a pad",
     .input = IN_ONE_MODULE,
     .before = READ_AGAIN_1,
     .expected = "ERROR: pin 'C' of 'j' on the way of port 'tdi' can't be found in module 'pads'.\n\n"},
    {.what = "one of several modules was read again, without a pad",
     .design = "siblings",
     .input = {.pins = SIBLING_PINS},
     .before = READ_AGAIN_2,
     .expected = "ERROR: pin 'C' of 'j' on the way of port 'tdi' can't be found in module 'pa'.\n\n"},
    {.what = "a constant on a TAP that stands beside pads in several modules",
     .design = "siblings",
     .input = {.pins = SIBLING_PINS},
     .changes = {{"chip.v", "wire v, w, t;", "wire v, w, t; tapm TAP(.BC_LAST(1'b0));"}},
     .options = "",
     .status = 0,
     .lines = "disconnect TAP{BC_LAST}\nreplace "},
    {.what = "pads in several modules, and a TAP that stands there already",
     .design = "siblings",
     .input = {.pins = SIBLING_PINS},
     .changes = {{"chip.v", "wire v, w, t;", "wire v, w, t, o; tapm TAP(.TDI(t), .TDO(o));"},
                 {"chip.v", ".d(t)", ".d(o)"},
                 {"chip.v", "po(.I(g)", "po(.I(d)"},
                 {"chip.v", "IBUF j(.PAD(tdi), .C(t))", "IBUF j(.PAD(tdi)); INV h(.A(k), .Z(t))"}},
     .options = "",
     .expected = "WARNING: Pin 'TMS' of TAP 'TAP' is not connected in the design.\n"
                 "         It won't be connected to port 'tms'.\n"
                 "WARNING: Pin 'TCK' of TAP 'TAP' is not connected in the design.\n",
     .status = 0,
     .lines = "edit pb_bs0\npath ./rimweave_lib \nadd BCELL1 BC_IN\n"},
};

} // namespace

TEST(Messages, OfPads) {
    run_rows(PADS);
}

TEST(Messages, OfEnables) {
    run_rows(ENABLES);
}

TEST(Messages, OfSignals) {
    run_rows(SIGNALS);
}

TEST(Messages, OfFiles) {
    run_rows(FILES);
}

TEST(Messages, ASupplyNetIsNamedAsTheSourceOfAnEnable) {
    CHIP_INPUT input;
    input.design = test_file("designs/usual.v");
    input.pins = USUAL_PINS;
    chip_case chip(input);
    for (const char *file : {"chip.sdb", "chip.c.sdb"}) { // as another program may have written them
        SDB_HANDLE *design = SDB_setup(SDB_open(chip.scratch.path(file).c_str(), "r+", 0));
        net_tab[node_tab[SDB_nl_search_node("pz", "OEN")].net].flags |= 0x10000000;
        SDB_close(design, 1);
        SDB_clear_current();
    }
    run_result result = chip.run("-add_tap");
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    EXPECT_NE(chip.commands({"chip_jtag"}).find("disconnect pz{OEN}\nconnect BCELL3{DI} en\n"),
              std::string::npos);
}
