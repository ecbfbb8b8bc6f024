#include "planning/tap_needs.hh"

#include "description/lookups.hh"
#include "planning/port_pad.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>
#include <string>

namespace {

/// The TAP cell's pin of a signal without its '-'; null when it has none.
const char *declared_pin(int32_t signal) {
    return without_minus(TAP_CONTR->*CONTROL_SIGNALS[signal].tap_field);
}

/// The net on a pin of the TAP that the design has, -1 for none. A constant there is warned of: the run takes
/// it away. `again` is the keyword of the second line.
int32_t net_of_tap_pin(int32_t tap_obj, const char *pin, int32_t direction, const char *keyword,
                       const char *again) {
    int32_t net = search_inet_connected_to_obj(tap_obj, pin, direction);
    if (is_constant_net(net)) {
        vmr_printf("WARNING: Pin %s '%s' of TAP '%s' was connected to %s.\n", keyword, pin, TAP_INSTANCE_NAME,
                   net == SDB_NET_GND ? "GND" : "VCC");
        vmr_printf("         %s '%s' will be disconnected.\n", again, pin);
    }
    return net;
}

/// The same for a signal that came to be needed after the pins were resolved.
void note_tap_net(int32_t signal, const char *pin) {
    int32_t tap_obj = find_tap_instance();
    const char *keyword = CONTROL_SIGNALS[signal].keyword;
    if (tap_obj >= 0 && pin != nullptr)
        TAP_FLAG.control[signal] = net_of_tap_pin(tap_obj, pin, SDB_OUTPUT, keyword, keyword);
}

TAP_PIN_ROW control_pin(CONTROL_SIGNAL signal, const char *fallback) {
    const CONTROL_SIGNAL_INFO &info = CONTROL_SIGNALS[signal];
    const int32_t *need = signal == SIG_SHIFT || signal == SIG_CLOCK ? nullptr : &BCELL_HAS[signal];
    return {info.keyword, info.tap_field, &TAP_PIN[signal], fallback, &TAP_FLAG.control[signal], need};
}

/// True when the TAP cell lacks the pin; the message has been printed.
bool misses_tap_pin(int32_t id) {
    const TAP_PIN_ROW &row = TAP_PIN_ROWS[id];
    if (TAP_CONTR->*row.field != nullptr || id == TAP_COMMAND)
        return false;
    if (id == TAP_TRST)
        return report_fault("ERROR: (%s) can't find %%TRST in %%TAP_CONTROLLER %s to match\n"
                            "       %%GLOBAL_TRST '%s' in %s.\n",
                            JTAG_LIB_FILE, TAP_MODULE_NAME, GLOBAL_TRST, JTAG_BSC_FILE);
    return report_fault("ERROR: (%s) can't find %s%sin %%TAP_CONTROLLER %s.\n", JTAG_LIB_FILE, row.keyword,
                        id == TAP_HIGHZ ? "" : " ", TAP_MODULE_NAME);
}

void resolve_tap_pin(int32_t tap_obj, int32_t id, TAP_PINS_FOUND &found) {
    const TAP_PIN_ROW &row = TAP_PIN_ROWS[id];
    const char *&field = TAP_CONTR->*row.field;
    bool wanted = tap_pin_is_wanted(id);
    const char *pin = wanted ? without_minus(field) : nullptr;
    if (wanted)
        found.error |= misses_tap_pin(id);
    if (row.name == nullptr) {
        field = pin;
    } else {
        found.inverted |= wanted && is_active_low(field);
        *row.name = pin;
    }
    if (tap_obj != -1 && pin != nullptr && row.found != nullptr)
        *row.found = net_of_tap_pin(tap_obj, pin, id == TAP_LAST ? SDB_INPUT : SDB_OUTPUT, row.keyword,
                                    id == TAP_HIGHZ ? "%HIGHZ" : row.keyword);
}

/// What the design has on the standard pins of an existing TAP. A pin alone on its net is not wired yet.
void note_standard_nets(int32_t tap_obj) {
    for (STANDARD_PORT_STATE &port : TAP_PORT) {
        port.tap_net = nullptr;
        port.tap_constant = -1;
        int32_t node = find_pin_node(tap_obj, port.tap_pin);
        int32_t net = node < 0 ? -1 : node_tab[node].net;
        if (is_constant_net(net))
            port.tap_constant = net;
        else if (net >= 0 && find_adjacent_node(node) >= 0)
            port.tap_net = keep_text_or_null(SDB_net_name(sdb, net));
    }
}

void resolve_extra_pins(int32_t tap_obj, TAP_PINS_FOUND &found) {
    for (const char *extra : rows(TAP_CONTR->extras))
        found.inverted |= is_active_low(extra);
    if (DYNA_count(TAP_CONTR->extras) < BCELL_EXTRA)
        found.error = report_fault("ERROR: (%s) scan cell has more extra pins than %%TAP_CONTROLLER %s.\n",
                                   JTAG_LIB_FILE, TAP_MODULE_NAME);
    TAP_EXTRA_PIN = DYNA_init<const char *>();
    for (int32_t n = 0; n < BCELL_EXTRA; ++n) {
        const char *extra = n < DYNA_count(TAP_CONTR->extras) ? TAP_CONTR->extras[n] : nullptr;
        const char *pin = without_minus(extra);
        append_row(TAP_EXTRA_PIN, pin);
        std::string keyword = "%EXTRA_" + std::to_string(n);
        if (tap_obj != -1)
            append_row(TAP_FLAG.extras,
                       net_of_tap_pin(tap_obj, pin, SDB_OUTPUT, keyword.c_str(), keyword.c_str()));
    }
}

} // namespace

