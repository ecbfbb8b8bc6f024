// Names and ids of the current design, through an index by symbol that grows with the tables.
#include "sdb/navigation.hh"

#include "sdb/handle_internal.hh"
#include "support/console.hh"

#include <algorithm>
#include <cstring>

namespace {

constexpr const char undefined_name[] = "*UNDEF*";

/// Index of the current handle, or null with none current.
SDB_NAME_INDEX *current_index() {
    SDB_HANDLE *handle = SDB_current_handle();
    return handle == nullptr ? nullptr : handle->name_index;
}

constexpr size_t words(size_t record_size) {
    return record_size / sizeof(int32_t);
}

[[noreturn]] void fail_inconsistent() {
    sdb_log_error(1, "(FA-02-0020) Hierarchical name data inconsistency.");
    end_run();
}

/// The name of row `id` in a table of names; `target` is what its prefix row must stand for.
const char *name_text(const SDB_HANDLE *handle, int32_t index, int32_t id, int32_t target,
                      std::string &buffer) {
    if (id == -1)
        return undefined_name;
    const auto *names = SDB_table<int32_t>(handle, index);
    if (names == nullptr || id < 0 || id >= SDB_table_count(handle, index))
        return nullptr;
    int32_t entry = names[id];
    if (entry > SDB_ENTRY_BASE && entry < 0) {
        sdb_log_error(1, "(FA-02-0008) Encountered an illegal object id.");
        return nullptr;
    }
    if (entry >= 0)
        return SYM_get(handle->symbols, entry);
    const auto *rows = SDB_table<SDB_PREFIX>(handle, SDB_PREFIX_TAB);
    int32_t row = SDB_entry_row(entry);
    if (row >= SDB_table_count(handle, SDB_PREFIX_TAB) || rows[row].target != target)
        fail_inconsistent();
    buffer = PREFIX_get(rows, row);
    return buffer.c_str();
}

/// The object that a hierarchical name's row stands for. The row and the table of names must agree.
int32_t object_of_row(int32_t row) {
    int32_t obj = prefix_tab[row].target & ~SDB_OBJ_TARGET;
    if (sobj_tab == nullptr || obj >= obj_count)
        return -1;
    if (sobj_tab[obj] != SDB_ENTRY_BASE - row)
        fail_inconsistent();
    return obj;
}

} // namespace

int32_t SDB_first_row(first_row_index &index, int32_t symbol, const int32_t *names, size_t stride,
                      int32_t count, int32_t symbol_count) {
    if (symbol < 0 || symbol >= symbol_count || names == nullptr)
        return -1;
    if (index.first.size() < static_cast<size_t>(symbol_count))
        index.first.resize(static_cast<size_t>(symbol_count), first_row_index::none);
    for (; index.indexed < count; index.indexed++) {
        int32_t name = names[static_cast<size_t>(index.indexed) * stride];
        if (name >= 0 && name < symbol_count &&
            index.first[static_cast<size_t>(name)] == first_row_index::none)
            index.first[static_cast<size_t>(name)] = index.indexed;
    }
    return index.first[static_cast<size_t>(symbol)];
}

int32_t SDB_search_port(int32_t symbol) {
    SDB_NAME_INDEX *index = current_index();
    return index == nullptr || port_tab == nullptr
               ? -1
               : SDB_first_row(index->ports, symbol, &port_tab->name, words(sizeof(SDB_PORT)), port_count,
                               SYM_count(sym_tab));
}

int32_t SDB_search_obj(int32_t symbol) {
    SDB_NAME_INDEX *index = current_index();
    return index == nullptr ? -1
                            : SDB_first_row(index->objs, symbol, sobj_tab, 1, obj_count, SYM_count(sym_tab));
}

int32_t SDB_search_net(int32_t symbol) {
    SDB_NAME_INDEX *index = current_index();
    return index == nullptr ? -1
                            : SDB_first_row(index->nets, symbol, snet_tab, 1, net_count, SYM_count(sym_tab));
}

