// Whether the tables of a file that was read fit each other.
//
// Each check is one pass over one table. An id in a table that was not loaded is let pass. Names from -5 to
// -1 are let pass too: a file may hold rows that lost their name, and who asks for the name hears of it.
#include "sdb/handle_internal.hh"

#include "support/text.hh"

#include <algorithm>
#include <limits>

namespace {

/// One row of a table, and what is wrong with it.
struct row_checker {
    int32_t index, row;
    std::string *fault;

    bool operator()(bool holds, const char *what, int32_t value) const {
        if (!holds)
            *fault = format_text("table %s, row %d: %s %d", sdb_table_layout[index].name, row, what, value);
        return holds;
    }
};

struct table_checker {
    const SDB_HANDLE *handle;
    std::string *fault;

    template <class T> const T *table(int32_t index) const {
        return SDB_table<T>(handle, index);
    }
    int32_t count(int32_t index) const {
        return SDB_table_count(handle, index);
    }
    /// Ids of the table are below this; of a table that was not loaded nothing is known.
    int32_t limit(int32_t index) const {
        return handle->tables[index].data == nullptr ? std::numeric_limits<int32_t>::max() : count(index);
    }
    int32_t symbol_limit() const {
        return SYM_count(handle->symbols);
    }
    /// Looks at each row of a table with `check_row(record, needs)`, up to the first fault.
    template <class T, class CHECK> bool each(int32_t index, const CHECK &check_row) const {
        for (int32_t row = 0; row < count(index); row++)
            if (!check_row(table<T>(index)[row], row_checker{index, row, fault}))
                return false;
        return true;
    }
};

/// True for -1 and for an id below the limit.
bool id_or_none(int32_t id, int32_t limit) {
    return id >= -1 && id < limit;
}

bool is_own_pin(const SDB_CLASS &cell, int32_t pin) {
    return pin >= cell.first_pin && pin - cell.first_pin < cell.pin_count;
}

/// Readers go from a class to its pins whatever its type, so the pins of every class that has some are looked
/// at.
bool check_classes(const table_checker &check) {
    int64_t pins = check.limit(SDB_PIN_TAB);
    return check.each<SDB_CLASS>(SDB_CLASS_TAB, [&](const SDB_CLASS &cell, const row_checker &needs) {
        bool has_own_pins = cell.pin_count == 0 || (cell.pin_count > 0 && cell.first_pin >= 0 &&
                                                    int64_t{cell.first_pin} + cell.pin_count <= pins);
        return needs(id_or_none(cell.name, check.symbol_limit()), "no symbol", cell.name) &&
               needs(has_own_pins, "its pins are out of range, first pin", cell.first_pin);
    });
}

bool check_pins(const table_checker &check) {
    return check.each<SDB_PIN>(SDB_PIN_TAB, [&](const SDB_PIN &pin, const row_checker &needs) {
        return needs(id_or_none(pin.name, check.symbol_limit()), "no symbol", pin.name);
    });
}

bool check_ports(const table_checker &check) {
    const auto *nodes = check.table<SDB_NODE>(SDB_NODE_TAB);
    return check.each<SDB_PORT>(SDB_PORT_TAB, [&](const SDB_PORT &port, const row_checker &needs) {
        return needs(id_or_none(port.name, check.symbol_limit()), "no symbol", port.name) &&
               needs(id_or_none(port.node, check.limit(SDB_NODE_TAB)), "no node", port.node) &&
               needs(nodes == nullptr || port.node < 0 ||
                         (nodes[port.node].obj == -1 && nodes[port.node].pin == needs.row),
                     "is not the port of its node", port.node);
    });
}

/// The first node of an object without pins may stand behind the last node: there is the sentinel.
bool check_objs(const table_checker &check) {
    const auto *nodes = check.table<SDB_NODE>(SDB_NODE_TAB);
    const auto *classes = check.table<SDB_CLASS>(SDB_CLASS_TAB);
    int32_t node_count = check.count(SDB_NODE_TAB);
    return check.each<SDB_OBJ>(SDB_OBJ_TAB, [&](const SDB_OBJ &obj, const row_checker &needs) {
        if (!needs(id_or_none(obj.class_id, check.limit(SDB_CLASS_TAB)), "no class", obj.class_id))
            return false;
        bool has_pins = classes != nullptr && obj.class_id >= 0 && classes[obj.class_id].pin_count > 0 &&
                        SDB_is_user_class(classes[obj.class_id].type);
        return nodes == nullptr ||
               (needs(obj.first_node >= -1 && obj.first_node <= node_count, "no node", obj.first_node) &&
                needs(!has_pins || (obj.first_node >= 0 && nodes[obj.first_node].obj == needs.row),
                      "is not the object of its first node", obj.first_node));
    });
}

bool check_port_node(const table_checker &check, const SDB_NODE &node, const row_checker &needs) {
    const auto *ports = check.table<SDB_PORT>(SDB_PORT_TAB);
    return needs(id_or_none(node.pin, check.limit(SDB_PORT_TAB)), "no port", node.pin) &&
           needs(ports == nullptr || node.pin < 0 || ports[node.pin].node == needs.row,
                 "is not the node of its port", node.pin);
}

/// The nodes of an object must follow each other from its first one.
bool check_obj_node(const table_checker &check, const SDB_NODE &node, const row_checker &needs) {
    const auto *nodes = check.table<SDB_NODE>(SDB_NODE_TAB);
    const auto *objs = check.table<SDB_OBJ>(SDB_OBJ_TAB);
    const auto *classes = check.table<SDB_CLASS>(SDB_CLASS_TAB);
    if (!needs(node.pin >= 0 && node.pin < check.limit(SDB_PIN_TAB), "no pin", node.pin))
        return false;
    if (objs == nullptr)
        return true;
    const SDB_OBJ &obj = objs[node.obj];
    bool follows = needs.row > 0 && nodes[needs.row - 1].obj == node.obj;
    bool has_class = classes != nullptr && obj.class_id >= 0 && SDB_is_user_class(classes[obj.class_id].type);
    return needs(follows || obj.first_node == needs.row, "is not one of the nodes of its object", node.obj) &&
           needs(!has_class || is_own_pin(classes[obj.class_id], node.pin),
                 "its object's class does not have pin", node.pin);
}

bool check_nodes(const table_checker &check) {
    return check.each<SDB_NODE>(SDB_NODE_TAB, [&](const SDB_NODE &node, const row_checker &needs) {
        return needs(id_or_none(node.obj, check.limit(SDB_OBJ_TAB)), "no object", node.obj) &&
               needs(id_or_none(node.net, check.limit(SDB_NET_TAB)), "no net", node.net) &&
               needs(id_or_none(node.next, check.count(SDB_NODE_TAB)), "no next node", node.next) &&
               needs(node.net >= 0 || node.next < 0, "is on no net and has the next node", node.next) &&
               (node.obj < 0 ? check_port_node(check, node, needs) : check_obj_node(check, node, needs));
    });
}

/// Bits by row, in words.
struct row_bits {
    std::vector<uint32_t> words;

