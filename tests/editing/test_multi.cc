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

struct TREE_CASE {
    const char *name, *design, *pins;
    std::vector<std::string> files; ///< in the order in which the editor runs them
};

const TREE_CASE TREES_OF_MODULES[] = {
    {"multi_parent_and_child",
     PARENT_AND_CHILD,
     "1 PA a *\n2 PB b *\n3 PE e *\n4 Y y *\n5 CK ck *\n",
     {"low_bs0", "mid_bs0", "chip_jtag"}},
    {"multi_two_instances",
     TWO_INSTANCES,
     "1 PA a *\n2 PD d *\n3 PB b *\n4 PE e *\n5 CK ck *\n",
     {"low_bs0", "mid_bs0", "low_bs1", "mid_bs1", "chip_jtag"}},
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
