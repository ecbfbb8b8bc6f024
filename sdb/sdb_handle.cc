// Opening, selecting and closing a handle; messages of the layer.
#include "sdb/sdb.hh"

#include "sdb/handle_internal.hh"
#include "support/console.hh"
#include "support/dyna.hh"
#include "support/fnm.hh"
#include "support/large_pages.hh"
#include "support/message.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

SDB_HANDLE *sdb = nullptr;
SDB_CLASS *class_tab = nullptr;
SDB_PORT *port_tab = nullptr;
SDB_PIN *pin_tab = nullptr;
SDB_OBJ *obj_tab = nullptr;
SDB_NET *net_tab = nullptr;
SDB_NODE *node_tab = nullptr;
int32_t *sobj_tab = nullptr;
int32_t *snet_tab = nullptr;
SYM_TABLE *sym_tab = nullptr;
SDB_PREFIX *prefix_tab = nullptr;
int32_t *xport_tab = nullptr;
int32_t *xpin_tab = nullptr;
int32_t *xnode_tab = nullptr;
int32_t class_count, port_count, pin_count, obj_count, net_count, node_count;
int32_t prefix_count, xport_count, xpin_count, xnode_count;

int32_t sdb_errnoG = 0;
int32_t sdb_obj_count = 0;
int32_t sdb_net_count = 0;
char sdb_hier_dot = '.';
int32_t SDB_num_errorG = 0;
int32_t SDB_num_warningG = 0;
std::FILE *sdb_log_stream = nullptr;

namespace {

SDB_HANDLE *current_handle = nullptr;

constexpr off_t least_file_size = SDB_HEADER_BLOCK_SIZE;

/// Tables that each task loads; bit i selects table i. Index 0 is task -1.
constexpr uint32_t task_load[] = {0xFFFF, 0xFFFF, 0xFC1F, 0xFC1F, 0x803, 0xFFFF};

uint32_t task_mask(int32_t task) {
    return task >= -1 && task <= 4 ? task_load[task + 1] : task_load[0];
}

void report_status(int32_t status, const char *path, int32_t version) {
    switch (status) {
    case -1:
        sdb_log_error(3, "(FA-04-0007) The sdb file size of '%s' is zero.", path);
        break;
    case -2:
    case -3:
        sdb_log_error(
            2,
            "(FA-04-0009) Obsolete SDB version (%s%ld). Please recompile your netlist with the latest "
            "kalmverin/kalmvhin/kalmflat.",
            "", static_cast<long>(version));
        break;
    case -4:
        sdb_log_error(
            2,
            "(FA-04-0010) Newer SDB version (%s%ld). Please recompile your netlist with proper version of "
            "kalmverin/kalmvhin/kalmflat.",
            "", static_cast<long>(version));
        break;
    case -6:
        sdb_log_error(
            2,
            "(FA-01-0008) The size of the sdb file '%s' is smaller than the minimum size. Please check the "
            "sdb file.",
            path);
        break;
    default:
        sdb_log_error(2, "(FA-01-0005) Failed to read the sdb file.\n");
    }
}

SDB_HANDLE *fail_open(int32_t status, const char *path, int32_t version) {
    sdb_errnoG = status;
    sdb_reverseL = 0;
    report_status(status, path, version);
    return nullptr;
}

SDB_HANDLE *new_handle(const char *path) {
    auto *handle = new (SDB_handle_memory(sizeof(SDB_HANDLE))) SDB_HANDLE{};
    handle->path = path;
    handle->name = FNM_break(path, "b");
    handle->name_index = new SDB_NAME_INDEX{};
    return handle;
}

/// Takes the handle's side file as the current one.
void take_side_file(const SDB_HANDLE *handle, bool read_aliases) {
    ALIAS_free();
    asn_file_name = FNM_build(nullptr, handle->path.c_str(), "asn");
    if (read_aliases)
        ALIAS_init();
    sdb_obj_count = SDB_table_count(handle, SDB_OBJ_TAB);
    sdb_net_count = SDB_table_count(handle, SDB_NET_TAB);
}

/// Binds the prefix rows to the symbols and takes the handle's side file as the current one.
SDB_HANDLE *finish_open(SDB_HANDLE *handle, bool read_aliases) {
    void *&prefixes = handle->tables[SDB_PREFIX_TAB].data;
    if (prefixes != nullptr)
        PREFIX_init(static_cast<SDB_PREFIX *>(prefixes), handle->symbols);
    take_side_file(handle, read_aliases);
    return handle;
}

SDB_FILE_STATE file_state(const struct stat &status) {
    auto nanoseconds = [](const timespec &time) {
        return static_cast<int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
    };
    return {status.st_dev, status.st_ino, static_cast<uint64_t>(status.st_size), nanoseconds(status.st_mtim),
            nanoseconds(status.st_ctim)};
}

SDB_HANDLE *create_handle(const char *path, uint32_t mask) {
    if (!can_write_file(path))
        return nullptr;
    SDB_HANDLE *handle = new_handle(path);
    handle->writable = 1;
    handle->version = SDB_VERSION;
    handle->symbols = SYM_init(SYM_NEW_HASH_SIZE);
    for (int32_t i = 0; i < SDB_FIXED_TAB_COUNT; i++) {
        const SDB_TABLE_LAYOUT &layout = sdb_table_layout[i];
        std::strncpy(handle->tables[i].name, layout.name, sizeof handle->tables[i].name - 1);
        if ((mask & 1U << i) != 0 && layout.record_size > 0)
            SDB_new_table(&handle->tables[i], i, layout.record_size, layout.capacity);
    }
    return finish_open(handle, false);
}

SDB_HANDLE *read_handle(const char *path, const char *mode, uint32_t mask) {
    bool writable = std::strpbrk(mode, "w+") != nullptr;
    int descriptor = writable && access(path, W_OK) != 0 ? -1 : open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    SDB_HANDLE *handle = new_handle(path);
    if (struct stat file{}; fstat(descriptor, &file) == 0)
        handle->file = file_state(file);
    int32_t status = SDB_read_file(handle, descriptor, mask);
    close(descriptor);
    sdb_reverseL = 0;
    if (status != 0) {
        int32_t version = handle->version;
        SDB_free_handle(handle);
        return fail_open(status, path, version);
    }
    handle->writable = writable ? 1 : 0;
    return finish_open(handle, true);
}

template <class T> void copy_table(const SDB_HANDLE *handle, int32_t index, T *&table, int32_t &count) {
    table = handle == nullptr ? nullptr : SDB_table<T>(handle, index);
    count = table == nullptr ? 0 : SDB_table_count(handle, index);
}

void fill_copies(const SDB_HANDLE *handle) {
    int32_t name_count = 0; // counted as objects and nets are
    copy_table(handle, SDB_CLASS_TAB, class_tab, class_count);
    copy_table(handle, SDB_PORT_TAB, port_tab, port_count);
    copy_table(handle, SDB_PIN_TAB, pin_tab, pin_count);
    copy_table(handle, SDB_OBJ_TAB, obj_tab, obj_count);
    copy_table(handle, SDB_NET_TAB, net_tab, net_count);
    copy_table(handle, SDB_NODE_TAB, node_tab, node_count);
    copy_table(handle, SDB_SOBJ_TAB, sobj_tab, name_count);
    copy_table(handle, SDB_SNET_TAB, snet_tab, name_count);
    copy_table(handle, SDB_PREFIX_TAB, prefix_tab, prefix_count);
    copy_table(handle, SDB_XPORT_TAB, xport_tab, xport_count);
    copy_table(handle, SDB_XPIN_TAB, xpin_tab, xpin_count);
    copy_table(handle, SDB_XNODE_TAB, xnode_tab, xnode_count);
    sym_tab = handle == nullptr ? nullptr : handle->symbols;
}

} // namespace

