// Pads in several modules: the edit command files of one design per shape of the tree.
#include "tests/editing/chip_case.hh"

namespace {

/// Cells with few pins, so that a file can be read.
constexpr const char *SMALL_CELL = "module BC_X(input DI, SI, SE, CK, output DO, SO); endmodule\n";
constexpr const char *SMALL_CELL_LIBRARY =
    "%SCAN_CELL BC_X { %DATA_IN DI; %DATA_OUT DO; %TDI SI; %TDO SO; %CLOCK_DR CK; %SHIFT_DR SE; }\n";
constexpr const char *SMALL_ROLES = "%INPUT_SCAN BC_X;";

CHIP_INPUT small_input(const std::string &design, const std::string &pins) {
    CHIP_INPUT input;
    input.design = design;
    input.cells = SMALL_CELL;
    input.library = SMALL_CELL_LIBRARY;
    input.roles = SMALL_ROLES;
    input.pins = pins;
    return input;
}

constexpr const char *SIBLINGS =
    "module pa(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule\n"
    "module pb(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule\n"
    "module chip(input a, b, ck); wire v, w; pa ua(.p(a), .k(v)); pb ub(.p(b), .k(w));\n"
    "FF f(.D(v), .CK(ck)); FF g(.D(w), .CK(ck)); endmodule\n";

constexpr const char *PARENT_AND_CHILD =
    "module low(input p, input o, output q, output k); IBUF i(.PAD(p), .C(k)); OBUF j(.I(o), .PAD(q)); "
    "endmodule\n"
    "module mid(input p, r, input o, output q, output k, m); IBUF i(.PAD(r), .C(m));\n"
    "low u(.p(p), .o(o), .q(q), .k(k)); endmodule\n"
    "module chip(input a, b, e, output y, input ck); wire v, w, x, z;\n"
    "mid m(.p(a), .r(b), .o(z), .q(y), .k(v), .m(w)); IBUF i(.PAD(e), .C(x));\n"
    "FF f(.D(v), .CK(ck), .Q(z)); FF g(.D(w), .CK(ck)); FF h(.D(x), .CK(ck)); endmodule\n";

/// Both parents have a child of one name and class too.
constexpr const char *TWO_INSTANCES =
    "module low(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule\n"
    "module mid(input p, r, output k, m); IBUF i(.PAD(r), .C(m)); low u(.p(p), .k(k)); endmodule\n"
    "module chip(input a, b, d, e, ck); wire v, w, x, z; mid m(.p(a), .r(b), .k(v), .m(w));\n"
    "mid n(.p(d), .r(e), .k(x), .m(z)); FF f(.D(v), .CK(ck)); FF g(.D(w), .CK(ck));\n"
    "FF h(.D(x), .CK(ck)); FF j(.D(z), .CK(ck)); endmodule\n";

constexpr const char *EMPTY_BETWEEN =
    "module low(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule\n"
    "module mid(input p, output k); low u(.p(p), .k(k)); endmodule\n"
    "module chip(input a, b, ck); wire v, w; mid m(.p(a), .k(v)); IBUF i(.PAD(b), .C(w));\n"
    "FF f(.D(v), .CK(ck)); FF g(.D(w), .CK(ck)); endmodule\n";

constexpr const char *FOUR_TIMES =
    "module four(input p, r, s, t, output k, l, m, n); IBUF i(.PAD(p), .C(k)); IBUF j(.PAD(r), .C(l));\n"
    "IBUF h(.PAD(s), .C(m)); IBUF g(.PAD(t), .C(n)); endmodule\n"
    "module chip(input a, b, d, e, f, g, h, ck); wire [6:0] w;\n"
    "four u(.p(a), .r(d), .s(f), .t(h), .k(w[0]), .l(w[2]), .m(w[4]), .n(w[6]));\n"
    "IBUF i1(.PAD(b), .C(w[1])); IBUF i2(.PAD(e), .C(w[3])); IBUF i3(.PAD(g), .C(w[5]));\n"
    "FF f0(.D(w[0]), .CK(ck)); FF f1(.D(w[1]), .CK(ck)); FF f2(.D(w[2]), .CK(ck)); FF f3(.D(w[3]), "
    ".CK(ck));\n"
    "FF f4(.D(w[4]), .CK(ck)); FF f5(.D(w[5]), .CK(ck)); FF f6(.D(w[6]), .CK(ck)); endmodule\n";

struct TREE_CASE {
    const char *name, *design, *pins;
    std::vector<std::string> files; ///< in the order in which the editor runs them
};

const TREE_CASE TREES_OF_MODULES[] = {
    {"multi_two_siblings", SIBLINGS, "1 PA a *\n2 PB b *\n3 CK ck *\n", {"pa_bs0", "pb_bs0", "chip_jtag"}},
    {"multi_parent_and_child",
     PARENT_AND_CHILD,
     "1 PA a *\n2 PB b *\n3 PE e *\n4 Y y *\n5 CK ck *\n",
     {"low_bs0", "mid_bs0", "chip_jtag"}},
    {"multi_two_instances",
     TWO_INSTANCES,
     "1 PA a *\n2 PD d *\n3 PB b *\n4 PE e *\n5 CK ck *\n",
     {"low_bs0", "mid_bs0", "low_bs1", "mid_bs1", "chip_jtag"}},
    {"multi_empty_between",
     EMPTY_BETWEEN,
     "1 PA a *\n2 PB b *\n3 CK ck *\n",
     {"low_bs0", "mid_bs0", "chip_jtag"}},
    {"multi_four_times",
     FOUR_TIMES,
     "1 PA a *\n2 PB b *\n3 PD d *\n4 PE e *\n5 PF f *\n6 PG g *\n7 PH h *\n8 CK ck *\n",
     {"four_bs0", "chip_jtag"}},
};

/// The editor runs the files in this order; one blank stands behind "file" in this flow.
void expect_runs(const run_result &result, const std::vector<std::string> &files) {
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    size_t at = 0;
    for (const std::string &file : files) {
        at = result.out.find("    .Executing command file ./rimweave_lib/" + file + ".cmd ...\n", at);
        ASSERT_NE(at, std::string::npos) << file << " is not run, or too early\n" << result.out;
    }
    EXPECT_NE(result.out.find("\n - Synthesis  done!\n\n", at), std::string::npos) << result.out;
    EXPECT_EQ(result.out.find(" - Synthesizing Boundary Registers"), std::string::npos);
}

/// The bundled tools carry the commands out.
void expect_carried_out(const chip_case &chip, const std::string &options) {
    run_result result = chip.run_in_own_folder(options);
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    EXPECT_TRUE(chip.scratch.has("chip_jtag.v") && chip.scratch.has("chip_jtag_flat.v"));
}

} // namespace

