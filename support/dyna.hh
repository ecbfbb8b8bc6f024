// Growable tables: the one container of the records.
//
// A table is one allocation: a header, then the elements. The handle is the address of element 0, so that a
// table is indexed like a plain array. A null handle is a valid empty table for every reader. The functions
// named DYNA_ here are a typed, checked face over one untyped core; elements are plain records that may be
// moved as bytes.
#pragma once

#include <cstdint>
#include <span>
#include <type_traits>

/// The untyped core. Handles are addresses of element 0; only the typed face below calls these.
namespace dyna_core {
void *init(int32_t limit, uint32_t element_size);
int32_t add(void **tab, int32_t n);
int32_t resize(void **tab, int32_t delta);
/// Room for so many elements in all, for tables whose size is known or doubles. Unlike the other ways to grow
/// it has no warning of a table beyond 2 GB: such a table is meant. Ends the run with "Not enough memory".
void reserve(void **tab, int64_t capacity);
int32_t remove(void *tab, int32_t index);
int32_t sort(void *tab, int (*compare)(const void *, const void *));
int32_t search(const void *tab, const void *key, int (*compare)(const void *, const void *));
int32_t release(void *tab);
int32_t count(const void *tab);
uint32_t capacity(const void *tab);
void set_delta(void *tab, uint32_t delta);
} // namespace dyna_core

/// A compare function of the standard library's sort, over two elements.
using DYNA_compare = int (*)(const void *, const void *);

/// Creates a table with room for `limit` elements, zeroed; with `limit` 0 it has room for 16 and grows.
/// Ends the run with "Not enough memory" when the allocation fails.
template <class T> T *DYNA_init(int32_t limit = 0) {
    static_assert(std::is_trivially_copyable_v<T>, "a table moves its rows as bytes");
    return static_cast<T *>(dyna_core::init(limit, sizeof(T)));
}

/// Number of elements in use; 0 for a null handle.
template <class T> int32_t DYNA_count(const T *tab) {
    return dyna_core::count(tab);
}

/// Appends n elements, whose memory is not cleared, and returns the index of the first; -1 for a null handle.
/// A bounded table drops its oldest elements. Pointers to elements are invalid afterwards.
template <class T> int32_t DYNA_add(T **tab, int32_t n) {
    void *handle = *tab;
    int32_t first = dyna_core::add(&handle, n);
    *tab = static_cast<T *>(handle);
    return first;
}

/// Changes the capacity by `delta` and returns the count; -1 for a null handle.
template <class T> int32_t DYNA_resize(T **tab, int32_t delta) {
    void *handle = *tab;
    int32_t count = dyna_core::resize(&handle, delta);
    *tab = static_cast<T *>(handle);
    return count;
}

/// Removes one element, in order; 1, or -1 when `index` is not below the count or the handle is null.
template <class T> int32_t DYNA_delete(T **tab, int32_t index) {
    return dyna_core::remove(*tab, index);
}

/// Sorts and marks the table as sorted; 0, or -1 for a null handle.
template <class T> int32_t DYNA_sort(T **tab, DYNA_compare compare) {
    return dyna_core::sort(*tab, compare);
}

/// Index of the element that compares equal to `key`, or -1. A sorted table is searched by bisection.
template <class T> int32_t DYNA_search(T **tab, const T *key, DYNA_compare compare) {
    return dyna_core::search(*tab, key, compare);
}

/// Releases the table; 0, or -1 for a null handle. The caller clears its handle.
template <class T> int32_t DYNA_free(T **tab) {
    return dyna_core::release(*tab);
}

/// Compares the strings that two elements of a table of strings point to.
int DYNA_scomp(const void *a, const void *b);

/// The rows of a table as a range; a null handle is an empty range. Invalid after the next append.
template <class T> std::span<T> rows(T *tab) {
    return {tab, static_cast<size_t>(DYNA_count(tab))};
}

/// Appends one row with the given value, creating the table when the handle is null. Returns the row.
template <class T> T &append_row(T *&tab, const T &value = T{}) {
    if (tab == nullptr)
        tab = DYNA_init<T>();
    int32_t index = DYNA_add(&tab, 1);
    tab[index] = value;
    return tab[index];
}
