// Writing a handle whole.
//
// The file is written beside its place under a temporary name and then renamed, so that an earlier file stays
// until the new one is complete.
#include "sdb/sdb.hh"

#include "sdb/byte_stream.hh"
#include "sdb/handle_internal.hh"
#include "support/dyna.hh"
#include "support/fnm.hh"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <unistd.h>
#include <vector>

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

void put_header_block(byte_writer &writer, const SDB_HANDLE *handle) {
    const uint32_t zeros[17] = {};
    writer.put(zeros, 12); // design name, writable flag and a word that is not used
    for (const SDB_TABLE &table : handle->tables) {
        writer.put(table.name, 4);
        writer.number(table.count);
        writer.number(table.record_size);
        writer.word(0);
        writer.word(table.offset);
    }
    writer.put(zeros, 8); // symbol table and stream
    writer.number(handle->version);
    writer.put(zeros, 68);
}

/// Writes the records and stores the place of each table. False when a place does not fit its word.
bool put_tables(byte_writer &writer, SDB_HANDLE *handle, uint64_t position) {
    for (SDB_TABLE &table : handle->tables) {
        table.offset = 0;
        if (table.count == 0 || table.data == nullptr)
            continue;
        if (position > std::numeric_limits<uint32_t>::max())
            return false;
        table.offset = static_cast<uint32_t>(position);
        size_t bytes = static_cast<size_t>(table.count) * static_cast<size_t>(table.record_size);
        writer.put(table.data, bytes);
        position += bytes;
    }
    return true;
}

bool write_file(std::FILE *file, SDB_HANDLE *handle) {
    byte_writer start{file};
    start.word(4);
    start.put("SDB", 4);
    start.number(SDB_FORMAT_WORD);
    put_header_block(start, handle); // holds the room; the places are known later
    start.flush();
    if (start.failed || SYM_save(file, handle->symbols) != 0)
        return false;
    long position = std::ftell(file);
    if (position < 0)
        return false;
    byte_writer records{file};
    if (!put_tables(records, handle, static_cast<uint64_t>(position)))
        return false;
    records.flush();
    if (records.failed || std::fseek(file, 12, SEEK_SET) != 0)
        return false;
    byte_writer header{file};
    put_header_block(header, handle);
    header.flush();
    return !header.failed;
}

} // namespace

int SDB_save(SDB_HANDLE *handle) {
    if (handle == nullptr || handle->writable == 0)
        return 1;
    tidy_tables(handle);
    std::string temporary = handle->path + ".tmp" + std::to_string(getpid());
    std::FILE *file = std::fopen(temporary.c_str(), "w");
    if (file == nullptr)
        return 1;
    bool written = write_file(file, handle);
    written = std::fclose(file) == 0 && written;
    if (!written || std::rename(temporary.c_str(), handle->path.c_str()) != 0) {
        std::remove(temporary.c_str());
        return 1;
    }
    // The alias tables are those of the file opened last.
    if (asn_file_name == FNM_build(nullptr, handle->path.c_str(), "asn"))
        return ALIAS_write();
    return 0;
}
