// A module that edit commands change: lookups by name, and nets that commands join.
//
// Joined nets stay apart in the tables until the end, each under the root of its set, so that no command
// costs more than the pins that it names.
#pragma once

#include "siblings/netlist.hh"

#include <string>
#include <string_view>
#include <vector>

/// Rows by the ids of their names, which are numbered without gaps.
struct EDIT_INDEX {
    std::vector<int32_t> row_of_name{}; ///< NL_NONE where none has the name
};

struct EDIT_NETLIST {
    NL_DESIGN design{};
    int32_t module = NL_NONE; ///< the module being edited
    NL_UNION sets{};
    std::vector<int32_t> drivers{}; ///< drivers of each root net: outputs of instances and input ports
    EDIT_INDEX instances{};
    EDIT_INDEX nets{};
};

/// A place that a net can stand on: a pin, a port, or a net itself.
struct EDIT_PLACE {
    int32_t *net = nullptr;  ///< the pin's or port's net; null for a net named as such
    int32_t fixed = NL_NONE; ///< that net
    bool drives = false;
    int32_t name = NL_NONE; ///< for the net that it may start
};

/// Opens `<name>.sdb` of the working directory.
void EDIT_open(EDIT_NETLIST &edit, const std::string &name);

/// The instance of that name, or NL_NONE.
int32_t EDIT_find_instance(const EDIT_NETLIST &edit, std::string_view name);

/// Pin `pin` of an instance, port `name` of the module, or an internal net or constant. False when there is
/// none.
bool EDIT_find_pin(EDIT_NETLIST &edit, int32_t instance, std::string_view pin, EDIT_PLACE &place);
bool EDIT_find_port(EDIT_NETLIST &edit, std::string_view name, EDIT_PLACE &place);
bool EDIT_find_net(EDIT_NETLIST &edit, std::string_view name, EDIT_PLACE &place);

/// Appends an unconnected instance of a module whose ports are known. False when the name is taken.
bool EDIT_add_instance(EDIT_NETLIST &edit, std::string_view name, int32_t def);

/// Appends an unconnected port. False when the name is taken.
bool EDIT_add_port(EDIT_NETLIST &edit, std::string_view name, int32_t direction);

/// Takes a place off its net.
void EDIT_disconnect(EDIT_NETLIST &edit, EDIT_PLACE place);

/// Puts two places on one net; null, or what stands against it.
const char *EDIT_connect(EDIT_NETLIST &edit, EDIT_PLACE a, EDIT_PLACE b);

/// Changes the module of an instance; pins of the same name keep their nets.
void EDIT_replace(EDIT_NETLIST &edit, int32_t instance, int32_t def);

/// Writes the module back to `<name>.sdb` of the working directory.
void EDIT_save(EDIT_NETLIST &edit, const std::string &name);