SDB_HANDLE *SDB_current_handle() {
    return current_handle;
}

void SDB_refresh_copies(const SDB_HANDLE *handle) {
    if (handle == current_handle)
        fill_copies(handle);
}

void *SDB_handle_memory(size_t size) {
    void *memory = std::malloc(size);
    if (memory != nullptr) {
        use_large_pages(memory, size);
        return memory;
    }
    put_text(stdout,
             "SDB FATAL: (FA-01-0002) Ran out of memory in the function \"SDB_open()\". Please check the "
             "system swap space and retry the program again.\n");
    MSG_fatal_error(MSG_NO_MEMORY);
}

SDB_HANDLE *SDB_open(const char *path, const char *mode, int32_t task) {
    sdb_errnoG = 0;
    sdb_reverseL = 0;
    struct stat status {};
    if (*mode != 'w') {
        if (stat(path, &status) != 0)
            return fail_open(-7, path, 0);
        if (status.st_size < least_file_size)
            return fail_open(-6, path, 0);
    }
    return std::strchr(mode, 'r') == nullptr ? create_handle(path, task_mask(task))
                                             : read_handle(path, mode, task_mask(task));
}

SDB_HANDLE *SDB_setup(SDB_HANDLE *handle) {
    if (handle == nullptr)
        return nullptr;
    sdb = handle;
    current_handle = handle;
    fill_copies(handle);
    return handle;
}

void SDB_clear_current() {
    sdb = nullptr;
    current_handle = nullptr;
    fill_copies(nullptr);
}

void SDB_set_aside() {
    SDB_clear_current();
    ALIAS_free();
}

bool SDB_take_up(const SDB_HANDLE *handle) {
    struct stat status {};
    if (stat(handle->path.c_str(), &status) != 0 || file_state(status) != handle->file)
        return false;
    sdb_errnoG = 0;
    take_side_file(handle, true);
    return true;
}

