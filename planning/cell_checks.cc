// The checks of a scan cell record, one row of a table per role of a cell.
#include "planning/validation.hh"

#include "description/lookups.hh"
#include "planning/port_table.hh"
#include "planning/tap_state.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <initializer_list>
#include <string>
#include <unordered_set>

namespace {

enum MODE_WARNING { NO_WARNING, WARN_NO_MODE, WARN_ANY_MODE };

struct PIN_NEED {
    const char *keyword;
    const char *SCAN_CELL::*field;
};

// The pins by which each cell hangs in the chain; the last one counts under -synch alone.
constexpr PIN_NEED CHAIN_PINS[] = {{"%TDI", &SCAN_CELL::tdi},
                                   {"%TDO", &SCAN_CELL::tdo},
                                   {"%SHIFT_DR", &SCAN_CELL::shift_dr},
                                   {"%CLOCK_DR", &SCAN_CELL::clock_dr},
                                   {"%TCK", &SCAN_CELL::tck}};

constexpr PIN_NEED DATA_IN = {"%DATA_IN", &SCAN_CELL::data_in};
constexpr PIN_NEED DATA_OUT = {"%DATA_OUT", &SCAN_CELL::data_out};
constexpr PIN_NEED UPDATE_DR = {"%UPDATE_DR", &SCAN_CELL::update_dr};
constexpr PIN_NEED UPDATE_DR_OUT = {"%UPDATE_DR_OUT", &SCAN_CELL::update_dr_out};
constexpr PIN_NEED SYS_PIN = {"%SYS_PIN", &SCAN_CELL::sys_pin};

struct CELL_CHECK {
    const char *label;
    const char *word;         // in the messages
    const char *warning_word; // in the mode warnings
    PIN_NEED pins[4];         // ended by a null keyword
    const char *oe_keyword;   // the cell needs %OE_MODE, reported under this word; else null
    MODE_WARNING warning;
};

constexpr CELL_CHECK INPUT_CHECK = {"%INPUT_SCAN", "INPUT SCAN", nullptr, {DATA_IN}, nullptr, NO_WARNING};
constexpr CELL_CHECK CLOCK_CHECK = {"%CLOCK_SCAN", "CLOCK SCAN", nullptr, {DATA_IN}, nullptr, NO_WARNING};
constexpr CELL_CHECK OUTPUT_CHECK = {
    "%OUTPUT_SCAN", "OUTPUT SCAN", "OUTPUT SCAN", {DATA_IN, DATA_OUT, UPDATE_DR}, nullptr, WARN_NO_MODE};
constexpr CELL_CHECK BIDIR_CHECK = {"%BIDIR_SCAN", "BIDIR SCAN",
                                    "BIDIR SCAN",  {DATA_IN, DATA_OUT, UPDATE_DR, SYS_PIN},
                                    nullptr,       WARN_NO_MODE};
constexpr CELL_CHECK CONTROL_CHECK = {
    "%CONTROL_SCAN", "CONTROL SCAN", "CONTORL SCAN", {DATA_IN, DATA_OUT, UPDATE_DR}, nullptr, WARN_NO_MODE};
constexpr CELL_CHECK INPUT_MUX_CHECK = {"%INPUT_MUX_SCAN", "INPUT MUX SCAN",
                                        "INPUT MUX SCAN",  {DATA_IN, UPDATE_DR_OUT, UPDATE_DR},
                                        nullptr,           WARN_ANY_MODE};
constexpr CELL_CHECK CLOCK_MUX_CHECK = {"%CLOCK_MUX_SCAN", "CLOCK MUX SCAN",
                                        "CLOCK MUX SCAN",  {DATA_IN, UPDATE_DR_OUT, UPDATE_DR},
                                        nullptr,           WARN_ANY_MODE};
constexpr CELL_CHECK OUTPUT_MUX_CHECK = {"%OUTPUT_MUX_SCAN",         "OUTPUT MUX SCAN", "OUTPUT MUX SCAN",
                                         {UPDATE_DR, UPDATE_DR_OUT}, nullptr,           WARN_ANY_MODE};
constexpr CELL_CHECK BIDIR_MUX_CHECK = {
    "%BIDIR_MUX_SCAN", "BIDIR MUX SCAN", nullptr, {SYS_PIN, UPDATE_DR, UPDATE_DR_OUT}, nullptr, NO_WARNING};
constexpr CELL_CHECK CONTROL_MUX_CHECK = {
    "%CONTROL_MUX_SCAN", "CONTROL MUX SCAN", "CONTROL MUX SCAN", {DATA_IN, UPDATE_DR, UPDATE_DR_OUT}, nullptr,
    WARN_ANY_MODE};
constexpr CELL_CHECK CONTROL_OE_CHECK = {
    "%CONTROL_OE_SCAN", "CONTROL OE SCAN", nullptr, {DATA_IN, UPDATE_DR, DATA_OUT},
    "%CONRTOL_OE_SCAN", NO_WARNING};
constexpr CELL_CHECK CONTROL_OE_LOW_CHECK = {
    "%CONTROL_OE_LOW_SCAN",         "CONTROL OE LOW SCAN",  nullptr,
    {DATA_IN, UPDATE_DR, DATA_OUT}, "%CONRTOL_OE_LOW_SCAN", NO_WARNING};
constexpr CELL_CHECK CONTROL_OE_HIGH_CHECK = {
    "%CONTROL_OE_HIGH_SCAN",        "CONTROL OE HIGH SCAN",  nullptr,
    {DATA_IN, UPDATE_DR, DATA_OUT}, "%CONRTOL_OE_HIGH_SCAN", NO_WARNING};

// Reports a pin that the cell must have, as an "ERROR" or a "WARNING". True when it is missing.
bool misses_pin(const char *severity, const SCAN_CELL &cell, const PIN_NEED &need) {
    if (cell.*need.field != nullptr)
        return false;
    vmr_printf("%s: (%s) can't find %s in %%SCAN_CELL %s.\n", severity, JTAG_LIB_FILE, need.keyword,
               cell.name);
    return true;
}

bool misses_chain_pin(const char *severity, const SCAN_CELL &cell) {
    bool fault = false;
    for (const PIN_NEED &need : CHAIN_PINS)
        if (need.field != &SCAN_CELL::tck || option(OPT_SYNCH))
            fault |= misses_pin(severity, cell, need);
    return fault;
}

bool check_ports_in_scan_cell(SCAN_CELL **cell_out, const char *label, const char *name) {
    SCAN_CELL *cell = get_scan_cell(name);
    if (cell == nullptr)
        vmr_fail("ERROR: can't find scan cell %s '%s' in '%s' file.\n\n", label, name, JTAG_LIB_FILE);
    *cell_out = cell;
    return misses_chain_pin("ERROR", *cell);
}

bool misses_pin_of_role(const CELL_CHECK &check, const SCAN_CELL &cell) {
    bool fault = false;
    for (const PIN_NEED &need : check.pins) {
        if (need.keyword == nullptr)
            break;
        if (!misses_pin("ERROR", cell, need))
            continue;
        vmr_printf("       %s '%s' should have %s signal.\n", check.word, cell.name, need.keyword);
        fault = true;
    }
    if (check.oe_keyword != nullptr && cell.oe_mode == nullptr) {
        vmr_printf("ERROR: (%s) can't find %%OE_MODE in %s %s.\n", JTAG_LIB_FILE, check.oe_keyword,
                   cell.name);
        fault = true;
    }
    return fault;
}

void warn_of_modes(const CELL_CHECK &check, SCAN_CELL &cell) {
    bool any = cell.mode_1 != nullptr || cell.mode_2 != nullptr || cell.mode_3 != nullptr;
    if (check.warning == WARN_NO_MODE && !any)
        vmr_printf("WARNING: (%s) can't find %%MODE signals in %s '%s'.\n         %%MODE signals won't be "
                   "connected.\n\n",
                   JTAG_LIB_FILE, check.warning_word, cell.name);
    if (check.warning == WARN_ANY_MODE && any) {
        vmr_printf(
            "WARNING: (%s) %%MODE signals in %s '%s'.\n         But %%MODE signals won't be connected.\n\n",
            JTAG_LIB_FILE, check.warning_word, cell.name);
        cell.mode_1 = cell.mode_2 = cell.mode_3 = nullptr;
    }
}

// Every scan cell must exist as an SDB file; the direction of its %OE_MODE port is read from there.
void check_scan_oe_mode_type(SCAN_CELL &cell, const char *name) {
    const char *path = find_design_file(format_text("%s.sdb", name));
    if (path == nullptr)
        vmr_fail("ERROR: can't find SDB file '%s%s.sdb' in default searching path.\n\n", PATH, name);
    if (cell.oe_mode == nullptr)
        return;
    SDB_HANDLE *design = sdb;
    open_sdb_file(path);
    const char *oe_mode = without_minus(cell.oe_mode);
    int32_t port = SDB_nl_search_port(oe_mode);
    if (port == -1)
        vmr_fail("ERROR: (%s) can't find port '%s' in SDB '%s' for SCAN_CELL '%s'.\n\n", JTAG_LIB_FILE,
                 oe_mode, path, name);
    cell.oe_mode_type = port_tab[port].flags & 3;
    close_sdb_file();
    SDB_setup(design);
}

bool check_cell(const CELL_CHECK &check, const char *name) {
    SCAN_CELL *cell = nullptr;
    bool fault = check_ports_in_scan_cell(&cell, check.label, name);
    fault |= misses_pin_of_role(check, *cell);
    if (fault)
        vmr_printf("\n");
    else
        note_control_pins(*cell);
    warn_of_modes(check, *cell);
    check_scan_oe_mode_type(*cell, name);
    return fault;
}

} // namespace

