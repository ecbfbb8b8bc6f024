// The test bench of the cell trials: the TAP as it was written, a cell of each kind behind it.
#pragma once

#include "kit/bsdl_file.hh"
#include "kit/cell_types.hh"

/// Cells that are alike: class and control pins. One of them is tried, behind the control cell that tells it
/// of its pad where there is one.
struct TRIAL_KIND {
    int32_t cell;         ///< number of the one that is tried
    int32_t control = -1; ///< number of the cell that drives its %OE_MODE pin, or -1
    int8_t disable = -1;  ///< value of the control cell that turns the pad off
};

/// CLAMP captures nothing of the boundary register, and shows it.
constexpr int32_t TRIAL_CLAMP = CAPTURE_INSTRUCTIONS;

/// One capture: what stood there, and what each kind had in its shift stage and at its output then.
struct TRIAL_CASE {
    int32_t instruction; ///< CAPTURE_INSTRUCTION or TRIAL_CLAMP
    bool core, pin, update, second, enable;
    std::string captured, shown;
};

/// What the simulation said.
struct TRIAL_RESULTS {
    std::vector<TRIAL_CASE> cases;
    std::string idcode, capture; ///< what the TAP shifted out, the last bit first as they are written
    std::vector<int32_t>
        lengths;          ///< of the registers, by BSDL_FILE::instructions; TRIAL_BOUNDARY for that one
    std::string reset[2]; ///< outputs in EXTEST behind a reset, with 0 and with 1 loaded before
};

/// The length of a register that leads out of the TAP.
constexpr int32_t TRIAL_BOUNDARY = -1;

/// Plays the bench with Icarus Verilog. An empty text, or why there are no results.
std::string play_trials(const BSDL_FILE &file, const BOUNDARY_REGISTER &found,
                        const std::vector<TRIAL_KIND> &kinds, const std::vector<std::string> &files,
                        TRIAL_RESULTS &results);
