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

/// What tells objects and nets apart when their names are looked up.
struct NAME_KIND {
    int32_t table;       ///< of the names
    int32_t prefix_kind; ///< of PREFIX_lookup
    int32_t target_bit;  ///< of a prefix row's target
    first_row_index SDB_NAME_INDEX::*index;
};
constexpr NAME_KIND OBJECT_NAMES = {SDB_SOBJ_TAB, 1, SDB_OBJ_TARGET, &SDB_NAME_INDEX::objs};
constexpr NAME_KIND NET_NAMES = {SDB_SNET_TAB, 0, 0, &SDB_NAME_INDEX::nets};

int32_t find_plain(const NAME_KIND &kind, int32_t symbol) {
    SDB_HANDLE *handle = SDB_current_handle();
    return handle == nullptr ? -1
                             : SDB_first_row(handle->name_index->*kind.index, symbol,
                                             SDB_table<int32_t>(handle, kind.table), 1,
                                             SDB_table_count(handle, kind.table), SYM_count(sym_tab));
}

/// The object or net that a prefix row stands for, or -1. The row and the table of names must agree.
int32_t named_by_row(const NAME_KIND &kind, int32_t row) {
    if (row < 0 || (prefix_tab[row].target & SDB_OBJ_TARGET) != kind.target_bit)
        return -1;
    int32_t id = prefix_tab[row].target & ~kind.target_bit;
    const SDB_HANDLE *handle = SDB_current_handle();
    const auto *names = SDB_table<int32_t>(handle, kind.table);
    if (names == nullptr || id >= SDB_table_count(handle, kind.table))
        return -1;
    if (names[id] != SDB_ENTRY_BASE - row)
        fail_inconsistent();
    return id;
}

/// All that a name with separators can mean when these may belong to components.
std::vector<int32_t> readings(const NAME_KIND &kind, const char *name) {
    std::vector<int32_t> found;
    auto add = [&found](int32_t id) {
        if (id >= 0)
            found.push_back(id);
    };
    add(find_plain(kind, SYM_lookup(sym_tab, name)));
    for (int32_t row : PREFIX_readings(prefix_tab, name, kind.prefix_kind, sdb_hier_dot))
        add(named_by_row(kind, row));
    return found;
}

/// What stands under these components; one component may be a plain name.
int32_t find_path(const NAME_KIND &kind, const std::vector<std::string> &components) {
    if (components.size() == 1)
        if (int32_t plain = find_plain(kind, SYM_lookup(sym_tab, components[0].c_str())); plain >= 0)
            return plain;
    constexpr int32_t instance_kind = 3; // an object, or a row that names a class
    int32_t row = -1;
    for (const std::string &component : components) {
        bool is_last = &component == &components.back();
        row = PREFIX_child(prefix_tab, SYM_lookup(sym_tab, component.c_str()),
                           is_last ? kind.prefix_kind : instance_kind, row);
        if (row < 0)
            return -1;
    }
    return named_by_row(kind, row);
}

std::vector<std::string> name_components(const SDB_HANDLE *handle, int32_t row, const char *plain) {
    return row < 0 ? std::vector<std::string>{plain}
                   : PREFIX_components(SDB_table<SDB_PREFIX>(handle, SDB_PREFIX_TAB), row);
}

int32_t lookup(const NAME_KIND &kind, const char *name) {
    if (name == nullptr)
        return -1;
    if (std::strchr(name, sdb_hier_dot) == nullptr)
        return find_plain(kind, SYM_lookup(sym_tab, name));
    int32_t exact = named_by_row(kind, PREFIX_lookup(prefix_tab, name, kind.prefix_kind, -1));
    if (exact >= 0)
        return exact;
    std::vector<int32_t> found = readings(kind, name);
    return found.size() == 1 ? found.front()
           : found.empty()   ? find_path(kind, PREFIX_split_marked(name, sdb_hier_dot))
                             : -1;
}

/// True when a component of the name holds the separator, so that the text has more than one reading.
bool has_inner_separator(const SDB_PREFIX *rows, int32_t row, const char *text) {
    auto separators = std::count(text, text + std::strlen(text), sdb_hier_dot);
    for (; row >= 0 && rows[row].parent >= 0; row = rows[row].parent)
        --separators;
    return separators > 0;
}

/// The name of row `id` in a table of names. Only where a reader of the text would find something else are
/// the separators inside components marked.
const char *name_text(const SDB_HANDLE *handle, const NAME_KIND &kind, int32_t id, std::string &buffer) {
    if (id == -1)
        return undefined_name;
    const auto *names = SDB_table<int32_t>(handle, kind.table);
    if (names == nullptr || id < 0 || id >= SDB_table_count(handle, kind.table))
        return nullptr;
    int32_t entry = names[id];
    if (entry > SDB_ENTRY_BASE && entry < 0) {
        sdb_log_error(1, "(FA-02-0008) Encountered an illegal object id.");
        return nullptr;
    }
    const auto *rows = SDB_table<SDB_PREFIX>(handle, SDB_PREFIX_TAB);
    int32_t row = entry >= 0 ? -1 : SDB_entry_row(entry);
    if (row >= SDB_table_count(handle, SDB_PREFIX_TAB) ||
        (row >= 0 && rows[row].target != (id | kind.target_bit)))
        fail_inconsistent();
    const char *text = row < 0 ? SYM_get(handle->symbols, entry) : PREFIX_get(rows, row);
    if (text == nullptr)
        return nullptr;
    if (row >= 0)
        text = (buffer = text).c_str();
    if (handle != SDB_current_handle() || !has_inner_separator(rows, row, text) || lookup(kind, text) == id)
        return text;
    return (buffer = PREFIX_join_marked(name_components(handle, row, text), sdb_hier_dot)).c_str();
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
    return find_plain(OBJECT_NAMES, symbol);
}

int32_t SDB_search_net(int32_t symbol) {
    return find_plain(NET_NAMES, symbol);
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
    return lookup(OBJECT_NAMES, name);
}

std::vector<std::string> SDB_obj_readings(const char *name) {
    std::vector<std::string> names;
    for (int32_t obj : readings(OBJECT_NAMES, name))
        names.push_back(
            PREFIX_join_marked(name_components(sdb, SDB_obj_prefix_row(sdb, obj), name), sdb_hier_dot));
    return names;
}

int32_t SDB_instance_obj(const char *instance) {
    return instance == nullptr ? -1 : find_path(OBJECT_NAMES, {instance});
}

int32_t SDB_path_obj(const std::vector<std::string> &components) {
    return components.empty() ? -1 : find_path(OBJECT_NAMES, components);
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
    return name_text(handle, OBJECT_NAMES, obj, buffer);
}

const char *SDB_net_name(const SDB_HANDLE *handle, int32_t net) {
    static std::string buffer;
    return name_text(handle, NET_NAMES, net, buffer);
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
