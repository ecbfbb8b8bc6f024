// The flat design as rimkit looks at it: short questions to the tables of sdb/sdb.hh, which hold the current
// design. Ids are those of these tables; -1 is none.
#pragma once

#include "sdb/sdb.hh"

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

/// The name of a port, of a pin, of a cell, of an instance.
std::string chip_port_name(int32_t port);
std::string chip_pin_name(int32_t pin);
std::string chip_class_name(int32_t class_id);
std::string chip_instance_name(int32_t obj);

/// The netlist's own ports: a name, and its port ids in declared order.
struct CHIP_PORT_GROUP {
    std::string name;
    bool is_vector;
    int32_t left, right;
    std::vector<int32_t> ports; ///< -1 for a bit that the design has lost
};
std::vector<CHIP_PORT_GROUP> chip_port_groups();

/// True when the class has a pin of that direction.
bool chip_class_has(int32_t class_id, SDB_DIRECTION direction);

/// Direction of a pin or a port.
SDB_DIRECTION chip_pin_direction(int32_t pin);
SDB_DIRECTION chip_port_direction(int32_t port);

/// The nodes of a net in their order; none for -1.
std::vector<int32_t> chip_net_nodes(int32_t net);

/// The node of an object's pin, or -1.
int32_t chip_pin_node(int32_t obj, const std::string &pin);

/// What drives the net of an input pin. A cell without inputs is a tie cell.
enum CHIP_SOURCE { SOURCE_OPEN, SOURCE_ZERO, SOURCE_ONE, SOURCE_TIE_CELL, SOURCE_PORT, SOURCE_CORE };
CHIP_SOURCE chip_source(int32_t node);
/// True when the net is no constant and something is on it beside the pin.
inline bool chip_is_driven(int32_t node) {
    return chip_source(node) >= SOURCE_TIE_CELL;
}
/// True when nothing but `node` is on its net, or it is on none.
bool chip_is_alone(int32_t node);
/// True when the object has an output: what has none (an antenna diode) can't do anything with a signal.
bool chip_has_output(int32_t obj);
/// True when the object has an input: what has none is a tie cell or a power-on reset.
bool chip_has_input(int32_t obj);
