// How a module reads as text: what is declared under which name, and what stands for each net.
//
// The netlist writers share this. A net that is on a port is written as that port; every other net is a wire,
// and wires whose names are all bits of one vector are that vector. What is left over are assignments between
// ports.
#pragma once

#include "siblings/netlist.hh"

/// What the language of the output allows.
struct LAYOUT_RULES {
    bool outputs_are_read;    ///< an output may be read inside the module
    bool inputs_take_any_pin; ///< an input may stand on a pin that drives
};

/// A declared port or wire; its bits if it is a vector.
struct LAYOUT_ITEM {
    int32_t name; ///< in LAYOUT::names
    int32_t direction;
    bool vector;
    int32_t left;
    int32_t right;
};

/// What is no bit of an item, in LAYOUT_BIT::item.
enum LAYOUT_SPECIAL : int32_t { LAYOUT_GND = -1, LAYOUT_VCC = -2, LAYOUT_UNKNOWN = -3, LAYOUT_OPEN = -4 };

struct LAYOUT_BIT {
    int32_t item; ///< of LAYOUT::items, or a LAYOUT_SPECIAL
    int32_t index;
};

struct LAYOUT_ASSIGN {
    LAYOUT_BIT target;
    LAYOUT_BIT source;
};

struct LAYOUT {
    NL_NAMES names;
    std::vector<LAYOUT_ITEM> items; ///< the ports, one for each of the module's groups, then the wires
    size_t port_count = 0;          ///< items that are ports
    std::vector<LAYOUT_BIT> nets;   ///< of each net of the module
    std::vector<LAYOUT_ASSIGN> assigns;
    std::vector<int32_t> instances;                 ///< names in `names`
    int32_t constant_wires[2] = {NL_NONE, NL_NONE}; ///< items for pins that cannot take a constant
    int32_t open_wires = NL_NONE; ///< vector for open bits of pins that are connected in part
    std::unordered_map<int32_t, int32_t> next_number; ///< of the next name made of a name that is taken
};

/// Lays out a module whose ports and definitions are known. The module and the design stay as long as the
/// layout.
LAYOUT LAYOUT_make(const NL_DESIGN &design, const NL_MODULE &module, const LAYOUT_RULES &rules);

/// What to write for a net on a pin of that direction: an output takes no constant, a pin of both directions
/// the wire of the constant.
LAYOUT_BIT LAYOUT_pin(const LAYOUT &layout, int32_t net, int32_t direction);

/// The bits of a group of pins of an instance, leftmost first. False when all of them are open. `open_used`
/// counts the open wires that were given to groups that are connected in part.
bool LAYOUT_pins(const LAYOUT &layout, const NL_MODULE &module, const NL_INSTANCE &instance,
                 const NL_MODULE &def, const NL_GROUP &group, int32_t &open_used,
                 std::vector<LAYOUT_BIT> &bits);

/// True for an instance that is written: not for those that a flattened design keeps for their names.
inline bool LAYOUT_is_written(const NL_INSTANCE &instance) {
    return instance.first_pin != NL_NONE;
}
