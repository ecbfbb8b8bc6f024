// The order of the chain, who makes which control cell or buffer, and designs of several I/O modules.
#include "planning/planning.hh"
#include "planning/tap_state.hh"
#include "support/run_state.hh"
#include "tests/planning/planning_case.hh"

#include <algorithm>

namespace {

class ChainTest : public testing::TestWithParam<PLANNING_CASE> {};

TEST_P(ChainTest, IsInOrderAndSharesItsControls) {
    planning_result result = run_planning(GetParam(), PLANNING_STAGE::CHAIN);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.rows, GetParam().expected);
    EXPECT_EQ(result.console, GetParam().console);
}

constexpr const char *FOUR_INPUTS = "in a\n in b\n in c\n in d\n IBUF pa PAD=a C=na\n IBUF pb PAD=b C=nb\n"
                                    "IBUF pc PAD=c C=nc\n IBUF pd PAD=d C=nd";
constexpr const char *THREE_OUTPUTS =
    "out x\n out y\n out z\n TBUF px I=nx OEN=e PAD=x\n TBUF py I=ny OEN=e PAD=y\n TBUF pz I=nz OEN=e PAD=z";
constexpr const char *TIED_OUTPUTS =
    "out x\n out y\n out z\n TBUF px I=nx OEN=1 PAD=x\n TBUF py I=ny OEN=0 PAD=y\n TBUF pz I=nz OEN=1 PAD=z";
constexpr const char *TAP_WITH_HIGHZ = "%HIGHZ_COMMAND hz; %SIGNAL_BUFFER PLAIN; %GROUP_SIZE 2;";