TEST(Multi, TreesOfModules) {
    for (const TREE_CASE &each : TREES_OF_MODULES) {
        SCOPED_TRACE(each.name);
        chip_case chip(small_input(each.design, each.pins));
        expect_runs(chip.run("-add_tap"), each.files);
        expect_commands(each.name, chip.commands(each.files));
        expect_carried_out(chip, "-add_tap");
    }
}

namespace {

/// Cells with a further pin, a clock of their own, and enables that are tied below the top.
constexpr const char *ALL_SIGNALS =
    "module low(input o, r, output q, s, output k); TBUF j(.I(o), .OEN(1'b0), .PAD(q));\n"
    "TBUF h(.I(o), .OEN(1'b0), .PAD(s)); IBUF i(.PAD(r), .C(k)); endmodule\n"
    "module mid(input o, r, output q, s, output k); low u(.o(o), .r(r), .q(q), .s(s), .k(k)); endmodule\n"
    "module chip(input a, r, output y, z, input ck); wire v, w, x; mid m(.o(v), .r(r), .q(y), .s(z), "
    ".k(x));\n"
    "IBUF i(.PAD(a), .C(w)); FF f(.D(w), .CK(ck), .Q(v)); FF g(.D(x), .CK(ck)); endmodule\n";

} // namespace

