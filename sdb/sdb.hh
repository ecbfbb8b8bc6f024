// The design database: one SDB file in memory as a handle of tables, and one handle that is current.
//
// SDB_open reads a file, checks every count, offset and id in it, and gives a handle; a file
// that does not pass is refused with a message. So readers of the tables need no checks of their own: an id
// that a record holds is -1 or below the count of its table, the nodes of an object are consecutive, a net's
// list of nodes ends, and behind the last record of each table stands a sentinel whose words are all -1.
#pragma once

#include "sdb/sdb_format.hh"
#include "sdb/symbols.hh"

#include <cstdint>
#include <string>

/// One table of a handle.
struct SDB_TABLE {
    char name[5];        ///< short name, zero-terminated
    int32_t count;       ///< records
    int32_t record_size; ///< in bytes
    void *data;          ///< growable table of the records, null when it was not loaded
    uint32_t offset;     ///< place in the file
};

/// What tells a file from another and from its own earlier content.
struct SDB_FILE_STATE {
    uint64_t device, inode, size;
    int64_t written, changed; ///< in nanoseconds

    bool operator==(const SDB_FILE_STATE &) const = default;
};

struct SDB_NAME_INDEX; ///< first port, object, net and class of each symbol; built at the first search

struct SDB_HANDLE {
    std::string name; ///< base name of the file
    std::string path; ///< the file as opened
    int32_t writable; ///< SDB_save writes this handle
    SDB_TABLE tables[SDB_TAB_COUNT];
    SYM_TABLE *symbols;
    int32_t version;      ///< 300 or 301
    unsigned char *image; ///< the file up to its tables: the symbols lie in it; null in a new handle
    SDB_NAME_INDEX *name_index;
    SDB_FILE_STATE file; ///< of the file as it was read; zero in a new handle
};

/// The current handle. SDB_setup sets it, and a caller that opens a file may; a caller clears it after
/// SDB_close.
extern SDB_HANDLE *sdb;

/// The current handle's tables and counts; written by SDB_setup and SDB_clear_current alone.
extern SDB_CLASS *class_tab;
extern SDB_PORT *port_tab;
extern SDB_PIN *pin_tab;
extern SDB_OBJ *obj_tab;
extern SDB_NET *net_tab;
extern SDB_NODE *node_tab;
extern int32_t *sobj_tab;
extern int32_t *snet_tab;
extern SYM_TABLE *sym_tab;
extern SDB_PREFIX *prefix_tab;
extern int32_t *xport_tab;
extern int32_t *xpin_tab;
extern int32_t *xnode_tab;
extern int32_t class_count, port_count, pin_count, obj_count, net_count, node_count;
extern int32_t prefix_count, xport_count, xpin_count, xnode_count;

extern int32_t sdb_errnoG;                   ///< status of the last SDB_open: 0, or -1 to -7
extern int32_t sdb_reverseL;                 ///< not 0 while a file of the other byte order is read
extern int32_t sdb_obj_count, sdb_net_count; ///< counts of the last file opened
extern char sdb_hier_dot;                    ///< separator of hierarchical names; written by start-up
extern int32_t SDB_num_errorG;               ///< fatal errors and errors of this layer so far
extern int32_t SDB_num_warningG;             ///< messages without a severity word so far
extern std::FILE *sdb_log_stream;            ///< a second place for this layer's messages; null for none

/// Opens a file. `mode` is a mode of fopen; `task` selects the tables, 0 for all. A mode with no `r` makes a
/// new, empty, writable handle, and the file is first touched by SDB_save. Null after a message; null without
/// one when the file exists and may not be opened. Leaves the current handle and its copies as they are.
SDB_HANDLE *SDB_open(const char *path, const char *mode, int32_t task);

/// Makes a handle current and fills the copies. Returns it; null gives null with nothing done.
SDB_HANDLE *SDB_setup(SDB_HANDLE *handle);

/// Leaves no handle current: `sdb` and the copies are empty.
void SDB_clear_current();

/// Leaves an open handle for later: none is current, and the alias tables are empty, as after SDB_close.
void SDB_set_aside();
/// Takes up a handle that was set aside as SDB_open would read it again, its alias side file included. False
/// when the file is no longer what was read: the handle is then of no use but to SDB_close.
bool SDB_take_up(const SDB_HANDLE *handle);

/// Saves a writable handle when `save` is not 0, then frees it with its alias tables; null is let pass. `sdb`
/// keeps its value, which the caller clears; copies of this handle's tables are emptied. 0, or 1 when saving
/// failed.
int SDB_close(SDB_HANDLE *handle, int32_t save);

/// Writes a writable handle whole. 0, or 1 with errno when that failed: the old file is then still there.
int SDB_save(SDB_HANDLE *handle);

/// Takes the first free table from 16 on; its index, or -1 when none is free.
int32_t SDB_alloc_utab(SDB_HANDLE *handle, const char *name, int32_t count, int32_t record_size);

/// A table of any handle by its index, with the type that belongs to it.
template <class T> T *SDB_table(const SDB_HANDLE *handle, int32_t index) {
    return static_cast<T *>(handle->tables[index].data);
}
inline int32_t SDB_table_count(const SDB_HANDLE *handle, int32_t index) {
    return handle->tables[index].count;
}

/// A message of this layer on the console: "SDB ", "FATAL: " (severity 1), "ERROR: " (2) or nothing (3), the
/// text, and a line end.
void sdb_log_error(int severity, const char *format, ...) __attribute__((format(printf, 2, 3)));

/// A word read from a file of the other byte order, or the word itself when sdb_reverseL is 0.
int32_t SDB_reverse(int32_t word);
/// The bit order of each byte reversed.
uint32_t SDB_reverse_all(uint32_t word);
uint8_t SDB_reverse_byte(uint8_t byte);
/// Turns the records of one table that were read from a file of the other byte order into this machine's.
void SDB_reverse_tab(SDB_HANDLE *handle, int32_t index);

/// A net alias: a name and the name that it stands for. Texts are kept to the exit.
struct ALIAS_NET {
    const char *name;
    const char *target;
};
/// A port and its aliases.
struct ALIAS_PORT {
    const char *port;
    const char **aliases; ///< growable table
};
/// The alias side file of the last file opened, and what it holds; written by SDB_open and ALIAS_add.
extern std::string asn_file_name;
extern ALIAS_NET *alias_net_tab;
extern int32_t alias_net_count;
extern ALIAS_PORT *sdb_port_aliasG;

/// Reads the file `asn_file_name`; a missing file means no aliases.
void ALIAS_init();
/// Adds a pair; ignores an empty text and a pair that is there, and points earlier pairs with the target
/// `name` at `target`.
void ALIAS_add(const char *name, const char *target);
/// Writes the net aliases to `asn_file_name`; removes nothing and writes nothing when there are none. 0, or 1
/// on a fault.
int ALIAS_write();
/// Empties both alias tables and the name.
void ALIAS_free();
