// Test patterns of an inserted chip: one list of steps, made once from the register that the walk found, and
// written as SVF, as a Verilog bench, and as a table of what each pin is tried for.
//
// Bits of a scan stand in the order in which they are shifted: bit 0 goes in and comes out first, so bit i of
// a boundary scan is cell i. Texts over the pins have a letter per port id of the design.
#pragma once

#include "kit/boundary_register.hh"
#include "kit/bsdl_file.hh"

#include <string>
#include <vector>

/// What the bench does with a pin.
enum PATTERN_ROLE : uint8_t {
    PIN_TEST,   ///< a port of the TAP
    PIN_DRIVEN, ///< the chip never drives it: driven at all times
    PIN_BOTH,   ///< driven while the register holds its pad off
    PIN_SEEN,   ///< pulled weakly and looked at
    PIN_LEFT,   ///< not touched: power, or the second port on a net
};

struct PATTERN_PIN {
    std::string name;
    PATTERN_ROLE role = PIN_LEFT;
    bool is_pulled = false; ///< weakly, since the chip may release it
    int32_t minus_of = -1;  ///< the plus leg; this pin is its complement
    char held = '-';        ///< value that a compliance pin keeps
    char pull = 'z';        ///< what the pad's own resistor makes of the pin: '0', '1', 'z', '-' for a keeper
};

enum PATTERN_KIND : uint8_t {
    STEP_RESET,
    STEP_TRST,
    STEP_IR,
    STEP_DR,
    STEP_PINS,
    STEP_WALK, ///< through the states of the TAP, from Run-Test/Idle and back
    STEP_OPEN, ///< TDI, TMS and TRST are let go
};

/// The rules of `rimkit check` that an engine proves.
enum STEP_RULE : int32_t {
    RULE_STATES = 1,
    RULE_FIVE_ONES = 2,
    RULE_TRST = 3,
    RULE_OPEN_INPUTS = 5,
    RULE_INSTRUCTION = 6,
    RULE_RESET = 7,
    RULE_BYPASS = 8,
    RULE_UNLISTED = 9,
    RULE_IDCODE = 10,
    RULE_TDO = 11,
    RULE_FLUSH = 12,
    RULE_UNSELECTED = 14,
    RULE_OFF_VALUES = 18,
    RULE_EXTEST = 19,
    RULE_SAMPLE = 21,
    RULE_CLAMP = 23,
    RULE_HIGHZ = 24,
    RULE_INTEST = 25,
    RULE_RUNBIST = 26,
};

/// TRST behind a walk, which then ends wherever it is; TCK stands meanwhile.
enum WALK_RESET : int32_t { WALK_RESET_NONE, WALK_RESET_LOW, WALK_RESET_HIGH };

/// One step. Texts that do not apply are empty.
struct PATTERN_STEP {
    PATTERN_KIND kind;
    std::string reason;
    std::string tdi; ///< '0', '1'; of STEP_WALK the values of TMS
    std::string tdo; ///< '0', '1' that the chip alone promises, '-' else; of STEP_WALK '1' in a shift state
    std::string
        driven; ///< '0', '1' where a pin's value decides, '=' for what the scan before had, '-' else, and
                ///< what the pin tells, as the bench reads it at Capture-DR: 'p' the bit is the pin's
                ///< value; 'o' the same while the captured enable is on; 'c' it is on and that, or it is
                ///< off and the pin free; 'b' the bit is the pin's value, which is free while it is off
    std::string drive;       ///< of STEP_PINS: '0', '1', and 'z' 'u' to leave alone, pulled to 0 or 1
    std::string shown;       ///< of STEP_PINS: '0', '1', 'z' released, 'h' 'l' the same on a pad that pulls,
                             ///< 'd' driven either way, 's' as at the step before that had an 's', '-'
                             ///< not looked at
    int32_t pause = 0;       ///< bits before a stop in Pause-DR; 0 for none; of STEP_WALK a WALK_RESET
    bool needs_pins = false; ///< says nothing without a bench or a tester: left out of SVF
    int32_t rule = 0;        ///< of `rimkit check` that a fault in the step breaks; 0 for none
    bool is_note = false;    ///< the chip need not be so: the bench tells it, and counts no fault
};

/// How a cell's bit follows its pin.
struct PATTERN_CELL {
    std::string name; ///< for messages
    int32_t pin = -1;
    bool inverted = false;
    int32_t control = -1; ///< cell of the enable, which is off at `disable`
    int8_t disable = -1;
};

/// What a pin was tried for: the first step that shows it, or -1.
struct PATTERN_COVER {
    int32_t drives[3] = {-1, -1, -1}; ///< 0, 1, released
    int32_t drives_looped = -1;       ///< its own cell captures what it drives: SVF alone sees it
    int32_t captures[2] = {-1, -1};
};

struct PATTERN_LIST {
    std::string design;
    std::vector<PATTERN_PIN> pins;   ///< by port id
    std::vector<PATTERN_CELL> cells; ///< by number
    std::vector<PATTERN_STEP> steps;
    std::vector<PATTERN_COVER> cover; ///< by port id
    std::vector<std::string> notes;   ///< what is not covered, a sentence each
    bool tdo_releases = false;        ///< the TDO pad is off outside the shift states
    int32_t test_ports[STANDARD_PORT_COUNT];
    double frequency = 1e6;
    int32_t told_faults = 40; ///< faults that the bench tells one by one
    size_t walk_limit = 64;   ///< outputs, and controls, that get walking patterns
};

/// Fills pins, cells, steps and cover. `instructions` has what bsdl_take_instructions found.
void make_patterns(PATTERN_LIST &list, const BOUNDARY_REGISTER &found, const BSDL_FILE &instructions);

/// The steps as SVF (Serial Vector Format, revision E). `line_of_step` gets the line of each, 0 for one that
/// is left out.
std::string pattern_svf(const PATTERN_LIST &list, std::vector<int32_t> &line_of_step);
/// The steps as a bench in Verilog-2001 around the module DESIGN_jtag.
std::string pattern_bench(const PATTERN_LIST &list);
/// The steps as STIL (IEEE 1450): a flat vector for each period of TCK and each look at the pins.
std::string pattern_stil(const PATTERN_LIST &list);
/// What each pin is tried for, and by what.
std::string pattern_cover(const PATTERN_LIST &list, const std::vector<int32_t> &line_of_step);
