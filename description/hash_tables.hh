// Hash-of-buckets tables: a DYNA table of buckets, each a DYNA table of pointers to records with one hash
// value.
//
// The table is as long as the highest bucket in use; a bucket that nobody used is null. Records come from
// new_record and never move. No insert looks for an earlier record of its name: the lookup takes the first.
#pragma once

#include "support/dyna.hh"

#include <cstdint>
#include <cstring>
#include <deque>

constexpr int32_t HASH_BUCKETS = 63;

/// Sum of the characters, as signed bytes, modulo 63; always 0 to 62.
int32_t hash_key(const char *text);

template <class T> using BUCKET_TAB = T ***;

extern BUCKET_TAB<struct TAP_CELL> TAP_CELL_HASH_TAB;
extern BUCKET_TAB<struct SCAN_CELL> SCAN_CELL_HASH_TAB;
extern BUCKET_TAB<struct BUFFER_CELL> BUFFER_HASH_TAB;
extern BUCKET_TAB<struct SKIP_SIGNAL> SKIP_SIGNAL_HASH_TAB;
extern BUCKET_TAB<const char> TRANS_BUF_HASH_TAB;

/// A zeroed record that lives to the exit at one address.
template <class T> T *new_record() {
    // Never destroyed, so that records and what they point to stay reachable until the very end.
    static auto &records = *new std::deque<T>;
    return &records.emplace_back(T{});
}

inline const char *record_name(const char *record) {
    return record;
}

template <class T> const char *record_name(const T *record) {
    return record->name;
}

/// Appends the record to the bucket of its name.
template <class T> void add_record(BUCKET_TAB<T> &table, T *record) {
    int32_t index = hash_key(record_name(record));
    while (DYNA_count(table) <= index)
        append_row(table, static_cast<T **>(nullptr));
    append_row(table[index], record);
}

/// The first record of that name, or null. A null name has none.
template <class T> T *find_record(BUCKET_TAB<T> table, const char *name) {
    if (name == nullptr)
        return nullptr;
    int32_t index = hash_key(name);
    if (index >= DYNA_count(table))
        return nullptr;
    for (T *record : rows(table[index])) {
        if (std::strcmp(record_name(record), name) == 0)
            return record;
    }
    return nullptr;
}

/// Appends a pointer to each record to the flat list: bucket 0 upwards, each bucket from its first record.
template <class T> void append_all_records(BUCKET_TAB<T> table, T **&list) {
    for (T **bucket : rows(table)) {
        for (T *record : rows(bucket))
            append_row(list, record);
    }
}
