// The checks of the .bsc file, the TAP cell and the pad buffers, and the look at the pads of the design.
#include "planning/validation.hh"

#include "description/lookups.hh"
#include "planning/cell_choice.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <cstring>
#include <string>

PAD_PINS INPUT_BUFFER_PINS;
PAD_PINS OUTPUT_BUFFER_PINS;
PAD_PINS SPEC_INPUT_BUFFER_PINS;
PAD_PINS SPEC_OUTPUT_BUFFER_PINS;

namespace {

// Faults found by check_necessary_fields so far, and whether an inverting buffer is wanted.
struct FIELD_CHECK {
    bool error = false;
    bool need_inv = false;
    int32_t tap_obj = -1; // the TAP instance of the design, -1 when it is added or not known
};

const char *lib() {
    return JTAG_LIB_FILE;
}

const char *bsc() {
    return JTAG_BSC_FILE;
}

// Pads that the .bsc or pin file names.

enum PAD_ROLE { PAD_INPUT, PAD_OUTPUT, PAD_INOUT };
constexpr const char *PAD_KEYWORD[] = {"%INPUT_BUFFER", "%OUTPUT_BUFFER", "%INOUT_BUFFER"};

bool misses_pad_pin(const char *keyword, const char *pin, const char *name) {
    if (pin != nullptr)
        return false;
    vmr_printf("ERROR: (%s) can't find %s in %%BUFFER %s.\n", lib(), keyword, name);
    return true;
}

// A pad of both ways has its bond pad on %INOUT, which an added input or output pad would leave open. True
// after an error.
bool is_bidirectional_pad(PAD_ROLE role, const BUFFER_CELL &buffer) {
    if (buffer.inout == nullptr && !same_text_no_case(buffer.function, "inout"))
        return false;
    vmr_printf("ERROR: (%s) %s '%s' is a bidirectional pad, which -add_pad can't use for one direction.\n"
               "       Please wrap it in a module with one input and one output, describe that module\n"
               "       in a %%BUFFER of file '%s' and name it instead.\n",
               bsc(), PAD_KEYWORD[role], buffer.name, lib());
    return true;
}

// Checks one pad cell. A fault is printed; with `ends` the first one ends the run. True when there was one.
bool check_pad_cell(PAD_ROLE role, const char *name, PAD_PINS *pins, bool ends) {
    bool fault = false;
    auto note = [&](bool missing) {
        fault |= missing;
        if (missing && ends)
            end_run();
    };
    const BUFFER_CELL *buffer = get_buffer(name);
    if (buffer == nullptr) {
        vmr_printf("ERROR: void declare %s  %s in file '%s'.\n       Can't find the definition of '%s' in "
                   "file '%s'.\n",
                   PAD_KEYWORD[role], name, bsc(), name, lib());
        note(true);
        return true;
    }
    if (pins != nullptr)
        *pins = {buffer->input, buffer->output};
    if (role == PAD_INOUT)
        note(misses_pad_pin("%INOUT", buffer->inout, name));
    else if (option(OPT_ADD_PAD))
        note(is_bidirectional_pad(role, *buffer));
    note(misses_pad_pin("%INPUT", buffer->input, name));
    note(misses_pad_pin("%OUTPUT", buffer->output, name));
    if (role == PAD_INOUT && buffer->en_l == nullptr && buffer->en_h == nullptr) {
        vmr_printf("ERROR: (%s) can't find %%EN_L or %% EN_H in %%BUFFER %s.\n", lib(), name);
        note(true);
    }
    return fault;
}

void require_add_pad_buffer(const char *keyword, const char *name) {
    if (name == nullptr)
        vmr_fail("ERROR: option -add_pad requires to declare %s\n       in file '%s'.\n\n", keyword, bsc());
}

void check_default_pads(FIELD_CHECK &check) {
    if (option(OPT_ADD_PAD)) {
        require_add_pad_buffer("%INPUT_BUFFER", INPUT_BUFFER);
        require_add_pad_buffer("%OUTPUT_BUFFER", OUTPUT_BUFFER);
    }
    if (INPUT_BUFFER != nullptr)
        check.error |= check_pad_cell(PAD_INPUT, INPUT_BUFFER, &INPUT_BUFFER_PINS, false);
    if (OUTPUT_BUFFER != nullptr)
        check.error |= check_pad_cell(PAD_OUTPUT, OUTPUT_BUFFER, &OUTPUT_BUFFER_PINS, false);
    if (INOUT_BUFFER != nullptr)
        check.error |= check_pad_cell(PAD_INOUT, INOUT_BUFFER, nullptr, false);
}

// The TAP's names and its place in the design.

bool misses_tap_name(const char *keyword, const char *name) {
    if (name != nullptr)
        return false;
    vmr_printf("ERROR: (%s) can't find %s in %%TAP_MODULE.\n", bsc(), keyword);
    return true;
}

void check_tap_instance(FIELD_CHECK &check) {
    check.error |= check_tap_names();
    if (TAP_INSTANCE_NAME == nullptr || option(OPT_ADD_TAP) || option(OPT_ADD_BCM))
        return;
    check.tap_obj = find_tap_instance();
    if (check.tap_obj < 0)
        vmr_fail("ERROR: (%s) can't find TAP %%INSTANCE_NAME '%s' in SDB file '%s'.\n\n", bsc(),
                 TAP_INSTANCE_NAME, MODULE_C_SDB);
    const char *class_name = object_class_name(check.tap_obj);
    if (TAP_MODULE_NAME != nullptr && !same_text(class_name, TAP_MODULE_NAME))
        vmr_fail("ERROR: (%s) %%TAP_MODULE_NAME '%s' doesn't match\n       class name of '%s' in SDB file "
                 "'%s'.\n\n",
                 bsc(), TAP_MODULE_NAME, class_name, MODULE_C_SDB);
}

void check_global_ports(FIELD_CHECK &check) {
    const struct {
        const char *keyword, *name;
        bool needed;
    } ports[] = {
        {"%GLOBAL_TDI", GLOBAL_TDI, true},
        {"%GLOBAL_TDO", GLOBAL_TDO, true},
        {"%GLOBAL_TMS", GLOBAL_TMS, option(OPT_ADD_TAP)},
        {"%GLOBAL_TCK", GLOBAL_TCK, option(OPT_ADD_TAP)},
    };
    for (const auto &port : ports) {
        if (!port.needed || port.name != nullptr)
            continue;
        vmr_printf("ERROR: can't find %s in file '%s'.\n", port.keyword, bsc());
        check.error = true;
    }
}

// The TAP's pins.

// Warns of a constant on a pin of the existing TAP, which the run will take away.
void warn_of_constant(const char *keyword, const char *second_keyword, const char *pin, int32_t net) {
    if (!is_constant_net(net))
        return;
    vmr_printf("WARNING: Pin %s '%s' of TAP '%s' was connected to %s.\n", keyword, pin, TAP_INSTANCE_NAME,
               net == 0 ? "GND" : "VCC");
    vmr_printf("         %s '%s' will be disconnected.\n", second_keyword, pin);
}

enum PIN_NEEDED { ALWAYS, WHEN_CONDITION, NEVER_REQUIRED };

// One TAP pin of check_tap_pins: where its name goes, and which TAP_FLAG word belongs to it.
struct TAP_PIN_CHECK {
    const char *keyword;
    const char *TAP_CELL::*field;
    const char **global; // null: the name stays in the record, which loses its '-'
    PIN_NEEDED needed;
    bool condition;             // for WHEN_CONDITION
    int32_t *word;              // null: none
    int32_t direction;          // of the TAP's pin
    const char *second_keyword; // in the second warning line; null for `keyword`
};

// True when the field must be there and is not; the message has been printed.
bool misses_tap_pin(const TAP_PIN_CHECK &row, const char *name) {
    bool needed = row.needed == ALWAYS || (row.needed == WHEN_CONDITION && row.condition);
    if (!needed || name != nullptr)
        return false;
    if (row.field == &TAP_CELL::trst)
        vmr_printf("ERROR: (%s) can't find %%TRST in %%TAP_CONTROLLER %s to match\n       %%GLOBAL_TRST '%s' "
                   "in %s.\n",
                   lib(), TAP_MODULE_NAME, GLOBAL_TRST, bsc());
    else
        vmr_printf("ERROR: (%s) can't find %s%sin %%TAP_CONTROLLER %s.\n", lib(), row.keyword,
                   row.field == &TAP_CELL::highz_command ? "" : " ", TAP_MODULE_NAME);
    return true;
}

void check_tap_pin(FIELD_CHECK &check, const TAP_PIN_CHECK &row) {
    const char *&field = TAP_CONTR->*row.field;
    if (row.global != nullptr)
        *row.global = nullptr;
    if (row.needed == WHEN_CONDITION && !row.condition)
        return;
    check.error |= misses_tap_pin(row, field);
    const char *pin = without_minus(field);
    if (row.global == nullptr) {
        field = pin;
    } else {
        check.need_inv |= is_active_low(field);
        *row.global = pin;
    }
    if (check.tap_obj == -1 || pin == nullptr || row.word == nullptr)
        return;
    *row.word = search_inet_connected_to_obj(check.tap_obj, pin, row.direction);
    warn_of_constant(row.keyword, row.second_keyword != nullptr ? row.second_keyword : row.keyword, pin,
                     *row.word);
}

TAP_PIN_CHECK standard_pin(STANDARD_PORT port, const char *keyword) {
    bool is_trst = port == PORT_TRST;
    return {keyword,
            TAP_PORT[port].tap_field,
            &TAP_PORT[port].tap_pin,
            is_trst ? WHEN_CONDITION : ALWAYS,
            GLOBAL_TRST != nullptr,
            nullptr,
            DIR_OUTPUT,
            nullptr};
}

TAP_PIN_CHECK control_pin(CONTROL_SIGNAL signal, PIN_NEEDED needed, const char *second_keyword = nullptr) {
    return {
        CONTROL_SIGNALS[signal].keyword, CONTROL_SIGNALS[signal].tap_field, &TAP_PIN[signal], needed,
        BCELL_HAS[signal] != 0,          &TAP_FLAG.control[signal],         DIR_OUTPUT,       second_keyword};
}

void check_tap_pins(FIELD_CHECK &check) {
    const TAP_PIN_CHECK pins[] = {
        standard_pin(PORT_TRST, "%TRST"),
        standard_pin(PORT_TDI, "%TDI"),
        standard_pin(PORT_TDO, "%TDO"),
        standard_pin(PORT_TMS, "%TMS"),
        standard_pin(PORT_TCK, "%TCK"),
        control_pin(SIG_SHIFT, ALWAYS),
        control_pin(SIG_CLOCK, ALWAYS),
        {"%FIRST_BCELL", &TAP_CELL::first_bcell, nullptr, ALWAYS, true, &TAP_FLAG.first_bcell, DIR_OUTPUT,
         nullptr},
        {"%LAST_BCELL", &TAP_CELL::last_bcell, nullptr, ALWAYS, true, &TAP_FLAG.last_bcell, DIR_INPUT,
         nullptr},
        {"%HIGHZ_COMMAND", &TAP_CELL::highz_command, &TAP_HIZ_PIN, NEVER_REQUIRED, true, &TAP_FLAG.hiz,
         DIR_OUTPUT, nullptr},
        control_pin(SIG_UPDATE, WHEN_CONDITION),
        control_pin(SIG_HIGHZ, WHEN_CONDITION, "%HIGHZ"),
        control_pin(SIG_RST, WHEN_CONDITION),
        control_pin(SIG_MODE1, WHEN_CONDITION),
        control_pin(SIG_MODE2, WHEN_CONDITION),
        control_pin(SIG_MODE3, WHEN_CONDITION),
    };
    for (const TAP_PIN_CHECK &row : pins)
        check_tap_pin(check, row);
    HIZ_FLAG = TAP_CONTR->highz_command != nullptr;
}

// What the design has on the standard pins of an existing TAP. A pin alone on its net is not wired yet.
void note_tap_nets(int32_t tap_obj) {
    for (STANDARD_PORT_STATE &port : TAP_PORT) {
        port.tap_net = nullptr;
        port.tap_constant = -1;
        int32_t node = find_pin_node(tap_obj, port.tap_pin);
        int32_t net = node < 0 ? -1 : node_tab[node].net;
        if (net >= 0 && !is_constant_net(net) && find_adjacent_node(node) >= 0)
            port.tap_net = keep_text_or_null(SDB_net_name(sdb, net));
        else if (net >= 0 && is_constant_net(net))
            port.tap_constant = net;
    }
}

void check_extra_pins(FIELD_CHECK &check) {
    for (const char *extra : rows(TAP_CONTR->extras))
        check.need_inv |= is_active_low(extra);
    if (DYNA_count(TAP_CONTR->extras) < BCELL_EXTRA) {
        vmr_printf("ERROR: (%s) scan cell has more extra pins than %%TAP_CONTROLLER %s.\n", lib(),
                   TAP_MODULE_NAME);
        check.error = true;
    }
    TAP_EXTRA_PIN = DYNA_init<const char *>();
    for (int32_t n = 0; n < BCELL_EXTRA; ++n) {
        const char *extra = n < DYNA_count(TAP_CONTR->extras) ? TAP_CONTR->extras[n] : nullptr;
        const char *pin = without_minus(extra);
        append_row(TAP_EXTRA_PIN, pin);
        if (check.tap_obj == -1)
            continue;
        int32_t net = pin != nullptr ? search_inet_connected_to_obj(check.tap_obj, pin, DIR_OUTPUT) : -1;
        append_row(TAP_FLAG.extras, net);
        std::string keyword = "%EXTRA_" + std::to_string(n);
        warn_of_constant(keyword.c_str(), keyword.c_str(), pin, net);
    }
}

// The TAP's buffers.

// True when the named buffer is unknown or lacks a pin, which has been printed.
bool check_tap_buffer(const char *keyword, const char *name) {
    const BUFFER_CELL *buffer = get_buffer(name);
    if (buffer == nullptr) {
        vmr_printf("ERROR: (%s) void declare %s '%s'\n       in %%TAP_CONTROLLER.\n"
                   "       Can't find definition of '%s' in '%s'.\n\n",
                   lib(), keyword, name, name, lib());
        return true;
    }
    bool fault = false;
    const struct {
        const char *keyword, *pin;
    } pins[] = {{"%INPUT", buffer->input}, {"%OUTPUT", buffer->output}};
    for (const auto &pin : pins) {
        if (pin.pin != nullptr)
            continue;
        vmr_printf("ERROR: (%s) can't find %s in %%BUFFER %s.\n\n", lib(), pin.keyword, name);
        fault = true;
    }
    return fault;
}

bool check_named_tap_buffer(const char *keyword, const char *name) {
    if (name != nullptr)
        return check_tap_buffer(keyword, name);
    vmr_printf("ERROR: (%s) can't find %s in %%TAP_CONTROLLER.\n", lib(), keyword);
    return true;
}

void check_tap_buffers(FIELD_CHECK &check) {
    const char *fast = TAP_CONTR->df_signal_buffer;
    if (TAP_CONTR->df_group_size > 0) {
        if (option(OPT_DF_SPEED) && fast == nullptr) {
            // The chains fall back on the other buffer; with none at all they could not be built.
            if (TAP_CONTR->signal_buffer == nullptr) {
                vmr_printf(
                    "ERROR: (%s) can't find %%SIGNAL_BUFFER or %%DF_SIGNAL_BUFFER in %%TAP_CONTROLLER.\n",
                    lib());
                check.error = true;
            } else if (TAP_CONTR->group_size < 1) {
                check.error |= check_tap_buffer("%SIGNAL_BUFFER", TAP_CONTR->signal_buffer);
            }
        } else if (fast != nullptr) {
            check.error |= check_tap_buffer("%DF_SIGNAL_BUFFER", fast);
        }
    }
    if (TAP_CONTR->group_size > 0)
        check.error |= check_named_tap_buffer("%SIGNAL_BUFFER", TAP_CONTR->signal_buffer);
    if (check.need_inv)
        check.error |= check_named_tap_buffer("%INV_BUFFER", TAP_CONTR->inv_buffer);
}

// The buffer of the high-impedance signal is known whenever the TAP cell names it, with trees or without.
void choose_highz_buffer() {
    HIZ_BUF_NAME = nullptr;
    HIZ_BUF = nullptr;
    if (HIZ_FLAG == 0)
        return;
    const char *name =
        is_active_low(TAP_CONTR->highz_command) ? TAP_CONTR->inv_buffer : TAP_CONTR->signal_buffer;
    HIZ_BUF = get_buffer(name);
    HIZ_BUF_NAME = HIZ_BUF != nullptr ? name : nullptr;
}

void check_pin_list(FIELD_CHECK &check) {
    if (DYNA_count(PIN_TABLE) > 0)
        return;
    check.error = true;
    if (PIN_FILE == nullptr)
        vmr_printf("ERROR: (%s) Please specify the following field:\n\n        %%PIN_LIST {\n"
                   "            %%FILE_NAME\n        }\n\n",
                   bsc());
    else
        vmr_printf("ERROR: (%s) empty file. Can't find non skip pin.\n\n", PIN_FILE);
}

} // namespace