const TAP_PIN_ROW TAP_PIN_ROWS[TAP_PIN_COUNT] = {
    {"%TDI", &TAP_CELL::tdi, &TAP_PORT[PORT_TDI].tap_pin, "TDI"},
    {"%TDO", &TAP_CELL::tdo, &TAP_PORT[PORT_TDO].tap_pin, "TDO"},
    {"%TMS", &TAP_CELL::tms, &TAP_PORT[PORT_TMS].tap_pin, "TMS"},
    {"%TCK", &TAP_CELL::tck, &TAP_PORT[PORT_TCK].tap_pin, "TCK"},
    {"%TRST", &TAP_CELL::trst, &TAP_PORT[PORT_TRST].tap_pin, "-TRST"},
    control_pin(SIG_SHIFT, "SHIFT_DR"),
    control_pin(SIG_CLOCK, "CLOCK_DR"),
    {"%FIRST_BCELL", &TAP_CELL::first_bcell, nullptr, "first_Bcell", &TAP_FLAG.first_bcell},
    {"%LAST_BCELL", &TAP_CELL::last_bcell, nullptr, "BOUNDARY_out", &TAP_FLAG.last_bcell},
    control_pin(SIG_UPDATE, "UPDATE_DR"),
    control_pin(SIG_HIGHZ, "HIGHZ"),
    control_pin(SIG_RST, "-RESET"),
    control_pin(SIG_MODE1, "MODE1"),
    control_pin(SIG_MODE2, "MODE2"),
    control_pin(SIG_MODE3, "MODE3"),
    {"%HIGHZ_COMMAND", &TAP_CELL::highz_command, &TAP_HIZ_PIN, "HIGHZ", &TAP_FLAG.hiz},
};

bool tap_pin_is_wanted(int32_t id) {
    const int32_t *need = TAP_PIN_ROWS[id].need;
    return id == TAP_TRST ? GLOBAL_TRST != nullptr : need == nullptr || *need != 0;
}

void forget_needs() {
    std::fill(std::begin(BCELL_HAS), std::end(BCELL_HAS), 0);
    BCELL_EXTRA = 0;
}

void note_control_pins(const SCAN_CELL &cell) {
    for (CONTROL_SIGNAL signal : {SIG_RST, SIG_UPDATE, SIG_HIGHZ, SIG_MODE1, SIG_MODE2, SIG_MODE3})
        if (cell.*CONTROL_SIGNALS[signal].cell_pin != nullptr)
            BCELL_HAS[signal] = 1;
    BCELL_EXTRA = std::max(BCELL_EXTRA, DYNA_count(cell.extras));
}

void note_cells_of_pins() {
    for (const PIN_ENTRY *pin : rows(PIN_TABLE)) {
        if (pin->top_name == nullptr || skip_signal(pin->top_name))
            continue;
        const char *inside = bs_observe_word(pin->package_name)    ? OBSERVE_ONLY_SCAN
                             : bs_internal_word(pin->package_name) ? INTERNAL_SCAN
                                                                   : nullptr;
        for (const char *name : {pin->bsc_name, pin->bsc_kind == BSC_I ? pin->bsc_i : nullptr, inside})
            if (const SCAN_CELL *cell = get_scan_cell(name); cell != nullptr)
                note_control_pins(*cell);
    }
}

