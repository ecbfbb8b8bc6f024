// The edit command files of one design per layout: pads and TAP in the places where a design may have them.
#include "tests/editing/chip_case.hh"

namespace {

constexpr const char *PINS = R"(
1 A a *
2 Y y *
3 Z0 z0 *
4 Z1 z1 *
5 B b *
6 TDI tdi *
7 TMS tms *
8 TCK tck *
9 CK ck *
10 TDO tdo *
)";

constexpr const char *TOP_TAP_PINS = R"(
1 A a *
6 TDI tdi *
7 TMS tms *
8 TCK tck *
9 CK ck *
10 TDO tdo *
)";

constexpr const char *PAD_MODULE_PINS = R"(
1 A a *
2 Y y *
5 B b *
6 TDI tdi *
7 TMS tms *
8 TCK tck *
9 CK ck *
10 TDO tdo *
)";

constexpr const char *TWO_DOWN_PINS = R"(
1 A ain *
2 Y y *
6 TDI tdi *
7 TMS tms *
8 TCK tck *
9 CK ck *
10 TDO tdo *
)";

constexpr const char *NO_BIDIR_PINS = R"(
1 A a *
2 Y y *
6 TDI tdi *
7 TMS tms *
8 TCK tck *
9 CK ck *
10 TDO tdo *
)";

constexpr const char *BARE_PINS = R"(
1 A a *
2 N -n *
3 Y y * PAD(OBUF)
4 Y2 y2 *
6 TDI tdi *
7 TMS tms *
8 TCK tck *
9 CK ck *
10 TDO tdo *
)";

constexpr const char *PAD_CELLS =
    "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER TBUF; %INOUT_BUFFER BBUF; %INVERTER IBX;";

struct LAYOUT {
    const char *name;
    const char *design;
    const char *tap;
    const char *options;
    const char *pins;
    std::vector<std::string> files; ///< in the order in which the editor runs them
    const char *settings = "";
};

const LAYOUT LAYOUTS[] = {
    {"pads_in_top", "pads_in_top", "TAP", "-add_tap", PINS, {"chip_jtag"}},
    {"external_idcode", "pads_in_top", "TAP", "-add_tap -external_idcode", PINS, {"chip_jtag"}},
    {"connections",
     "pads_in_top",
     "TAP",
     "-add_tap",
     PINS,
     {"chip_jtag"},
     "%CONNECTION_TABLE { %CONNECT u2{CK} TO pck{C}; %CONNECT a TO pa{PAD}; %CONNECT py{PAD} TO y; }"},
    {"tap_down_a_path",
     "tap_down_a_path",
     "top_a.b.tap",
     "-add_tap -external_idcode",
     PINS,
     {"B_bs", "A_bs", "chip_jtag"}},
    {"pads_in_module", "pads_in_module", "TAP", "-add_tap", PAD_MODULE_PINS, {"pads_bs", "chip_jtag"}},
    {"pads_in_module_synch",
     "pads_in_module",
     "TAP",
     "-add_tap -synch",
     PAD_MODULE_PINS,
     {"pads_bs", "chip_jtag"}},
    {"pads_two_down", "pads_two_down", "TAP", "-add_tap", TWO_DOWN_PINS, {"pads_bs", "AA_bs", "chip_jtag"}},
    {"tap_beside_pads",
     "pads_two_down",
     "C.tap",
     "-add_tap",
     TWO_DOWN_PINS,
     {"CC_bs", "pads_bs", "AA_bs", "chip_jtag"}},
    {"tap_above_pads",
     "pads_two_down",
     "A.tap",
     "-add_tap",
     TWO_DOWN_PINS,
     {"pads_bs", "AA_bs", "chip_jtag"}},
    {"tap_with_pads",
     "pads_two_down",
     "A.p.tap",
     "-add_tap",
     TWO_DOWN_PINS,
     {"pads_bs", "AA_bs", "chip_jtag"}},
    {"tap_off_the_shared_part",
     "pads_two_down",
     "A.B.tap",
     "-add_tap",
     TWO_DOWN_PINS,
     {"BB_bs", "pads_bs", "AA_bs", "chip_jtag"}},
    {"pads_added", "no_pads", "TAP", "-add_tap -add_pad", BARE_PINS, {"chip_jtag"}, PAD_CELLS},
    {"ports_without_pads", "no_pads", "TAP", "-add_tap -no_pad", BARE_PINS, {"chip_jtag"}, PAD_CELLS},
    {"tap_exists", "tap_exists", "TAP", "", PAD_MODULE_PINS, {"pads_bs", "chip_jtag"}},
    {"tap_exists_in_top", "tap_exists_in_top", "TAP", "", TOP_TAP_PINS, {"chip_jtag"}},
    {"tap_exists_below",
     "tap_exists_below",
     "top_a.b.tap",
     "",
     NO_BIDIR_PINS,
     {"B_bs", "A_bs", "pads_bs", "chip_jtag"}},
    {"tap_exists_with_pads", "tap_exists_with_pads", "p.tap", "", NO_BIDIR_PINS, {"pads_bs", "chip_jtag"}},
};

} // namespace

