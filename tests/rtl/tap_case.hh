// One TAP as a line of a test's table: instruction table, cells' needs, switches. Set up in the process, so
// that each test sees the text and the messages of that TAP alone.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct tap_case {
    std::string name;
    /// One instruction a line: name, opcodes with commas, register, then enables as "pin", "pin=101",
    /// "pin=0", "pin:AND:SHIFT_DR".
    std::string instructions;
    /// Words. Switches: synch vhdl external. What the cells and the chip have: trst tdo_en tdo_en_low update
    /// rst highz mode1 mode2 mode3 extra<n> hier. Of the description: idcode, usercode, nocapture (no capture
    /// pattern), shared_highz<n> (the command on the pin of that mode), tdi=<name>.
    std::string needs;
};

/// The instruction tables that the tests share.
extern const char *const SMALL_TABLE; ///< EXTEST, SAMPLE, BYPASS and nothing else
extern const char *const LARGE_TABLE; ///< every known instruction, two user registers, three enable pins

/// Sets all tables and switches as the case tells, as the readers and the checks before would.
void set_up_tap(const tap_case &tap);

/// The RTL of the case after jtag_init, without writing files; its messages go to the console, or nowhere.
std::string rtl_of(const tap_case &tap);
std::string quiet_rtl_of(const tap_case &tap);

/// The cases that every tool must accept.
const std::vector<tap_case> &tool_cases();