int32_t SDB_search_node(int32_t pin_symbol, int32_t obj) {
    if (obj < 0 || obj >= obj_count || obj_tab[obj].first_node < 0 || pin_tab == nullptr ||
        node_tab == nullptr)
        return -1;
    for (int32_t node = obj_tab[obj].first_node; node_tab[node].obj == obj; node++)
        if (pin_tab[node_tab[node].pin].name == pin_symbol)
            return node;
    return -1;
}

int32_t SDB_nl_search_port(const char *name) {
    return SDB_search_port(SYM_lookup(sym_tab, name));
}

int32_t SDB_nl_search_obj(const char *name) {
    return SDB_lookup_obj(name);
}

int32_t SDB_lookup_obj(const char *name) {
    if (name == nullptr)
        return -1;
    if (std::strchr(name, sdb_hier_dot) == nullptr)
        return SDB_search_obj(SYM_lookup(sym_tab, name));
    int32_t row = PREFIX_lookup(prefix_tab, name, 1, -1);
    return row < 0 ? -1 : object_of_row(row);
}

int32_t SDB_nl_search_node(const char *obj_name, const char *pin_name) {
    if (obj_name == nullptr || *obj_name == '*') {
        int32_t port = SDB_nl_search_port(pin_name);
        return port < 0 ? -1 : port_tab[port].node;
    }
    int32_t obj = SDB_lookup_obj(obj_name);
    if (obj < 0 || pin_name == nullptr)
        return -1;
    int32_t symbol = SYM_lookup(sym_tab, pin_name);
    return symbol < 0 ? -2 : SDB_search_node(symbol, obj);
}

const char *SDB_obj_name(const SDB_HANDLE *handle, int32_t obj) {
    static std::string buffer;
    return name_text(handle, SDB_SOBJ_TAB, obj, obj | SDB_OBJ_TARGET, buffer);
}

const char *SDB_net_name(const SDB_HANDLE *handle, int32_t net) {
    static std::string buffer;
    return name_text(handle, SDB_SNET_TAB, net, net, buffer);
}

const char *SDB_obj_class_name(const SDB_HANDLE *handle, int32_t obj) {
    const auto *objs = SDB_table<SDB_OBJ>(handle, SDB_OBJ_TAB);
    if (objs == nullptr || obj < 0 || obj >= SDB_table_count(handle, SDB_OBJ_TAB))
        return nullptr;
    const auto *classes = SDB_table<SDB_CLASS>(handle, SDB_CLASS_TAB);
    int32_t class_id = objs[obj].class_id;
    if (classes == nullptr || class_id < 0 || class_id >= SDB_table_count(handle, SDB_CLASS_TAB))
        return nullptr;
    return SYM_get(handle->symbols, classes[class_id].name);
}

int32_t SDB_obj_prefix_row(const SDB_HANDLE *handle, int32_t obj) {
    const auto *names = SDB_table<int32_t>(handle, SDB_SOBJ_TAB);
    if (names == nullptr || obj < 0 || obj >= SDB_table_count(handle, SDB_SOBJ_TAB) ||
        names[obj] > SDB_ENTRY_BASE)
        return -1;
    int32_t row = SDB_entry_row(names[obj]);
    return row < SDB_table_count(handle, SDB_PREFIX_TAB) ? row : -1;
}

const char *SDB_prefix_instance_name(const SDB_HANDLE *handle, int32_t row) {
    if (row < 0 || row >= SDB_table_count(handle, SDB_PREFIX_TAB))
        return nullptr;
    return SYM_get(handle->symbols, PREFIX_symbol(SDB_table<SDB_PREFIX>(handle, SDB_PREFIX_TAB), row));
}

const char *SDB_prefix_class_name(const SDB_HANDLE *handle, int32_t row) {
    if (row < 0 || row >= SDB_table_count(handle, SDB_PREFIX_TAB))
        return nullptr;
    int32_t target = SDB_table<SDB_PREFIX>(handle, SDB_PREFIX_TAB)[row].target;
    if (target <= SDB_ENTRY_BASE)
        return SYM_get(handle->symbols, SDB_entry_row(target));
    if (target < 0 || (target & SDB_OBJ_TARGET) == 0)
        return nullptr;
    return SDB_obj_class_name(handle, target & ~SDB_OBJ_TARGET);
}
