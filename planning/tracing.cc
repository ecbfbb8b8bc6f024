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
#include <vector>

namespace {

constexpr const char *UNDEFINED = "*UNDEF*";

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

const char *port_name(int32_t port) {
    const char *name = SYM_get(sym_tab, port_tab[port].name);
    return name != nullptr ? name : UNDEFINED;
}

const char *direction_words(int32_t direction) {
    constexpr std::array<const char *, 4> words = {"an output pin", "a bidirectional pin", "an input pin",
                                                   "a pin of unknown direction"};
    return words[direction];
}

/// The modules met so far. A row of MULTI_IO_TAB is found by its parent, class and instance.
struct IO_MODULES {
    struct PLACE {
        int32_t row;   // of MULTI_IO_TAB
        int32_t child; // in the parent's node
    };
    int32_t reference_row = -1; // OPIN_TAB row that the next hierarchical pad is compared with
    std::unordered_map<std::string, PLACE> places;
    std::unordered_map<std::string, int32_t> copies; // rows of each class
};
IO_MODULES io_modules;

/// The row of a module below the module of `cursor`, made when it is new; moves the cursor to it.
///
/// The parent belongs to the key: two modules of one class may carry one instance name below different
/// parents, and their cells must not be mixed.
int32_t enter_module(MULTI_IO_NODE *&cursor, const char *class_name, const char *inst_name) {
    std::string key = std::to_string(cursor->row) + '\0' + class_name + '\0' + inst_name;
    auto [place, is_new] = io_modules.places.try_emplace(key);
    if (is_new) {
        MULTI_IO_ROW module = {};
        module.class_name = class_name;
        module.inst_name = inst_name;
        module.copy = io_modules.copies[class_name]++;
        module.parent = cursor->row;
        module.added_ports = DYNA_init<ADDED_PORT>();
        module.added_conns = DYNA_init<ADDED_CONN>();
        append_row(MULTI_IO_TAB, module);
        append_row(cursor->children, {DYNA_count(MULTI_IO_TAB) - 1, nullptr});
        place->second = {DYNA_count(MULTI_IO_TAB) - 1, DYNA_count(cursor->children) - 1};
    }
    cursor = &cursor->children[place->second.child];
    return place->second.row;
}

/// Fills the hierarchy fields of a row from the parents of its cell's name, innermost first.
void take_parents(OPIN_ROW &row, int32_t prefix_row) {
    const char *instance = SDB_prefix_instance_name(sdb, prefix_row);
    row.pad_instance = keep_text(instance != nullptr ? instance : UNDEFINED);
    for (int32_t up = prefix_tab[prefix_row].parent; up >= 0; up = prefix_tab[up].parent) {
        const char *class_name = SDB_prefix_class_name(sdb, up);
        const char *inst_name = SDB_prefix_instance_name(sdb, up);
        append_row(row.hier_classes, keep_text(class_name != nullptr ? class_name : UNDEFINED));
        append_row(row.hier_instances, keep_text(inst_name != nullptr ? inst_name : UNDEFINED));
    }
}

bool in_same_module(const OPIN_ROW &a, const OPIN_ROW &b) {
    int32_t depth = DYNA_count(a.hier_classes);
    if (depth != DYNA_count(b.hier_classes))
        return false;
    for (int32_t i = 0; i < depth; ++i)
        if (!same_text(a.hier_classes[i], b.hier_classes[i]) ||
            !same_text(a.hier_instances[i], b.hier_instances[i]))
            return false;
    return true;
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

void get_hier_class_and_inst_name(int32_t row_index, int32_t obj) {
    OPIN_ROW &row = OPIN_TAB[row_index];
    if (io_modules.reference_row < 0)
        io_modules.reference_row = row_index;
    int32_t prefix_row = SDB_obj_prefix_row(sdb, obj);
    if (prefix_row < 0) {
        const char *name = SDB_obj_name(sdb, obj);
        row.pad_instance = keep_text(name != nullptr ? name : UNDEFINED);
        row.io_module = 0;
        io_modules.reference_row = -1;
        return;
    }
    take_parents(row, prefix_row);
    if (!in_same_module(row, OPIN_TAB[io_modules.reference_row]))
        multi_io_module_flagG = 1;

    MULTI_IO_NODE *cursor = &MULTI_IO_HIER;
    row.io_module = 0;
    for (int32_t i = DYNA_count(row.hier_classes) - 1; i >= 0; --i)
        row.io_module = enter_module(cursor, row.hier_classes[i], row.hier_instances[i]);
}

void settle_io_modules() {
    // A port without a described pad has its cell at the port itself, in the top module.
    auto module_of = [](const OPIN_ROW &row) { return row.io_module < 0 ? 0 : row.io_module; };
    const OPIN_ROW *first = nullptr;
    for (const OPIN_ROW &row : rows(OPIN_TAB)) {
        if (!row_gets_cells(row))
            continue;
        if (first == nullptr)
            first = &row;
        if (module_of(row) != module_of(*first))
            multi_io_module_flagG = 1;
    }
    if (multi_io_module_flagG == 0)
        return;
    for (OPIN_ROW &row : rows(OPIN_TAB))
        if (row.scan_cell != nullptr)
            row.io_module = module_of(row);
}

void forget_io_modules() {
    io_modules = {};
}

void open_sdb_file(const char *path) {
    SDB_HANDLE *design = path != nullptr ? SDB_open(path, "r", 0) : nullptr;
    if (design == nullptr)
        vmr_fail("ERROR: can't open SDB file '%s'.\n       Permission denied, probably.\n\n",
                 path != nullptr ? path : "");
    sdb = SDB_setup(design);
}

const char *object_class_name(int32_t obj) {
    const char *name = obj < 0 ? nullptr : SDB_obj_class_name(sdb, obj);
    return name != nullptr ? name : UNDEFINED;
}

const char *node_pin_name(int32_t node) {
    if (node < 0 || node >= node_count || node_tab[node].pin < 0)
        return UNDEFINED;
    int32_t pin = node_tab[node].pin;
    const char *name = SYM_get(sym_tab, is_port_node(node) ? port_tab[pin].name : pin_tab[pin].name);
    return name != nullptr ? name : UNDEFINED;
}

bool is_port_node(int32_t node) {
    return node_tab[node].obj < 0;
}

const char *chosen_enable_pin(const BUFFER_CELL *pad, const PIN_ENTRY *pin, bool *is_low) {
    bool low = pin->pad_enable == 0 || (pin->pad_enable != 1 && pad->en_l != nullptr);
    if (is_low != nullptr)
        *is_low = low;
    return low ? pad->en_l : pad->en_h;
}
