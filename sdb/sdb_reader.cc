// Reading a file: one read into memory, then everything out of these bytes with its bounds checked.
//
// The layout is magic, format word, header block, symbol block, and the tables at the places that their
// descriptors give. The first bytes tell the byte order and may be a marker of the machine that wrote the
// file.
#include "sdb/handle_internal.hh"

#include "sdb/byte_stream.hh"
#include "support/dyna.hh"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int32_t status_empty = -1;
constexpr int32_t status_obsolete = -2;
constexpr int32_t status_unreadable = -5;
constexpr int32_t status_read_error = -7;

// Places within the header block.
constexpr size_t descriptors_at = 12;
constexpr size_t descriptor_size = 20;
constexpr size_t version_at = 660;

/// Says what is wrong with the content of a file.
int32_t refuse(const SDB_HANDLE *handle, const std::string &fault) {
    sdb_log_error(2, "(%s) %s.", handle->path.c_str(), fault.c_str());
    return status_read_error;
}

/// Reads the whole file. Null when it cannot be read.
unsigned char *read_whole(int descriptor, size_t *size) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return nullptr;
    size_t expected = static_cast<size_t>(status.st_size);
    auto *bytes = static_cast<unsigned char *>(SDB_handle_memory(std::max<size_t>(expected, 1)));
    size_t got = 0;
    while (got < expected) {
        ssize_t n = read(descriptor, bytes + got, expected - got);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        got += static_cast<size_t>(n);
    }
    if (got < expected) {
        std::free(bytes);
        return nullptr;
    }
    *size = expected;
    return bytes;
}

/// Decides the byte order from the first bytes and leaves the reader behind the length of the magic. The
/// status is 0, or the one of a machine whose files cannot be read.
int32_t read_byte_order(byte_reader &reader, uint32_t *magic_length) {
    unsigned first = reader.bytes[0];
    switch (first) {
    case 10:
    case 12:
    case 15:
    case 16:
        reader.swapped = true;
        reader.position = 1;
        break;
    case 13:
    case 18:
        reader.position = 1;
        break;
    case 11:
    case 17:
        return status_unreadable;
    default:
        uint32_t little = reader.word();
        reader.position = 0;
        reader.swapped = swapped_word(little) < 10 || little > 9;
    }
    *magic_length = reader.word();
    return 0;
}

int32_t read_start(byte_reader &reader) {
    uint32_t length = 0;
    int32_t status = read_byte_order(reader, &length);
    if (status != 0)
        return status;
    if (length == 0)
        return status_empty;
    const unsigned char *magic = reader.take(length);
    reader.word(); // the format word, of any value
    if (reader.failed)
        return status_read_error;
    bool matches = length >= 3 && std::memcmp(magic, "SDB", 3) == 0 && (length == 3 || magic[3] == '\0');
    return matches ? 0 : status_obsolete;
}

int32_t read_version(SDB_HANDLE *handle, byte_reader header) {
    header.position = version_at;
    handle->version = header.number();
    if (handle->version == 0)
        return status_unreadable;
    return handle->version == 300 || handle->version == 301 ? 0 : status_obsolete;
}

void read_descriptors(SDB_HANDLE *handle, byte_reader header) {
    header.position = descriptors_at;
    for (SDB_TABLE &table : handle->tables) {
        static_assert(descriptor_size == 20);
        std::memcpy(table.name, header.take(4), 4);
        table.name[4] = '\0';
        table.count = header.number();
        table.record_size = header.number();
        header.word(); // a stored pointer
        table.offset = header.word();
    }
}