void note_needs_of_pad(const BUFFER_CELL &pad) {
    for (int32_t n = 0; n < 3; ++n)
        if (pad.*PAD_MODES[n] != nullptr)
            BCELL_HAS[MODE_SIGNALS[n]] = 1;
    const SCAN_CELL *inside = is_bs_buffer(&pad) ? get_scan_cell(pad.name) : nullptr;
    if (inside != nullptr)
        note_control_pins(*inside);
}

void note_builtin_cell(const OPIN_ROW &row, const SCAN_CELL &cell) {
    for (int32_t signal : {SIG_MODE2, SIG_MODE3}) // resolve_modes_of_port reports these, in its own words
        if (cell.*CONTROL_SIGNALS[signal].cell_pin != nullptr)
            BCELL_HAS[signal] = 1;
    for (int32_t signal : {SIG_UPDATE, SIG_HIGHZ, SIG_MODE1, SIG_RST}) {
        const CONTROL_SIGNAL_INFO &info = CONTROL_SIGNALS[signal];
        if (cell.*info.cell_pin == nullptr || TAP_PIN[signal] != nullptr)
            continue;
        TAP_PIN[signal] = declared_pin(signal);
        if (TAP_PIN[signal] == nullptr)
            vmr_fail("ERROR: (%s) can't find %s in %%TAP_CONTROLLER %s.\n       %%BS_BUFFER %s needs it.\n\n",
                     JTAG_LIB_FILE, info.keyword, text_or_undefined(TAP_MODULE_NAME), row.pad_class);
        BCELL_HAS[signal] = 1;
        note_tap_net(signal, TAP_PIN[signal]);
    }
}

TAP_PINS_FOUND resolve_tap_pins(int32_t tap_obj) {
    TAP_PINS_FOUND found;
    resolve_tap_pin(tap_obj, TAP_TRST, found);
    for (int32_t id = 0; id < TAP_COMMAND; ++id) {
        if (id == TAP_UPDATE)
            resolve_tap_pin(tap_obj, TAP_COMMAND, found);
        if (id != TAP_TRST)
            resolve_tap_pin(tap_obj, id, found);
    }
    note_standard_nets(tap_obj);
    resolve_extra_pins(tap_obj, found);
    return found;
}

void resolve_modes_of_port(const OPIN_ROW &row) {
    for (int32_t signal : {SIG_MODE2, SIG_MODE3}) {
        TAP_PIN[signal] = BCELL_HAS[signal] != 0 ? declared_pin(signal) : nullptr;
        if (BCELL_HAS[signal] != 0 && TAP_PIN[signal] == nullptr) {
            vmr_printf("ERROR: (%s) can't find %s in %%TAP_CONTROLLER %s.\n", JTAG_LIB_FILE,
                       CONTROL_SIGNALS[signal].keyword, text_or_undefined(TAP_MODULE_NAME));
            BCELL_HAS[signal] = 0;
        }
        note_tap_net(signal, TAP_PIN[signal]);
    }
    for (int32_t i = 0; i < 3; ++i) {
        int32_t signal = MODE_SIGNALS[i];
        if (row.kind >= CELL_MUX_INPUT && mode_hangs_on_tap(row, i) && TAP_PIN[signal] == nullptr &&
            TAP_FLAG.control[signal] < 0)
            note_tap_net(signal, declared_pin(signal));
    }
}

void require_mode_pin(int32_t signal, const OPIN_ROW &row) {
    if (TAP_PIN[signal] == nullptr)
        TAP_PIN[signal] = declared_pin(signal);
    const char *keyword = CONTROL_SIGNALS[signal].keyword;
    if (TAP_PIN[signal] == nullptr)
        vmr_fail("ERROR: (%s) can't find %s in %%TAP_CONTROLLER %s.\n"
                 "       Please define %s to connectmux pad %s.\n\n",
                 JTAG_LIB_FILE, keyword, text_or_undefined(TAP_MODULE_NAME), keyword,
                 text_or_undefined(row.pad_instance));
}
