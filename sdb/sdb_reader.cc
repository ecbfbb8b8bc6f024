// Reading a file: what lies in front of the tables into one image, in which the texts of the symbols stay,
// and the records of each table straight to their place. Every bound is checked.
//
// The layout is magic, format word, header block, symbol block, and the tables at the places that their
// descriptors give. The first bytes tell the byte order and may be a marker of the machine that wrote the
// file.
//
// The file is read and not mapped: another program that cuts off a file while it is mapped would end the run
// by a signal in the midst of any access, and here it gives a short read, which is told as such.
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

/// A file that is read in pieces.
struct open_file {
    int descriptor;
    uint64_t size;
};

/// Reads a piece that lies in the file; false when it cannot be read, or has been cut off meanwhile.
bool read_piece(const open_file &file, uint64_t offset, void *bytes, size_t size) {
    for (size_t got = 0; got < size;) {
        ssize_t n = pread(file.descriptor, static_cast<char *>(bytes) + got, size - got,
                          static_cast<off_t>(offset + got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        got += static_cast<size_t>(n);
    }
    return true;
}

/// Reads the first `size` bytes of the file into the handle's image.
bool read_image(SDB_HANDLE *handle, const open_file &file, uint64_t size) {
    std::free(handle->image);
    handle->image = static_cast<unsigned char *>(SDB_handle_memory(std::max<size_t>(size, 1)));
    return read_piece(file, 0, handle->image, size);
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

void read_descriptors(SDB_TABLE (&tables)[SDB_TAB_COUNT], byte_reader header) {
    header.position = descriptors_at;
    for (SDB_TABLE &table : tables) {
        static_assert(descriptor_size == 20);
        std::memcpy(table.name, header.take(4), 4);
        table.name[4] = '\0';
        table.count = header.number();
        table.record_size = header.number();
        header.word(); // a stored pointer
        table.offset = header.word();
    }
}

/// 0 when a table's records lie in the file, or the status: a fault of the descriptor, or a file that ends
/// early.
int32_t check_descriptor(const SDB_HANDLE *handle, int32_t index, const open_file &file) {
    const SDB_TABLE &table = handle->tables[index];
    int32_t expected = sdb_table_layout[index].record_size;
    std::string where = std::string("table ") + sdb_table_layout[index].name + ": ";
    if (table.count < 0)
        return refuse(handle, where + "the count " + std::to_string(table.count) + " is negative");
    if (index <= SDB_PROP_TAB ? table.record_size != expected : table.record_size < 0)
        return refuse(handle, where + "the record size " + std::to_string(table.record_size) + " is not " +
                                  std::to_string(expected));
    uint64_t bytes = static_cast<uint64_t>(table.count) * static_cast<uint64_t>(table.record_size);
    return table.offset <= file.size && bytes <= file.size - table.offset ? 0 : status_read_error;
}

/// Reads one table and puts the sentinel behind its last record.
int32_t load_table(SDB_HANDLE *handle, int32_t index, const open_file &file, bool swapped) {
    SDB_TABLE &table = handle->tables[index];
    int32_t count = table.count;
    if (int32_t status = count == 0 ? 0 : check_descriptor(handle, index, file); status != 0) {
        table.count = 0;
        return status;
    }
    if (count == 0 || table.record_size == 0) {
        table.record_size = sdb_table_layout[index].record_size;
        count = 0;
        if (table.record_size == 0) {
            table.count = 0;
            return 0;
        }
    }
    SDB_new_table(&table, index, table.record_size, int64_t{count} + 1);
    dyna_core::add(&table.data, count);
    size_t bytes = static_cast<size_t>(count) * static_cast<size_t>(table.record_size);
    if (!read_piece(file, table.offset, table.data, bytes))
        return status_read_error;
    table.count = count;
    std::memset(static_cast<char *>(table.data) + bytes, 0xFF, static_cast<size_t>(table.record_size));
    if (swapped)
        SDB_reverse_tab(handle, index);
    return 0;
}

int32_t load_tables(SDB_HANDLE *handle, const open_file &file, bool swapped, uint32_t task_mask) {
    for (int32_t i = 0; i < SDB_TAB_COUNT; i++) {
        SDB_TABLE &table = handle->tables[i];
        int32_t status = 0;
        if ((task_mask >> i & 1U) != 0) {
            status = load_table(handle, i, file, swapped);
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

/// The reader stands at the symbol block in the image. Tables that overlap the block may have cut the image
/// short: then it is read whole.
int32_t read_symbols(SDB_HANDLE *handle, const open_file &file, byte_reader reader) {
    std::string fault;
    handle->symbols = SYM_read(reader.bytes, reader.size, reader.position, reader.swapped, &fault);
    if (handle->symbols == nullptr && fault.empty() && reader.size < file.size) {
        if (!read_image(handle, file, file.size))
            return status_read_error;
        handle->symbols = SYM_read(handle->image, file.size, reader.position, reader.swapped, &fault);
    }
    if (handle->symbols != nullptr)
        return 0;
    return fault.empty() ? status_read_error : refuse(handle, fault);
}

/// Bytes in front of the first table that is loaded; the whole file where its start cannot be read.
uint64_t size_before_tables(const open_file &file, uint32_t task_mask) {
    unsigned char start[1024];
    auto size = static_cast<size_t>(std::min<uint64_t>(file.size, sizeof start));
    if (!read_piece(file, 0, start, size))
        return file.size;
    byte_reader reader{start, size};
    const unsigned char *block = read_start(reader) == 0 ? reader.take(SDB_HEADER_BLOCK_SIZE) : nullptr;
    if (block == nullptr)
        return file.size;
    SDB_TABLE tables[SDB_TAB_COUNT];
    read_descriptors(tables, byte_reader{block, SDB_HEADER_BLOCK_SIZE, 0, reader.swapped});
    uint64_t end = file.size;
    for (int32_t i = 0; i < SDB_TAB_COUNT; i++)
        if ((task_mask >> i & 1U) != 0 && tables[i].count > 0 && tables[i].offset > reader.position)
            end = std::min<uint64_t>(end, tables[i].offset);
    return end;
}

/// Reads all but the tables out of the first `size` bytes.
int32_t read_front(SDB_HANDLE *handle, const open_file &file, uint64_t size, bool *swapped) {
    if (!read_image(handle, file, size))
        return status_read_error;
    byte_reader reader{handle->image, size};
    int32_t status = read_start(reader);
    if (status != 0)
        return status;
    *swapped = reader.swapped;
    sdb_reverseL = reader.swapped ? 1 : 0;
    const unsigned char *block = reader.take(SDB_HEADER_BLOCK_SIZE);
    if (block == nullptr)
        return status_read_error;
    byte_reader header{block, SDB_HEADER_BLOCK_SIZE, 0, reader.swapped};
    status = read_version(handle, header);
    if (status == 0)
        read_descriptors(handle->tables, header);
    return status == 0 ? read_symbols(handle, file, reader) : status;
}

} // namespace

int32_t SDB_read_file(SDB_HANDLE *handle, int descriptor, uint32_t task_mask) {
    struct stat file_status {};
    if (fstat(descriptor, &file_status) != 0 || !S_ISREG(file_status.st_mode))
        return status_read_error;
    open_file file{descriptor, static_cast<uint64_t>(file_status.st_size)};
    bool swapped = false;
    uint64_t front = size_before_tables(file, task_mask);
    int32_t status = read_front(handle, file, front, &swapped);
    if (status == 0)
        status = load_tables(handle, file, swapped, task_mask);
    std::string fault;
    if (status == 0 && !SDB_check_tables(handle, &fault))
        status = refuse(handle, fault);
    return status;
}
