// The boundary register as the final netlist has it: the chain walked from the TAP's first-cell pin to its
// last-cell pin, and for each cell the pad and port that its wires reach. Nothing is taken from the plan: the
// library file tells which pin of which cell plays which part, the wires tell the rest.
//
// The open design is the flat edited one, and the description tables are filled. What does not fit is a row
// of `faults`, so that one caller can refuse and another report.
#pragma once

#include "kit/netlist_walk.hh"
#include "planning/tap_state.hh"

#include <string>
#include <vector>

/// What a cell does for a port. One cell may have several rows.
enum ROW_KIND : uint8_t {
    ROW_INPUT,
    ROW_CLOCK,   ///< watches a clock pad
    ROW_OBSERVE, ///< watches a pin that another cell serves
    ROW_OUTPUT2,
    ROW_OUTPUT3,
    ROW_OPEN, ///< open drain or source: the cell is in the enable
    ROW_BIDIR,
    ROW_CONTROL,
    ROW_INTERNAL, ///< serves no port
};

struct REGISTER_ROW {
    int32_t cell; ///< its number
    ROW_KIND kind;
    int32_t port = -1;
    int32_t pad = -1;     ///< of NETLIST_WALK::pads; -1 for a cell right at its port
    int32_t control = -1; ///< number of the cell that holds the pad's enable
    int8_t disable = -1;  ///< value of that cell that turns the pad off
    int32_t buffers = 0;  ///< between cell and pad
    int32_t inverters = 0;
    bool cuts = true; ///< the cell stands in the wire; false for one that looks on
};

/// A pin of a cell that stands on a signal of the TAP.
struct REGISTER_SIGNAL {
    WALK_POINT source;        ///< WALK_NONE for a pin that the cell has not
    std::string tap_pin;      ///< of a source at the TAP
    bool is_inverted = false; ///< by an odd number of inverters on the way
};

struct REGISTER_CELL {
    int32_t obj;
    const SCAN_CELL *cell;
    std::string class_name, instance;
    REGISTER_SIGNAL signals[SIGNAL_COUNT];
    std::vector<REGISTER_SIGNAL> extras;
    REGISTER_SIGNAL oe_mode;
};

/// What is known of a port of the design beside its rows.
struct REGISTER_PORT {
    std::vector<int32_t> pads;         ///< of NETLIST_WALK::pads
    int32_t same_net = -1;             ///< an earlier port on the same net
    int8_t tap_port = -1;              ///< STANDARD_PORT
    bool is_declared_inverted = false; ///< with '-' in the pin file
    bool follows_core = false;         ///< an enable of its pad hangs on the core
    bool is_released = false;          ///< its rows were taken away, with a reason
    bool is_off = false;               ///< an enable of its pad is tied off
};

/// Something that a description can't be made of. Texts that do not apply are empty.
struct REGISTER_FAULT {
    const char *rule; ///< "chain", "pad", "enable", ...: what is broken
    std::string text; ///< a sentence: what, and what to do
    std::string instance, net, port;
};

/// "ERROR: RULE: text; instance '...'; net '...'; port '...'", with what there is of the three.
std::string register_fault_text(const REGISTER_FAULT &fault);
/// The same as an object of JSON.
std::string register_fault_json(const REGISTER_FAULT &fault);

struct BOUNDARY_REGISTER {
    NETLIST_WALK walk;
    int32_t tap_obj = -1;
    const TAP_CELL *tap = nullptr;
    std::vector<REGISTER_CELL> cells; ///< number 0 stands next to TDO
    std::vector<REGISTER_ROW> rows;   ///< by number; those of one cell in the order of their ports
    std::vector<REGISTER_PORT> ports; ///< by port id of the design
    int32_t test_ports[STANDARD_PORT_COUNT] = {-1, -1, -1, -1, -1};
    std::vector<REGISTER_FAULT> faults;
};

/// Walks the chain of the open design. With no TAP or no chain the record has the fault and nothing else.
void read_boundary_register(BOUNDARY_REGISTER &found);

/// Adds a fault for each line of the boundary order file that the walk does not bear out: number and port of
/// each cell, and the pads of each control cell. A missing file is a fault.
void compare_boundary_order(BOUNDARY_REGISTER &found, const std::string &bso_file);

/// Adds a fault for each difference from the design before the run, with the cells as wires (kit/prove.hh).
/// `source_file` is that design's flat database.
void compare_with_source(BOUNDARY_REGISTER &found, const std::string &source_file);

/// The TAP's pin that the library file names, or the name that a generated TAP has; without '-'.
std::string tap_pin_name(const TAP_CELL &tap, const char *TAP_CELL::*field);
