// Whole generated files against the expected ones in expected/.
#include "planning/tap_state.hh"
#include "rtl/tap_rtl.hh"
#include "support/run_state.hh"
#include "tests/rtl/tap_case.hh"
#include "tests/support/expected_file.hh"

#include <gtest/gtest.h>
#include <regex>

namespace {

const std::string EXPECTED = "rtl/expected/";

/// Between them, each line of every template is written at least once and left out at least once. The first
/// is there whole, the others as the lines in which they differ from it.
const tap_case WHOLE_FILES[] = {
    {"synch_large", LARGE_TABLE,
     "synch trst rst tdo_en shared_highz1 update mode1 mode3 idcode usercode external"},
    {"synch", "EXTEST 000 boundary\nSAMPLE 001 boundary\nBYPASS 111 bypass\nIDCODE 010 idcode\n",
     "synch external tdo_en tdo_en_low idcode"},
    {"small", SMALL_TABLE, "update tdo_en"},
    {"large", LARGE_TABLE, "trst rst highz update mode1 mode2 mode3 idcode usercode extra2"},
};

TEST(tap_rtl, whole_files) {
    const std::string whole = EXPECTED + WHOLE_FILES[0].name;
    for (tap_case tap : WHOLE_FILES) {
        const std::string file = EXPECTED + tap.name;
        for (const char *language : {".v", ".vhd"}) {
            expect_file(file + language, rtl_of(tap), file == whole ? "" : whole + language);
            tap.needs += " vhdl";
        }
    }
}

TEST(tap_rtl, port_only_module_is_verilog_and_fills_the_tables_of_a_hierarchical_tap) {
    tap_case tap = std::end(WHOLE_FILES)[-1];
    tap.needs += " vhdl hier";
    rtl_of(tap);
    JTAG_OPTION[OPT_PSEUDO_TAP] = 1;
    expect_file(EXPECTED + "large_empty.v", get_TAP_in_RTL());
    std::string tables;
    for (const char **table : rwv_hier_tap_port_tabG) {
        for (const char *name : rows(table))
            tables += std::string(name) + " ";
        tables += "\n";
    }
    EXPECT_EQ(tables, "TMS TDI TCK TRST \n"
                      "TDO \n"
                      "en_a en_b[2] en_b[1] en_b[0] en_c \n"
                      "BOUNDARY_out MYREG_out USERDR_out \n"
                      "first_Bcell MYREG_in USERDR_in \n"
                      "SHIFT_DR CLOCK_DR UPDATE_DR RESET MODE1 MODE2 MODE3 HIGHZ CHIP_TEST EXTRA1 EXTRA2 "
                      "velmora_test_mode velmora_scan_mode \n"
                      "\n");
}

TEST(tap_rtl, synthesis_scripts) {
    for (tap_case tap : {tap_case{"verilog", SMALL_TABLE, ""}, tap_case{"vhdl", SMALL_TABLE, "vhdl"}}) {
        rtl_of(tap);
        for (const SYNTHESIS_SCRIPT &script : bs_write_synthesize_script("chip_TAP")) {
            static const std::regex date("[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9]{2} [0-9:]{8} [0-9]{4}");
            expect_file(EXPECTED + tap.name + script.extension,
                        std::regex_replace(script.text, date, "<DATE>"),
                        tap.name == "vhdl" ? EXPECTED + "verilog" + script.extension : "");
        }
    }
}

} // namespace