const PLANNING_CASE CHAINS[] = {
    {"tdi_before_tdo", FOUR_INPUTS, "1 DI tdi *\n 2 A a *\n 3 B b *\n 4 DO tdo *\n 5 C0 c *\n 6 D d *\n",
     "tdo -1\nc 0\nd 1\na 2\nb 3\ntdi 10000\n"},
    {"tdo_before_tdi", FOUR_INPUTS,
     "1 A a *\n 2 DO tdo *\n 3 B b *\n 4 C0 c *\n 5 DI tdi *\n 6 S skip *\n 7 D d *\n",
     "tdo -1\na 9995\nd 9996\nc 9997\nb 9998\ntdi 9999\nskip 10000\n"},
    {"no_tdo", FOUR_INPUTS, "1 A a *\n 2 S skip *\n 3 B b *\n 4 DI tdi *\n 5 C0 c *\n 6 D d *\n",
     "a 0\nb 0\nc 0\nd 0\nskip 10000\ntdi 10000\n"},
    {"one_enable_net", THREE_OUTPUTS, "1 DO tdo *\n 2 X x *\n 3 Y y *\n 4 Z z *\n",
     "tdo -1\nz 9996 c1 makes it\ny 9997 c1\nx 9998 c1\n"},
    {"one_enable_net_not_shared",
     THREE_OUTPUTS,
     "1 X x *\n 2 Y y *\n 3 Z z *\n",
     "x 0 c1 makes it\ny 0 c2 makes it\nz 0 c3 makes it\n",
     "",
     {OPT_DONT_SHARE_CONTROL}},
    {"two_control_tables", THREE_OUTPUTS, "1 X x *\n 2 Y y * BSC(BC_OE)\n 3 Z z *\n",
     "x 0 c1 makes it\ny 0 oe1 makes it\nz 0 c1\n"},
    {"tied_enables_without_a_command", TIED_OUTPUTS, "1 X x *\n 2 Y y *\n 3 Z z *\n", "x 0\ny 0\nz 0\n"},
    {"tied_enables_in_groups",
     TIED_OUTPUTS,
     "1 X x *\n 2 Y y *\n 3 Z z *\n",
     "x 0 highz0 makes it\ny 0 highz0\nz 0 highz1 makes it\n",
     "",
     {},
     "%OUTPUT_SCAN BC_HZ; %CONTROL_SCAN BC_CTL;",
     "",
     "",
     TAP_WITH_HIGHZ},
    {"tied_enables_of_cells_without_highz",
     TIED_OUTPUTS,
     "1 X x *\n 2 Y y *\n 3 Z z *\n",
     "x 0 highz0 makes it\ny 0 highz0\nz 0 highz0\n",
     "",
     {},
     nullptr,
     "",
     "",
     TAP_WITH_HIGHZ},
    // The pass over the second table starts at group 1; with one group alone its rows join that one.
    {"tied_enables_beyond_the_last_group",
     TIED_OUTPUTS,
     "1 X x * BSC(BC_HZ)\n 2 Y y * BSC(BC_HZ)\n 3 Z z *\n",
     "x 0 highz0 makes it\ny 0 highz0\nz 0 highz0\n",
     "",
     {},
     "%OUTPUT_SCAN BC_OE; %CONTROL_SCAN BC_CTL; %CONTROL_OE_SCAN BC_COE;",
     "",
     "",
     TAP_WITH_HIGHZ},
    {"cell_inside_the_pad_holds_its_enable",
     "out x\n out y\n BSOE px I=nx OEN=1 PAD=x\n TBUF py I=ny OEN=1 PAD=y",
     "1 X x * BSC(BC_OUT)\n 2 Y y *\n",
     "x 0 highz0\ny 0 highz0 makes it\n",
     "",
     {},
     nullptr,
     "",
     "%BS_BUFFER BSOE { %INPUT I; %OUTPUT PAD; %EN_L OEN; %CONTROL_BCELL BC_CTL; }",
     TAP_WITH_HIGHZ},
    {"active_high_enable_on_the_command",
     "out x\n HBUF px I=nx EN=1 PAD=x",
     "1 X x *\n",
     "x 0 highz0 makes it\n",
     "WARNING: %EN_H EN of pad 'px'(HBUF) is driven by %HIGHZ_COMMAND 'hz'.\n"
     "         The pad of port 'x' will be enabled when the command is active.\n"
     "         Please use an inverted %HIGHZ_COMMAND for an active high enable.\n\n",
     {},
     nullptr,
     "",
     "",
     TAP_WITH_HIGHZ},
    {"active_high_enable_on_an_inverted_command",
     "out x\n HBUF px I=nx EN=1 PAD=x",
     "1 X x *\n",
     "x 0 highz0 makes it\n",
     "",
     {},
     nullptr,
     "",
     "",
     "%HIGHZ_COMMAND -hz; %SIGNAL_BUFFER PLAIN;"},
};

INSTANTIATE_TEST_SUITE_P(Rings, ChainTest, testing::ValuesIn(CHAINS),
                         [](const auto &each) { return each.param.name; });

TEST(Chain, TiedEnableWithoutABufferIsRefused) {
    PLANNING_CASE planned = {"", "out x\n TBUF px I=nx OEN=1 PAD=x", "1 X x *\n"};
    planned.tap_items = "%HIGHZ_COMMAND hz;";
    planning_result result = run_planning(planned, PLANNING_STAGE::ROWS);
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.console, "ERROR: (chip.lib) can't find %SIGNAL_BUFFER in %TAP_CONTROLLER.\n"
                              "       Need it to connect %HIGHZ_COMMAND to the enable of port 'x'.\n\n");
}

class ModuleTest : public testing::TestWithParam<PLANNING_CASE> {};

TEST_P(ModuleTest, AreFoundAndHaveControlsOfTheirOwn) {
    planning_result result = run_planning(GetParam(), PLANNING_STAGE::MODULES);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.rows, GetParam().expected);
}

