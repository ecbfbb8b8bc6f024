// What the files of this folder share of a handle. Private to this folder, and to tests/support/sdb_writer.hh.
#pragma once

#include "sdb/sdb.hh"

#include <string>
#include <vector>

/// First row of each symbol in one table of names, followed as rows are added. Of several rows the lowest is
/// kept.
struct first_row_index {
    static constexpr int32_t none = -1;
    std::vector<int32_t> first; ///< by symbol id
    int32_t indexed = 0;        ///< rows below are in the index
};

struct SDB_NAME_INDEX {
    first_row_index ports;
    first_row_index objs;
    first_row_index nets;
};

/// The handle that SDB_setup made current, or null.
SDB_HANDLE *SDB_current_handle();
/// Fills the copies again when `handle` is the current one.
void SDB_refresh_copies(const SDB_HANDLE *handle);

/// A new, empty table of records with the growth step of its index.
void SDB_new_table(SDB_TABLE *table, int32_t index, int32_t record_size, int64_t capacity);
/// Appends zeroed records and puts the sentinel behind them. Returns the index of the first.
int32_t SDB_grow_table(SDB_HANDLE *handle, int32_t index, int32_t n);
/// Sets a table's count to a lower one.
void SDB_cut_table(SDB_HANDLE *handle, int32_t index, int32_t count);
void SDB_free_table(SDB_TABLE *table);
/// Memory of a handle or of its file; without it the run ends with the message of SDB_open.
void *SDB_handle_memory(size_t size);
/// Frees the handle's tables, symbols and the handle itself, but nothing global.
void SDB_free_handle(SDB_HANDLE *handle);

/// Reads the file into the new handle. 0 or the status of SDB_open; what is wrong with a file's content has
/// then been said, and what the status says has not.
int32_t SDB_read_file(SDB_HANDLE *handle, int descriptor, uint32_t task_mask);

/// True when all ids of the tables are in range and the tables fit each other; else `*fault` says what does
/// not.
bool SDB_check_tables(const SDB_HANDLE *handle, std::string *fault);

/// First row of `symbol` in an index over `count` rows, whose symbols are words at `stride` words apart.
int32_t SDB_first_row(first_row_index &index, int32_t symbol, const int32_t *names, size_t stride,
                      int32_t count, int32_t symbol_count);
