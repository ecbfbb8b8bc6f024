// What the description tables mean for the TAP: the instructions that matter to it, the data registers, the
// enable pins. jtag_init sets all of this once, before any text is made; everything else of this folder reads
// it.
#pragma once

#include "description/tables.hh"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The two languages of the generated text.
enum RTL_LANGUAGE { VERILOG, VHDL };

/// The instructions that the TAP treats by name.
enum KNOWN_INSTRUCTION : int32_t {
    KNOWN_INTEST,
    KNOWN_EXTEST,
    KNOWN_SAMPLE,
    KNOWN_CHIP_TEST,
    KNOWN_IDCODE,
    KNOWN_USERCODE,
    KNOWN_BYPASS,
    KNOWN_HIGHZ,
    KNOWN_CLAMP,
    KNOWN_RUNBIST,
    KNOWN_VELMORA_ATPG,
    KNOWN_COUNT
};

/// Row of each known instruction in INSTRUCTIONS (the last one of its name), or -1.
extern int32_t INST_EXIST[KNOWN_COUNT];

inline bool has_instruction(KNOWN_INSTRUCTION known) {
    return INST_EXIST[known] >= 0;
}

extern int32_t INST_LEN;        ///< length of an opcode, from the first pattern of the first instruction
extern int32_t DR_SEL_LINE;     ///< width of the code that selects among ACCESS_REG
extern const char **ACCESS_REG; ///< table: the data registers by name, BYPASS first
extern int32_t HIZ_OVERLAP;     ///< 1 to 3 when %HIGHZ_COMMAND is the pin of that mode, else 0

/// One enable pin of the instruction table, by its first use.
struct ENABLE_PIN {
    const char *name;
    const char *value;       ///< pattern of the first use; its length is the pin's width
    const char *gate_signal; ///< second input of the gate, or null
    int32_t gate_kind;       ///< GATE_KIND
};
extern ENABLE_PIN *INST_ENABLE_PIN; ///< table, in order of first use

/// Checks the instruction table and fills all of the above but HIZ_OVERLAP. Ends the run at the first fault.
void set_up_various_flags();

/// The register's text up to its first '['.
std::string_view register_base(const char *register_name);
/// Row of ACCESS_REG that `name` means, compared without regard to case, or -1.
int32_t find_access_register(std::string_view name);
/// True when row `row` of ACCESS_REG is called `name`, compared without regard to case.
bool is_register(int32_t row, const char *name);
/// True for a register that lives outside the TAP: none of boundary, bypass, idcode, usercode.
bool is_user_register(int32_t row);

/// True when the TAP holds the identification register: %IDCODE_REGISTER and the instruction are both given.
bool has_id_register();
/// True when that register also holds the user code: both instructions exist.
bool has_id_mode();
/// True when the high-impedance command is a port of its own, and not one of the mode ports.
bool has_highz_port();
/// The mode signal, 1 to 3, that the opcodes of HIGHZ join; 0 when they have a port of their own.
int32_t highz_mode();
/// The opcodes of row `row` of INSTRUCTIONS; empty for -1.
std::vector<std::string> instruction_opcodes(int32_t row);
/// The pattern that the instruction register captures: the first of %INSTRUCTION_CAPTURE, else 0...01.
std::string capture_pattern();
/// The opcode that is current after Test-Logic-Reset: of IDCODE, else USERCODE, else BYPASS.
std::string reset_opcode();
/// "1010" for (10, 4): the lowest `width` bits of `value`, most significant first.
std::string integer_to_binary_code(int32_t value, int32_t width);
