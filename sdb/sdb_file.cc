#include "sdb/sdb_file.hh"

#include "sdb/byte_stream.hh"

namespace {

constexpr uint64_t file_start_size = 12; ///< length of the magic, the magic and the format word

} // namespace

void SDB_name_tables(SDB_TABLE *tables) {
    for (int32_t i = 0; i < SDB_FIXED_TAB_COUNT; i++) {
        std::strncpy(tables[i].name, sdb_table_layout[i].name, sizeof tables[i].name - 1);
        tables[i].record_size = sdb_table_layout[i].record_size;
    }
}

uint64_t SDB_table_bytes(const SDB_TABLE &table) {
    return static_cast<uint64_t>(table.count) * static_cast<uint64_t>(table.record_size);
}

uint64_t SDB_place_tables(SDB_TABLE *tables, uint64_t symbol_bytes) {
    uint64_t position = file_start_size + SDB_HEADER_BLOCK_SIZE + symbol_bytes;
    for (int32_t i = 0; i < SDB_TAB_COUNT; i++) {
        tables[i].offset = tables[i].count == 0 ? 0 : static_cast<uint32_t>(position);
        position += SDB_table_bytes(tables[i]);
    }
    return position;
}

uint64_t SDB_file_size(const uint64_t *counts, uint64_t symbol_bytes) {
    uint64_t size = file_start_size + SDB_HEADER_BLOCK_SIZE + symbol_bytes;
    for (int32_t i = 0; i < SDB_FIXED_TAB_COUNT; i++)
        size += counts[i] * static_cast<uint64_t>(sdb_table_layout[i].record_size);
    return size;
}

void SDB_put_start(whole_file &file, const SDB_TABLE *tables, int32_t version) {
    const uint32_t zeros[17] = {};
    put_word(file, 4);
    put_bytes(file, "SDB", 4);
    put_number(file, SDB_FORMAT_WORD);
    put_bytes(file, zeros, 12); // design name, writable flag and a word that is not used
    for (int32_t i = 0; i < SDB_TAB_COUNT; i++) {
        put_bytes(file, tables[i].name, 4);
        put_number(file, tables[i].count);
        put_number(file, tables[i].record_size);
        put_word(file, 0);
        put_word(file, tables[i].offset);
    }
    put_bytes(file, zeros, 8); // symbol table and stream
    put_number(file, version);
    put_bytes(file, zeros, 68);
}
