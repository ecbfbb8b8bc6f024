// Names that the user chooses against the names of the generated text: a name is refused where the RTL with
// it would not work, and nowhere else.
#include "rtl/tap_build.hh"
#include "rtl/tap_checks.hh"
#include "tests/rtl/tap_case.hh"
#include "tests/support/scratch.hh"

#include <gtest/gtest.h>
#include <regex>
#include <set>

namespace {

/// A net with two drivers is legal Verilog, so the check behind the compiler is part of it.
bool works(const std::string &text, bool vhdl) {
    scratch_folder scratch;
    scratch.write("tap", text);
    return scratch
               .run(vhdl ? "mkdir 93 08 && ghdl -a --std=93 --workdir=93 tap && ghdl -a --std=08 "
                           "--workdir=08 tap"
                         : "iverilog -g2001 -o out tap && yosys -q -p 'read_verilog tap; hierarchy -top "
                           "chip_tap; proc; flatten; check -assert'")
               .status == 0;
}

/// What the checks say of the case; empty when they let it through.
std::string refusal(const tap_case &tap) {
    scratch_folder scratch;
    run_result result = run_child(scratch, [&tap] {
        set_up_tap(tap);
        jtag_init();
        refuse_broken_rtl();
    });
    return result.status == 0 ? "" : result.out;
}

std::set<std::string> words_of(const std::string &text) {
    static const std::regex word("[A-Za-z]\\w*");
    std::set<std::string> words;
    for (std::sregex_iterator at(text.begin(), text.end(), word), end; at != end; ++at)
        words.insert(at->str());
    return words;
}

/// The case with enable pins of these names in its last instruction.
tap_case with_pins(tap_case tap, const std::string &names) {
    tap.instructions.insert(tap.instructions.size() - 1, names);
    return tap;
}

/// Every word of the text as the name of an enable pin, which stands in the decoder and in the top.
void sweep_pins(const tap_case &tap, bool vhdl) {
    std::set<std::string> words = {"U9", "u7", "SEL_other", "logic"};
    for (const char *language : {"", " vhdl"})
        words.merge(words_of(quiet_rtl_of({"", tap.instructions, tap.needs + language})));
    tap_case swept = {"", tap.instructions, tap.needs + (vhdl ? " vhdl" : "")};
    std::string accepted;
    int refused = 0;
    for (const std::string &word : words) {
        tap_case one = with_pins(swept, " " + word);
        std::string said = refusal(one);
        if (said.empty())
            accepted += " " + word;
        if (said.find("has a name of its own logic") != std::string::npos) {
            EXPECT_FALSE(works(quiet_rtl_of(one), vhdl)) << word;
            ++refused;
        }
    }
    EXPECT_GE(refused, 15);
    EXPECT_TRUE(works(quiet_rtl_of(with_pins(swept, accepted)), vhdl)) << accepted;
}

TEST(tap_names, a_name_is_refused_where_the_rtl_would_not_work_and_only_there) {
    const tap_case large = {"", LARGE_TABLE, "trst rst highz update mode1 mode2 mode3 idcode usercode"};
    for (bool vhdl : {false, true}) {
        SCOPED_TRACE(vhdl ? "in VHDL" : "in Verilog");
        sweep_pins(large, vhdl);
    }
    // The same name in other modules: TDI does not reach the controller, but the registers.
    for (const char *name : {"CAP_IR", "BYPASS_cell", "tms_count", "TDO_cell"})
        for (bool vhdl : {false, true}) {
            tap_case tap = {"", SMALL_TABLE, std::string("update tdi=") + name + (vhdl ? " vhdl" : "")};
            EXPECT_EQ(refusal(tap).empty(), works(quiet_rtl_of(tap), vhdl)) << name << vhdl;
        }
}

} // namespace
