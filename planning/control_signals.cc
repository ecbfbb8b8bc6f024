#include "planning/control_signals.hh"

const CONTROL_SIGNAL_INFO CONTROL_SIGNALS[SIGNAL_COUNT] = {
    {"shift", "%SHIFT_DR", &SCAN_CELL::shift_dr, &TAP_CELL::shift_dr},
    {"clock", "%CLOCK_DR", &SCAN_CELL::clock_dr, &TAP_CELL::clock_dr},
    {"update", "%UPDATE_DR", &SCAN_CELL::update_dr, &TAP_CELL::update_dr},
    {"highz", "%HIGHZ_COMMAND", &SCAN_CELL::highz, &TAP_CELL::highz_command},
    {"mode1", "%MODE_1", &SCAN_CELL::mode_1, &TAP_CELL::mode_1},
    {"mode2", "%MODE_2", &SCAN_CELL::mode_2, &TAP_CELL::mode_2},
    {"mode3", "%MODE_3", &SCAN_CELL::mode_3, &TAP_CELL::mode_3},
    {"rst", "%TAP_RESET", &SCAN_CELL::rst, &TAP_CELL::tap_reset},
    // The TAP has no field for the boundary clock: its pin has a fixed name.
    {"bclk", nullptr, &SCAN_CELL::tck, nullptr},
};