void note_control_pins(const SCAN_CELL &cell) {
    for (CONTROL_SIGNAL signal : {SIG_RST, SIG_UPDATE, SIG_HIGHZ, SIG_MODE1, SIG_MODE2, SIG_MODE3})
        if (cell.*CONTROL_SIGNALS[signal].cell_pin != nullptr)
            BCELL_HAS[signal] = 1;
    if (DYNA_count(cell.extras) > BCELL_EXTRA)
        BCELL_EXTRA = DYNA_count(cell.extras);
}

bool check_input_scan_cell(const char *name) {
    return check_cell(INPUT_CHECK, name);
}

bool check_clock_scan_cell(const char *name) {
    return check_cell(CLOCK_CHECK, name);
}

bool check_output_scan_cell(const char *name) {
    return check_cell(OUTPUT_CHECK, name);
}

bool check_bidir_scan_cell(const char *name) {
    return check_cell(BIDIR_CHECK, name);
}

bool check_bidir_scan_cell_after_open_sdb(const char *name) {
    return check_cell(BIDIR_CHECK, name);
}

bool check_control_scan_cell(const char *name) {
    return check_cell(CONTROL_CHECK, name);
}

bool check_input_mux_scan_cell(const char *name) {
    return check_cell(INPUT_MUX_CHECK, name);
}

