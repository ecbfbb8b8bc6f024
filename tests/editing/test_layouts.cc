// The edit command files of one design per layout: pads and TAP in the places where a design may have them.
#include "tests/editing/chip_case.hh"

namespace {

constexpr const char *PINS = "1 P1 a *\n2 P2 y *\n3 P3 z0 *\n4 P4 z1 *\n5 P5 b *\n6 P6 tdi *\n7 P7 tms *\n8 "
                             "P8 tck *\n9 P9 ck *\n10 P10 tdo *\n";
constexpr const char *PAD_MODULE_PINS =
    "1 P1 a *\n2 P2 y *\n3 P3 b *\n4 P4 tdi *\n5 P5 tms *\n6 P6 tck *\n7 P7 ck *\n8 P8 tdo *\n";
constexpr const char *TWO_DOWN_PINS =
    "1 P1 ain *\n2 P2 y *\n3 P3 tdi *\n4 P4 tms *\n5 P5 tck *\n6 P6 ck *\n7 P7 tdo *\n";
constexpr const char *BARE_PINS = "1 P1 a *\n2 P2 -n *\n3 P3 y * PAD(OBUF)\n4 P4 y2 *\n5 P5 tdi *\n6 P6 tms "
                                  "*\n7 P7 tck *\n8 P8 ck *\n9 P9 tdo *\n";
constexpr const char *PAD_CELLS =
    "%INPUT_BUFFER IBUF; %OUTPUT_BUFFER TBUF; %INOUT_BUFFER BBUF; %INVERTER IBX;";
constexpr const char *CONNECTIONS =
    "%CONNECTION_TABLE { %CONNECT u2{CK} TO pck{C}; %CONNECT a TO pa{PAD}; %CONNECT py{PAD} TO y; }";

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

const struct {
    CHIP chip;
    std::vector<std::string> files; ///< in the order in which the editor runs them
    const char *like = "";          ///< the layout whose lines are there whole
} LAYOUTS[] = {
    {{.name = "pads_in_top", .design = "pads_in_top", .pins = PINS}, {"chip_jtag"}},
    {{.name = "external_idcode",
      .design = "pads_in_top",
      .pins = PINS,
      .options = "-add_tap -external_idcode"},
     {"chip_jtag"},
     "pads_in_top"},
    {{.name = "connections", .design = "pads_in_top", .pins = PINS, .settings = CONNECTIONS},
     {"chip_jtag"},
     "pads_in_top"},
    {{.name = "tap_down_a_path",
      .design = "tap_down_a_path",
      .pins = PINS,
      .options = "-add_tap -external_idcode",
      .tap = "top_a.b.tap"},
     {"B_bs", "A_bs", "chip_jtag"}},
    {{.name = "pads_in_module", .design = "pads_in_module", .pins = PAD_MODULE_PINS},
     {"pads_bs", "chip_jtag"}},
    {{.name = "pads_in_module_synch",
      .design = "pads_in_module",
      .pins = PAD_MODULE_PINS,
      .options = "-add_tap -synch"},
     {"pads_bs", "chip_jtag"},
     "pads_in_module"},
    {{.name = "pads_two_down", .design = "pads_two_down", .pins = TWO_DOWN_PINS},
     {"pads_bs", "AA_bs", "chip_jtag"}},
    {{.name = "tap_beside_pads", .design = "pads_two_down", .pins = TWO_DOWN_PINS, .tap = "C.tap"},
     {"CC_bs", "pads_bs", "AA_bs", "chip_jtag"},
     "pads_two_down"},
    {{.name = "tap_off_the_shared_part", .design = "pads_two_down", .pins = TWO_DOWN_PINS, .tap = "A.B.tap"},
     {"BB_bs", "pads_bs", "AA_bs", "chip_jtag"},
     "pads_two_down"},
    {{.name = "pads_added",
      .design = "no_pads",
      .pins = BARE_PINS,
      .options = "-add_tap -add_pad",
      .settings = PAD_CELLS},
     {"chip_jtag"}},
    {{.name = "tap_exists", .design = "tap_exists", .pins = PAD_MODULE_PINS, .options = ""},
     {"pads_bs", "chip_jtag"},
     "pads_in_module"},
    // Pads in several modules.
    {{.name = "multi_parent_and_child",
      .design = PARENT_AND_CHILD,
      .pins = "1 PA a *\n2 PB b *\n3 PE e *\n4 Y y *\n5 CK ck *\n",
      .roles = "%INPUT_SCAN BC_S;"},
     {"low_bs0", "mid_bs0", "chip_jtag"}},
    {{.name = "multi_two_instances",
      .design = TWO_INSTANCES,
      .pins = "1 PA a *\n2 PD d *\n3 PB b *\n4 PE e *\n5 CK ck *\n",
      .roles = "%INPUT_SCAN BC_S;"},
     {"low_bs0", "mid_bs0", "low_bs1", "mid_bs1", "chip_jtag"}},
};

/// The editor runs the files in this order. With pads in several modules one blank stands behind "file", and
/// the boundary registers are not told of.
void expect_runs(const std::string &out, const std::vector<std::string> &files) {
    bool several = files.front().ends_with("_bs0");
    size_t at = 0;
    for (const std::string &file : files) {
        at = out.find("    .Executing command file " + std::string(several ? "" : " ") + "./rimweave_lib/" +
                          file + ".cmd ...\n",
                      at);
        ASSERT_NE(at, std::string::npos) << file << " is not run, or too early\n" << out;
    }
    EXPECT_NE(out.find("\n - Synthesis  done!\n\n", at), std::string::npos) << out;
    EXPECT_EQ(out.find(" - Synthesizing Boundary Registers") == std::string::npos, several);
}

} // namespace

TEST(Layouts, CommandFiles) {
    for (const auto &[input, files, like] : LAYOUTS) {
        SCOPED_TRACE(input.name);
        chip_case chip(input);
        const std::string options = input.options.value_or("-add_tap");
        expect_runs(succeed(chip.run(options)), files);
        expect_commands(input.name, chip.command_files_of(files), like);
        // The bundled tools carry the same commands out.
        chip.run_in_own_folder(options);
        expect_commands(input.name, chip.command_files_of(files), like);
    }
}