bool check_tap_names() {
    bool fault = misses_tap_name("%MODULE_NAME", TAP_MODULE_NAME);
    return misses_tap_name("%INSTANCE_NAME", TAP_INSTANCE_NAME) || fault;
}

void check_necessary_fields() {
    FIELD_CHECK check;
    check_default_pads(check);
    check_tap_instance(check);
    check_global_ports(check);
    if (TAP_CONTR == nullptr)
        TAP_CONTR = get_tap_cell(TAP_MODULE_NAME);
    if (TAP_CONTR != nullptr) {
        check_tap_pins(check);
        note_tap_nets(check.tap_obj);
        check_extra_pins(check);
        check_tap_buffers(check);
        choose_highz_buffer();
    }
    check_pin_list(check);
    if (check.error)
        vmr_fail("\n");
}

void bs_check_input_buf_fields(const char *name) {
    check_pad_cell(PAD_INPUT, name, &SPEC_INPUT_BUFFER_PINS, true);
}

void bs_check_output_buf_fields(const char *name) {
    check_pad_cell(PAD_OUTPUT, name, &SPEC_OUTPUT_BUFFER_PINS, true);
}

void bs_check_inout_buf_fields(const char *name) {
    check_pad_cell(PAD_INOUT, name, nullptr, true);
}
