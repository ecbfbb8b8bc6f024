#include "planning/cell_choice.hh"

#include "description/lookups.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

const CELL_ROLE CELL_ROLES[CELL_COUNTER_COUNT] = {
    /* COUNT_CLOCK      */ {&CLOCK_SCAN, check_clock_scan_cell},
    /* COUNT_INPUT      */ {&INPUT_SCAN, check_input_scan_cell},
    /* COUNT_INPUT_MUX  */ {&INPUT_MUX_SCAN, check_input_mux_scan_cell},
    /* COUNT_OUTPUT     */ {&OUTPUT_SCAN, check_output_scan_cell},
    /* COUNT_OUTPUT_MUX */ {&OUTPUT_MUX_SCAN, check_output_mux_scan},
    /* COUNT_BIDIR      */ {&BIDIR_SCAN, check_bidir_scan_cell_after_open_sdb},
    /* COUNT_BIDIR_MUX  */ {&BIDIR_MUX_SCAN, check_bidir_mux_scan_cell},
    /* COUNT_CONTROL    */ {&CONTROL_SCAN, nullptr},
    /* COUNT_CONTROL_OE */ {&CONTROL_OE_SCAN, nullptr},
    /* COUNT_INTERNAL   */ {&INTERNAL_SCAN, nullptr},
    /* COUNT_CLOCK_MUX  */ {&CLOCK_MUX_SCAN, check_clock_mux_scan},
};

CHOSEN_CELL checked_cell(const char *name, CELL_COUNTER role) {
    if (CELL_ROLES[role].check(name))
        vmr_fail("\n");
    return {get_scan_cell(name), role};
}

CHOSEN_CELL named_cell(const OPIN_ROW &row, CELL_COUNTER role) {
    const char *name = PIN_TABLE[row.pin_index]->bsc_name;
    return name != nullptr ? checked_cell(name, role) : CHOSEN_CELL{nullptr, role};
}

CHOSEN_CELL declared_cell(CELL_COUNTER role) {
    return {get_scan_cell(*CELL_ROLES[role].declared), role};
}

CHOSEN_CELL declared_cell(CELL_COUNTER first, CELL_COUNTER second) {
    return declared_cell(*CELL_ROLES[first].declared != nullptr ? first : second);
}

CHOSEN_CELL required_cell(const OPIN_ROW &row, const CHOSEN_CELL &chosen) {
    if (chosen.cell == nullptr)
        vmr_fail("ERROR: (%s) can't find the scan cells for port '%s' in %%SCAN_CELLS.\n\n",
                 JTAG_BSC_FILE == nullptr ? "" : JTAG_BSC_FILE, row.port_name);
    return chosen;
}

void take_cell(OPIN_ROW &row, int32_t kind, const CHOSEN_CELL &chosen) {
    row.kind = kind;
    row.scan_cell = chosen.cell;
    row.counter = chosen.counter;
}

void take_pair(OPIN_ROW &row, int32_t kind, const CHOSEN_CELL &output, const CHOSEN_CELL &input) {
    take_cell(row, kind, required_cell(row, output));
    row.input_cell = required_cell(row, input);
}

const char *builtin_cell_name(const OPIN_ROW &row) {
    return get_scan_cell(row.pad_class) != nullptr ? row.pad_class : row.pad->name;
}

void note_tap_net(int32_t signal, const char *tap_pin) {
    int32_t tap_obj = find_tap_instance();
    if (tap_obj < 0 || tap_pin == nullptr)
        return;
    int32_t net = search_inet_connected_to_obj(tap_obj, tap_pin, DIR_OUTPUT);
    TAP_FLAG.control[signal] = net;
    if (!is_constant_net(net))
        return;
    const char *keyword = CONTROL_SIGNALS[signal].keyword;
    vmr_printf("WARNING: Pin %s '%s' of TAP '%s' was connected to %s.\n", keyword, tap_pin, TAP_INSTANCE_NAME,
               net == SDB_NET_GND ? "GND" : "VCC");
    vmr_printf("         %s '%s' will be disconnected.\n", keyword, tap_pin);
}

SCAN_CELL *builtin_cell(const OPIN_ROW &row) {
    SCAN_CELL *cell = get_scan_cell(builtin_cell_name(row));
    if (cell == nullptr)
        vmr_fail("ERROR: can't find %%SCAN_CELL '%s' for %%BS_BUFFER.\n", row.pad_class);
    // The classification looks the modes 2 and 3 up again behind each port and reports them in its own words.
    for (int32_t signal : {SIG_MODE2, SIG_MODE3})
        if (cell->*CONTROL_SIGNALS[signal].cell_pin != nullptr)
            BCELL_HAS[signal] = 1;
    for (int32_t signal : {SIG_UPDATE, SIG_HIGHZ, SIG_MODE1, SIG_RST}) {
        const CONTROL_SIGNAL_INFO &info = CONTROL_SIGNALS[signal];
        if (cell->*info.cell_pin == nullptr || TAP_PIN[signal] != nullptr || TAP_CONTR == nullptr)
            continue;
        if (TAP_CONTR->*info.tap_field == nullptr)
            vmr_fail("ERROR: (%s) can't find %s in %%TAP_CONTROLLER %s.\n       %%BS_BUFFER %s needs it.\n\n",
                     JTAG_LIB_FILE, info.keyword, text_or_undefined(TAP_MODULE_NAME), row.pad_class);
        BCELL_HAS[signal] = 1;
        TAP_PIN[signal] = without_minus(TAP_CONTR->*info.tap_field);
        note_tap_net(signal, TAP_PIN[signal]);
    }
    return cell;
}

const char *differential_leg(const OPIN_ROW &row, int32_t port) {
    int32_t node = get_node_connected_to_portnode(port);
    const char *leg = node_pin_name(node);
    if (is_port_node(node) || same_text(leg, "*UNDEF*"))
        vmr_fail("ERROR: can not get pin name while tracing port '%s'.\n", row.port_name);
    return leg;
}

void fail_third_leg(const OPIN_ROW &row, const char *leg) {
    vmr_fail("ERROR: the %s pin specified in netlist, but can not be found in DIFFERENTIAL BUFFER %s\n ", leg,
             row.pad_class);
}

bool has_mux(const OPIN_ROW &row, const char *mode, const char *input, const MUX_PIN_PAIR &pair) {
    if (mode == nullptr && input == nullptr)
        return false;
    if (mode != nullptr && input != nullptr)
        return true;
    bool no_mode = mode == nullptr;
    const char *given = no_mode ? pair.input_keyword : pair.mode_keyword;
    const char *wanted = no_mode ? pair.mode_keyword : pair.input_keyword;
    vmr_fail("ERROR: (%s) '%s' is a %s because %s signal is declared.\n"
             "       %s also requires %s signal to be declared.\n\n",
             JTAG_LIB_FILE, row.pad_class, pair.words, given, pair.Words, wanted);
}

bool clear_false_enables(BUFFER_CELL *pad, const PIN_ENTRY *pin, const char *data_pin) {
    bool cleared = false;
    auto clear = [&](const char *&enable) {
        if (enable == nullptr || data_pin == nullptr || !same_text_no_case(enable, data_pin))
            return;
        enable = nullptr;
        cleared = true;
    };
    if (pin->pad_enable != 1)
        clear(pad->en_l);
    if (pin->pad_enable != 0)
        clear(pad->en_h);
    return cleared;
}
