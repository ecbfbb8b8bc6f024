// The signals between the chip's ports and the TAP, and the one way by which they are followed and joined.
//
// A signal starts at the pad of its port and is followed upwards, level by level, through ports that the
// modules have already. A level is a module above the pad: level 0 holds the pad, the last level is a child
// of the top module. Where a signal finds no port it stops, and gets a new port from that level up. Where the
// levels lie, and what becomes of a signal that stops, is the affair of the layouts: pads in the top module
// (tap_top.cc), in one module below it (pad_levels.cc), in several (multi_ports.cc).
#pragma once

#include "editing/edit_commands.hh"
#include "planning/tap_state.hh"

#include <span>
#include <string>
#include <vector>

/// The place of a signal in one module.
struct ROUTE_STEP {
    SIGNAL_PLACE place;
    bool cut = false; ///< the design has something on a pin that the TAP is to drive
};

/// The way of one signal up a path of modules.
struct SIGNAL_ROUTE {
    int32_t start = 0; ///< level of the pad; the number of levels when it stands in the top module
    int32_t stop = -1; ///< level at which the signal found no port; -1 when it reaches the top
    std::vector<ROUTE_STEP> steps; ///< by level; null places outside the way
    ROUTE_STEP top;                ///< the same in the top module; of a signal that stopped, where it did so
};

/// The five standard ports, in the order of STANDARD_PORT, and the enable of the TDO pad.
enum STANDARD_SIGNAL : int32_t {
    SIGNAL_TDI,
    SIGNAL_TDO,
    SIGNAL_TMS,
    SIGNAL_TCK,
    SIGNAL_TRST,
    SIGNAL_TDO_EN,
    STANDARD_SIGNAL_COUNT
};
struct STANDARD_SIGNAL_ROW {
    STANDARD_PORT port;
    bool to_pad;    ///< the TAP drives it
    int32_t *found; ///< word of TAP_FLAG with the net that planning has found on the pad, or null
    SIGNAL_ROUTE route;
};
/// The routes are begun by begin_routes and made by follow.
extern STANDARD_SIGNAL_ROW SIGNALS[STANDARD_SIGNAL_COUNT];

/// The order of the lines, but for the two layouts that have TRST before TDO.
constexpr STANDARD_SIGNAL SIGNAL_ORDER[] = {SIGNAL_TDI, SIGNAL_TMS,    SIGNAL_TCK,
                                            SIGNAL_TDO, SIGNAL_TDO_EN, SIGNAL_TRST};
constexpr STANDARD_SIGNAL TRST_FIRST_ORDER[] = {SIGNAL_TDI,  SIGNAL_TMS, SIGNAL_TCK,
                                                SIGNAL_TRST, SIGNAL_TDO, SIGNAL_TDO_EN};

/// The port's row, null when the design has no such port.
OPIN_ROW *signal_row(STANDARD_SIGNAL signal);
/// The pin of the TAP, or the port of <top>_BCM that leads to it; null when there is none.
const char *signal_tap_pin(STANDARD_SIGNAL signal);
/// The port that a signal gets where it finds none: "vmr_tap_tdi" and its sisters, the TAP's pin for the
/// enable.
std::string new_port_name(STANDARD_SIGNAL signal);
/// Name of the chip's port without '-'.
const char *chip_port_name(STANDARD_PORT port);
/// True for a standard port that the TAP gets: all but a TRST that is not declared.
bool port_is_used(STANDARD_PORT port);
EDIT_OPERAND place_operand(const SIGNAL_PLACE &place);
/// Disconnects a pin that the TAP takes, and notes it.
void take_pin_for_tap(EDIT_FILE *fp, const SIGNAL_PLACE &place);
/// The modules above the signal's pad.
int32_t levels_of(STANDARD_SIGNAL signal);

/// Puts all signals to their pads, or to the bare port, for a way of `levels` levels. A signal whose port is
/// new stays where the port was added.
void begin_routes(int32_t levels);

/// What the run does with the modules on the way.
enum LEVEL_USE {
    LEVELS_FOREIGN, ///< it does not edit them: a signal that finds no port there ends the run
    LEVELS_OF_PADS, ///< it edits them; a pin that planning found tied to a constant goes no further
    LEVELS_LOOKED,  ///< it edits them, but leaves the signals there to the design
    LEVELS_EDITED   ///< it edits them
};
/// Leads the signals up through the levels `from` to below `to` of the modules above the row's pad, all
/// signals through one before the next. A signal passes by a port that runs towards the pad when the TAP
/// drives it, else away from it; a port that runs the other way belongs to something else on the net, and
/// constant nets leave by no port. Nor does a signal of the TAP pass by a port that has more to drive than
/// the pin. Warns of what is cut off where a signal stops.
void follow(std::span<const STANDARD_SIGNAL> signals, const OPIN_ROW &row, int32_t from, int32_t to,
            LEVEL_USE use);
/// Lets the boundary order file show the instance at which the following has ended as the port's pad.
void show_route_in_row(STANDARD_SIGNAL signal);

/// True when the top module, which must be open, has something on the pin that an added TAP is to drive.
/// `found` is the net that planning has found there. A driver is warned of, a constant only where the user
/// has not been told of it.
bool is_driven_in_top(STANDARD_SIGNAL signal, int32_t found);
/// The same where a constant that planning has found counts too; on the enable of a pad in the top any net
/// does.
bool is_taken_in_top(STANDARD_SIGNAL signal, int32_t found);

/// Joins a signal to the TAP, or to what leads to it, behind freeing it of what the design has on it. The TAP
/// stands second in the line unless `tap_first` is set.
void free_and_join(EDIT_FILE *fp, const ROUTE_STEP &step, const EDIT_OPERAND &tap, bool tap_first = false);