int SDB_close(SDB_HANDLE *handle, int32_t save) {
    if (handle == nullptr)
        return 0;
    int result = save != 0 && handle->writable != 0 ? SDB_save(handle) : 0;
    if (handle == current_handle) {
        current_handle = nullptr;
        fill_copies(nullptr);
    }
    SDB_free_handle(handle);
    ALIAS_free();
    return result;
}

void SDB_new_table(SDB_TABLE *table, int32_t index, int32_t record_size, int64_t capacity) {
    table->record_size = record_size;
    table->count = 0;
    table->data = dyna_core::init(0, static_cast<uint32_t>(record_size));
    dyna_core::reserve(&table->data, capacity);
    if (index < SDB_FIXED_TAB_COUNT)
        dyna_core::set_delta(table->data, static_cast<uint32_t>(sdb_table_layout[index].growth));
}

// Room doubles, since a table of millions of records would be moved too often by its fixed step.
int32_t SDB_grow_table(SDB_HANDLE *handle, int32_t index, int32_t n) {
    SDB_TABLE &table = handle->tables[index];
    if (table.data == nullptr)
        SDB_new_table(&table, index, sdb_table_layout[index].record_size, sdb_table_layout[index].capacity);
    void *before = table.data;
    int64_t need = int64_t{table.count} + n + 1;
    int64_t room = dyna_core::capacity(table.data);
    if (need > room)
        dyna_core::reserve(&table.data, std::max(need, std::min<int64_t>(2 * room, INT32_MAX)));
    int32_t first = dyna_core::add(&table.data, n);
    table.count = first + n;
    auto size = static_cast<size_t>(table.record_size);
    char *records = static_cast<char *>(table.data) + static_cast<size_t>(first) * size;
    std::memset(records, 0, static_cast<size_t>(n) * size);
    std::memset(records + static_cast<size_t>(n) * size, 0xFF, size);
    if (index == SDB_PREFIX_TAB) {
        PREFIX_release(static_cast<const SDB_PREFIX *>(before));
        PREFIX_init(static_cast<SDB_PREFIX *>(table.data), handle->symbols);
    }
    SDB_refresh_copies(handle);
    return first;
}

void SDB_cut_table(SDB_HANDLE *handle, int32_t index, int32_t count) {
    SDB_TABLE &table = handle->tables[index];
    if (count >= table.count)
        return;
    int32_t surplus = table.count - count;
    for (int32_t i = 0; i < surplus; i++)
        dyna_core::remove(table.data, table.count - 1 - i);
    table.count = count;
    auto size = static_cast<size_t>(table.record_size);
    std::memset(static_cast<char *>(table.data) + static_cast<size_t>(count) * size, 0xFF, size);
    if (index == SDB_PREFIX_TAB)
        PREFIX_init(static_cast<SDB_PREFIX *>(table.data), handle->symbols);
    SDB_refresh_copies(handle);
}

void SDB_free_table(SDB_TABLE *table) {
    if (table->data != nullptr)
        dyna_core::release(table->data);
    table->data = nullptr;
    table->count = 0;
}

void SDB_free_handle(SDB_HANDLE *handle) {
    if (handle->tables[SDB_PREFIX_TAB].data != nullptr)
        PREFIX_release(SDB_table<SDB_PREFIX>(handle, SDB_PREFIX_TAB));
    for (SDB_TABLE &table : handle->tables)
        SDB_free_table(&table);
    SYM_free(handle->symbols);
    std::free(handle->image);
    delete handle->name_index;
    std::destroy_at(handle);
    std::free(handle);
}

int32_t SDB_alloc_utab(SDB_HANDLE *handle, const char *name, int32_t count, int32_t record_size) {
    for (int32_t i = SDB_FIRST_USER_TAB; i < SDB_TAB_COUNT; i++) {
        SDB_TABLE &table = handle->tables[i];
        if (table.name[0] != '\0')
            continue;
        std::strncpy(table.name, name, sizeof table.name - 1);
        SDB_new_table(&table, i, record_size, count + 1);
        return i;
    }
    return -1;
}

void sdb_log_error(int severity, const char *format, ...) {
    constexpr const char *severity_words[] = {"FATAL: ", "ERROR: ", ""};
    if (severity < 1 || severity > 3) {
        console_printf(
            "SDB FATAL: (FA-01-0001) SYSPNIK. Panic! Incorrect internal state. The system has to exit!\n");
        return;
    }
    (severity == 3 ? SDB_num_warningG : SDB_num_errorG)++;
    va_list values;
    va_start(values, format);
    std::string text = severity_words[severity - 1] + format_list(format, values);
    va_end(values);
    console_printf("SDB %s\n", text.c_str());
    if (sdb_log_stream != nullptr)
        put_text(sdb_log_stream, "SDB " + text + "\n");
}
