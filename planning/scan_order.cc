// The chain order: the ring of package pins, cut at TDO and laid out as a line that starts there.
#include "planning/planning.hh"

#include "support/text.hh"

#include <algorithm>

CONTR_PIN_ROW *CONTR_PIN = nullptr;

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
            return row.order;
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
            row.order = -1;
            if (keys.step == 0)
                keys.step = seen_tdi ? 1 : -1;
        } else if (is_port(row, GLOBAL_TDI)) {
            row.order = keys.tdi;
            seen_tdi = true;
        } else {
            row.order = keys.take(row);
        }
    }
    for (OPIN_ROW &row : table) {
        if (is_port(row, GLOBAL_TDO))
            break;
        row.order = keys.take(row);
    }
    std::stable_sort(table.begin(), table.end(),
                     [](const OPIN_ROW &a, const OPIN_ROW &b) { return a.order < b.order; });
}

void sort_pin_with_control() {
    int32_t plain = DYNA_count(CONTROL_TAB);
    int32_t count = plain + DYNA_count(CONTROL_OE_TAB);
    CONTR_PIN = DYNA_init<CONTR_PIN_ROW>();
    for (int32_t i = 0; i < count; ++i)
        append_row(CONTR_PIN, {-1, -1, DYNA_init<int32_t>()});
    for (const OPIN_ROW &row : rows(OPIN_TAB)) {
        if (row.control <= 0 && row.oe_control <= 0)
            continue;
        CONTR_PIN_ROW &entry = CONTR_PIN[row.control > 0 ? row.control - 1 : plain + row.oe_control - 1];
        if (DYNA_count(entry.orders) == 0) {
            entry.control = row.control > 0 ? row.control : -1;
            entry.oe_control = row.control > 0 ? -1 : row.oe_control;
        }
        append_row(entry.orders, row.order);
    }
    auto table = rows(CONTR_PIN);
    for (CONTR_PIN_ROW &entry : table)
        std::sort(entry.orders, entry.orders + DYNA_count(entry.orders));
    auto largest = [](const CONTR_PIN_ROW &entry) {
        int32_t ports = DYNA_count(entry.orders);
        return ports > 0 ? entry.orders[ports - 1] : -1;
    };
    std::stable_sort(table.begin(), table.end(),
                     [&](const CONTR_PIN_ROW &a, const CONTR_PIN_ROW &b) { return largest(a) < largest(b); });
}
