// Rows that are found by a hash, all in one block of memory. A set with a node for each row takes most of the
// time of reading a table of a hundred thousand names.
#pragma once

#include <cstddef>
#include <vector>

/// ROW is small and free as ROW{}; `is_free` and `hash_of` are static functions of TRAITS that tell of a row.
template <class ROW, class TRAITS> class flat_table {
  public:
    /// The row that `is_it` holds for, or the free one where it belongs: valid until the next call of `add`.
    /// Null in a table without rows.
    template <class IS_IT> const ROW *find(size_t hash, IS_IT is_it) const {
        return rows.empty() ? nullptr : &rows[place_of(hash, is_it)];
    }
    /// Adds a row unless one is there that `is_it` holds for. Gives the row of the table, and whether it is
    /// new.
    template <class IS_IT, class MAKE> const ROW &add(size_t hash, IS_IT is_it, MAKE make) {
        if (2 * count >= rows.size())
            grow();
        ROW &row = rows[place_of(hash, is_it)];
        if (TRAITS::is_free(row)) {
            row = make();
            count++;
        }
        return row;
    }
    size_t size() const {
        return count;
    }

  private:
    template <class IS_IT> size_t place_of(size_t hash, IS_IT is_it) const {
        size_t mask = rows.size() - 1;
        size_t place = hash & mask;
        while (!TRAITS::is_free(rows[place]) && !is_it(rows[place]))
            place = (place + 1) & mask;
        return place;
    }
    void grow() {
        constexpr size_t first_size = 16;
        std::vector<ROW> before(rows.empty() ? first_size : 2 * rows.size());
        before.swap(rows);
        for (const ROW &row : before)
            if (!TRAITS::is_free(row))
                rows[place_of(TRAITS::hash_of(row), [](const ROW &) { return false; })] = row;
    }

    std::vector<ROW> rows; // a power of two, at most half of it taken
    size_t count = 0;
};
