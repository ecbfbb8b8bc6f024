// Writing a handle whole.
#include "sdb/sdb.hh"

#include "sdb/handle_internal.hh"
#include "sdb/sdb_file.hh"
#include "support/fnm.hh"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

/// Sorts the ports by direction, ports of one direction in their old order, and tells the port nodes.
void sort_ports(SDB_HANDLE *handle) {
    auto *ports = SDB_table<SDB_PORT>(handle, SDB_PORT_TAB);
    auto *nodes = SDB_table<SDB_NODE>(handle, SDB_NODE_TAB);
    int32_t count = SDB_table_count(handle, SDB_PORT_TAB);
    if (ports == nullptr)
        return;
    std::stable_sort(ports, ports + count, [](const SDB_PORT &a, const SDB_PORT &b) {
        return (a.flags & SDB_DIRECTION_MASK) < (b.flags & SDB_DIRECTION_MASK);
    });
    for (int32_t port = 0; nodes != nullptr && port < count; port++)
        if (ports[port].node >= 0)
            nodes[ports[port].node].pin = port;
    handle->name_index->ports = {};
}

/// Drops the records at the end of a table whose first word is -1.
void drop_nameless(SDB_HANDLE *handle, int32_t index) {
    const SDB_TABLE &table = handle->tables[index];
    const auto *records = static_cast<const char *>(table.data);
    int32_t count = table.count;
    for (; count > 0; count--) {
        int32_t first = 0;
        std::memcpy(&first, records + static_cast<size_t>(count - 1) * static_cast<size_t>(table.record_size),
                    sizeof first);
        if (first != -1)
            break;
    }
    SDB_cut_table(handle, index, count);
}

void tidy_tables(SDB_HANDLE *handle) {
    sort_ports(handle);
    for (int32_t index : {SDB_CLASS_TAB, SDB_PORT_TAB, SDB_SOBJ_TAB, SDB_SNET_TAB})
        drop_nameless(handle, index);
    SDB_cut_table(handle, SDB_OBJ_TAB, SDB_table_count(handle, SDB_SOBJ_TAB));
    SDB_cut_table(handle, SDB_NET_TAB, SDB_table_count(handle, SDB_SNET_TAB));
}

} // namespace

int SDB_save(SDB_HANDLE *handle) {
    if (handle == nullptr || handle->writable == 0)
        return 1;
    tidy_tables(handle);
    if (SDB_place_tables(handle->tables, SYM_saved_size(handle->symbols)) > SDB_FILE_LIMIT) {
        errno = EFBIG;
        return 1;
    }
    whole_file file;
    if (!begin_file(file, handle->path))
        return 1;
    SDB_put_start(file, handle->tables, handle->version);
    SYM_save(file, handle->symbols);
    for (const SDB_TABLE &table : handle->tables)
        put_bytes(file, table.data, SDB_table_bytes(table));
    if (!finish_file(file))
        return 1;
    // The alias tables are those of the file opened last.
    if (asn_file_name == FNM_build(nullptr, handle->path.c_str(), "asn"))
        return ALIAS_write();
    return 0;
}
