// What `start` finds out of a chip, and what the three drafts are written from.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

/// A value that a pin must have for the pad to be read or to drive.
struct PIN_VALUE {
    std::string pin;
    bool value;
    bool for_reading;
};

enum PAD_USE {
    USE_UNKNOWN, ///< no pad that the tables or the names know
    USE_INPUT,
    USE_OUTPUT,      ///< 2-state
    USE_THREE_STATE, ///< output with an enable
    USE_BIDIRECTIONAL,
    USE_POWER,
    USE_ANALOG,
};

/// What one library cell does as a pad: from its Liberty entry, else guessed from its pins.
struct PAD_KIND {
    std::string cell;
    PAD_USE use = USE_UNKNOWN;
    std::string pad;       ///< the pin on the port
    std::string pad_minus; ///< the other leg of a differential pad, or empty
    std::string input;     ///< the core drives it; empty for none
    std::string output;    ///< the core reads it; empty for none
    bool input_inverted = false;
    bool output_inverted = false;
    std::string enable_low;          ///< the pad drives at 0
    std::string enable_high;         ///< the pad drives at 1
    std::vector<PIN_VALUE> gates;    ///< without these values the pad does not read or drive
    std::vector<std::string> others; ///< further input pins: drive modes, pulls, slew
    std::string source;              ///< "pads.lib:137", or what it was guessed from
    std::vector<std::string> doubts; ///< what an engineer has to look at, one line each
};

/// How a port is handled.
enum PORT_USE { PORT_SCANNED, PORT_TEST, PORT_SKIPPED };

/// What the declared direction of a port is to be changed to.
enum PORT_READ_AS { READ_AS_DECLARED, READ_AS_INPUT, READ_AS_OUTPUT };

struct PORT_PLAN {
    std::string name;
    PORT_USE use = PORT_SKIPPED;
    const PAD_KIND *pad = nullptr; ///< null for none
    int32_t pad_obj = -1;          ///< object of the flat design
    std::string pad_instance;
    const char *direction = ""; ///< last column of the pin file: IN, OUT, BI, CLK, PWR
    bool is_clock = false;
    std::string reason;        ///< why it is skipped, or why the direction is what it is
    std::string doubt;         ///< what to look at in its row, or empty
    bool enable_works = false; ///< the pad's enable is on a net that something drives
    std::string pad_word;      ///< PAD_EN_L, PAD_EN_H or empty
    PORT_READ_AS read_as = READ_AS_DECLARED;
};

/// The five ports of the TAP.
enum TEST_PORT : int { TEST_TDI, TEST_TMS, TEST_TCK, TEST_TRST, TEST_TDO, TEST_PORT_COUNT };
struct TEST_PORT_PLAN {
    std::string name; ///< empty: there is none
    bool is_added;    ///< the design has no such port
};

/// What a pin of a pad kind has at its instances, for the comments of the library file.
struct PIN_STATE {
    std::string pin;
    int32_t zero = 0, one = 0, open = 0;
    int32_t tied = 0;                  ///< by a cell without inputs
    std::vector<std::string> driven{}; ///< ports of the pads whose pin the core or a port drives
};

/// One row of the pin file: a port or, with `port` empty, a pin of the package that is no signal.
struct PIN_PLAN {
    std::string number;
    std::string package_name;
    std::string port;
    const char *direction;
};

struct CHIP_PLAN {
    std::string design;
    std::deque<PAD_KIND> pads; ///< those in use, in the order of their first port
    std::vector<PORT_PLAN> ports;
    std::unordered_map<std::string, int32_t> port_of_name;
    std::array<TEST_PORT_PLAN, TEST_PORT_COUNT> tests;
    std::unordered_map<std::string, std::vector<PIN_STATE>> pin_states; ///< by pad cell
    std::vector<PIN_PLAN> pins; ///< the rows of the pin file, in order
    std::string order_source;   ///< where the order comes from
    std::string package;
    std::string idcode; ///< 32 digits, or empty
    bool with_intest = false;
    bool synchronous = false; ///< cells that TCK clocks, for -synch
};

/// The plan's port of that name, or null.
inline const PORT_PLAN *find_port_plan(const CHIP_PLAN &plan, const std::string &name) {
    auto found = plan.port_of_name.find(name);
    return found != plan.port_of_name.end() ? &plan.ports[static_cast<size_t>(found->second)] : nullptr;
}
inline PORT_PLAN *find_port_plan(CHIP_PLAN &plan, const std::string &name) {
    return const_cast<PORT_PLAN *>(find_port_plan(std::as_const(plan), name));
}