const PLANNING_CASE MODULES[] = {
    {"one_pad_module", "in a\n in b\n IBUF p:P.pa PAD=a C=na\n IBUF p:P.pb PAD=b C=nb", "1 A a *\n 2 B b *\n",
     "several 0\nchip chip copy 0 parent -1\nP p copy 0 parent 0\na in 1 control 0\nb in 1 control 0\n"},
    {"standard_port_at_the_top_counts_for_nothing",
     "in a\n in tdi\n in b\n IBUF p:P.pa PAD=a C=na\n IBUF pi PAD=tdi C=ni\n IBUF p:P.pb PAD=b C=nb",
     "1 A a *\n 2 DI tdi *\n 3 B b *\n",
     "several 0\nchip chip copy 0 parent -1\nP p copy 0 parent 0\na in 1 control 0\ntdi in 0 control 0\n"
     "b in 1 control 0\n"},
    {"two_instances_with_one_enable",
     "out x\n out y\n out z\n TBUF m:M.p:P.px I=nx OEN=e PAD=x\n TBUF m:M.q:P.py I=ny OEN=e PAD=y\n"
     "TBUF m:M.p:P.pz I=nz OEN=e PAD=z",
     "1 X x *\n 2 Y y *\n 3 Z z *\n",
     "several 1\nchip chip copy 0 parent -1\nM m copy 0 parent 0\nP p copy 0 parent 1\nP q copy 1 parent 1\n"
     "x in 2 control 1\ny in 3 control 2\nz in 2 control 1\n"},
    // The pads at the top keep the two modules from being compared; their cells are in three modules all the
    // same.
    {"top_pads_between_two_modules",
     "out x\n out t\n out y\n TBUF p:P.px I=nx OEN=e PAD=x\n TBUF pt I=nt OEN=e PAD=t\n TBUF q:Q.py I=ny "
     "OEN=e PAD=y",
     "1 X x *\n 2 T t *\n 3 Y y *\n",
     "several 1\nchip chip copy 0 parent -1\nP p copy 0 parent 0\nQ q copy 0 parent 0\n"
     "x in 1 control 1\nt in 0 control 2\ny in 2 control 3\n"},
    {"equal_modules_below_different_parents",
     "in a\n in b\n IBUF m:M.p:P.pa PAD=a C=na\n IBUF n:M.p:P.pb PAD=b C=nb", "1 A a *\n 2 B b *\n",
     "several 1\nchip chip copy 0 parent -1\nM m copy 0 parent 0\nP p copy 0 parent 1\nM n copy 1 parent 0\n"
     "P p copy 1 parent 3\na in 2 control 0\nb in 4 control 0\n"},
    {"internal_signal_in_a_module", "in a\n IBUF pa PAD=a C=na\n GATE m:M.u A=na",
     "1 A a *\n 2 INTERNAL m.u{A} *\n",
     "several 1\nchip chip copy 0 parent -1\nM m copy 0 parent 0\na in 0 control 0\nm.u{A} in 1 control 0\n"},
};

INSTANTIATE_TEST_SUITE_P(IoModules, ModuleTest, testing::ValuesIn(MODULES),
                         [](const auto &each) { return each.param.name; });

// More cells than the usual keys have room for, in both directions of the ring.
TEST(Chain, HasRoomForAnyNumberOfCells) {
    static SCAN_CELL cell = {};
    for (bool tdo_first : {true, false}) {
        rimweave_init();
        GLOBAL_TDI = "tdi";
        GLOBAL_TDO = "tdo";
        constexpr int32_t CELLS = 12000;
        for (int32_t i = 0; i < CELLS + 2; ++i) {
            OPIN_ROW row = {};
            row.pin_index = i;
            row.port_name = i == 0   ? (tdo_first ? "tdo" : "tdi")
                            : i == 1 ? (tdo_first ? "tdi" : "tdo")
                                     : "cell";
            row.scan_cell = i < 2 ? nullptr : &cell;
            append_row(OPIN_TAB, row);
        }
        arrange_opin_tab_from_tdo();
        EXPECT_STREQ(OPIN_TAB[0].port_name, "tdo");
        EXPECT_STREQ(OPIN_TAB[CELLS + 1].port_name, "tdi");
        EXPECT_EQ(OPIN_TAB[1].pin_index, tdo_first ? CELLS + 1 : 2);
        EXPECT_EQ(OPIN_TAB[CELLS].pin_index, tdo_first ? 2 : CELLS + 1);
        EXPECT_TRUE(std::is_sorted(OPIN_TAB, OPIN_TAB + CELLS + 2,
                                   [](const OPIN_ROW &a, const OPIN_ROW &b) { return a.order < b.order; }));
    }
    GLOBAL_TDI = GLOBAL_TDO = nullptr;
    free_planning_tables();
}

