// The SCAN_TAB row of an inserted cell, and the loads that the cell puts on the control signals.
#include "planning/planning.hh"

#include "planning/port_pad.hh"
#include "planning/tap_needs.hh"
#include "support/run_state.hh"
#include "support/text.hh"

namespace {

/// The mode pins of a mux pad that no working net drives are loads of the TAP's mode signals.
void count_pad_modes(const OPIN_ROW &row, CONTROL_TREES &trees) {
    for (int32_t i = 0; i < 3; ++i) {
        if (!mode_hangs_on_tap(row, i))
            continue;
        ++trees.signals[MODE_SIGNALS[i]].need;
        require_mode_pin(MODE_SIGNALS[i], row);
    }
}

} // namespace

const char *add_scan_tab(const SCAN_CELL *cell, OPIN_ROW &row, bool mux, bool is_control) {
    int32_t index = DYNA_count(SCAN_TAB);
    if (row.chain_place < 0)
        row.chain_place = index;
    SCAN_ROW scan = {};
    scan.mux_pad = mux ? &row : nullptr;
    if (is_bs_buffer(row.pad) && !is_control)
        scan.inst = row.pad_instance; // the cell is the pad
    else if (row.direction != nullptr)
        scan.inst = keep_format("BCELL%d_%s", index, row.direction);
    else
        scan.inst = keep_format("BCELL%d", index);
    scan.tdi_pin = cell->tdi;
    scan.tdo_pin = cell->tdo;
    scan.pins[SIG_BCLK] = cell->tck;
    scan.io_module = row.io_module;
    CONTROL_TREES &trees = MULTI_IO_TAB[row.io_module].trees;
    if (option(OPT_SYNCH))
        ++trees.signals[SIG_BCLK].need;
    for (int32_t signal = 0; signal < SIG_BCLK; ++signal) {
        scan.pins[signal] = cell->*CONTROL_SIGNALS[signal].cell_pin;
        if (scan.pins[signal] != nullptr)
            ++trees.signals[signal].need;
    }
    if (mux)
        count_pad_modes(row, trees);

    for (const char *pin : rows(cell->extras)) {
        int32_t position = DYNA_count(scan.extra_pins);
        append_row(scan.extra_pins, pin);
        if (position >= DYNA_count(trees.extras))
            append_row(trees.extras);
        if (pin != nullptr) // the library may leave numbers out
            ++trees.extras[position].need;
    }
    append_row(SCAN_TAB, scan);
    return scan.inst;
}
