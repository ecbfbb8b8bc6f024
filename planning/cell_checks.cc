// The checks of a scan cell record, by the role that it plays.
#include "planning/validation.hh"

#include "description/lookups.hh"
#include "planning/cell_roles.hh"
#include "planning/open_design.hh"
#include "planning/tap_needs.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/faults.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>
#include <string>
#include <unordered_set>

namespace {

// The pins by which each cell hangs in the chain; the last one counts under -synch alone.
constexpr PIN_NEED CHAIN_PINS[] = {{"%TDI", &SCAN_CELL::tdi},
                                   {"%TDO", &SCAN_CELL::tdo},
                                   {"%SHIFT_DR", &SCAN_CELL::shift_dr},
                                   {"%CLOCK_DR", &SCAN_CELL::clock_dr},
                                   {"%TCK", &SCAN_CELL::tck}};

// Reports a pin that the cell must have, as an "ERROR" or a "WARNING". True when it is missing.
bool misses_pin(const char *severity, const SCAN_CELL &cell, const PIN_NEED &need) {
    return cell.*need.field == nullptr && report_fault("%s: (%s) can't find %s in %%SCAN_CELL %s.\n",
                                                       severity, JTAG_LIB_FILE, need.keyword, cell.name);
}

bool misses_chain_pin(const char *severity, const SCAN_CELL &cell) {
    bool fault = false;
    for (const PIN_NEED &need : CHAIN_PINS)
        if (need.field != &SCAN_CELL::tck || option(OPT_SYNCH))
            fault |= misses_pin(severity, cell, need);
    return fault;
}

// "%INPUT_MUX_SCAN" as the words "INPUT MUX SCAN".
std::string role_words(const char *keyword) {
    std::string words = keyword + 1;
    std::replace(words.begin(), words.end(), '_', ' ');
    return words;
}

bool misses_pin_of_role(const CELL_ROLE &role, const SCAN_CELL &cell) {
    bool fault = false;
    for (const PIN_NEED &need : role.pins)
        if (need.keyword != nullptr && misses_pin("ERROR", cell, need))
            fault = report_fault("       %s '%s' should have %s signal.\n", role_words(role.keyword).c_str(),
                                 cell.name, need.keyword);
    if (role.oe_keyword != nullptr && cell.oe_mode == nullptr)
        fault = report_fault("ERROR: (%s) can't find %%OE_MODE in %s %s.\n", JTAG_LIB_FILE, role.oe_keyword,
                             cell.name);
    return fault;
}

void warn_of_modes(const CELL_ROLE &role, SCAN_CELL &cell) {
    bool any = cell.mode_1 != nullptr || cell.mode_2 != nullptr || cell.mode_3 != nullptr;
    std::string words = role.warning_word != nullptr ? role.warning_word : role_words(role.keyword);
    if (role.warning == WARN_NO_MODE && !any)
        vmr_printf("WARNING: (%s) can't find %%MODE signals in %s '%s'.\n         %%MODE signals won't be "
                   "connected.\n\n",
                   JTAG_LIB_FILE, words.c_str(), cell.name);
    if (role.warning == WARN_ANY_MODE && any) {
        vmr_printf(
            "WARNING: (%s) %%MODE signals in %s '%s'.\n         But %%MODE signals won't be connected.\n\n",
            JTAG_LIB_FILE, words.c_str(), cell.name);
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
    OPEN_DESIGN cell_design(path);
    const char *oe_mode = without_minus(cell.oe_mode);
    int32_t port = SDB_nl_search_port(oe_mode);
    if (port == -1)
        vmr_fail("ERROR: (%s) can't find port '%s' in SDB '%s' for SCAN_CELL '%s'.\n\n", JTAG_LIB_FILE,
                 oe_mode, path, name);
    cell.oe_mode_type = port_tab[port].flags & SDB_DIRECTION_MASK;
}

} // namespace

bool check_scan_cell(CELL_COUNTER role_index, const char *name) {
    const CELL_ROLE &role = CELL_ROLES[role_index];
    SCAN_CELL *cell = get_scan_cell(name);
    if (cell == nullptr)
        vmr_fail("ERROR: can't find scan cell %s '%s' in '%s' file.\n\n", role.keyword, name, JTAG_LIB_FILE);
    bool fault = misses_chain_pin("ERROR", *cell);
    fault |= misses_pin_of_role(role, *cell);
    if (fault)
        vmr_printf("\n");
    else
        note_control_pins(*cell);
    warn_of_modes(role, *cell);
    check_scan_oe_mode_type(*cell, name);
    return fault;
}

void warn_of_missing_pins() {
    std::unordered_set<const SCAN_CELL *> known;
    for (const OPIN_ROW &row : rows(OPIN_TAB)) {
        if (!row_gets_cells(row) || !known.insert(row.scan_cell).second)
            continue;
        bool fault = misses_chain_pin("WARNING", *row.scan_cell);
        if (row.kind == CELL_INTERNAL && misses_pin("WARNING", *row.scan_cell, DATA_IN))
            fault = report_fault("         %s '%s' should have %s signal.\n",
                                 bs_observe_word(PIN_TABLE[row.pin_index]->package_name) ? "OBSERVE_ONLY SCAN"
                                                                                         : "INTERNAL SCAN",
                                 row.scan_cell->name, DATA_IN.keyword);
        if (fault)
            vmr_printf("\n");
    }
}

void check_scan_cells() {
    forget_needs();
    bool fault = false;
    each_number_apart(COUNT_INTERNAL, [&fault](int32_t role) {
        if (const char *name = *CELL_ROLES[role].declared; name != nullptr)
            fault |= check_scan_cell(static_cast<CELL_COUNTER>(role), name);
    });
    if (fault)
        vmr_fail("\n");
    note_cells_of_pins();
}
