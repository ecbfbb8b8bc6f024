// Whether the tables of a file that was read fit each other.
//
// Each check is one pass over one table. An id in a table that was not loaded is let pass. Names from -5 to
// -1 are let pass too: a file may hold rows that lost their name, and who asks for the name hears of it.
#include "sdb/handle_internal.hh"

#include "support/text.hh"

#include <limits>

namespace {

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
    bool fail(int32_t index, int32_t row, const char *what, int32_t value) const {
        *fault = format_text("table %s, row %d: %s %d", sdb_table_layout[index].name, row, what, value);
        return false;
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
    const auto *classes = check.table<SDB_CLASS>(SDB_CLASS_TAB);
    int64_t pins = check.limit(SDB_PIN_TAB);
    for (int32_t row = 0; row < check.count(SDB_CLASS_TAB); row++) {
        const SDB_CLASS &cell = classes[row];
        if (!id_or_none(cell.name, check.symbol_limit()))
            return check.fail(SDB_CLASS_TAB, row, "no symbol", cell.name);
        if (cell.pin_count < 0 || (cell.pin_count > 0 && cell.first_pin < 0) ||
            (cell.pin_count > 0 && int64_t{cell.first_pin} + cell.pin_count > pins))
            return check.fail(SDB_CLASS_TAB, row, "its pins are out of range, first pin", cell.first_pin);
    }
    return true;
}

bool check_pins(const table_checker &check) {
    const auto *pins = check.table<SDB_PIN>(SDB_PIN_TAB);
    for (int32_t row = 0; row < check.count(SDB_PIN_TAB); row++)
        if (!id_or_none(pins[row].name, check.symbol_limit()))
            return check.fail(SDB_PIN_TAB, row, "no symbol", pins[row].name);
    return true;
}

bool check_ports(const table_checker &check) {
    const auto *ports = check.table<SDB_PORT>(SDB_PORT_TAB);
    const auto *nodes = check.table<SDB_NODE>(SDB_NODE_TAB);
    for (int32_t row = 0; row < check.count(SDB_PORT_TAB); row++) {
        const SDB_PORT &port = ports[row];
        if (!id_or_none(port.name, check.symbol_limit()))
            return check.fail(SDB_PORT_TAB, row, "no symbol", port.name);
        if (!id_or_none(port.node, check.limit(SDB_NODE_TAB)))
            return check.fail(SDB_PORT_TAB, row, "no node", port.node);
        if (nodes != nullptr && port.node >= 0 && (nodes[port.node].obj != -1 || nodes[port.node].pin != row))
            return check.fail(SDB_PORT_TAB, row, "is not the port of its node", port.node);
    }
    return true;
}

/// The first node of an object without pins may stand behind the last node: there is the sentinel.
bool check_objs(const table_checker &check) {
    const auto *objs = check.table<SDB_OBJ>(SDB_OBJ_TAB);
    const auto *nodes = check.table<SDB_NODE>(SDB_NODE_TAB);
    const auto *classes = check.table<SDB_CLASS>(SDB_CLASS_TAB);
    int32_t class_limit = check.limit(SDB_CLASS_TAB);
    int32_t node_count = check.count(SDB_NODE_TAB);
    for (int32_t row = 0; row < check.count(SDB_OBJ_TAB); row++) {
        const SDB_OBJ &obj = objs[row];
        if (!id_or_none(obj.class_id, class_limit))
            return check.fail(SDB_OBJ_TAB, row, "no class", obj.class_id);
        if (nodes == nullptr)
            continue;
        if (obj.first_node < -1 || obj.first_node > node_count)
            return check.fail(SDB_OBJ_TAB, row, "no node", obj.first_node);
        bool has_pins = classes != nullptr && obj.class_id >= 0 && classes[obj.class_id].pin_count > 0 &&
                        SDB_is_user_class(classes[obj.class_id].type);
        if (has_pins && (obj.first_node < 0 || nodes[obj.first_node].obj != row))
            return check.fail(SDB_OBJ_TAB, row, "is not the object of its first node", obj.first_node);
    }
    return true;
}

/// What a node says of itself. The nodes of an object must follow each other from its first one.
bool check_node(const table_checker &check, const SDB_NODE *nodes, int32_t row) {
    const auto *objs = check.table<SDB_OBJ>(SDB_OBJ_TAB);
    const auto *classes = check.table<SDB_CLASS>(SDB_CLASS_TAB);
    const auto *ports = check.table<SDB_PORT>(SDB_PORT_TAB);
    const SDB_NODE &node = nodes[row];
    if (!id_or_none(node.obj, check.limit(SDB_OBJ_TAB)))
        return check.fail(SDB_NODE_TAB, row, "no object", node.obj);
    if (!id_or_none(node.net, check.limit(SDB_NET_TAB)))
        return check.fail(SDB_NODE_TAB, row, "no net", node.net);
    if (!id_or_none(node.next, check.count(SDB_NODE_TAB)))
        return check.fail(SDB_NODE_TAB, row, "no next node", node.next);
    if (node.net < 0 && node.next >= 0)
        return check.fail(SDB_NODE_TAB, row, "is on no net and has the next node", node.next);
    if (node.obj < 0) {
        if (!id_or_none(node.pin, check.limit(SDB_PORT_TAB)))
            return check.fail(SDB_NODE_TAB, row, "no port", node.pin);
        if (ports != nullptr && node.pin >= 0 && ports[node.pin].node != row)
            return check.fail(SDB_NODE_TAB, row, "is not the node of its port", node.pin);
        return true;
    }
    if (node.pin < 0 || node.pin >= check.limit(SDB_PIN_TAB))
        return check.fail(SDB_NODE_TAB, row, "no pin", node.pin);
    if (objs == nullptr)
        return true;
    const SDB_OBJ &obj = objs[node.obj];
    bool follows = row > 0 && nodes[row - 1].obj == node.obj;
    if (!follows && obj.first_node != row)
        return check.fail(SDB_NODE_TAB, row, "is not one of the nodes of its object", node.obj);
    if (classes != nullptr && obj.class_id >= 0 && SDB_is_user_class(classes[obj.class_id].type) &&
        !is_own_pin(classes[obj.class_id], node.pin))
        return check.fail(SDB_NODE_TAB, row, "its object's class does not have pin", node.pin);
    return true;
}

bool check_nodes(const table_checker &check) {
    const auto *nodes = check.table<SDB_NODE>(SDB_NODE_TAB);
    for (int32_t row = 0; row < check.count(SDB_NODE_TAB); row++)
        if (!check_node(check, nodes, row))
            return false;
    return true;
}

/// Walks the list of every net. A node is on the list of its own net, once, and each node with a net is on
/// one.
bool check_nets(const table_checker &check) {
    const auto *nets = check.table<SDB_NET>(SDB_NET_TAB);
    const auto *nodes = check.table<SDB_NODE>(SDB_NODE_TAB);
    int32_t node_limit = check.limit(SDB_NODE_TAB);
    std::vector<bool> reached(static_cast<size_t>(check.count(SDB_NODE_TAB)));
    for (int32_t row = 0; row < check.count(SDB_NET_TAB); row++) {
        int32_t node = nets[row].first_node;
        if (!id_or_none(node, node_limit))
            return check.fail(SDB_NET_TAB, row, "no node", node);
        for (; nodes != nullptr && node >= 0; node = nodes[node].next) {
            if (nodes[node].net != row || reached[static_cast<size_t>(node)])
                return check.fail(SDB_NET_TAB, row,
                                  "its list of nodes is not its own or does not end at node", node);
            reached[static_cast<size_t>(node)] = true;
        }
    }
    if (nets == nullptr)
        return true;
    for (int32_t node = 0; node < check.count(SDB_NODE_TAB); node++)
        if (nodes[node].net >= 0 && !reached[static_cast<size_t>(node)])
            return check.fail(SDB_NODE_TAB, node, "is not on the list of its net", nodes[node].net);
    return true;
}

/// Names of objects or nets: a symbol, a row of the prefix table, or one of the illegal values -5 to -1.
bool check_names(const table_checker &check, int32_t index, int32_t named_index) {
    const auto *names = check.table<int32_t>(index);
    int32_t rows = names == nullptr ? 0 : check.count(index);
    if (names != nullptr && check.table<void>(named_index) != nullptr && rows != check.count(named_index))
        return check.fail(index, rows, "the count is not that of what is named,", check.count(named_index));
    for (int32_t row = 0; row < rows; row++) {
        int32_t name = names[row];
        bool hierarchical = name <= SDB_ENTRY_BASE;
        if (hierarchical ? SDB_entry_row(name) >= check.limit(SDB_PREFIX_TAB) : name >= check.symbol_limit())
            return check.fail(index, row, "no name", name);
    }
    return true;
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
            return check.fail(SDB_PREFIX_TAB, first, "its name comes back to row", row);
        for (int32_t passed : chain)
            state[static_cast<size_t>(passed)] = ends;
        chain.clear();
    }
    return true;
}

