// How a module reads as text: what is declared under which name, and what stands for each net.
//
// The netlist writers share this. A net that is on a port is written as that port; every other net is a wire,
// and wires whose names are all bits of one vector are that vector. What is left over are assignments between
// ports.
//
// Names stay pairs of a scope and a name: a flattened design has as many paths as nets and instances, and
// hardly two of them ever read the same. Only where they might are paths composed and compared as texts.
#pragma once

#include "siblings/netlist.hh"

#include <string>

/// What the language of the output allows.
struct LAYOUT_RULES {
    bool outputs_are_read;    ///< an output may be read inside the module
    bool inputs_take_any_pin; ///< an input may stand on a pin that drives
};

/// A name as it is written, behind the path of its scope.
struct LAYOUT_NAME {
    int32_t name; ///< of the design's names, or behind them of the layout's own
    int32_t scope = NL_NONE;
};

/// A declared port, vector of wires, or wire that stands for no net; its bits if it is a vector.
struct LAYOUT_ITEM {
    LAYOUT_NAME name;
    int32_t direction;
    bool vector;
    int32_t left;
    int32_t right;
};

/// What is no bit of an item, in LAYOUT_BIT::item. LAYOUT_WIRE is the wire of the net `index` alone.
enum LAYOUT_SPECIAL : int32_t {
    LAYOUT_GND = -1,
    LAYOUT_VCC = -2,
    LAYOUT_UNKNOWN = -3,
    LAYOUT_OPEN = -4,
    LAYOUT_WIRE = -5
};

struct LAYOUT_BIT {
    int32_t item; ///< of LAYOUT::items, or a LAYOUT_SPECIAL
    int32_t index;
};

struct LAYOUT_ASSIGN {
    LAYOUT_BIT target;
    LAYOUT_BIT source;
};

struct LAYOUT {
    const NL_DESIGN *design = nullptr;
    const NL_MODULE *module = nullptr;
    NL_NAMES own_names;             ///< those that are no names of the design
    std::vector<LAYOUT_ITEM> items; ///< the ports, one for each of the module's groups, then what is declared
    size_t port_count = 0;          ///< items that are ports
    size_t vectors_end = 0;         ///< items in front of the wires of nets, which stand in the nets' order
    std::vector<LAYOUT_BIT> nets;   ///< of each net of the module
    std::vector<LAYOUT_ASSIGN> assigns;
    std::unordered_map<int32_t, LAYOUT_NAME> new_net_names; ///< of nets that could not keep their own
    std::unordered_map<int32_t, LAYOUT_NAME> new_instance_names;
    int32_t constant_wires[2] = {NL_NONE, NL_NONE}; ///< items for pins that cannot take a constant
    int32_t open_wires = NL_NONE; ///< vector for open bits of pins that are connected in part
};

/// Which names are in use in the module at hand: for each name the round that took it. One table serves all
/// modules of a design, which would cost each small module the names of all.
struct LAYOUT_TAKEN {
    std::vector<int32_t> round_of_name{};
    int32_t round = 0;
};

/// Lays out a module whose ports and definitions are known. The module and the design stay as long as the
/// layout.
LAYOUT LAYOUT_make(const NL_DESIGN &design, const NL_MODULE &module, const LAYOUT_RULES &rules,
                   LAYOUT_TAKEN &taken);

/// The names under which the wire of a net and an instance are written.
LAYOUT_NAME LAYOUT_net_name(const LAYOUT &layout, int32_t net);
LAYOUT_NAME LAYOUT_instance_name(const LAYOUT &layout, int32_t instance);

/// A name without its path, and with it.
std::string_view LAYOUT_component(const LAYOUT &layout, int32_t name);
std::string LAYOUT_text(const LAYOUT &layout, LAYOUT_NAME name);

/// All names under which something in the module is written, or might be.
std::unordered_set<std::string> LAYOUT_texts(const LAYOUT &layout);

/// What to write for a net on a pin of that direction: an output takes no constant, a pin of both directions
/// the wire of the constant.
inline LAYOUT_BIT LAYOUT_pin(const LAYOUT &layout, int32_t net, int32_t direction) {
    if (net > NL_VCC)
        return layout.nets[static_cast<size_t>(net)];
    if (net == NL_NONE || direction == NL_OUTPUT)
        return {LAYOUT_OPEN, 0};
    if (direction == NL_BIDI)
        return {layout.constant_wires[net], 0};
    return layout.nets[static_cast<size_t>(net)];
}

/// The bits of a group of pins of an instance, leftmost first. False when all of them are open. `open_used`
/// counts the open wires that were given to groups that are connected in part.
bool LAYOUT_pins(const LAYOUT &layout, const NL_INSTANCE &instance, const NL_MODULE &def,
                 const NL_GROUP &group, int32_t &open_used, std::vector<LAYOUT_BIT> &bits);

/// True for an instance that is written: not for those that a flattened design keeps for their names.
inline bool LAYOUT_is_written(const NL_INSTANCE &instance) {
    return instance.first_pin != NL_NONE;
}

inline bool LAYOUT_is_constant(LAYOUT_BIT bit) {
    return bit.item <= LAYOUT_GND && bit.item >= LAYOUT_UNKNOWN;
}
