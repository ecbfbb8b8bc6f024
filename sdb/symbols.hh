// Symbol tables and hierarchical names.
//
// Every name in an SDB file is a symbol id, an index into the file's symbol table. The path of an instance is
// a row of the prefix table, which chains through its parents up to the top.
#pragma once

#include "sdb/sdb_format.hh"
#include "support/whole_file.hh"

#include <string>
#include <string_view>
#include <vector>

/// A symbol table; its content is private to symbols.cc.
struct SYM_TABLE;

/// Symbol 0 of a new table.
constexpr const char SYM_undefined_text[] = "*UNDEF*";
/// A new table with that symbol.
SYM_TABLE *SYM_init(uint32_t hash_size);
/// The id of `text`, or -1. Of two equal texts in a file the lower id is meant. A null table knows no text.
int32_t SYM_lookup(SYM_TABLE *table, const char *text);
/// Appends a copy of `text`, which the caller knows to be new, and returns its id.
int32_t SYM_install(SYM_TABLE *table, const char *text);
/// The id of `text`, which is installed when it is new.
int32_t SYM_setup(SYM_TABLE *table, std::string_view text);
/// The text of a symbol; null for a negative id or one beyond the last. Valid until SYM_free.
const char *SYM_get(const SYM_TABLE *table, int32_t id);
/// Number of symbols; ids are below it.
int32_t SYM_count(const SYM_TABLE *table);
void SYM_free(SYM_TABLE *table);

/// A symbol block in memory, at a place in these bytes: reads it, with every number checked. The block stays
/// where it is: `bytes` must outlive the table. Null, with `*fault` saying what is wrong (for a block that
/// ends too early or has another magic, an empty fault).
SYM_TABLE *SYM_read(const unsigned char *bytes, size_t size, size_t position, bool swapped,
                    std::string *fault);
/// Writes a symbol block, with enough buckets for its symbols and a balanced tree in each.
void SYM_save(whole_file &file, SYM_TABLE *table);
/// Bytes of the block that SYM_save writes.
uint64_t SYM_saved_size(SYM_TABLE *table);

/// Distinct texts that become the symbols of a file, by id; `text` gives one, which holds no NUL.
struct SYM_TEXTS {
    const void *owner;
    int32_t count;
    std::string_view (*text)(const void *owner, int32_t id);
};

/// Buckets that a block of `count` symbols gets: `buckets`, or more where these are too few.
uint32_t SYM_buckets(int32_t count, uint32_t buckets);
/// Bytes of a block of `count` symbols, whose texts have `text_bytes` characters.
uint64_t SYM_block_size(int32_t count, uint64_t text_bytes, uint32_t buckets);
/// Writes a block, with a balanced tree in each bucket.
void SYM_put(whole_file &file, const SYM_TEXTS &texts, uint32_t buckets);

/// Makes an empty table if `table` is null, binds `symbols` to it, and returns it.
SDB_PREFIX *PREFIX_init(SDB_PREFIX *table, SYM_TABLE *symbols);
/// Forgets the binding and the index of a table that is about to be freed or that has changed.
void PREFIX_release(const SDB_PREFIX *table);
/// The full name of a row, in a static buffer that is valid until the next call. Ends the run with a message
/// when the row has no proper name or when the name is longer than 4096 characters allow.
const char *PREFIX_get(const SDB_PREFIX *table, int32_t row);
/// The row of `name` below the row `parent` (-1 for the top), or -1. `kind` is 1 for an object, 0 for a net,
/// 2 for a row whose target is below -5, and any other number for an object or such a row. The newest row
/// wins.
int32_t PREFIX_lookup(const SDB_PREFIX *table, const char *name, int32_t kind, int32_t parent);
/// The row of the one component `symbol` below the row `parent` (-1 for the top), or -1; kinds as above.
int32_t PREFIX_child(const SDB_PREFIX *table, int32_t symbol, int32_t kind, int32_t parent);
/// All rows whose full name is `name` when any `separator` in it may also belong to a component, as in a
/// Verilog name `\a.b `. Kinds as above; the exact path is among them.
std::vector<int32_t> PREFIX_readings(const SDB_PREFIX *table, std::string_view name, int32_t kind,
                                     char separator);
/// The components of a row's name, outermost first.
std::vector<std::string> PREFIX_components(const SDB_PREFIX *table, int32_t row);
// The marked form of a name has a backslash in front of each separator that belongs to a component, so that
// it has one reading only.
std::string PREFIX_join_marked(const std::vector<std::string> &components, char separator);
std::vector<std::string> PREFIX_split_marked(std::string_view name, char separator);
/// The symbol id of a row's own component, through its redirections. Ends the run with a message on a bad
/// row.
int32_t PREFIX_symbol(const SDB_PREFIX *table, int32_t row);
/// Sets the separator of hierarchical names, '.' at first.
void PREFIX_set_dot(char separator);
