// Every generated variant is accepted by the tools that users have: each in Verilog and in VHDL.
#include "tests/rtl/tap_case.hh"
#include "tests/support/scratch.hh"

#include <gtest/gtest.h>

namespace {

/// Name and command of a tool; the command reads the file in the scratch folder.
struct tool {
    const char *name, *command;
    bool vhdl;
};

const tool TOOLS[] = {
    {"iverilog", "iverilog -g2001 -o tap.vvp tap.v", false},
    {"verilator", "verilator --lint-only -Wno-fatal --no-timing --top-module chip_tap tap.v", false},
    {"yosys",
     "yosys -q -p 'read_verilog tap.v; hierarchy -check -top chip_tap; proc; flatten; check -assert'", false},
    {"ghdl 93",
     "mkdir -p w93 && ghdl -a --std=93 --workdir=w93 tap.vhd && ghdl -e --std=93 --workdir=w93 chip_tap",
     true},
    {"ghdl 08",
     "mkdir -p w08 && ghdl -a --std=08 --workdir=w08 tap.vhd && ghdl -e --std=08 --workdir=w08 chip_tap",
     true},
};

TEST(tap_rtl, every_variant_is_accepted_by_the_tools) {
    for (const tap_case &tap : tool_cases())
        for (bool vhdl : {false, true}) {
            SCOPED_TRACE(tap.name + (vhdl ? " in VHDL" : " in Verilog"));
            tap_case variant = tap;
            variant.needs += vhdl ? " vhdl" : "";
            scratch_folder scratch;
            scratch.write(vhdl ? "tap.vhd" : "tap.v", quiet_rtl_of(variant));
            for (const tool &tool : TOOLS)
                if (tool.vhdl == vhdl) {
                    run_result result = scratch.run(tool.command);
                    EXPECT_EQ(result.status, 0) << tool.name << "\n" << result.out << result.err;
                }
        }
}

} // namespace