/// Targets are not looked at here: a lookup compares the row with what it stands for.
bool check_prefixes(const table_checker &check) {
    const auto *rows = check.table<SDB_PREFIX>(SDB_PREFIX_TAB);
    for (int32_t row = 0; row < check.count(SDB_PREFIX_TAB); row++) {
        int32_t name = rows[row].name;
        if (name <= SDB_ENTRY_BASE ? SDB_entry_row(name) >= check.count(SDB_PREFIX_TAB)
                                   : name >= check.symbol_limit())
            return check.fail(SDB_PREFIX_TAB, row, "no name", name);
        if (!id_or_none(rows[row].parent, row))
            return check.fail(SDB_PREFIX_TAB, row, "its parent does not lie before it,", rows[row].parent);
    }
    return check_redirections(check);
}

bool check_port_symbols(const table_checker &check) {
    const auto *symbols = check.table<int32_t>(SDB_XPORT_TAB);
    for (int32_t row = 0; row < check.count(SDB_XPORT_TAB); row++)
        if (symbols[row] >= check.symbol_limit())
            return check.fail(SDB_XPORT_TAB, row, "no symbol", symbols[row]);
    return true;
}

} // namespace

bool SDB_check_tables(const SDB_HANDLE *handle, std::string *fault) {
    table_checker check{handle, fault};
    return check_classes(check) && check_pins(check) && check_ports(check) && check_objs(check) &&
           check_nodes(check) && check_nets(check) && check_names(check, SDB_SOBJ_TAB, SDB_OBJ_TAB) &&
           check_names(check, SDB_SNET_TAB, SDB_NET_TAB) && check_prefixes(check) &&
           check_port_symbols(check);
}