TEST(Layouts, WhatDrivesTdoIsCut) {
    struct DRIVEN {
        const char *what, *gates, *expected;
        bool warned;
    };
    const DRIVEN cases[] = {
        {"a gate", "FF g(.CK(ck), .Q(t));", "disconnect po{I}\nconnect po{I} TAP{TDO}\n", true},
        {"a constant", "assign t = 1'b0;", "disconnect po{I}\nconnect po{I} TAP{TDO}\n", true},
        {"nothing", "", "", false},
    };
    for (const DRIVEN &each : cases) {
        SCOPED_TRACE(each.what);
        CHIP_INPUT input;
        input.design =
            std::string("module chip(input a, input ck, output tdo); wire w, t;\n"
                        "IBUF pa(.PAD(a), .C(w)); FF f(.D(w), .CK(ck)); OBUF po(.I(t), .PAD(tdo));\n") +
            each.gates + " endmodule\n";
        input.pins = "1 PA a *\n2 CK ck *\n3 TDO tdo *\n";
        chip_case chip(input);
        run_result result = chip.run("-add_tap");
        EXPECT_EQ(result.status, 0) << result.out << result.err;
        EXPECT_EQ(result.out.find("WARNING") != std::string::npos, each.warned) << result.out;
        if (each.warned)
            EXPECT_NE(chip.commands({"chip_jtag"}).find(each.expected), std::string::npos);
        else
            EXPECT_EQ(chip.commands({"chip_jtag"}).find("disconnect po"), std::string::npos);
    }
}

TEST(Layouts, CommandFiles) {
    for (const LAYOUT &layout : LAYOUTS) {
        SCOPED_TRACE(layout.name);
        CHIP_INPUT input;
        input.design = test_file(std::string("designs/") + layout.design + ".v");
        input.tap = layout.tap;
        input.pins = layout.pins;
        input.settings = layout.settings;
        if (std::string(layout.name).starts_with("tap_exists"))
            input.cells = test_file("designs/more_cells.v");
        chip_case chip(input);
        run_result result = chip.run(layout.options);
        EXPECT_EQ(result.status, 0) << result.out << result.err;
        size_t at = 0;
        for (const std::string &file : layout.files) {
            size_t found =
                result.out.find("    .Executing command file  ./rimweave_lib/" + file + ".cmd ...\n", at);
            EXPECT_NE(found, std::string::npos) << file << " is not run, or too early";
            at = found == std::string::npos ? at : found;
        }
        expect_file(std::string(layout.name) + ".cmd", chip.commands(layout.files));
        // The bundled tools carry the same commands out.
        std::filesystem::remove_all(chip.scratch.dir / "tools");
        result = chip.run(layout.options);
        EXPECT_EQ(result.status, 0) << result.out << result.err;
        EXPECT_TRUE(chip.scratch.has("chip_jtag.v") && chip.scratch.has("chip_jtag_flat.v"));
    }
}
