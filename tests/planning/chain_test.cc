// The order of the chain, who makes which control cell or buffer, the trees, and designs of several I/O
// modules.
#include "tests/planning/planned_chip.hh"

namespace {

constexpr const char *FOUR_INPUTS = R"(module chip(input a, b, c, d, output tdo, inout e);
IBUF pa(.PAD(a), .C(na)); IBUF pb(.PAD(b), .C(nb)); IBUF pc(.PAD(c), .C(nc)); IBUF pd(.PAD(d), .C(nd));
OBUF po(.I(no), .PAD(tdo)); GATE u(.A(na), .B(nb), .Z(no)); GATE v(.A(nc), .B(nd)); GATE w(.A(e)); endmodule)";
constexpr const char *THREE_OUTPUTS = R"(module chip(output x, y, z); GATE u(.Z(e));
TBUF px(.I(nx), .OEN(e), .PAD(x)); TBUF py(.I(ny), .OEN(e), .PAD(y)); TBUF pz(.I(nz), .OEN(e), .PAD(z));
GATE gx(.Z(nx)); GATE gy(.Z(ny)); GATE gz(.Z(nz)); endmodule)";
constexpr const char *TIED_OUTPUTS = R"(module chip(output x, y, z);
TBUF px(.I(nx), .OEN(1'b1), .PAD(x)); TBUF py(.I(ny), .OEN(1'b0), .PAD(y)); TBUF pz(.I(nz), .OEN(1'b1), .PAD(z));
GATE gx(.Z(nx)); GATE gy(.Z(ny)); GATE gz(.Z(nz)); endmodule)";
constexpr const char *TIED_HIGH = R"(module chip(output x, y); HBUF px(.I(nx), .EN(1'b1), .PAD(x));
OBUF py(.I(ny), .PAD(y)); GATE gx(.Z(nx)); GATE gy(.Z(ny)); endmodule)";
constexpr const char *MUX_BESIDE_INPUTS =
    R"(module chip(input a, b, c, d, m); IBUF pa(.PAD(a), .C(na)); IBUF pb(.PAD(b), .C(nb));
IBUF pc(.PAD(c), .C(nc)); IBUF pd(.PAD(d), .C(nd)); MUXI pm(.PAD(m), .C(nm));
GATE u(.A(na), .B(nb)); GATE v(.A(nc), .B(nd)); GATE w(.A(nm)); endmodule)";
constexpr const char *MUX_PINS = "1 A a *\n2 B b *\n3 C0 c *\n4 D d *\n5 M m *\n";
constexpr const char *XYZ = "1 X x *\n2 Y y *\n3 Z z *\n";
constexpr const char *TAP_WITH_HIGHZ = "%HIGHZ_COMMAND hz; %SIGNAL_BUFFER PLAIN; %GROUP_SIZE 2;";