TEST(Multi, EverySignalGoesThroughTheModules) {
    CHIP_INPUT input = small_input(ALL_SIGNALS, "1 PA a *\n2 Y y *\n3 Z z *\n4 R r *\n5 CK ck *\n");
    input.cells = "module BC_X(input DI, SI, SE, CK, TK, XA, XB, output DO, SO); endmodule\n";
    input.library =
        "%SCAN_CELL BC_X { %DATA_IN DI; %DATA_OUT DO; %TDI SI; %TDO SO; %CLOCK_DR CK; %SHIFT_DR SE; "
        "%TCK TK; %EXTRA_1 XA; %EXTRA_2 XB; }\n";
    input.tap_items =
        "%EXTRA_1 xtra1; %EXTRA_2 xtra2; %HIGHZ_COMMAND highz; %SIGNAL_BUFFER BUFX; %GROUP_SIZE 2; ";
    input.instructions = "%INSTRUCTION HIGHZ = (011) ACCESS BYPASS;";
    chip_case chip(input);
    expect_runs(chip.run("-add_tap -synch"), {"low_bs0", "mid_bs0", "chip_jtag"});
    expect_commands("multi_every_signal", chip.commands({"low_bs0", "mid_bs0", "chip_jtag"}));
    expect_carried_out(chip, "-add_tap -synch");
}

TEST(Multi, TheTdoPadIsReachedAndFreed) {
    // What stands on the pad's pins, in the ring; how the frame's and the top's instance is joined.
    struct DRIVEN {
        const char *what, *data, *enable, *frame_pin, *top_pin;
        const char *ring, *frame, *top;
        bool warned;
    };
    const DRIVEN cases[] = {
        {"nothing", "n", "m", "", "", "connect po{I} vmr_tap_tdo \nconnect po{OEN} TDO_EN \n",
         "connect r{vmr_tap_tdo} vmr_tap_tdo \nconnect r{TDO_EN} TDO_EN \n",
         "connect fr{vmr_tap_tdo} TAP{TDO}\nconnect fr{TDO_EN} TAP{TDO_EN}\n", false},
        {"constants", "1'b0", "1'b1", "", "", "disconnect po{I}\ndisconnect po{OEN}\n",
         "connect r{TDO_EN} TDO_EN \n", "connect fr{vmr_tap_tdo} TAP{TDO}\nconnect fr{TDO_EN} TAP{TDO_EN}\n",
         false},
        {"ports to the top", "d", "1'b0", "d", "", "disconnect po{OEN}\n",
         "add TDO_EN input\nconnect r{TDO_EN} TDO_EN \n",
         "connect fr{d} TAP{TDO}\nconnect fr{TDO_EN} TAP{TDO_EN}\n", false},
        {"a constant in the top", "d", "1'b0", "d", "1'b1", "disconnect po{OEN}\n", "add TDO_EN input\n",
         "disconnect fr{d}\nconnect fr{d} TAP{TDO}\n", false},
        {"a gate in the top", "d", "1'b0", "d", "v", "disconnect po{OEN}\n", "add TDO_EN input\n",
         "disconnect fr{d}\nconnect fr{d} TAP{TDO}\n", true},
        {"a constant in the frame", "d", "1'b0", "1'b1", "", "disconnect po{OEN}\n",
         "disconnect r{d}\nreplace r ring_bs0\nadd vmr_tap_tdo input\n", "connect fr{vmr_tap_tdo} TAP{TDO}\n",
         false},
    };
    for (const DRIVEN &each : cases) {
        SCOPED_TRACE(each.what);
        std::string design =
            std::string(
                "module ring(output q, input d); wire n, m; INV x(.A(n)); INV y(.A(m)); TBUF po(.I(") +
            each.data + "), .OEN(" + each.enable +
            "), .PAD(q)); endmodule\nmodule frame(output q, input d); ring r(.q(q), .d(" + each.frame_pin +
            ")); endmodule\nmodule pa(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule\n"
            "module chip(input a, b, ck, output tdo); wire u, v, w; pa x(.p(a), .k(u)); IBUF i(.PAD(b), "
            ".C(w));\n"
            "frame fr(.q(tdo), .d(" +
            each.top_pin +
            ")); FF f(.D(w), .CK(ck), .Q(v)); FF g(.D(u), .CK(ck)); "
            "endmodule\n";
        chip_case chip(small_input(design, "1 PA a *\n2 PB b *\n3 CK ck *\n4 TDO tdo *\n"));
        run_result result = chip.run("-add_tap");
        EXPECT_EQ(result.status, 0) << result.out;
        EXPECT_EQ(result.out.find("is driven by the design") != std::string::npos, each.warned) << result.out;
        auto has = [&chip](const char *file, const char *lines) {
            std::string text = chip.scratch.read(std::string("rimweave_lib/") + file + ".cmd");
            EXPECT_NE(text.find(lines), std::string::npos) << lines << "is not in\n" << text;
        };
        has("ring_bs0", each.ring);
        has("frame_bs0", each.frame);
        has("chip_jtag", each.top);
        expect_carried_out(chip, "-add_tap");
    }
}

