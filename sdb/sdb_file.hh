// The bytes of an SDB file in the making: its start, which places all tables, the symbols (SYM_put), and the
// records of one table after the other.
#pragma once

#include "sdb/sdb.hh"
#include "support/whole_file.hh"

#include <cstdint>
#include <limits>

/// Places of tables are 32-bit words: bytes that a file can have.
constexpr uint64_t SDB_FILE_LIMIT = std::numeric_limits<uint32_t>::max();

/// Gives the first tables of `tables`, which has SDB_TAB_COUNT, the names and record sizes of a new file.
void SDB_name_tables(SDB_TABLE *tables);

/// Bytes of a table's records.
uint64_t SDB_table_bytes(const SDB_TABLE &table);

/// Gives each table with records its place behind `symbol_bytes` of symbols and returns the size of the file.
/// The places hold when it is within SDB_FILE_LIMIT.
uint64_t SDB_place_tables(SDB_TABLE *tables, uint64_t symbol_bytes);

/// The same for a new file whose tables are not there yet, with their counts.
uint64_t SDB_file_size(const uint64_t *counts, uint64_t symbol_bytes);

/// Writes all that lies before the symbols.
void SDB_put_start(whole_file &file, const SDB_TABLE *tables, int32_t version);
