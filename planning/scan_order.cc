// The chain order: the ring of package pins, cut at TDO and laid out as a line that starts there.
#include "planning/planning.hh"

#include "support/text.hh"

#include <algorithm>

namespace {

/// Sort keys. They grow with the design only where it has more cells than the usual keys have room for.
struct KEYS {
    int32_t low = 0;      ///< next key of a walk that goes up
    int32_t high;         ///< next key of a walk that goes down
    int32_t tdi, no_cell; ///< TDI behind TDO, and rows without a cell
    int32_t step = 0;     ///< 0 until TDO has been met, then 1 upward or -1 downward

    explicit KEYS(int32_t cells) : high(std::max(9998, cells)), tdi(high + 1), no_cell(high + 2) {}
    /// The key of a row that is neither TDO nor a TDI behind it.
    int32_t take(const OPIN_ROW &row) {
        if (row.scan_cell == nullptr)
            return no_cell;
        if (step == 0)
            return row.sort_key;
        return step > 0 ? low++ : high--;
    }
};

bool is_port(const OPIN_ROW &row, const char *global_name) {
    return global_name != nullptr && same_text(row.port_name, global_name);
}

} // namespace

void arrange_opin_tab_from_tdo() {
    auto table = rows(OPIN_TAB);
    KEYS keys(static_cast<int32_t>(std::count_if(
        table.begin(), table.end(), [](const OPIN_ROW &row) { return row.scan_cell != nullptr; })));
    bool seen_tdi = false;
    for (OPIN_ROW &row : table) {
        if (is_port(row, GLOBAL_TDO)) {
            row.sort_key = -1;
            if (keys.step == 0)
                keys.step = seen_tdi ? 1 : -1;
        } else if (is_port(row, GLOBAL_TDI)) {
            row.sort_key = keys.tdi;
            seen_tdi = true;
        } else {
            row.sort_key = keys.take(row);
        }
    }
    for (OPIN_ROW &row : table) {
        if (is_port(row, GLOBAL_TDO))
            break;
        row.sort_key = keys.take(row);
    }
    std::stable_sort(table.begin(), table.end(),
                     [](const OPIN_ROW &a, const OPIN_ROW &b) { return a.sort_key < b.sort_key; });
}
