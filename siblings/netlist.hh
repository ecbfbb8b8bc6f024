// A netlist in memory: what the sibling tools read into, change and write from.
//
// Everything is an id: a name in the names table, a module in the design, a net in its module. Nets are
// single bits; a vector is a run of ports or nets with names of the form base[index]. Net 0 of every module
// is the constant zero and net 1 the constant one.
#pragma once

#include "siblings/names.hh"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

/// Directions with the codes of the SDB files.
enum NL_DIRECTION : int32_t { NL_OUTPUT = 0, NL_BIDI = 1, NL_INPUT = 2 };

constexpr int32_t NL_NONE = -1;
constexpr size_t NL_COUNT_LIMIT = 2147483647; ///< rows of one kind in a module: ids are 32 bits wide
constexpr int32_t NL_GND = 0;                 ///< constant-zero net of every module
constexpr int32_t NL_VCC = 1;                 ///< constant-one net of every module

/// What the edit commands call the net of their don't-care bits, and what names of such nets begin with.
constexpr const char *NL_UNKNOWN_NET = "X_NET";

/// What is known of a port or net beside its name.
enum NL_MARK : uint8_t {
    NL_MARK_WHOLE = 1,     ///< the name ends in an index and yet is no bit of a vector
    NL_MARK_DONT_CARE = 2, ///< of a net: it stands for a don't-care bit as long as nothing drives it
    NL_MARK_POWER = 4,     ///< of a port while Verilog is read: an assign may join it with another such port
};

struct NL_PORT {
    int32_t name;
    int32_t direction;
    int32_t net; ///< NL_NONE while it is not connected
    uint8_t marks = 0;
};

struct NL_NET {
    int32_t name;
    int32_t scope; ///< row of NL_MODULE::scopes in a flattened design, else NL_NONE
    uint8_t marks = 0;
};

struct NL_INSTANCE {
    int32_t name;
    int32_t scope;     ///< as in NL_NET
    int32_t def;       ///< module of the design
    int32_t first_pin; ///< first of its entries in NL_MODULE::pins, one for each port of `def`; NL_NONE for a
                       ///< module instance that a flattened design keeps for its name alone
};

/// An assign that stays one: the nets of two power ports, which flow either way and keep their own pins.
struct NL_ASSIGN {
    int32_t left;
    int32_t right;
};

/// One level of the hierarchy that a flattened design came from; parents stand before their children.
struct NL_SCOPE {
    int32_t name;
    int32_t parent;   ///< scope, NL_NONE at the top
    int32_t instance; ///< the instance that stands for this level
};

/// Ports as they are written in a netlist: one port, or a vector whose bits all are there.
struct NL_GROUP {
    int32_t name;  ///< of the port, or base name of the vector
    int32_t first; ///< first port
    int32_t count; ///< number of ports
    bool vector;
    int32_t left; ///< bounds of the vector as declared
    int32_t right;
};

struct NL_MODULE {
    int32_t name = NL_NONE;
    bool is_cell = false; ///< a library cell: instantiated, never defined nor expanded
    bool defined = false; ///< its ports are known; a library cell has nothing more
    std::vector<NL_PORT> ports;
    std::vector<NL_NET> nets;
    std::vector<NL_INSTANCE> instances;
    std::vector<int32_t> pins; ///< net of each instance pin, NL_NONE when not connected
    std::vector<NL_ASSIGN> assigns;
    std::vector<NL_SCOPE> scopes;
    std::vector<NL_GROUP> groups;                       ///< made by NL_close_ports
    std::unordered_map<int32_t, int32_t> port_of_name;  ///< the same
    std::unordered_map<int32_t, int32_t> group_of_name; ///< the same, vectors alone
};

/// Modules by id, found for each instance again and again. References stay valid while modules are added.
class NL_MODULES {
  public:
    struct ITERATOR {
        const std::unique_ptr<NL_MODULE> *at;
        NL_MODULE &operator*() const {
            return **at;
        }
        ITERATOR &operator++() {
            at++;
            return *this;
        }
        bool operator==(const ITERATOR &) const = default;
    };

    const NL_MODULE &operator[](size_t id) const {
        return *modules[id];
    }
    NL_MODULE &operator[](size_t id) {
        return *modules[id];
    }
    size_t size() const {
        return modules.size();
    }
    NL_MODULE &emplace_back() {
        return *modules.emplace_back(std::make_unique<NL_MODULE>());
    }
    ITERATOR begin() const {
        return {modules.data()};
    }
    ITERATOR end() const {
        return {modules.data() + modules.size()};
    }

  private:
    std::vector<std::unique_ptr<NL_MODULE>> modules;
};

struct NL_DESIGN {
    NL_NAMES names;
    NL_MODULES modules;
    std::unordered_map<int32_t, int32_t> module_of_name;
};

/// The module of that name, made undefined and with its two constant nets when it is new.
int32_t NL_module(NL_DESIGN &design, int32_t name);

/// Appends a net.
int32_t NL_add_net(NL_MODULE &module, int32_t name, int32_t scope = NL_NONE, uint8_t marks = 0);

/// Fills the groups and the searches by name from the ports. False when two ports share a name; `twice` is
/// it.
bool NL_close_ports(NL_DESIGN &design, NL_MODULE &module, int32_t &twice);

/// The port of that name, or -1.
int32_t NL_find_port(const NL_MODULE &module, int32_t name);

/// The whole name of a net or instance: its scopes and its own name with dots between.
std::string NL_full_name(const NL_DESIGN &design, const NL_MODULE &module, int32_t name, int32_t scope);

/// Nets that were found to be one: a forest in which the lowest net of each set is its root.
struct NL_UNION {
    std::vector<int32_t> parent;
};

void NL_union_init(NL_UNION &sets, size_t count);
int32_t NL_union_find(NL_UNION &sets, int32_t net);
void NL_union_join(NL_UNION &sets, int32_t a, int32_t b);

/// Makes the nets one that an assign joins with a constant: a supply that is tied has no pins of its own.
void NL_join_constants(const NL_MODULE &module, NL_UNION &sets);

/// Replaces every net by the root of its set, whose name is kept, and drops the others, and assigns within a
/// set or made twice. Constants keep their places.
void NL_merge_nets(NL_MODULE &module, NL_UNION &sets);

/// Gives each net that is on a port the name of its first port, and every other net that had this name one of
/// its own.
void NL_name_port_nets(NL_DESIGN &design, NL_MODULE &module);

/// A name with `stem` in front that no net, port or instance of the module has. `taken` holds those names; it
/// is filled when it is empty, and the new name is added.
int32_t NL_new_name(NL_DESIGN &design, const NL_MODULE &module, std::unordered_set<int32_t> &taken,
                    std::string_view stem);
