#include "rtl/tap_checks.hh"

#include "description/opcode_set.hh"
#include "planning/planning.hh"
#include "planning/tap_state.hh"
#include "rtl/module_names.hh"
#include "rtl/tap_ports.hh"
#include "rtl/tap_values.hh"

#include "support/console.hh"
#include "support/faults.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>
#include <functional>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {

bool is_pattern(std::string_view text) {
    return !text.empty() && text.find_first_not_of("01Xx") == std::string_view::npos;
}

/// Every opcode has the length of the first, every instruction has one, and an instruction register has two
/// bits.
void refuse_opcodes() {
    each_apart(rows(INSTRUCTIONS), [](const INSTRUCTION &instruction) {
        if (DYNA_count(instruction.patterns) == 0)
            vmr_fail("ERROR: (%s) INSTRUCTION '%s' has no opcode.\n\n", JTAG_BSC_FILE, instruction.name);
        for (const char *pattern : rows(instruction.patterns)) {
            if (!is_pattern(pattern))
                vmr_fail("ERROR: (%s) '%s' is no opcode of INSTRUCTION '%s'.\n\n", JTAG_BSC_FILE, pattern,
                         instruction.name);
            if (static_cast<int32_t>(std::string_view(pattern).size()) != INST_LEN)
                vmr_fail("ERROR: (%s) opcode '%s' of INSTRUCTION '%s' is not %d bits long.\n\n",
                         JTAG_BSC_FILE, pattern, instruction.name, INST_LEN);
        }
    });
    if (INST_LEN < 2)
        vmr_fail("ERROR: (%s) an opcode must have two bits at least.\n\n", JTAG_BSC_FILE);
}

void refuse_code(const char *keyword, const char *pattern, int32_t length) {
    if (!is_pattern(pattern) || static_cast<int32_t>(std::string_view(pattern).size()) != length)
        vmr_fail("ERROR: (%s) pattern '%s' of %s is not a pattern of %d bits.\n\n", JTAG_BSC_FILE, pattern,
                 keyword, length);
}

/// An instruction that reads the user code out of the identification register: any but IDCODE that selects
/// it. Null when there is none, so that the code does not matter.
const char *user_code_reader() {
    for (int32_t row = 0; row < DYNA_count(INSTRUCTIONS); ++row)
        if (row != INST_EXIST[KNOWN_IDCODE] &&
            is_register(find_access_register(register_base(INSTRUCTIONS[row].register_name)), "idcode"))
            return INSTRUCTIONS[row].name;
    return nullptr;
}

void refuse_codes() {
    constexpr int32_t ID_LENGTH = 32;
    if (DYNA_count(INST_CAPTURE) > 0)
        refuse_code("%INSTRUCTION_CAPTURE", INST_CAPTURE[0], INST_LEN);
    if (!has_id_register())
        return;
    refuse_code("%IDCODE_REGISTER", IDCODE_REG, ID_LENGTH);
    if (!has_id_mode())
        return;
    if (DYNA_count(USERCODE_REG) > 0)
        refuse_code("%USERCODE_REGISTER", USERCODE_REG[0], ID_LENGTH);
    else if (const char *instruction = user_code_reader())
        vmr_fail("ERROR: (%s) INSTRUCTION %s needs a %%USERCODE_REGISTER.\n\n", JTAG_BSC_FILE, instruction);
}

/// A value of an enable pin of several bits is part of the text.
void refuse_enable_values() {
    for (const INSTRUCTION &instruction : rows(INSTRUCTIONS))
        for (int32_t i = 0; i < DYNA_count(instruction.enable_pins); ++i)
            if (const char *value = instruction.enable_values[i]; value != nullptr && !is_pattern(value))
                vmr_fail("ERROR: (%s) '%s' is no value of enable pin '%s' in INSTRUCTION '%s'.\n\n",
                         JTAG_BSC_FILE, value, instruction.enable_pins[i], instruction.name);
}

/// The cells' high-impedance pins need a source in the TAP: the command's own port, or the mode that it
/// shares.
void refuse_highz_without_source() {
    if (!option(OPT_ADD_TAP) || !BCELL_HAS[SIG_HIGHZ] || has_instruction(KNOWN_HIGHZ))
        return;
    int32_t mode = check_hiz_signal();
    if (mode == 0 || !BCELL_HAS[MODE_SIGNALS[mode - 1]])
        vmr_fail("ERROR: (%s) the scan cells have %%HIGHZ, but %%INSTRUCTION_TABLE has no HIGHZ.\n\n",
                 JTAG_BSC_FILE);
}

RTL_LANGUAGE rtl_language() {
    return option(OPT_VHDL) ? VHDL : VERILOG;
}

