#include "planning/cell_choice.hh"

#include "description/lookups.hh"
#include "planning/cell_roles.hh"
#include "planning/tap_needs.hh"
#include "support/console.hh"
#include "support/run_state.hh"

CHOSEN_CELL checked_cell(const char *name, CELL_COUNTER role) {
    if (check_scan_cell(role, name))
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

CHOSEN_CELL required_cell(const OPIN_ROW &row, const CHOSEN_CELL &chosen, const CELL_WORDS &words) {
    if (chosen.cell == nullptr)
        vmr_fail("ERROR: can't find %s in file '%s'.\n       Need %s to connect to %s port '%s'.\n\n",
                 words.keyword, JTAG_BSC_FILE, words.need, words.direction, row.port_name);
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

SCAN_CELL *builtin_cell(const OPIN_ROW &row) {
    SCAN_CELL *cell = get_scan_cell(builtin_cell_name(row));
    if (cell == nullptr)
        vmr_fail("ERROR: can't find %%SCAN_CELL '%s' for %%BS_BUFFER.\n", row.pad_class);
    note_builtin_cell(row, *cell);
    return cell;
}