    explicit row_bits(int32_t count) : words((static_cast<size_t>(count) + 31) / 32) {}
    /// Sets a bit; true when it was not set.
    bool set(int32_t row) {
        uint32_t &word = words[static_cast<uint32_t>(row) / 32];
        uint32_t bit = uint32_t{1} << (static_cast<uint32_t>(row) % 32);
        bool is_new = (word & bit) == 0;
        word |= bit;
        return is_new;
    }
};

/// True when all lists hold and most of their links go up in the table, as writers leave them. A node is the
/// first of its net, or a link from a node of its net leads to it, and never both or two links; when that
/// holds for each node that has a net, each is on the list of its net, or on a ring. A ring goes down
/// somewhere, so the lists are walked from there alone. The rest is one pass in the table's order, where a
/// walk waits for each node in turn.
bool lists_are_plain(const table_checker &check) {
    const auto *nodes = check.table<SDB_NODE>(SDB_NODE_TAB);
    const auto *nets = check.table<SDB_NET>(SDB_NET_TAB);
    if (nodes == nullptr || nets == nullptr)
        return false;
    int32_t node_count = check.count(SDB_NODE_TAB);
    auto lists = std::count_if(nets, nets + check.count(SDB_NET_TAB),
                               [](const SDB_NET &net) { return net.first_node != -1; });
    constexpr int32_t fetched_ahead = 4096; // rows; the next nodes of most nets lie nearer than that
    row_bits reached(node_count);
    std::vector<int32_t> below; // nodes that a link goes down to
    int32_t connected = 0, firsts = 0, followed = 0;
    for (int32_t row = 0; row < node_count; row++) {
        __builtin_prefetch(nodes + std::min<int64_t>(int64_t{row} + fetched_ahead, node_count));
        const SDB_NODE &node = nodes[row]; // its net and its next node are in range
        if (node.net < 0)
            continue;
        connected++;
        if (nets[node.net].first_node == row) {
            firsts++;
            if (!reached.set(row))
                return false;
        }
        if (node.next < 0)
            continue;
        followed++;
        if (nodes[node.next].net != node.net || !reached.set(node.next))
            return false;
        if (node.next <= row)
            below.push_back(node.next);
    }
    int32_t steps_left = node_count;
    for (size_t i = 0; i < below.size(); i++)
        for (int32_t row = below[i]; row >= 0 && steps_left >= 0; row = nodes[row].next)
            steps_left--;
    return steps_left >= 0 && firsts == lists && firsts + followed == connected;
}

/// A node is on the list of its own net, once, and each node with a net is on one. What is not plain is
/// walked list by list.
bool check_nets(const table_checker &check) {
    if (lists_are_plain(check))
        return true;
    const auto *nodes = check.table<SDB_NODE>(SDB_NODE_TAB);
    std::vector<bool> reached(static_cast<size_t>(check.count(SDB_NODE_TAB)));
    bool lists_hold = check.each<SDB_NET>(SDB_NET_TAB, [&](const SDB_NET &net, const row_checker &needs) {
        int32_t node = net.first_node;
        if (!needs(id_or_none(node, check.limit(SDB_NODE_TAB)), "no node", node))
            return false;
        for (; nodes != nullptr && node >= 0; node = nodes[node].next) {
            if (!needs(nodes[node].net == needs.row && !reached[static_cast<size_t>(node)],
                       "its list of nodes is not its own or does not end at node", node))
                return false;
            reached[static_cast<size_t>(node)] = true;
        }
        return true;
    });
    if (!lists_hold || check.table<SDB_NET>(SDB_NET_TAB) == nullptr)
        return lists_hold;
    return check.each<SDB_NODE>(SDB_NODE_TAB, [&](const SDB_NODE &node, const row_checker &needs) {
        return needs(node.net < 0 || reached[static_cast<size_t>(needs.row)], "is not on the list of its net",
                     node.net);
    });
}

/// A symbol, a row of the prefix table, or one of the illegal values -5 to -1.
bool is_name(const table_checker &check, int32_t name) {
    return name <= SDB_ENTRY_BASE ? SDB_entry_row(name) < check.limit(SDB_PREFIX_TAB)
                                  : name < check.symbol_limit();
}

/// Names of objects or nets.
bool check_names(const table_checker &check, int32_t index, int32_t named_index) {
    bool both = check.table<void>(index) != nullptr && check.table<void>(named_index) != nullptr;
    row_checker needs{index, check.count(index), check.fault};
    return needs(!both || check.count(index) == check.count(named_index),
                 "the count is not that of what is named,", check.count(named_index)) &&
           check.each<int32_t>(index, [&](int32_t name, const row_checker &row_needs) {
               return row_needs(is_name(check, name), "no name", name);
           });
}

/// A redirection must not come back to itself: each chain is followed up to a row that is known to end.
bool check_redirections(const table_checker &check) {
    const auto *rows = check.table<SDB_PREFIX>(SDB_PREFIX_TAB);
    enum : unsigned char { fresh, open, ends };
    std::vector<unsigned char> state(static_cast<size_t>(check.count(SDB_PREFIX_TAB)));
    std::vector<int32_t> chain;
    for (int32_t first = 0; first < check.count(SDB_PREFIX_TAB); first++) {
        int32_t row = first;
        while (state[static_cast<size_t>(row)] == fresh && rows[row].name <= SDB_ENTRY_BASE) {
            state[static_cast<size_t>(row)] = open;
            chain.push_back(row);
            row = SDB_entry_row(rows[row].name);
        }
        if (state[static_cast<size_t>(row)] == open)
            return row_checker{SDB_PREFIX_TAB, first, check.fault}(false, "its name comes back to row", row);
        for (int32_t passed : chain)
            state[static_cast<size_t>(passed)] = ends;
        chain.clear();
    }
    return true;
}

/// Targets are not looked at here: a lookup compares the row with what it stands for.
bool check_prefixes(const table_checker &check) {
    return check.each<SDB_PREFIX>(SDB_PREFIX_TAB, [&](const SDB_PREFIX &prefix, const row_checker &needs) {
        return needs(is_name(check, prefix.name), "no name", prefix.name) &&
               needs(id_or_none(prefix.parent, needs.row), "its parent does not lie before it,",
                     prefix.parent);
    }) && check_redirections(check);
}

bool check_port_symbols(const table_checker &check) {
    return check.each<int32_t>(SDB_XPORT_TAB, [&](int32_t symbol, const row_checker &needs) {
        return needs(symbol < check.symbol_limit(), "no symbol", symbol);
    });
}

} // namespace

bool SDB_check_tables(const SDB_HANDLE *handle, std::string *fault) {
    table_checker check{handle, fault};
    return check_classes(check) && check_pins(check) && check_ports(check) && check_objs(check) &&
           check_nodes(check) && check_nets(check) && check_names(check, SDB_SOBJ_TAB, SDB_OBJ_TAB) &&
           check_names(check, SDB_SNET_TAB, SDB_NET_TAB) && check_prefixes(check) &&
           check_port_symbols(check);
}
