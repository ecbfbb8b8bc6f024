// The TAP cell in use: its resolved pins, what the design already has on them, and the chip's standard ports.
#pragma once

#include "description/tables.hh"
#include "planning/control_signals.hh"

#include <cstdint>

struct OPIN_ROW;

/// The %TAP_CONTROLLER in use; null until it is looked up (jtag_init or the field checks).
extern TAP_CELL *TAP_CONTR;

/// The list of what the chain needs of the TAP, written by planning/tap_needs.cc alone. [SIG_SHIFT] and
/// [SIG_CLOCK] are not used: every cell needs these.
extern int32_t BCELL_HAS[SIGNAL_COUNT];
extern int32_t BCELL_EXTRA; ///< largest count of %EXTRA_n pins among the declared cells
extern int32_t TDO_EN_LOW;  ///< 1 when the pad on the TDO port has an active-low enable

/// Pins of the TAP without a leading '-'; null when the signal is not needed. Set by jtag_init and by
/// planning/tap_needs.cc. TAP_PIN[SIG_BCLK] is always null: that pin is the fixed BCELL_TCK.
extern const char *TAP_PIN[SIGNAL_COUNT];
extern const char *TAP_TDO_EN_PIN;
extern const char *TAP_HIZ_PIN;    ///< pin of %HIGHZ_COMMAND, also when no cell has %HIGHZ
extern const char **TAP_EXTRA_PIN; ///< table with BCELL_EXTRA rows: pin of %EXTRA_n in row n-1

extern const char *HIZ_BUF_NAME; ///< cell of the high-impedance buffers, null when none is known
extern BUFFER_CELL *HIZ_BUF;     ///< its record

/// Nets already on the pins of an existing TAP instance: -1 none, 0 GND, 1 VCC.
struct TAP_FLAG_WORDS {
    int32_t control[SIGNAL_COUNT]; ///< per control signal; [SIG_HIGHZ] is %HIGHZ_COMMAND as the cells' source
    int32_t first_bcell;
    int32_t last_bcell;
    int32_t hiz;     ///< %HIGHZ_COMMAND itself
    int32_t *extras; ///< table: one word per %EXTRA_n
    int32_t tdo;     ///< net on the TDO pad's data pin
    int32_t tdo_en;  ///< net on the TDO pad's enable
};
constexpr TAP_FLAG_WORDS NO_TAP_NETS = {{-1, -1, -1, -1, -1, -1, -1, -1, -1}, -1, -1, -1, nullptr, -1, -1};
extern TAP_FLAG_WORDS TAP_FLAG;

/// True for a word that names a constant net: 0 or 1.
inline bool is_constant_net(int32_t net) {
    return static_cast<uint32_t>(net) < 2;
}

/// The five standard ports.
enum STANDARD_PORT : int32_t { PORT_TDI, PORT_TDO, PORT_TMS, PORT_TCK, PORT_TRST, STANDARD_PORT_COUNT };

/// One standard port: what is fixed, and where the run found it.
struct STANDARD_PORT_STATE {
    const char *word;                 ///< "tdi": as in vmr_tap_tdi and %GLOBAL_TDI
    const char **global_name;         ///< address of GLOBAL_TDI and its sisters
    const char *TAP_CELL::*tap_field; ///< field of the TAP cell
    const char *tap_pin; ///< TAP_TDI_PIN and its sisters: the TAP's pin without '-', null when not needed
    OPIN_ROW *row;       ///< TAP_TDI_PIN_PTR and its sisters: the port's row when the design has the port
    int32_t pin_index;   ///< tdi_pin_indexG and its sisters: the row number, -1 before it is known
    /// Net of the pin of an existing TAP, when the design has more on that net.
    const char *tap_net = nullptr;
    /// 0 or 1 when the design ties that pin to a constant, else -1.
    int32_t tap_constant = -1;
};
extern STANDARD_PORT_STATE TAP_PORT[STANDARD_PORT_COUNT];

/// The path of a hierarchical TAP instance, from the outermost instance down; the last row is the TAP itself.
struct TAP_PATH_ROW {
    const char *inst;
    const char *module; ///< null until the module is looked up in the design; stays null in the last row
};
extern int32_t rwv_hier_tap_ctrlG;                ///< 1 when TAP_INSTANCE_NAME was a path
extern TAP_PATH_ROW *rwv_hier_tap_ctrl_name_tabG; ///< table of that path, or null

/// Names of the TAP module's ports for the parents of a hierarchical TAP, written with the port-only TAP
/// module: 0 standard inputs, 1 TDO, 2 TDO enable and enable pins, 3 chain inputs, 4 chain outputs, 5 control
/// outputs, 6 further inputs.
constexpr int32_t TAP_PORT_TABLES = 7;
extern const char **rwv_hier_tap_port_tabG[TAP_PORT_TABLES];

/// TAP_INSTANCE_NAME as the user gave it, a path included; set when the inputs are checked, null when not
/// given.
extern const char *org_tap_instance_nameG;
