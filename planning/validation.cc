// The checks of the .bsc file, the TAP cell and the pad buffers.
#include "planning/validation.hh"

#include "description/lookups.hh"
#include "planning/port_pad.hh"
#include "planning/tap_needs.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

// Pads that the .bsc or pin file names.

constexpr const char *PAD_KEYWORD[] = {"%INPUT_BUFFER", "%OUTPUT_BUFFER", "%INOUT_BUFFER"};
constexpr const char **DEFAULT_PAD[] = {&INPUT_BUFFER, &OUTPUT_BUFFER, &INOUT_BUFFER};

bool misses_pad_pin(const char *keyword, const char *pin, const char *name) {
    return pin == nullptr &&
           report_fault("ERROR: (%s) can't find %s in %%BUFFER %s.\n", JTAG_LIB_FILE, keyword, name);
}

// A pad of both ways has its bond pad on %INOUT, which an added input or output pad would leave open.
bool is_bidirectional_pad(PAD_ROLE role, const BUFFER_CELL &buffer) {
    return (buffer.inout != nullptr || has_function(&buffer, "inout")) &&
           report_fault(
               "ERROR: (%s) %s '%s' is a bidirectional pad, which -add_pad can't use for one direction.\n"
               "       Please wrap it in a module with one input and one output, describe that module\n"
               "       in a %%BUFFER of file '%s' and name it instead.\n",
               JTAG_BSC_FILE, PAD_KEYWORD[role], buffer.name, JTAG_LIB_FILE);
}

// Checks one pad cell. A fault is printed; with `ends` the first one ends the run. True when there was one.
bool check_pad_cell(PAD_ROLE role, const char *name, bool ends) {
    bool fault = false;
    auto note = [&](bool found) {
        fault |= found;
        if (found && ends)
            end_run();
    };
    const BUFFER_CELL *buffer = get_buffer(name);
    if (buffer == nullptr) {
        note(report_fault("ERROR: void declare %s  %s in file '%s'.\n"
                          "       Can't find the definition of '%s' in file '%s'.\n",
                          PAD_KEYWORD[role], name, JTAG_BSC_FILE, name, JTAG_LIB_FILE));
        return true;
    }
    if (role == PAD_INOUT)
        note(misses_pad_pin("%INOUT", buffer->inout, name));
    else if (option(OPT_ADD_PAD))
        note(is_bidirectional_pad(role, *buffer));
    note(misses_pad_pin("%INPUT", buffer->input, name));
    note(misses_pad_pin("%OUTPUT", buffer->output, name));
    if (role == PAD_INOUT && buffer->en_l == nullptr && buffer->en_h == nullptr)
        note(misses_pad_pin("%EN_L or % EN_H", nullptr, name));
    return fault;
}

// True after a fault.
bool check_default_pads() {
    for (PAD_ROLE role : {PAD_INPUT, PAD_OUTPUT})
        if (option(OPT_ADD_PAD) && *DEFAULT_PAD[role] == nullptr)
            fail_add_pad(PAD_KEYWORD[role]);
    bool fault = false;
    for (PAD_ROLE role : {PAD_INPUT, PAD_OUTPUT, PAD_INOUT})
        if (*DEFAULT_PAD[role] != nullptr)
            fault |= check_pad_cell(role, *DEFAULT_PAD[role], false);
    return fault;
}

// The TAP's names and its place in the design.

bool misses_tap_name(const char *keyword, const char *name) {
    return name == nullptr &&
           report_fault("ERROR: (%s) can't find %s in %%TAP_MODULE.\n", JTAG_BSC_FILE, keyword);
}

// The TAP instance of the design, -1 when it is added or not named.
int32_t checked_tap_instance() {
    if (TAP_INSTANCE_NAME == nullptr || option(OPT_ADD_TAP) || option(OPT_ADD_BCM))
        return -1;
    int32_t tap_obj = find_tap_instance();
    if (tap_obj < 0)
        vmr_fail("ERROR: (%s) can't find TAP %%INSTANCE_NAME '%s' in SDB file '%s'.\n\n", JTAG_BSC_FILE,
                 TAP_INSTANCE_NAME, MODULE_C_SDB);
    const char *class_name = object_class_name(tap_obj);
    if (TAP_MODULE_NAME != nullptr && !same_text(class_name, TAP_MODULE_NAME))
        vmr_fail("ERROR: (%s) %%TAP_MODULE_NAME '%s' doesn't match\n       class name of '%s' in SDB file "
                 "'%s'.\n\n",
                 JTAG_BSC_FILE, TAP_MODULE_NAME, class_name, MODULE_C_SDB);
    return tap_obj;
}

bool misses_global_port() {
    const struct {
        const char *keyword, *name;
        bool needed;
    } ports[] = {
        {"%GLOBAL_TDI", GLOBAL_TDI, true},
        {"%GLOBAL_TDO", GLOBAL_TDO, true},
        {"%GLOBAL_TMS", GLOBAL_TMS, option(OPT_ADD_TAP)},
        {"%GLOBAL_TCK", GLOBAL_TCK, option(OPT_ADD_TAP)},
    };
    bool fault = false;
    for (const auto &port : ports)
        if (port.needed && port.name == nullptr)
            fault = report_fault("ERROR: can't find %s in file '%s'.\n", port.keyword, JTAG_BSC_FILE);
    return fault;
}

