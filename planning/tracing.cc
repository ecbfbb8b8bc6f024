#include "planning/tracing.hh"

#include "sdb/navigation.hh"
#include "sdb/sdb.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <array>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace {

/// The ports `name[...]` of a design under each name that such a port has in front of a '['.
struct BUS_NAMES {
    struct BUS {
        int32_t bits;
        int32_t last_port;
    };
    const SDB_HANDLE *design = nullptr;
    const SDB_PORT *ports = nullptr;
    std::string path;
    std::unordered_map<std::string, BUS> buses;
};
BUS_NAMES bus_names; // of the design that was asked last

void index_buses() {
    bus_names.design = sdb;
    bus_names.ports = port_tab;
    bus_names.path = sdb->path;
    bus_names.buses.clear();
    for (int32_t port = 0; port < port_count; ++port) {
        const char *text = SYM_get(sym_tab, port_tab[port].name);
        std::string_view name = text != nullptr ? text : "";
        for (size_t at = name.find('['); at != name.npos; at = name.find('[', at + 1)) {
            BUS_NAMES::BUS &bus = bus_names.buses[std::string(name.substr(0, at))];
            ++bus.bits;
            bus.last_port = port;
        }
    }
}

/// The only bit of a bus of that name, or -1.
int32_t find_one_bit_bus(const char *name) {
    if (sdb == nullptr)
        return -1;
    if (bus_names.design != sdb || bus_names.ports != port_tab || bus_names.path != sdb->path)
        index_buses();
    auto found = bus_names.buses.find(name);
    return found != bus_names.buses.end() && found->second.bits == 1 ? found->second.last_port : -1;
}

SDB_HANDLE *set_aside = nullptr; // a design that is open but not current, or null

/// The design that was set aside, when it is the one of that file; null when it has to be opened.
SDB_HANDLE *take_up_design(const char *path) {
    if (set_aside == nullptr || set_aside->path != path)
        return nullptr;
    SDB_HANDLE *design = std::exchange(set_aside, nullptr);
    if (SDB_take_up(design))
        return design;
    SDB_close(design, 0);
    return nullptr;
}

const char *port_name(int32_t port) {
    return text_or_undefined(SYM_get(sym_tab, port_tab[port].name));
}

const char *direction_words(int32_t direction) {
    constexpr std::array<const char *, 4> words = {"an output pin", "a bidirectional pin", "an input pin",
                                                   "a pin of unknown direction"};
    return words[direction];
}

} // namespace

int32_t find_iport(const char *name) {
    const char *plain = without_minus(name);
    int32_t port = SDB_nl_search_port(plain);
    if (port < 0)
        port = find_one_bit_bus(plain);
    if (port < 0)
        vmr_fail("ERROR: (%s) can't find port '%s' in SDB '%s'.\n\n", PIN_FILE, plain, MODULE_C_SDB);
    return port;
}

int32_t get_node_connected_to_portnode(int32_t port) {
    int32_t node = port_tab[port].node;
    if (node < 0 || node >= node_count)
        vmr_fail("ERROR: SDB error. Port '%s' can't map to the node table.\n\n", port_name(port));
    int32_t far = find_adjacent_node(node);
    if (far < 0)
        vmr_fail("ERROR: port '%s' is floating.\n\n", port_name(port));
    return far;
}

int32_t find_adjacent_node(int32_t node) {
    if (node < 0 || node_tab[node].net < 0)
        return -1;
    int32_t first = net_tab[node_tab[node].net].first_node;
    return first != node ? first : node_tab[node].next;
}

int32_t find_pin_node(int32_t obj, const char *pin_name) {
    if (obj < 0 || pin_name == nullptr || obj_tab[obj].first_node < 0)
        return -1;
    for (int32_t node = obj_tab[obj].first_node; node_tab[node].obj == obj; ++node)
        if (same_text_no_case(SYM_get(sym_tab, pin_tab[node_tab[node].pin].name), pin_name))
            return node;
    return -1;
}

int32_t find_place_node(const char *instance, const char *pin_name) {
    if (instance != nullptr)
        return find_pin_node(SDB_instance_obj(instance), pin_name);
    int32_t port = SDB_nl_search_port(pin_name);
    return port < 0 ? -1 : port_tab[port].node;
}

int32_t search_inode_connected_to_obj(int32_t obj, const char *pin_name, int32_t direction) {
    int32_t node = find_pin_node(obj, pin_name);
    if (node < 0)
        return -1;
    int32_t found = pin_tab[node_tab[node].pin].direction & SDB_DIRECTION_MASK;
    if (found != direction) {
        vmr_printf("ERROR: '%s' is %s of '%s'.\n", pin_name, direction_words(found), object_class_name(obj));
        vmr_fail("       But it was declared as %s in file '%s'.\n\n", direction_words(direction),
                 JTAG_LIB_FILE);
    }
    return node;
}

int32_t search_inet_connected_to_obj(int32_t obj, const char *pin_name, int32_t direction) {
    int32_t node = search_inode_connected_to_obj(obj, pin_name, direction);
    return node < 0 ? -1 : node_tab[node].net;
}

const char *verify_obj_pin_name(int32_t obj, const char *pin_name, int32_t direction) {
    int32_t net = search_inet_connected_to_obj(obj, pin_name, direction);
    return net < 0 ? nullptr : SDB_net_name(sdb, net);
}

void open_sdb_file(const char *path) {
    SDB_HANDLE *design = path != nullptr ? take_up_design(path) : nullptr;
    if (design == nullptr && path != nullptr)
        design = SDB_open(path, "r", 0);
    if (design == nullptr)
        vmr_fail("ERROR: can't open SDB file '%s'.\n       Permission denied, probably.\n\n",
                 path != nullptr ? path : "");
    sdb = SDB_setup(design);
}

void close_sdb_file() {
    SDB_close(sdb, 0);
    SDB_clear_current();
}

void set_sdb_file_aside() {
    SDB_close(std::exchange(set_aside, sdb), 0);
    SDB_set_aside();
}

const char *object_class_name(int32_t obj) {
    return obj < 0 ? UNDEFINED : text_or_undefined(SDB_obj_class_name(sdb, obj));
}

const char *node_pin_name(int32_t node) {
    if (node < 0 || node >= node_count || node_tab[node].pin < 0)
        return UNDEFINED;
    int32_t pin = node_tab[node].pin;
    return text_or_undefined(SYM_get(sym_tab, is_port_node(node) ? port_tab[pin].name : pin_tab[pin].name));
}

bool is_port_node(int32_t node) {
    return node_tab[node].obj < 0;
}

const char *chosen_enable_pin(const BUFFER_CELL *pad, const PIN_ENTRY *pin, bool *is_low) {
    int32_t chosen = pin == nullptr ? -1 : pin->pad_enable;
    bool low = chosen == 0 || (chosen != 1 && pad->en_l != nullptr);
    if (is_low != nullptr)
        *is_low = low;
    return low ? pad->en_l : pad->en_h;
}