/// The bytes of a table's records, or null with the status: a fault of the descriptor, or a file that ends
/// early.
const unsigned char *find_records(const SDB_HANDLE *handle, int32_t index, const byte_reader &file,
                                  int32_t *status) {
    const SDB_TABLE &table = handle->tables[index];
    int32_t expected = sdb_table_layout[index].record_size;
    std::string where = std::string("table ") + sdb_table_layout[index].name + ": ";
    if (table.count < 0) {
        *status = refuse(handle, where + "the count " + std::to_string(table.count) + " is negative");
    } else if (index <= SDB_PROP_TAB ? table.record_size != expected : table.record_size < 0) {
        *status = refuse(handle, where + "the record size " + std::to_string(table.record_size) + " is not " +
                                     std::to_string(expected));
    } else {
        uint64_t bytes = static_cast<uint64_t>(table.count) * static_cast<uint64_t>(table.record_size);
        if (table.offset <= file.size && bytes <= file.size - table.offset)
            return file.bytes + table.offset;
        *status = status_read_error;
    }
    return nullptr;
}

/// Copies one table out of the file's bytes and puts the sentinel behind its last record.
int32_t load_table(SDB_HANDLE *handle, int32_t index, const byte_reader &file) {
    SDB_TABLE &table = handle->tables[index];
    int32_t status = 0;
    int32_t count = table.count;
    const unsigned char *records = nullptr;
    if (count != 0) {
        records = find_records(handle, index, file, &status);
        if (records == nullptr) {
            table.count = 0;
            return status;
        }
    }
    if (count == 0 || table.record_size == 0) {
        table.record_size = sdb_table_layout[index].record_size;
        count = 0;
        if (table.record_size == 0) {
            table.count = 0;
            return 0;
        }
    }
    SDB_new_table(&table, index, table.record_size, count + 1);
    dyna_core::add(&table.data, count);
    table.count = count;
    size_t bytes = static_cast<size_t>(count) * static_cast<size_t>(table.record_size);
    if (bytes > 0)
        std::memcpy(table.data, records, bytes);
    std::memset(static_cast<char *>(table.data) + bytes, 0xFF, static_cast<size_t>(table.record_size));
    if (file.swapped)
        SDB_reverse_tab(handle, index);
    return 0;
}

int32_t load_tables(SDB_HANDLE *handle, const byte_reader &file, uint32_t task_mask) {
    for (int32_t i = 0; i < SDB_TAB_COUNT; i++) {
        SDB_TABLE &table = handle->tables[i];
        int32_t status = 0;
        if ((task_mask >> i & 1U) != 0) {
            status = load_table(handle, i, file);
        } else {
            table.count = 0; // an unselected table stays empty and its name, if it has one, stays taken
        }
        if (status != 0) {
            for (int32_t rest = i; rest < SDB_TAB_COUNT; rest++)
                handle->tables[rest].count = 0;
            return status;
        }
    }
    return 0;
}

int32_t read_symbols(SDB_HANDLE *handle, byte_reader &reader) {
    std::string fault;
    handle->symbols = SYM_read(reader.bytes, reader.size, &reader.position, reader.swapped, &fault);
    if (handle->symbols != nullptr)
        return 0;
    return fault.empty() ? status_read_error : refuse(handle, fault);
}

} // namespace

int32_t SDB_read_file(SDB_HANDLE *handle, int descriptor, uint32_t task_mask) {
    size_t size = 0;
    handle->image = read_whole(descriptor, &size);
    if (handle->image == nullptr)
        return status_read_error;
    byte_reader reader{handle->image, size};
    int32_t status = read_start(reader);
    if (status != 0)
        return status;
    sdb_reverseL = reader.swapped ? 1 : 0;
    const unsigned char *block = reader.take(SDB_HEADER_BLOCK_SIZE);
    if (block == nullptr)
        return status_read_error;
    byte_reader header{block, SDB_HEADER_BLOCK_SIZE, 0, reader.swapped};
    status = read_version(handle, header);
    if (status == 0)
        status = read_symbols(handle, reader);
    if (status == 0) {
        read_descriptors(handle, header);
        status = load_tables(handle, reader, task_mask);
    }
    std::string fault;
    if (status == 0 && !SDB_check_tables(handle, &fault))
        status = refuse(handle, fault);
    return status;
}
