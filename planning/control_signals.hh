// The control signals of the boundary register, as one table.
//
// Everything that is done per control signal (counting loads, grouping, building trees, wiring cells, adding
// ports, reporting) walks this table, so that a signal is one line and not a copy of the code.
#pragma once

#include "description/tables.hh"

#include <cstdint>

/// The nine control signals. Extra pins (%EXTRA_n) are treated beside them, one per position.
enum CONTROL_SIGNAL : int32_t {
    SIG_SHIFT,
    SIG_CLOCK,
    SIG_UPDATE,
    SIG_HIGHZ,
    SIG_MODE1,
    SIG_MODE2,
    SIG_MODE3,
    SIG_RST,
    SIG_BCLK, // the boundary clock of -synch
    SIGNAL_COUNT
};

/// What is fixed of one control signal.
struct CONTROL_SIGNAL_INFO {
    const char *prefix;               ///< word in the names of its buffers: "shift" in shift_buf_1_2
    const char *keyword;              ///< keyword of the TAP cell's field: "%SHIFT_DR"
    const char *SCAN_CELL::*cell_pin; ///< the cell's pin
    const char *TAP_CELL::*tap_field; ///< the TAP cell's field; null for bclk
};

extern const CONTROL_SIGNAL_INFO CONTROL_SIGNALS[SIGNAL_COUNT];

/// Pin of the TAP that gives the boundary clock of -synch.
constexpr const char *BCELL_TCK = "BCELL_TCK";

/// Load, groups and tree of one control signal. add_scan_tab counts `need`;
/// built_bus_balance_group_tab_for_control_signal makes `group` and `buffer`; the wiring sets the rest.
struct BUFFER_TREE {
    int32_t need;        ///< inserted pins that want the signal
    int32_t *group;      ///< table: pins that each leaf buffer drives; null for none
    BUFFER_CELL *buffer; ///< buffer of the tree, null for none
    int32_t level;       ///< depth of the built tree; 0 when the cells are wired to the TAP directly
    int32_t cnt;         ///< while wiring: pins already on the current group
    int32_t index;       ///< while wiring: the current group
};

/// The trees of one module, or of the whole chip where all cells lie in one.
struct CONTROL_TREES {
    BUFFER_TREE signals[SIGNAL_COUNT];
    BUFFER_TREE *extras; ///< table: one tree per %EXTRA_n position; row n-1 belongs to %EXTRA_n
};

/// The mode signals in order, for loops over %MODE_1 to %MODE_3.
constexpr CONTROL_SIGNAL MODE_SIGNALS[3] = {SIG_MODE1, SIG_MODE2, SIG_MODE3};
/// The mode pins of a pad, in the same order.
constexpr const char *BUFFER_CELL::*PAD_MODES[3] = {&BUFFER_CELL::mode_1, &BUFFER_CELL::mode_2,
                                                    &BUFFER_CELL::mode_3};