void refuse_name(const std::string &name, RTL_LANGUAGE language, bool unusable) {
    if (unusable)
        vmr_fail("ERROR: (%s) '%s' can't be a name in the %s of TAP module '%s'.\n\n", JTAG_BSC_FILE,
                 name.c_str(), language == VHDL ? "VHDL" : "Verilog", TAP_MODULE_NAME);
}

/// The port-only module is Verilog in any case.
void refuse_words(const std::string &name) {
    for (RTL_LANGUAGE language : {VERILOG, rtl_language()})
        refuse_name(name, language, is_unusable_name(name, language));
}

/// A VHDL unit can't have the name of a library, nor of a type of its own ports.
void refuse_module_name() {
    refuse_words(TAP_MODULE_NAME);
    for (const char *word : {"ieee", "std", "work", "std_logic", "std_logic_vector"})
        refuse_name(TAP_MODULE_NAME, VHDL, option(OPT_VHDL) && name_key(TAP_MODULE_NAME, VHDL) == word);
    if (is_name_of_part(TAP_MODULE_NAME, rtl_language()))
        vmr_fail("ERROR: (%s) TAP module '%s' has the name of a module inside it.\n\n", JTAG_BSC_FILE,
                 TAP_MODULE_NAME);
}

[[noreturn]] void refuse_port(const TAP_MODULE_PORT &port, const char *fault) {
    vmr_fail("ERROR: (%s) port '%s' of TAP module '%s' has %s.\n\n", JTAG_BSC_FILE, port.name.c_str(),
             TAP_MODULE_NAME, fault);
}

/// In each module that has a port, nothing else may bear its name or be meant by it. The modules of a Verilog
/// file have a space of names for themselves.
void refuse_names_of_logic(const std::vector<TAP_MODULE_PORT> &ports,
                           const std::vector<RTL_MODULE> &modules) {
    RTL_LANGUAGE language = rtl_language();
    for (const RTL_MODULE &module : modules) {
        MODULE_NAMES names = module_names(module.text, language);
        for (const TAP_MODULE_PORT &port : ports) {
            std::string key = name_key(port.name, language);
            bool meets = names.given.contains(key) && names.own.contains(key);
            if (meets && !port.is_fixed && !(language == VERILOG && is_name_of_part(key, VERILOG)))
                refuse_port(port, "a name of its own logic");
        }
    }
}

void refuse_names(std::vector<RTL_MODULE> &modules) {
    refuse_module_name();
    std::vector<TAP_MODULE_PORT> ports = tap_ports(rtl_language());
    std::unordered_set<std::string> taken;
    each_apart(ports, [&taken](const TAP_MODULE_PORT &port) {
        refuse_words(port.name);
        if (!taken.insert(name_key(port.name, rtl_language())).second)
            refuse_port(port, "the name of another port");
    });
    for (const char *reg : rows(ACCESS_REG))
        refuse_words(std::string(reg) + "_out");
    modules = tap_modules(rtl_language());
    refuse_names_of_logic(ports, modules);
}

/// Writes messages that have been gathered: to write each on its own takes ten times as long as to make it.
void print_gathered(std::string &text) {
    print_out_str(text);
    text.clear();
}
void print_when_long(std::string &text) {
    if (constexpr size_t much = 1 << 16; text.size() >= much)
        print_gathered(text);
}

/// Opcodes that meet one of an earlier instruction: the earlier row wins.
void warn_colliding_opcodes() {
    OPCODE_SET earlier;
    std::vector<std::pair<const char *, const char *>> texts; // opcode and instruction of each
    std::string warnings;
    for (const INSTRUCTION &instruction : rows(INSTRUCTIONS)) {
        for (const char *opcode : rows(instruction.patterns)) {
            if (int32_t first = earlier.first_that_meets(opcode); first >= 0)
                warnings += format_text("WARNING: (%s) opcode '%s' of INSTRUCTION '%s' collides with\n"
                                        "         opcode '%s' of INSTRUCTION '%s', which wins.\n\n",
                                        JTAG_BSC_FILE, opcode, instruction.name,
                                        texts[static_cast<size_t>(first)].first,
                                        texts[static_cast<size_t>(first)].second);
            print_when_long(warnings);
        }
        for (const char *opcode : rows(instruction.patterns)) {
            earlier.add(opcode);
            texts.emplace_back(opcode, instruction.name);
        }
    }
    print_gathered(warnings);
}

/// The decoder compares an X literally, so that such an opcode decodes to nothing in hardware.
void warn_open_opcodes() {
    std::string warnings;
    for (const INSTRUCTION &instruction : rows(INSTRUCTIONS))
        for (const char *pattern : rows(instruction.patterns)) {
            if (std::ranges::any_of(std::string_view(pattern), is_any_bit))
                warnings +=
                    format_text("WARNING: (%s) opcode '%s' of INSTRUCTION '%s' is compared as it stands,\n"
                                "         its X is not expanded.\n\n",
                                JTAG_BSC_FILE, pattern, instruction.name);
            print_when_long(warnings);
        }
    print_gathered(warnings);
}

