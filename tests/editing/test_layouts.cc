// The edit command files of one design per layout: pads and TAP in the places where a design may have them.
#include "tests/editing/chip_case.hh"

#include <sstream>

namespace {

/// The ports of a chip, in the order of the ring.
constexpr const char *PINS = "a y z0 z1 b tdi tms tck ck tdo",
                     *PAD_MODULE_PINS = "a y b tdi tms tck ck tdo",
                     *TWO_DOWN_PINS = "ain y tdi tms tck ck tdo",
                     *BARE_PINS = "a -n y y2 tdi tms tck ck tdo";

std::string pin_rows(const std::string &ports) {
    std::istringstream words(ports);
    std::string rows;
    int32_t number = 0;
    for (std::string port; words >> port;) {
        std::string n = std::to_string(++number);
        // One port names its pad cell.
        rows += n + " P" + n + " " + port + (ports == BARE_PINS && port == "y" ? " * PAD(OBUF)\n" : " *\n");
    }
    return rows;
}

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
    const char *like = ""; ///< the layout whose lines are there whole
};

const LAYOUT LAYOUTS[] = {
    {"pads_in_top", "pads_in_top", "TAP", "-add_tap", PINS, {"chip_jtag"}},
    {"external_idcode",
     "pads_in_top",
     "TAP",
     "-add_tap -external_idcode",
     PINS,
     {"chip_jtag"},
     "",
     "pads_in_top"},
    {"connections",
     "pads_in_top",
     "TAP",
     "-add_tap",
     PINS,
     {"chip_jtag"},
     "%CONNECTION_TABLE { %CONNECT u2{CK} TO pck{C}; %CONNECT a TO pa{PAD}; %CONNECT py{PAD} TO y; }",
     "pads_in_top"},
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
     {"pads_bs", "chip_jtag"},
     "",
     "pads_in_module"},
    {"pads_two_down", "pads_two_down", "TAP", "-add_tap", TWO_DOWN_PINS, {"pads_bs", "AA_bs", "chip_jtag"}},
    {"tap_beside_pads",
     "pads_two_down",
     "C.tap",
     "-add_tap",
     TWO_DOWN_PINS,
     {"CC_bs", "pads_bs", "AA_bs", "chip_jtag"},
     "",
     "pads_two_down"},
    {"tap_off_the_shared_part",
     "pads_two_down",
     "A.B.tap",
     "-add_tap",
     TWO_DOWN_PINS,
     {"BB_bs", "pads_bs", "AA_bs", "chip_jtag"},
     "",
     "pads_two_down"},
    {"pads_added", "no_pads", "TAP", "-add_tap -add_pad", BARE_PINS, {"chip_jtag"}, PAD_CELLS},
    {"tap_exists", "tap_exists", "TAP", "", PAD_MODULE_PINS, {"pads_bs", "chip_jtag"}, "", "pads_in_module"},
};

} // namespace

TEST(Layouts, CommandFiles) {
    for (const LAYOUT &layout : LAYOUTS) {
        SCOPED_TRACE(layout.name);
        CHIP_INPUT input;
        input.design = test_file(std::string("designs/") + layout.design + ".v");
        input.tap = layout.tap;
        input.pins = pin_rows(layout.pins);
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
        expect_commands(layout.name, chip.commands(layout.files), layout.like);
        // The bundled tools carry the same commands out.
        result = chip.run_in_own_folder(layout.options);
        expect_commands(layout.name, chip.commands(layout.files), layout.like);
        EXPECT_EQ(result.status, 0) << result.out << result.err;
        EXPECT_TRUE(chip.scratch.has("chip_jtag.v") && chip.scratch.has("chip_jtag_flat.v"));
    }
}
