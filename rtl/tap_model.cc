#include "rtl/tap_model.hh"

#include "planning/tap_state.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <cmath>
#include <unordered_map>

int32_t INST_EXIST[KNOWN_COUNT] = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
int32_t INST_LEN = 0;
int32_t DR_SEL_LINE = 0;
const char **ACCESS_REG = nullptr;
int32_t HIZ_OVERLAP = 0;
ENABLE_PIN *INST_ENABLE_PIN = nullptr;

namespace {

const char *const KNOWN_NAMES[KNOWN_COUNT] = {"intest", "extest",   "sample",      "chip_test",
                                              "idcode", "usercode", "bypass",      "highz",
                                              "clamp",  "runbist",  "velmora_atpg"};

/// What an instruction must access, in the order of the checks; `other` is a second register that will do.
struct ACCESS_RULE {
    KNOWN_INSTRUCTION known;
    const char *name, *reg, *other;
    const char *shown; ///< the register as the message writes it
};
constexpr ACCESS_RULE ACCESS_RULES[] = {
    {KNOWN_BYPASS, "BYPASS", "bypass", nullptr, "bypass"},
    {KNOWN_EXTEST, "EXTEST", "boundary", nullptr, "boundary"},
    {KNOWN_SAMPLE, "SAMPLE", "boundary", nullptr, "boundary"},
    {KNOWN_INTEST, "INTEST", "boundary", nullptr, "boundary"},
    {KNOWN_CLAMP, "CLAMP", "bypass", nullptr, "bypass"},
    {KNOWN_HIGHZ, "HIGHZ", "bypass", nullptr, "bypass"},
    {KNOWN_IDCODE, "IDCODE", "idcode", nullptr, "IDCODE"},
    {KNOWN_USERCODE, "USERCODE", "usercode", "idcode", "USERCODE"},
};

/// Rows of a table by name, in lower case.
using ROWS_BY_NAME = std::unordered_map<std::string, int32_t>;

ROWS_BY_NAME access_rows; ///< rows of ACCESS_REG; whoever adds a register writes it

/// Adds the enables of one instruction to INST_ENABLE_PIN.
void add_enable_pins(const INSTRUCTION &instruction, ROWS_BY_NAME &known) {
    for (int32_t i = 0; i < DYNA_count(instruction.enable_pins); ++i) {
        const char *name = instruction.enable_pins[i];
        const char *value = instruction.enable_values[i] ? instruction.enable_values[i] : "1";
        auto [place, is_new] = known.try_emplace(lower_case(name), DYNA_count(INST_ENABLE_PIN));
        if (is_new)
            append_row(INST_ENABLE_PIN,
                       {name, value, instruction.gate_signals[i], instruction.gate_kinds[i]});
        const ENABLE_PIN &pin = INST_ENABLE_PIN[place->second];
        if (std::string_view(pin.value).size() != std::string_view(value).size())
            vmr_fail("ERROR: (%s) the length of enable pin '%s' are different in INSTRUCTION '%s'.\n",
                     JTAG_BSC_FILE, pin.name, instruction.name);
    }
}

void add_access_register(std::string_view name) {
    if (access_rows.try_emplace(lower_case(name), DYNA_count(ACCESS_REG)).second)
        append_row<const char *>(ACCESS_REG, keep_text(name));
}

void check_what_instructions_access() {
    for (const ACCESS_RULE &rule : ACCESS_RULES) {
        if (!has_instruction(rule.known))
            continue;
        const char *reg = INSTRUCTIONS[INST_EXIST[rule.known]].register_name;
        if (!same_text_no_case(reg, rule.reg) && !(rule.other && same_text_no_case(reg, rule.other)))
            vmr_fail("ERROR: (%s) INSTRUCTION %s must access %s register.\n\n", JTAG_BSC_FILE, rule.name,
                     rule.shown);
    }
}

/// Everything of set_up_various_flags back to its empty state.
void init_various_flags() {
    for (int32_t &row : INST_EXIST)
        row = -1;
    DYNA_free(&ACCESS_REG);
    ACCESS_REG = DYNA_init<const char *>();
    access_rows.clear();
    add_access_register("BYPASS");
    DYNA_free(&INST_ENABLE_PIN);
    INST_ENABLE_PIN = DYNA_init<ENABLE_PIN>();
    for (STANDARD_PORT_STATE &port : TAP_PORT)
        port.row = nullptr;
}

} // namespace