TEST(Multi, ChainPortsOfCellsInPadsDiffer) {
    CHIP_INPUT input = small_input(
        "module low(input p, output k); BSIN pad(.PAD(p), .C(k)); endmodule\n"
        "module mid(input p, r, output k, l); low u(.p(p), .k(k)); low v(.p(r), .k(l)); endmodule\n"
        "module chip(input a, b, e, ck); wire v, w, x; mid m(.p(a), .r(b), .k(v), .l(w)); IBUF i(.PAD(e), "
        ".C(x));\n"
        "FF f(.D(v), .CK(ck)); FF g(.D(w), .CK(ck)); FF h(.D(x), .CK(ck)); endmodule\n",
        "1 PA a *\n2 PE e *\n3 PB b *\n4 CK ck *\n");
    input.cells += "module BSIN(input PAD, SI, SE, CK, output C, SO); endmodule\n";
    input.library +=
        "%BS_BUFFER BSIN { %INPUT PAD; %OUTPUT C; %TDI SI; %TDO SO; %SHIFT_DR SE; %CLOCK_DR CK; }\n";
    chip_case chip(input);
    EXPECT_EQ(chip.run("-add_tap").status, 0);
    std::string middle = chip.scratch.read("rimweave_lib/mid_bs0.cmd");
    EXPECT_NE(middle.find("connect u{pad_SI} pad_SI \n"), std::string::npos) << middle;
    EXPECT_NE(middle.find("connect v{pad_SI_2} pad_SI_2 \n"), std::string::npos) << middle;
    expect_carried_out(chip, "-add_tap");
}

TEST(Multi, AnExistingTapIsFreedOfConstants) {
    CHIP_INPUT input =
        small_input("module pa(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule\n"
                    "module chip(input a, b, ck, tdi, tms, tck, output tdo); wire v, w; pa ua(.p(a), .k(v)); "
                    "pa ub(.p(b), .k(w));\n"
                    "IBUF i(.PAD(tdi)); FF f(.D(v), .CK(ck)); FF g(.D(w), .CK(ck));\n"
                    "tapm TAP(.BC_LAST(1'b0), .TDI(tdi), .TMS(tms), .TCK(tck), .TDO(tdo)); endmodule\n",
                    "1 PA a *\n2 PB b *\n3 CK ck *\n");
    input.cells +=
        "module tapm(input TDI, TMS, TCK, BC_LAST, output TDO, TDO_EN, clockDR, shiftDR, BC_FIRST); "
        "endmodule\n";
    chip_case chip(input);
    EXPECT_EQ(chip.run("").status, 0);
    std::string top = chip.scratch.read("rimweave_lib/chip_jtag.cmd");
    EXPECT_TRUE(
        top.starts_with("edit chip_jtag\npath ./rimweave_lib \ndisconnect TAP{BC_LAST}\nreplace ua pa_bs0\n"))
        << top;
    EXPECT_EQ(top.find("TAP{TDI}"), std::string::npos) << top;
    expect_carried_out(chip, "");
}
