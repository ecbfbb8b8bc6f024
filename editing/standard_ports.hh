// The standard ports of the chip on their way from the pad to the TAP.
//
// The pads' path is the list of modules above the pads of the cells: level 0 holds the pads, the last level
// is a child of the top module. A standard port's pad may stand in any of these modules, in the top, or
// elsewhere. Its signal is followed upwards through ports that the modules have already. Where it meets no
// port it stops, and gets a new port vmr_tap_<x> from that level up.
#pragma once

#include "editing/edit_commands.hh"
#include "planning/tap_state.hh"

#include <string>

/// Where a signal is: a pin of an instance, or a port when `instance` is null.
struct SIGNAL_PLACE {
    const char *instance;
    const char *pin;
};

/// One level of a signal's way.
struct ROUTE_STEP {
    SIGNAL_PLACE place; ///< the pin that carries the signal there
    bool driven;        ///< a signal towards the pad: the design drives the pin already
};

/// The way of one signal up the pads' path.
struct SIGNAL_ROUTE {
    int32_t start;     ///< level of the pad; the number of levels when it stands in the top module
    int32_t stop;      ///< level at which the signal found no port; -1 when it reaches the top
    ROUTE_STEP *steps; ///< table: by level; null places outside the way
    SIGNAL_PLACE top;  ///< the pin or port that carries it in the top module, when it reaches that
    bool cut;          ///< where it stops, the pin is to be freed of what the design has on it
    bool cut_in_top;   ///< the same for the pin or port in the top module
};

/// Routes of the five ports, and of the enable of the TDO pad. Set by bs_search_standard_ports.
extern SIGNAL_ROUTE PORT_ROUTES[STANDARD_PORT_COUNT];
extern SIGNAL_ROUTE TDO_EN_ROUTE;

/// "vmr_tap_tdi" and its sisters.
std::string tap_port_name(STANDARD_PORT port);
/// Name of the chip's port without '-'.
const char *chip_port_name(STANDARD_PORT port);
/// The pad pin through which the port's signal passes, by the row as it stands now.
const char *&row_pin(OPIN_ROW &row, STANDARD_PORT port);
/// Where the row as it stands now has the signal: its pad pin, or the bare port.
EDIT_OPERAND row_operand(STANDARD_PORT port);
EDIT_OPERAND place_operand(const SIGNAL_PLACE &place);
/// The enable pin of the TDO pad as the pin file chooses it, or null.
const char *tdo_enable_pin();
/// True for a standard port that the TAP gets: all but a TRST that is not declared.
bool port_is_used(STANDARD_PORT port);

/// Design without a pad module: leads the port's signal out of the modules that its pad stands in, and lets
/// the row name the instance in the top module. `enable` gets the place of the TDO enable. Ends the run with
/// a message that names the port when the signal does not leave a module.
void walk_to_top(STANDARD_PORT port, SIGNAL_PLACE &enable);

/// The port by which the signal of a pin passes the border of the open module, or null: one that runs towards
/// the pad when the TAP drives the signal, else away from it. A port that runs the other way belongs to
/// something else on the net; constant nets leave by no port. Nor does a signal of the TAP pass by a port
/// that has more to drive than the pin.
const char *border_port(int32_t node, bool to_pad);
/// True when something in the open module drives the net of a pin that the TAP is to drive.
bool pin_is_driven(int32_t node);
/// Warns that such a pin is freed.
void warn_of_cut(const SIGNAL_PLACE &place);
/// True when the design drives a pin or port of the open module that an added TAP is to drive. A constant is
/// only warned of where the user has not been told of it: `told` is the word of TAP_FLAG for the signal.
bool tdo_has_driver(const SIGNAL_PLACE &place, int32_t told);

/// Follows the standard ports up the pad path of OPIN_TAB row `row` and fills the routes; the rows then name
/// the signals' places in the top module.
void bs_search_standard_ports(int32_t row);
