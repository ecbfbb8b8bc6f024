// Where a wire of the open flat design leads, through the buffers and inverters that the library file
// declares: to a port, a pad, a boundary cell, the TAP, a constant, or into the core.
#pragma once

#include "description/tables.hh"
#include "sdb/sdb.hh"

#include <cstdint>
#include <vector>

enum WALK_END : uint8_t {
    WALK_NONE, ///< the pin does not exist
    WALK_OPEN, ///< nothing on the net
    WALK_ZERO,
    WALK_ONE,
    WALK_PORT,
    WALK_PAD,
    WALK_CELL,
    WALK_TAP,
    WALK_CORE,
    WALK_MANY, ///< two drivers
};

struct WALK_POINT {
    WALK_END end = WALK_NONE;
    int32_t node = -1; ///< where the walk ended
    int32_t row = -1;  ///< port, row of NETLIST_WALK::pads, or object of a cell
    int32_t buffers = 0, inverters = 0;
};

/// A cell that stands on a port. The pins are null where it has none.
struct WALK_PAD_ROW {
    int32_t obj;
    const BUFFER_CELL *buffer;
    int32_t port = -1;              ///< of the plus leg
    int32_t minus_port = -1;        ///< of the minus leg
    const char *pin = nullptr;      ///< on the port
    const char *core_in = nullptr;  ///< the core drives it
    const char *core_out = nullptr; ///< the core reads it
};

/// What a class is to the walk.
struct WALK_CLASS {
    const BUFFER_CELL *buffer = nullptr;
    const SCAN_CELL *cell = nullptr;
    bool passes = false; ///< a buffer or inverter
    bool inverts = false;
    bool is_tap = false;
    int32_t input = -1, output = -1; ///< pins of one that passes, counted within the class
};

struct NETLIST_WALK {
    std::vector<WALK_CLASS> classes; ///< by class id
    std::vector<WALK_PAD_ROW> pads;
    std::vector<int32_t> pad_of_obj;    ///< row of `pads` or -1
    std::vector<int32_t> driver_of_net; ///< its driving node; -1 none, -2 several
};

/// Looks at all classes, ports and nets of the open design once. `tap_class` is the TAP's class name.
void prepare_walk(NETLIST_WALK &walk, const char *tap_class);

/// What drives the node.
WALK_POINT walk_back(const NETLIST_WALK &walk, int32_t node);
/// All that the node drives, in the order of the net.
std::vector<WALK_POINT> walk_forward(const NETLIST_WALK &walk, int32_t node);

/// The first pin of the core that the node drives, of a cell that can do something with it; -1 for none.
int32_t first_core_reader(const NETLIST_WALK &walk, int32_t node);

/// The node of the object's pin whose name may have a '-' and may be null; -1 for none.
int32_t walk_pin(int32_t obj, const char *pin);
/// True when the node's pin is called `pin`.
bool walk_is_pin(int32_t node, const char *pin);