const CHIP CHAINS[] = {
    {.name = "tdi_before_tdo",
     .design = FOUR_INPUTS,
     .pins = "1 DI tdi *\n2 A a *\n3 B b *\n4 DO tdo *\n5 C0 c *\n6 D d *\n7 S skip *\n",
     .settings = "%SKIP_SIGNAL_NAMES { e; }",
     .shows = NO_CMD},
    {.name = "tdo_before_tdi",
     .design = FOUR_INPUTS,
     .pins = "1 A a *\n2 DO tdo *\n3 B b *\n4 C0 c *\n5 DI tdi *\n6 S skip *\n7 D d *\n",
     .settings = "%SKIP_SIGNAL_NAMES { e; }",
     .shows = NO_CMD},
    {.name = "one_enable_net", .design = THREE_OUTPUTS, .pins = "1 DO tdo *\n2 X x *\n3 Y y *\n4 Z z *\n"},
    {.name = "two_control_tables", .design = THREE_OUTPUTS, .pins = "1 X x *\n2 Y y * BSC(BC_OE)\n3 Z z *\n"},
    {.name = "tied_enables_in_groups",
     .design = TIED_OUTPUTS,
     .pins = XYZ,
     .roles = "%OUTPUT_SCAN BC_HZ; %CONTROL_SCAN BC_CTL;",
     .tap_items = TAP_WITH_HIGHZ},
    {.name = "tied_enables_of_cells_without_highz",
     .design = TIED_OUTPUTS,
     .pins = XYZ,
     .tap_items = TAP_WITH_HIGHZ},
    // The pass over the second table starts at group 1; with one group alone its rows join that one.
    {.name = "tied_enables_beyond_the_last_group",
     .design = TIED_OUTPUTS,
     .pins = "1 X x * BSC(BC_HZ)\n2 Y y * BSC(BC_HZ)\n3 Z z *\n",
     .roles = "%OUTPUT_SCAN BC_OE; %CONTROL_SCAN BC_CTL; %CONTROL_OE_SCAN BC_COE; %CONTROL_LOW_SCAN BC_HZ;",
     .tap_items = TAP_WITH_HIGHZ},
    {.name = "cell_inside_the_pad_holds_its_enable",
     .design =
         R"(module chip(output x, y); BSCE px(.I(nx), .OEN(1'b1), .PAD(x)); GATE gx(.Z(nx)); GATE gy(.Z(ny));
TBUF py(.I(ny), .OEN(1'b1), .PAD(y)); endmodule)",
     .pins = "1 X x *\n2 Y y *\n",
     .tap_items = TAP_WITH_HIGHZ},
    {.name = "active_high_enable_on_the_command",
     .design = TIED_HIGH,
     .pins = "1 X x *\n2 Y y *\n",
     .tap_items = TAP_WITH_HIGHZ},
    {.name = "active_high_enable_on_an_inverted_command",
     .design = TIED_HIGH,
     .pins = "1 X x *\n2 Y y *\n",
     .tap_items = "%HIGHZ_COMMAND -hz; %INV_BUFFER PLAIN;"},
    // Loads of the cells, of their extra pins and of the mode pins of a pad, in trees of one level and of
    // two.
    {.name = "trees_of_every_signal",
     .design = MUX_BESIDE_INPUTS,
     .pins = MUX_PINS,
     .options = "-add_tap -synch",
     .roles = "%INPUT_SCAN BC_X; %INPUT_MUX_SCAN BC_MI;",
     .tap_items = "%EXTRA_1 x1; %EXTRA_2 -x2; %GROUP_SIZE 2; %SIGNAL_BUFFER PLAIN; %INV_BUFFER INVB;",
     .shows = WHOLE_REPORT | TREE_LINES},
    // The run tells of the mode that its TAP lacks, and goes on without it.
    {.name = "mode_of_a_pad_that_the_tap_lacks",
     .design = R"(module chip(input a, b); BSIN pa(.PAD(a), .C(na)); BSIN pb(.PAD(b), .C(nb));
GATE u(.A(na), .B(nb)); oldtap TAP(); endmodule)",
     .pins = "1 A a *\n2 B b *\n",
     .options = "",
     .roles = "%INPUT_SCAN BC_IN;",
     .tap_items = "%GROUP_SIZE 2; %SIGNAL_BUFFER PLAIN;",
     .tap_pins = "",
     .shows = WHOLE_CMD},
    {.name = "chains_of_buffers",
     .design = FOUR_INPUTS,
     .pins = "1 A a *\n2 B b *\n3 C0 c *\n4 D d *\n5 DO tdo *\n",
     .options = "-add_tap -synch -df_speed",
     .settings = "%SKIP_SIGNAL_NAMES { e; }",
     .library = "%BUFFER WILD* { %INPUT A; %OUTPUT Z; }",
     .tap_items = "%DF_GROUP_SIZE 3; %DF_SIGNAL_BUFFER WILD1;",
     .shows = WHOLE_REPORT | TREE_LINES},
};

const CHIP MODULES[] = {
    {.name = "two_instances_with_one_enable",
     .design = R"(module P(input n, e, output x); TBUF p(.I(n), .OEN(e), .PAD(x)); endmodule
module M(input nx, ny, e, output x, y); P p(.n(nx), .e(e), .x(x)); P q(.n(ny), .e(e), .x(y)); endmodule
module chip(output x, y); M m(.nx(nx), .ny(ny), .e(e), .x(x), .y(y)); GATE u(.Z(nx)); GATE v(.Z(ny)); GATE w(.Z(e));
endmodule)",
     .pins = "1 X x *\n2 Y y *\n"},
    {.name = "equal_modules_below_different_parents",
     .design = R"(module P(input a, output n); IBUF pa(.PAD(a), .C(n)); endmodule
module M(input a, output n); P p(.a(a), .n(n)); endmodule
module N(input a, output n); P p(.a(a), .n(n)); endmodule
module chip(input a, b); M m(.a(a), .n(na)); N n(.a(b), .n(nb)); GATE u(.A(na), .B(nb)); endmodule)",
     .pins = "1 A a *\n2 B b *\n"},
    {.name = "internal_signal_in_a_module",
     .design = R"(module M(input a); GATE \u.y[1] (.A(a)); endmodule
module chip(input a); IBUF \p[3].a (.PAD(a), .C(na)); M \m.x[0] (.a(na)); endmodule)",
     .pins = "1 A a *\n2 INTERNAL m.x[0].u.y[1]{A} *\n"},
};

TEST(Chain, IsInOrderAndSharesItsControls) {
    planning_folder().expect_outcomes(CHAINS);
}

TEST(Chain, GoesThroughTheModulesOfThePads) {
    planning_folder().expect_outcomes(MODULES);
}

// More pins than the usual sort keys have room for: every place is given once, between TDO and TDI.
TEST(Chain, IsWholeBeyondTenThousandPins) {
    constexpr int PINS = 10005;
    planning_folder folder;
    std::string ports, pads, rows, order = "* tdo\n";
    for (int i = 1; i <= PINS; ++i) {
        std::string n = std::to_string(i);
        ports += (i == 1 ? "input p" : ", p") + n;
        pads += "IBUF i" + n + "(.PAD(p" + n + "), .C(c" + n + ")); GATE g" + n + "(.A(c" + n + "));\n";
        rows += n + " N" + n + " p" + n + " *\n";
        order += std::to_string(i - 1) + " p" + std::to_string(PINS + 1 - i) + "\n";
    }
    std::string design = "module chip(" + ports + ");\n" + pads + "endmodule\n";
    std::string pins = "20001 DO tdo *\n" + rows + "20000 DI tdi *\n";
    run_result result = folder.plan({.design = design, .pins = pins});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(messages_of(result.out), "");
    std::string written = folder.scratch.run("awk '$2 ~ /^[0-9]+$/ { print $1, $3 }' chip.bso").out;
    EXPECT_TRUE(written == order + "* tdi\n") << written;
}

} // namespace