bool check_clock_mux_scan(const char *name) {
    return check_cell(CLOCK_MUX_CHECK, name);
}

bool check_output_mux_scan(const char *name) {
    return check_cell(OUTPUT_MUX_CHECK, name);
}

bool check_bidir_mux_scan_cell(const char *name) {
    return check_cell(BIDIR_MUX_CHECK, name);
}

bool check_control_mux_scan(const char *name) {
    return check_cell(CONTROL_MUX_CHECK, name);
}

bool check_control_oe_scan_cell(const char *name) {
    return check_cell(CONTROL_OE_CHECK, name);
}

bool check_control_oe_low_scan_cell(const char *name) {
    return check_cell(CONTROL_OE_LOW_CHECK, name);
}

bool check_control_oe_high_scan_cell(const char *name) {
    return check_cell(CONTROL_OE_HIGH_CHECK, name);
}

namespace {

/// The cells that the pin file names for its pins, and those of pins inside the core, have no role that is
/// checked here; the TAP must have what they want all the same.
void note_cells_of_pins() {
    for (const PIN_ENTRY *pin : rows(PIN_TABLE)) {
        if (pin->top_name == nullptr || skip_signal(pin->top_name))
            continue;
        const char *inside = is_internal_pin(pin)  ? INTERNAL_SCAN
                             : is_observe_pin(pin) ? OBSERVE_ONLY_SCAN
                                                   : nullptr;
        for (const char *name : {pin->bsc_name, pin->bsc_kind == BSC_I ? pin->bsc_i : nullptr, inside})
            if (const SCAN_CELL *cell = get_scan_cell(name); cell != nullptr)
                note_control_pins(*cell);
    }
}

} // namespace

void warn_of_missing_pins() {
    std::unordered_set<const SCAN_CELL *> known;
    for (const OPIN_ROW &row : rows(OPIN_TAB)) {
        if (!row_gets_cells(row) || !known.insert(row.scan_cell).second)
            continue;
        bool fault = misses_chain_pin("WARNING", *row.scan_cell);
        if (row.kind == CELL_INTERNAL && misses_pin("WARNING", *row.scan_cell, DATA_IN)) {
            vmr_printf("         %s '%s' should have %s signal.\n",
                       is_observe_pin(PIN_TABLE[row.pin_index]) ? "OBSERVE_ONLY SCAN" : "INTERNAL SCAN",
                       row.scan_cell->name, DATA_IN.keyword);
            fault = true;
        }
        if (fault)
            vmr_printf("\n");
    }
}

void check_scan_cells() {
    for (int32_t &flag : BCELL_HAS)
        flag = 0;
    BCELL_EXTRA = 0;
    const struct {
        const char *name;
        bool (*check)(const char *);
    } roles[] = {
        {INPUT_SCAN, check_input_scan_cell},
        {CLOCK_SCAN, check_clock_scan_cell},
        {OUTPUT_SCAN, check_output_scan_cell},
        {BIDIR_SCAN, check_bidir_scan_cell},
        {CONTROL_SCAN, check_control_scan_cell},
        {CONTROL_LOW_SCAN, check_control_scan_cell},
        {CONTROL_HIGH_SCAN, check_control_scan_cell},
        {INPUT_MUX_SCAN, check_input_mux_scan_cell},
        {CLOCK_MUX_SCAN, check_clock_mux_scan},
        {OUTPUT_MUX_SCAN, check_output_mux_scan},
        {BIDIR_MUX_SCAN, check_bidir_mux_scan_cell},
        {CONTROL_MUX_SCAN, check_control_mux_scan},
        {CONTROL_OE_SCAN, check_control_oe_scan_cell},
        {CONTROL_OE_LOW_SCAN, check_control_oe_low_scan_cell},
        {CONTROL_OE_HIGH_SCAN, check_control_oe_high_scan_cell},
    };
    bool fault = false;
    for (const auto &role : roles)
        if (role.name != nullptr)
            fault |= role.check(role.name);
    if (fault)
        vmr_fail("\n");
    note_cells_of_pins();
}
