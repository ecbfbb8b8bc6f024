#include "planning/balance_groups.hh"

#include "description/lookups.hh"
#include "planning/port_table.hh"
#include "planning/tap_state.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <string>
#include <unordered_map>

namespace {

[[noreturn]] void fail_grouping(int32_t n, int32_t size) {
    console_printf("ERROR: Can't group %d with max size %d !\n", n, size);
    end_run(0);
}

// The split itself, for a size of 1 or more.
int32_t *even_groups(int32_t n, int32_t size) {
    if (n == 0)
        return nullptr;
    int32_t groups = n / size + (n % size != 0 ? 1 : 0);
    int32_t *table = DYNA_init<int32_t>();
    DYNA_add(&table, groups);
    for (int32_t i = 0; i < groups; ++i)
        table[i] = n / groups + (i < n % groups ? 1 : 0);
    return table;
}

void set_groups(BUFFER_TREE &tree, int32_t *groups) {
    if (tree.group != nullptr)
        DYNA_free(&tree.group);
    tree.group = groups;
}

void group_clocks(CONTROL_TREES &trees, int32_t gs, int32_t dfs) {
    BUFFER_TREE &clock = trees.signals[SIG_CLOCK];
    BUFFER_TREE &bclk = trees.signals[SIG_BCLK];
    if (!option(OPT_DF_SPEED)) {
        int32_t size = gs < 1 && dfs > 0 ? dfs : gs;
        if (size < 1)
            return;
        if (clock.need != 0)
            set_groups(clock, split_into_groups(clock.need, size));
        set_groups(bclk, split_into_groups(bclk.need, size));
        return;
    }
    int32_t size = dfs < 1 ? gs : dfs;
    set_groups(clock, split_into_groups(clock.need, size));
    if (bclk.need > 0 && size < 2)
        fail_grouping(bclk.need, size);
    // Each buffer of the chain drives the next one too, so a boundary clock group is one smaller.
    set_groups(bclk, bclk.need == 0 ? nullptr : even_groups(bclk.need, size - 1));
}

void group_other_signals(CONTROL_TREES &trees, int32_t gs) {
    for (CONTROL_SIGNAL signal :
         {SIG_SHIFT, SIG_UPDATE, SIG_HIGHZ, SIG_RST, SIG_MODE1, SIG_MODE2, SIG_MODE3}) {
        BUFFER_TREE &tree = trees.signals[signal];
        if (signal != SIG_SHIFT || tree.need != 0)
            set_groups(tree, split_into_groups(tree.need, gs));
    }
    for (BUFFER_TREE &tree : rows(trees.extras))
        set_groups(tree, split_into_groups(tree.need, gs));
}

// The record of a buffer under the name that was asked for: a record found through a wild card holds the
// pattern.
BUFFER_CELL *buffer_under_its_name(const char *name) {
    static std::unordered_map<std::string, BUFFER_CELL *> renamed;
    BUFFER_CELL *found = get_buffer(name);
    if (found == nullptr || std::string_view(found->name) == name)
        return found;
    BUFFER_CELL *&copy = renamed[name];
    if (copy == nullptr) {
        copy = new BUFFER_CELL(*found); // lives to the exit, like the record that it copies
        copy->name = name;
    }
    return copy;
}

// An active-low TAP pin is brought to the cells through the inverting buffer.
BUFFER_CELL *buffer_by_pin(const char *tap_field, BUFFER_CELL *plain, BUFFER_CELL *inverting) {
    return is_active_low(tap_field) ? inverting : plain;
}

void choose_buffers(CONTROL_TREES &trees) {
    BUFFER_CELL *signal = buffer_under_its_name(TAP_CONTR->signal_buffer);
    BUFFER_CELL *inverting = buffer_under_its_name(TAP_CONTR->inv_buffer);
    BUFFER_CELL *fast = option(OPT_DF_SPEED) ? buffer_under_its_name(TAP_CONTR->df_signal_buffer) : nullptr;
    // With the fast buffer alone, the other chains are built from it too.
    BUFFER_CELL *plain = signal != nullptr ? signal : fast;
    for (int32_t i = 0; i < SIGNAL_COUNT; ++i) {
        if (i == SIG_BCLK)
            continue;
        const char *field = TAP_CONTR->*CONTROL_SIGNALS[i].tap_field;
        if (field == nullptr)
            continue;
        bool fast_clock = i == SIG_CLOCK && fast != nullptr;
        trees.signals[i].buffer = buffer_by_pin(field, fast_clock ? fast : plain, inverting);
    }
    if (option(OPT_SYNCH))
        trees.signals[SIG_BCLK].buffer = fast != nullptr ? fast : plain;
    for (int32_t i = 0; i < DYNA_count(trees.extras); ++i) {
        const char *field = i < DYNA_count(TAP_CONTR->extras) ? TAP_CONTR->extras[i] : nullptr;
        trees.extras[i].buffer = buffer_by_pin(field, plain, inverting);
    }
}

} // namespace

int32_t *split_into_groups(int32_t n, int32_t size) {
    if (n == 0)
        return nullptr;
    if (size < 2)
        fail_grouping(n, size);
    return even_groups(n, size);
}

void built_bus_balance_group_tab_for_control_signal(CONTROL_TREES &trees) {
    int32_t gs = TAP_CONTR->group_size;
    int32_t dfs = TAP_CONTR->df_group_size;
    if (gs < 1 && dfs < 1)
        return;
    if (DYNA_count(SCAN_TAB) > 0) {
        group_clocks(trees, gs, dfs);
        if (option(OPT_DF_SPEED) && gs < 1)
            gs = dfs;
        if (gs > 0)
            group_other_signals(trees, gs);
    }
    choose_buffers(trees);
}
