// A reference TAP after IEEE 1149.1, written for the tests: it knows the state diagram, the registers and
// what each instruction of LARGE_TABLE does, and nothing of how the generated logic does it.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

/// Outputs of one cycle, sampled in the low phase of TCK behind its falling edge; the benches pack them in
/// this order.
enum reference_output {
    OUT_TDO_DRIVEN, // TDO is not at high impedance, or its enable port says so
    OUT_TDO,
    OUT_SHIFT_DR,
    OUT_CLOCK_ACTIVE, // the data registers will be clocked at the next rising edge
    OUT_UPDATE_DR,
    OUT_RESET,
    OUT_MODE1,
    OUT_MODE2,
    OUT_MODE3,
    OUT_HIGHZ,
    OUT_CHIP_TEST,
    OUT_EN_A,
    OUT_EN_B2,
    OUT_EN_B1,
    OUT_EN_B0,
    OUT_EN_C,
    OUT_TEST_MODE,
    OUT_SCAN_MODE,
    OUT_CHAIN, // TDI on the way to the boundary register and the user registers
    OUTPUT_COUNT
};

/// Inputs of one cycle: TMS, TDI, TRST (high when there is none), the outputs of the boundary and of the two
/// user registers.
constexpr int INPUT_COUNT = 6;

/// The stimulus with its expected outputs, a line per cycle: inputs, expected values, mask of the values that
/// count.
struct reference_run {
    std::string vectors;
    int cycles = 0;
    std::set<std::pair<int, int>> arcs; ///< state and TMS of every transition taken
};

/// Resets in both ways, walks all arcs, and scans every opcode with a data register scan behind it.
/// `has_trst` tells whether the TAP has a reset port, `clamp_holds` whether CLAMP blocks the update of the
/// boundary register.
reference_run make_reference_run(bool has_trst, bool clamp_holds);
