// What the nets of an edited chip carry while its test logic is at rest: each net led back through the
// boundary cells, the buffers and the pads that the run has put in, to the net of the chip before the run
// that gives it its value, or to a constant.
#pragma once

#include "kit/boundary_register.hh"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// A design whose tables stay readable beside the current one.
struct DESIGN_VIEW {
    const SDB_HANDLE *handle;
    const SDB_CLASS *classes;
    const SDB_PORT *ports;
    const SDB_PIN *pins;
    const SDB_OBJ *objs;
    const SDB_NODE *nodes;
    int32_t class_count, port_count, obj_count, net_count, node_count;
    const NETLIST_WALK *walk;
};
/// The current design, with its walk.
DESIGN_VIEW view_design(const NETLIST_WALK &walk);
std::string view_obj_name(const DESIGN_VIEW &view, int32_t obj);
std::string_view view_class_name(const DESIGN_VIEW &view, int32_t class_id);
std::string_view view_pin_name(const DESIGN_VIEW &view, int32_t pin);
std::string_view view_port_name(const DESIGN_VIEW &view, int32_t port);
/// "the pin Z of u1", "port 'a'"
std::string view_node_text(const DESIGN_VIEW &view, int32_t node);
/// The node of the object's pin whose name may have a '-' and may be null; -1 for none.
int32_t view_pin_node(const DESIGN_VIEW &view, int32_t obj, const char *pin);

/// What an object is to the comparison.
enum REST_ROLE : uint8_t {
    REST_KEPT, ///< it stands in both designs
    REST_CELL,
    REST_BUFFER, ///< or an inverter
    REST_PAD,    ///< of a port that had none
    REST_TAP,
    REST_ALIEN, ///< nothing that the run puts in
};

/// Where a value comes from. Ids below the count of nets are nets, 0 and 1 the constants. One above is a node
/// (behind the nets): an open pin, or an output of the test logic.
struct REST_SOURCE {
    int32_t id = -1;
    bool is_inverted = false;
    friend bool operator==(const REST_SOURCE &, const REST_SOURCE &) = default;
};

/// The values of the TAP's outputs at rest, by pin; those that are not constant are not in it.
using REST_VALUES = std::unordered_map<std::string, bool>;
/// The values that the library file gives them: its mode pins and the command of HIGHZ are off.
REST_VALUES declared_rest_values(const TAP_CELL &tap);

class REST_VIEW {
  public:
    /// Both are kept and have to live as long. `roles` are by object.
    REST_VIEW(const DESIGN_VIEW &view, std::vector<REST_ROLE> roles, const REST_VALUES &values);

    REST_ROLE role(int32_t obj) const {
        return roles[static_cast<size_t>(obj)];
    }
    const std::vector<REST_ROLE> &all_roles() const {
        return roles;
    }
    /// What the node's net carries.
    REST_SOURCE source(int32_t node);
    /// The same for a port, which an inserted pad may drive.
    REST_SOURCE port_source(int32_t port);
    /// True for an output of the test logic; its node.
    bool is_test(const REST_SOURCE &source) const;
    int32_t node_of(const REST_SOURCE &source) const {
        return source.id - view.net_count;
    }
    /// True when each pin that decides what the cell shows is constant.
    bool is_at_rest(int32_t obj);

  private:
    REST_SOURCE net_source(int32_t net);
    REST_SOURCE node_source(int32_t node) const {
        return {view.net_count + node, false};
    }
    /// The node that the driver passes on; -1 with `end` where the way ends there.
    int32_t behind(int32_t driver, bool &inverts, REST_SOURCE &end);
    int32_t behind_cell(int32_t obj, int32_t driver);
    int32_t behind_pad(int32_t obj, int32_t driver);
    bool drives(const WALK_PAD_ROW &pad);

    const DESIGN_VIEW &view;
    std::vector<REST_ROLE> roles;
    const REST_VALUES &values;
    std::vector<REST_SOURCE> of_net;
    std::vector<int8_t> rest_of_obj; ///< 0 not looked at, 1 being looked at, 2 no, 3 yes
    std::vector<int32_t> pad_of_port;
    int32_t depth = 0;
};