void warn_capture() {
    std::string pattern = capture_pattern();
    if (DYNA_count(INST_CAPTURE) == 0)
        vmr_printf("WARNING: (%s) can't find %%INSTRUCTION_CAPTURE.\n"
                   "         Using default pattern -> %s.\n\n",
                   JTAG_BSC_FILE, pattern.c_str());
    else if (pattern.substr(pattern.size() - 2) != "01")
        vmr_printf("WARNING: (%s) %%INSTRUCTION_CAPTURE '%s' doesn't end in 01.\n\n", JTAG_BSC_FILE,
                   pattern.c_str());
}

void warn_undriven_registers() {
    for (const INSTRUCTION &instruction : rows(INSTRUCTIONS)) {
        int32_t row = find_access_register(register_base(instruction.register_name));
        if (is_undriven_register(row))
            vmr_printf("WARNING: (%s) nothing drives register '%s' that INSTRUCTION '%s' selects.\n"
                       "         Its output will be tied to 0.\n\n",
                       JTAG_BSC_FILE, ACCESS_REG[row], instruction.name);
    }
}

void warn_enable_pins(RTL_LANGUAGE language) {
    std::unordered_map<std::string, const char *> spelling;
    for (const ENABLE_PIN &pin : rows(INST_ENABLE_PIN))
        spelling.emplace(lower_case(pin.name), pin.name);
    for (const INSTRUCTION &instruction : rows(INSTRUCTIONS))
        for (const char *name : rows(instruction.enable_pins))
            if (const char *first = spelling.at(lower_case(name)); !same_text(name, first))
                vmr_printf("WARNING: (%s) enable pin '%s' of INSTRUCTION '%s' is not '%s'\n"
                           "         of an earlier instruction and won't be raised.\n\n",
                           JTAG_BSC_FILE, name, instruction.name, first);
    for (const ENABLE_PIN *pin : pins_of_unknown_gates(language))
        vmr_printf("WARNING: (%s) can't find signal '%s' in the TAP module\n"
                   "         for the gate of enable pin '%s'.\n\n",
                   JTAG_BSC_FILE, pin->gate_signal, pin->name);
}

/// What an extra pin does is the user's logic; the module only has the port.
void warn_extra_pins() {
    for (const char *name : rows(TAP_EXTRA_PIN))
        vmr_printf("WARNING: (%s) nothing drives extra pin '%s' of TAP module '%s'.\n\n", JTAG_LIB_FILE, name,
                   TAP_MODULE_NAME);
}

/// The generated outputs are active high. Only the reset is active low by itself.
void warn_active_low_outputs() {
    for (CONTROL_SIGNAL signal :
         {SIG_SHIFT, SIG_CLOCK, SIG_UPDATE, SIG_HIGHZ, SIG_MODE1, SIG_MODE2, SIG_MODE3}) {
        const CONTROL_SIGNAL_INFO &info = CONTROL_SIGNALS[signal];
        if (TAP_PIN[signal] != nullptr && is_active_low(TAP_CONTR->*info.tap_field))
            vmr_printf("WARNING: (%s) %s '%s' of %%TAP_CONTROLLER %s is active low,\n"
                       "         but the generated TAP drives it active high.\n\n",
                       JTAG_LIB_FILE, info.keyword, TAP_PIN[signal], TAP_MODULE_NAME);
    }
}

void warn_clamp(RTL_LANGUAGE language) {
    if (language == VHDL && has_instruction(KNOWN_CLAMP) && BCELL_HAS[SIG_UPDATE])
        vmr_printf("WARNING: (%s) CLAMP doesn't block %%UPDATE_DR in VHDL.\n\n", JTAG_BSC_FILE);
}

} // namespace

std::vector<RTL_MODULE> refuse_broken_rtl() {
    std::vector<RTL_MODULE> modules;
    const std::function<void()> steps[] = {refuse_opcodes, refuse_codes, refuse_enable_values,
                                           refuse_highz_without_source,
                                           [&modules] { refuse_names(modules); }};
    each_apart(steps, [](const std::function<void()> &step) { step(); });
    return modules;
}

void warn_about_rtl() {
    RTL_LANGUAGE language = rtl_language();
    warn_capture();
    warn_colliding_opcodes();
    warn_open_opcodes();
    warn_undriven_registers();
    warn_enable_pins(language);
    warn_extra_pins();
    warn_active_low_outputs();
    warn_clamp(language);
    ENABLE_USES uses = enable_uses();
    for (const ENABLE_PIN &pin : rows(INST_ENABLE_PIN))
        if (enable_width(pin.value) > 0)
            vmr_printf("    WARNING: the dafault value of enable pin '%s' from\n"
                       "             tap controller is '%s'.\n",
                       pin.name, enable_default(pin, uses).c_str());
}