// The TAP's buffers.

// True when the named buffer is unknown or lacks a pin, which has been printed.
bool check_tap_buffer(const char *keyword, const char *name) {
    const BUFFER_CELL *buffer = declared_tap_buffer(keyword, name);
    if (buffer == nullptr)
        return true;
    bool fault = false;
    const struct {
        const char *keyword, *pin;
    } pins[] = {{"%INPUT", buffer->input}, {"%OUTPUT", buffer->output}};
    for (const auto &pin : pins)
        if (pin.pin == nullptr)
            fault = report_fault("ERROR: (%s) can't find %s in %%BUFFER %s.\n\n", JTAG_LIB_FILE, pin.keyword,
                                 name);
    return fault;
}

bool misses_tap_buffer(const char *keyword) {
    return report_fault("ERROR: (%s) can't find %s in %%TAP_CONTROLLER.\n", JTAG_LIB_FILE, keyword);
}

bool check_named_tap_buffer(const char *keyword, const char *name) {
    return name != nullptr ? check_tap_buffer(keyword, name) : misses_tap_buffer(keyword);
}

// The buffer of the fast chains. Without one they fall back on the other buffer; with none at all they could
// not be built.
bool check_fast_buffer() {
    const char *fast = TAP_CONTR->df_signal_buffer, *plain = TAP_CONTR->signal_buffer;
    if (TAP_CONTR->df_group_size <= 0)
        return false;
    if (fast != nullptr)
        return check_tap_buffer("%DF_SIGNAL_BUFFER", fast);
    if (!option(OPT_DF_SPEED))
        return false;
    if (plain != nullptr)
        return TAP_CONTR->group_size < 1 && check_tap_buffer("%SIGNAL_BUFFER", plain);
    return misses_tap_buffer("%SIGNAL_BUFFER or %DF_SIGNAL_BUFFER");
}

// True after a fault. `inverted` asks for the inverting buffer.
bool check_tap_buffers(bool inverted) {
    bool fault = check_fast_buffer();
    if (TAP_CONTR->group_size > 0)
        fault |= check_named_tap_buffer("%SIGNAL_BUFFER", TAP_CONTR->signal_buffer);
    if (inverted)
        fault |= check_named_tap_buffer("%INV_BUFFER", TAP_CONTR->inv_buffer);
    return fault;
}

// The buffer of the high-impedance signal is known whenever the TAP cell names it, with trees or without.
void choose_highz_buffer() {
    HIZ_BUF_NAME = nullptr;
    HIZ_BUF = nullptr;
    if (TAP_CONTR->highz_command == nullptr)
        return;
    const char *name =
        is_active_low(TAP_CONTR->highz_command) ? TAP_CONTR->inv_buffer : TAP_CONTR->signal_buffer;
    HIZ_BUF = get_buffer(name);
    HIZ_BUF_NAME = HIZ_BUF != nullptr ? name : nullptr;
}

bool misses_pin_list() {
    if (DYNA_count(PIN_TABLE) > 0)
        return false;
    if (PIN_FILE != nullptr)
        return report_fault("ERROR: (%s) empty file. Can't find non skip pin.\n\n", PIN_FILE);
    return report_fault("ERROR: (%s) Please specify the following field:\n\n        %%PIN_LIST {\n"
                        "            %%FILE_NAME\n        }\n\n",
                        JTAG_BSC_FILE);
}

} // namespace

bool report_fault(const char *format, ...) {
    va_list values;
    va_start(values, format);
    vmr_printf("%s", format_list(format, values).c_str());
    va_end(values);
    return true;
}

bool check_tap_names() {
    bool fault = misses_tap_name("%MODULE_NAME", TAP_MODULE_NAME);
    return misses_tap_name("%INSTANCE_NAME", TAP_INSTANCE_NAME) || fault;
}

const BUFFER_CELL *declared_tap_buffer(const char *keyword, const char *name) {
    const BUFFER_CELL *buffer = get_buffer(name);
    if (buffer == nullptr)
        vmr_printf("ERROR: (%s) void declare %s '%s'\n       in %%TAP_CONTROLLER.\n"
                   "       Can't find definition of '%s' in '%s'.\n\n",
                   JTAG_LIB_FILE, keyword, name, name, JTAG_LIB_FILE);
    return buffer;
}

void check_necessary_fields() {
    bool fault = check_default_pads();
    fault |= check_tap_names();
    int32_t tap_obj = checked_tap_instance();
    fault |= misses_global_port();
    if (TAP_CONTR == nullptr)
        TAP_CONTR = get_tap_cell(TAP_MODULE_NAME);
    if (TAP_CONTR != nullptr) {
        TAP_PINS_FOUND found = resolve_tap_pins(tap_obj);
        fault |= found.error;
        fault |= check_tap_buffers(found.inverted);
        choose_highz_buffer();
    }
    fault |= misses_pin_list();
    if (fault)
        vmr_fail("\n");
}

const char *pad_to_add(PAD_ROLE role, const PIN_ENTRY *pin) {
    const char *own = pin == nullptr ? nullptr : pin->pad_name;
    if (own != nullptr)
        check_pad_cell(role, own, true);
    return own != nullptr ? own : *DEFAULT_PAD[role];
}
