// The tables that planning fills, and what is fixed of cell kinds and control cells.
#include "planning/port_table.hh"

#include "description/lookups.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <algorithm>

OPIN_ROW *OPIN_TAB = nullptr;
CONTROL_ROW *CONTROL_TAB = nullptr;
CONTROL_ROW *CONTROL_OE_TAB = nullptr;
SCAN_ROW *SCAN_TAB = nullptr;
MULTI_IO_ROW *MULTI_IO_TAB = nullptr;
int32_t multi_io_module_flagG = 0;
int32_t HIGHZ_CNT = 0;
const char **BUFFER_REPORT = nullptr;
const char *BSO_FILE = nullptr;
int32_t SCAN_COUNT[CELL_COUNTER_COUNT];

const CONTROL_KIND CONTROL_KINDS[CONTROL_KIND_COUNT] = {
    {&CONTROL_TAB, &OPIN_ROW::control, COUNT_CONTROL},
    {&CONTROL_OE_TAB, &OPIN_ROW::oe_control, COUNT_CONTROL_OE},
};

const CELL_KIND_INFO CELL_KINDS[CELL_KIND_COUNT] = {
    {"clock", ONE_CELL},    // CELL_CLOCK
    {"input", ONE_CELL},    // CELL_INPUT
    {"output2", ONE_CELL},  // CELL_OUTPUT2
    {"output3", ONE_CELL},  // CELL_OUTPUT3
    {"output3", ONE_CELL},  // CELL_OUTPUT_EN
    {"bidir", ONE_CELL},    // CELL_BIDIR
    {"inout", CELL_PAIR},   // CELL_INOUT
    {"internal", ONE_CELL}, // CELL_INTERNAL
    {"clock", NO_CELLS},    // CELL_MUX_CLOCK
    {"input", ONE_CELL},    // CELL_MUX_INPUT
    {"output2", ONE_CELL},  // CELL_MUX_OUTPUT2
    {"output3", ONE_CELL},  // CELL_MUX_OUTPUT3
    {"  *", NO_CELLS},      // CELL_MUX_OUTPUT_EN: such a port gets no cell
    {"bidir", ONE_CELL},    // CELL_MUX_BIDIR
    {"bidir", ONE_CELL},    // CELL_MUX2_BIDIR
    {"inout", CELL_PAIR},   // CELL_MUX_INOUT
    {"inout", CELL_PAIR},   // CELL_MUX2_INOUT
};

bool row_gets_cells(const OPIN_ROW &row) {
    if (row.scan_cell == nullptr || row.kind < 0 || row.kind >= CELL_KIND_COUNT)
        return false;
    // A pair of cells without a pad stands on a pad of its own, or nowhere.
    bool stands = row.kind != CELL_INOUT || row.pad_instance != nullptr || option(OPT_ADD_PAD);
    return stands && CELL_KINDS[row.kind].cells != NO_CELLS;
}

int32_t first_row_with_cells() {
    auto table = rows(OPIN_TAB);
    auto found = std::find_if(table.begin(), table.end(), row_gets_cells);
    return found == table.end() ? -1 : static_cast<int32_t>(found - table.begin());
}

OPIN_ROW &create_an_entry_of_OPIN_TAB(int32_t pin_index, const char *core_name) {
    const PIN_ENTRY &pin = *PIN_TABLE[pin_index];
    OPIN_ROW row = {};
    row.pin_index = pin_index;
    row.pin_num = bs_internal_word(pin.package_name) ? pin.package_name : pin.number;
    row.port_name = keep_text(without_minus(core_name));
    row.inverted = is_active_low(core_name) ? 1 : 0;
    row.kind = CELL_NONE;
    row.pad_obj = -1;
    row.order = row.chain_place = -1;
    std::fill(std::begin(row.mode_net), std::end(row.mode_net), -1);
    row.mux_in1_net = row.mux_in2_net = row.mux_out_net = -1;
    return append_row(OPIN_TAB, row);
}