void set_up_various_flags() {
    init_various_flags();
    INST_LEN = 0;
    if (DYNA_count(INSTRUCTIONS) > 0 && DYNA_count(INSTRUCTIONS[0].patterns) > 0)
        INST_LEN = static_cast<int32_t>(std::string_view(INSTRUCTIONS[0].patterns[0]).size());

    int32_t row = 0;
    ROWS_BY_NAME enable_pins;
    for (const INSTRUCTION &instruction : rows(INSTRUCTIONS)) {
        for (int32_t known = 0; known < KNOWN_COUNT; ++known)
            if (same_text_no_case(instruction.name, KNOWN_NAMES[known]))
                INST_EXIST[known] = row;
        add_access_register(register_base(instruction.register_name));
        add_enable_pins(instruction, enable_pins);
        ++row;
    }
    if (!has_instruction(KNOWN_EXTEST) || !has_instruction(KNOWN_SAMPLE) || !has_instruction(KNOWN_BYPASS))
        vmr_fail("ERROR: (%s) -add_tap option required INSTRUCTION\n"
                 "       EXTEST, SAMPLE and BYPASS declared in %%INSTRUCTION_TABLE.\n\n",
                 JTAG_BSC_FILE);
    check_what_instructions_access();
    DR_SEL_LINE = static_cast<int32_t>(std::ceil(std::log10(DYNA_count(ACCESS_REG)) / std::log10(2.0)));
}

std::string_view register_base(const char *register_name) {
    std::string_view text = register_name ? register_name : "bypass";
    return text.substr(0, text.find('['));
}

int32_t find_access_register(std::string_view name) {
    auto known = access_rows.find(lower_case(name));
    return known == access_rows.end() ? -1 : known->second;
}

bool is_register(int32_t row, const char *name) {
    return same_text_no_case(ACCESS_REG[row], name);
}

bool is_user_register(int32_t row) {
    return !is_register(row, "boundary") && !is_register(row, "bypass") && !is_register(row, "idcode") &&
           !is_register(row, "usercode");
}

bool has_id_register() {
    return IDCODE_REG != nullptr && has_instruction(KNOWN_IDCODE);
}

bool has_id_mode() {
    return has_instruction(KNOWN_IDCODE) && has_instruction(KNOWN_USERCODE);
}

int32_t highz_mode() {
    // A mode that no cell and no pad uses has no port; its name is then free for the command's own.
    bool shared = HIZ_OVERLAP >= 1 && HIZ_OVERLAP <= 3 && BCELL_HAS[MODE_SIGNALS[HIZ_OVERLAP - 1]];
    return has_instruction(KNOWN_HIGHZ) && shared ? HIZ_OVERLAP : 0;
}

bool has_highz_port() {
    return has_instruction(KNOWN_HIGHZ) && highz_mode() == 0;
}

std::vector<std::string> instruction_opcodes(int32_t row) {
    std::vector<std::string> opcodes;
    if (row >= 0)
        for (const char *pattern : rows(INSTRUCTIONS[row].patterns))
            opcodes.emplace_back(pattern);
    return opcodes;
}

std::string capture_pattern() {
    if (DYNA_count(INST_CAPTURE) > 0)
        return INST_CAPTURE[0];
    return integer_to_binary_code(1, INST_LEN);
}

std::string reset_opcode() {
    for (KNOWN_INSTRUCTION known : {KNOWN_IDCODE, KNOWN_USERCODE, KNOWN_BYPASS})
        if (std::vector<std::string> opcodes = instruction_opcodes(INST_EXIST[known]); !opcodes.empty())
            return opcodes[0];
    return "";
}

std::string integer_to_binary_code(int32_t value, int32_t width) {
    std::string code;
    for (int32_t bit = width - 1; bit >= 0; --bit)
        code += bit < 31 && ((value >> bit) & 1) != 0 ? '1' : '0';
    return code;
}