// The loads of a mux cell: its own pins, the extra pins, and the pad's mode pins that no working net drives.
TEST(Chain, CountsTheLoadsOfACell) {
    rimweave_init();
    const char **extras = DYNA_init<const char *>();
    append_row<const char *>(extras, "e1");
    append_row<const char *>(extras, "e2");
    SCAN_CELL cell = {};
    cell.tdi = "si";
    cell.shift_dr = "sh";
    cell.tck = "tck";
    cell.extras = extras;
    TAP_CELL tap = {};
    tap.mode_1 = "-mode";
    TAP_CONTR = &tap;
    BUFFER_CELL pad = {};
    pad.mode_1 = "S";
    pad.mode_2 = "T";
    OPIN_ROW row = {};
    row.direction = "west";
    row.pad = &pad;
    row.mode_net[1] = 7; // %MODE_1 is tied to GND, %MODE_2 is on a working net
    append_row(OPIN_TAB, row);

    JTAG_OPTION[OPT_SYNCH] = 1;
    EXPECT_STREQ(add_scan_tab(&cell, 0, true, false), "BCELL0_west");
    JTAG_OPTION[OPT_SYNCH] = 0;
    EXPECT_STREQ(add_scan_tab(&cell, 0, false, true), "BCELL1_west");
    EXPECT_EQ(TREES[SIG_SHIFT].need, 2);
    EXPECT_EQ(TREES[SIG_BCLK].need, 1);
    EXPECT_EQ(TREES[SIG_MODE1].need, 1);
    EXPECT_EQ(TREES[SIG_MODE2].need, 0);
    EXPECT_STREQ(TAP_PIN[SIG_MODE1], "mode");
    ASSERT_EQ(DYNA_count(EXTRA_TREES), 2);
    EXPECT_EQ(EXTRA_TREES[1].need, 2);
    EXPECT_EQ(SCAN_TAB[0].mux_row, 0);
    EXPECT_EQ(SCAN_TAB[1].mux_row, -1);
    EXPECT_STREQ(SCAN_TAB[1].extra_pins[1], "e2");
    TAP_CONTR = nullptr;
    TAP_PIN[SIG_MODE1] = nullptr;
    free_planning_tables();
    DYNA_free(&extras);
}

// The ports of each control cell, the cells in the order of the last port that they serve.
TEST(Chain, GroupsThePortsOfEachControlCell) {
    rimweave_init();
    append_row(CONTROL_TAB);
    append_row(CONTROL_OE_TAB);
    for (int32_t order : {0, 2, 5, 7}) {
        OPIN_ROW row = {};
        row.order = order;
        (order == 2 || order == 5 ? row.oe_control : row.control) = 1;
        append_row(OPIN_TAB, row);
    }
    sort_pin_with_control();
    ASSERT_EQ(DYNA_count(CONTR_PIN), 2);
    EXPECT_EQ(CONTR_PIN[0].oe_control, 1);
    EXPECT_EQ(CONTR_PIN[0].control, -1);
    EXPECT_EQ(CONTR_PIN[0].orders[1], 5);
    EXPECT_EQ(CONTR_PIN[1].control, 1);
    EXPECT_EQ(CONTR_PIN[1].orders[0], 0);
    free_planning_tables();
}

} // namespace
