#include "editing/tap_top.hh"

#include "description/lookups.hh"
#include "editing/added_pads.hh"
#include "editing/cell_routines.hh"
#include "editing/existing_tap.hh"
#include "editing/tap_place.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "sdb/navigation.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/run_state.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

bool row_uses_highz_buffer(const OPIN_ROW &row) {
    return row.scan_cell != nullptr && (row.control < 0 || row.oe_control < 0);
}

/// High-impedance buffers need their signal also when no cell has a %HIGHZ pin.
bool highz_buffers_exist() {
    return TAP_HIZ_PIN != nullptr && std::ranges::any_of(rows(OPIN_TAB), row_uses_highz_buffer);
}

/// The pads of mux cells may need a mode signal that no cell has a pin for.
const char *mode_pin_of_pads(int32_t mode) {
    for (const OPIN_ROW &row : rows(OPIN_TAB))
        if (row.scan_cell != nullptr && row.kind >= CELL_MUX_INPUT && row.pad != nullptr &&
            row.pad->*PAD_MODES[mode] != nullptr && row.mode_net[mode] < 2)
            return without_minus(TAP_CONTR->*CONTROL_SIGNALS[MODE_SIGNALS[mode]].tap_field);
    return nullptr;
}

/// The wire between the chip's side of a signal and the TAP. A TAP in the pads' path gets its pins with the
/// `replace` line of that path, so the wire is then left to replace_cell_in_top.
void connect_to_tap(const SIGNAL_PLACE &chip_side, const char *tap_pin, SIGNAL_PLACE &left_for_later) {
    if (rwv_hier_same_instance_iopadG >= 0)
        left_for_later = chip_side;
    else
        edit_connect(TAP_FP, place_operand(chip_side), pin_of(TAP_INSTANCE_NAME, tap_pin));
}

/// A pad for a standard port that the design does not have.
struct ADDED_TAP_PAD {
    ADDED_PAD pad;
    const char *instance;
    const PIN_ENTRY *pin; ///< null when the pin file does not name the port
};

const char *const PAD_NAMES[STANDARD_PORT_COUNT] = {"TDI_PAD", "TDO_PAD", "TMS_PAD", "TCK_PAD", "TRST_PAD"};

/// The pad's cell is the one that the pin file names for the port, else the default one.
ADDED_TAP_PAD added_tap_pad(STANDARD_PORT port) {
    bool is_output = port == PORT_TDO;
    int32_t index = TAP_PORT[port].pin_index;
    if (index < 0 || index >= DYNA_count(OPIN_TAB)) {
        if (is_output)
            return {{OUTPUT_BUFFER, OUTPUT_BUFFER_PINS.input, OUTPUT_BUFFER_PINS.output},
                    PAD_NAMES[port],
                    nullptr};
        return {{INPUT_BUFFER, INPUT_BUFFER_PINS.input, INPUT_BUFFER_PINS.output}, PAD_NAMES[port], nullptr};
    }
    OPIN_ROW &row = OPIN_TAB[index];
    ADDED_PAD pad = is_output ? output_pad_cell(row) : input_pad_cell(row);
    row.pad_class = pad.cell;
    row.pad_instance = PAD_NAMES[port];
    row.pad_output = pad.output;
    row.pad_input = pad.input;
    return {pad, PAD_NAMES[port], PIN_TABLE[row.pin_index]};
}

/// The enable of an added TDO pad: driven by the TAP, else tied so that the pad drives.
void connect_added_tdo_enable(const ADDED_TAP_PAD &added, const char *enable, bool is_low) {
    if (TAP_TDO_EN_PIN != nullptr && enable == nullptr)
        vmr_printf("WARNING: TDO pin use 2-output PAD.\n");
    else if (TAP_TDO_EN_PIN != nullptr)
        connect_to_tap({added.instance, enable}, TAP_TDO_EN_PIN, TDO_EN_ROUTE.top);
    else if (enable != nullptr)
        edit_connect(TAP_FP, pin_of(added.instance, enable), is_low ? constant_zero() : constant_one());
}

const char *enable_of_added_pad(const ADDED_TAP_PAD &added, bool &is_low) {
    const BUFFER_CELL *buffer = get_buffer(added.pad.cell);
    return buffer == nullptr ? nullptr : chosen_enable_pin(buffer, added.pin, &is_low);
}

/// The TDO port stands in the design, and the cells stand in the top module.
void connect_tdo_in_top() {
    OPIN_ROW &row = *TAP_PORT[PORT_TDO].row;
    if (DYNA_count(row.hier_classes) > 0)
        TAP_FLAG.tdo = TAP_FLAG.tdo_en = -1;
    SIGNAL_PLACE enable;
    walk_to_top(PORT_TDO, enable);
    EDIT_OPERAND data = row_operand(PORT_TDO);
    const char *pin = row.pad_instance != nullptr ? row.pad_input : row.port_name;
    if (is_constant_net(TAP_FLAG.tdo) || tdo_has_driver({row.pad_instance, pin}, TAP_FLAG.tdo))
        take_pin_for_tap(TAP_FP, -1, row.pad_instance, pin);
    edit_connect(TAP_FP, data, pin_of(TAP_INSTANCE_NAME, TAP_PORT[PORT_TDO].tap_pin));
    if (TAP_TDO_EN_PIN == nullptr || enable.pin == nullptr)
        return;
    if (TAP_FLAG.tdo_en != -1 || tdo_has_driver(enable, TAP_FLAG.tdo_en))
        take_pin_for_tap(TAP_FP, -1, enable.instance, enable.pin);
    edit_connect(TAP_FP, place_operand(enable), pin_of(TAP_INSTANCE_NAME, TAP_TDO_EN_PIN));
}

void write_standard_port(STANDARD_PORT port) {
    if (TAP_PORT[port].row == nullptr) {
        add_standard_port(port);
        return;
    }
    // With a pad module the port is wired behind the `replace` line.
    if (PAD_MODULE_EXIST != 0)
        return;
    if (port == PORT_TDO) {
        connect_tdo_in_top();
        return;
    }
    SIGNAL_PLACE no_enable;
    walk_to_top(port, no_enable);
    edit_connect(TAP_FP, row_operand(port), pin_of(TAP_INSTANCE_NAME, TAP_PORT[port].tap_pin));
}

/// A TAP path that begins in the top module, beside the pads' path.
void replace_tap_path() {
    const TAP_PATH_ROW &first = rwv_hier_tap_ctrl_name_tabG[0];
    if (rwv_hier_same_instance_iopadG < 0)
        edit_replace(TAP_FP, first.inst, format_text("%s_bs", first.module));
}

void write_new_tap() {
    if (rwv_hier_tap_ctrlG == 0)
        edit_add_instance(TAP_FP, TAP_INSTANCE_NAME, TAP_MODULE_NAME);
    else
        replace_tap_path();
    for (STANDARD_PORT port : {PORT_TDI, PORT_TMS, PORT_TCK, PORT_TDO, PORT_TRST})
        if (port_is_used(port))
            write_standard_port(port);
    if (rwv_hier_tap_ctrlG == 0)
        write_idcode_lines(TAP_FP);
}

} // namespace

void add_standard_port(STANDARD_PORT port) {
    EDIT_PORT direction = port == PORT_TDO ? EDIT_OUTPUT : EDIT_INPUT;
    const char *name = chip_port_name(port);
    const char *tap_pin = TAP_PORT[port].tap_pin;
    if (!option(OPT_ADD_PAD)) {
        edit_add_port(TAP_FP, name, direction);
        connect_to_tap({nullptr, name}, tap_pin, PORT_ROUTES[port].top);
        return;
    }
    ADDED_TAP_PAD added = added_tap_pad(port);
    const char *chip_pin = port == PORT_TDO ? added.pad.output : added.pad.input;
    const char *core_pin = port == PORT_TDO ? added.pad.input : added.pad.output;
    edit_add_port(TAP_FP, name, direction);
    edit_add_instance(TAP_FP, added.instance, added.pad.cell);
    edit_connect(TAP_FP, pin_of(added.instance, chip_pin), port_net(name));
    connect_to_tap({added.instance, core_pin}, tap_pin, PORT_ROUTES[port].top);
    bool is_low = false;
    const char *enable = port == PORT_TDO ? enable_of_added_pad(added, is_low) : nullptr;
    note_added_pad(added.pad.cell, {added.pad.input, added.pad.output, enable});
    if (port == PORT_TDO)
        connect_added_tdo_enable(added, enable, is_low);
}

bool signal_is_used(CONTROL_SIGNAL signal) {
    return TAP_PIN[signal] != nullptr &&
           (signal == SIG_SHIFT || signal == SIG_CLOCK || BCELL_HAS[signal] != 0);
}

const char *pin_in_use(CONTROL_SIGNAL signal) {
    if (signal_is_used(signal))
        return TAP_PIN[signal];
    if (signal == SIG_HIGHZ && highz_buffers_exist())
        return TAP_HIZ_PIN;
    for (int32_t mode = 0; mode < 3; mode++)
        if (signal == MODE_SIGNALS[mode])
            return mode_pin_of_pads(mode);
    return nullptr;
}

int copy_file(const std::string &from, const std::string &to) {
    return run_shell("cp " + shell_word(from) + " " + shell_word(to));
}

void add_crossing_pin(std::vector<const char *> &pins, const char *pin) {
    if (pin != nullptr &&
        std::ranges::none_of(pins, [pin](const char *known) { return same_text(pin, known); }))
        pins.push_back(pin);
}

void fail_taken_port(const char *module, const char *port) {
    vmr_fail("ERROR: module '%s' has a port '%s' already, so that the signal of that name\n"
             "       can't be led into it. Please rename the port of the module or the pin of the TAP.\n\n",
             module, port);
}

void add_new_port(EDIT_FILE *fp, const char *name, EDIT_PORT direction) {
    if (SDB_nl_search_port(name) >= 0)
        fail_taken_port(FNM_break(sdb->path.c_str(), "b").c_str(), name);
    edit_add_port(fp, name, direction);
}

std::vector<const char *> crossing_signals() {
    std::vector<const char *> pins;
    for (CONTROL_SIGNAL signal : BORDER_ORDER)
        add_crossing_pin(pins, pin_in_use(signal));
    for (int32_t i = 0; i < BCELL_EXTRA && i < DYNA_count(TAP_EXTRA_PIN); i++)
        add_crossing_pin(pins, TAP_EXTRA_PIN[i]);
    return pins;
}

void write_idcode_lines(EDIT_FILE *fp) {
    if (!option(OPT_EXTERNAL_IDCODE) || IDCODE_REG == nullptr)
        return;
    for (int32_t bit = 31; bit >= 0; bit--) {
        char value = IDCODE_REG[31 - bit];
        EDIT_OPERAND net = value == '1' ? constant_one() : value == '0' ? constant_zero() : free_net();
        edit_connect(fp, pin_of(TAP_INSTANCE_NAME, format_text("IDCODE[%d]", bit).c_str()), net);
    }
}

void rwv_do_connection_table(EDIT_FILE *fp) {
    auto side = [](const char *instance, const char *port) {
        return instance == nullptr ? port_net(port) : pin_of(instance, port);
    };
    for (const CONNECT_ENTRY *entry = CONNECT_TABLE; entry != nullptr; entry = entry->next)
        edit_connect(fp, side(entry->from_instance, entry->from_port),
                     side(entry->to_instance, entry->to_port));
}

void begin_top_file(bool with_path) {
    std::string module = format_text("%s_jtag", TOP_MODULE);
    if (copy_file(MODULE_SDB, module + ".sdb") != 0)
        vmr_fail("ERROR: can't copy file %s. Perhaps permission denied.\n\n", MODULE_SDB);
    std::string path = format_text("%s/%s.cmd", RIMWEAVE_OPATH, module.c_str());
    TAP_FP = edit_begin_file(path, module, with_path);
    if (TAP_FP == nullptr)
        vmr_fail("ERROR: can't open %s to update sdb.\n\n", path.c_str());
    vmr_printf("    .Editing command file    %s ...\n", path.c_str());
}

void open_and_modify_top_sdb() {
    begin_top_file(true);
    if (option(OPT_ADD_TAP))
        write_new_tap();
    else if (rwv_hier_tap_ctrlG == 0)
        free_existing_tap(TAP_FP);
    else
        replace_tap_path();
    if (!option(OPT_ADD_TAP))
        warn_of_unwired_ports();
}
