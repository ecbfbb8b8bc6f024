// Splitting the loads of control signals into buffer groups.
#include "planning/balance_groups.hh"
#include "planning/planning.hh"
#include "planning/tap_state.hh"
#include "support/run_state.hh"

#include <gtest/gtest.h>
#include <vector>

namespace {

std::vector<int32_t> groups_of(const int32_t *table) {
    return {table, table + DYNA_count(table)};
}

TEST(Groups, AsFewAsPossibleAndEven) {
    const struct {
        int32_t n, size;
        std::vector<int32_t> expected;
    } cases[] = {
        {25, 10, {9, 8, 8}}, {10, 10, {10}}, {11, 10, {6, 5}}, {1, 2, {1}},
        {5, 2, {2, 2, 1}},   {0, 10, {}},    {0, 1, {}}, // nothing to group is no fault of the size
    };
    for (const auto &c : cases)
        EXPECT_EQ(groups_of(split_into_groups(c.n, c.size)), c.expected) << c.n << " by " << c.size;
}

// Group sizes of the clock, boundary clock, shift and first extra pin for 10 cells.
struct GROUP_CASE {
    const char *what;
    int32_t group_size, df_group_size;
    bool df_speed;
    std::vector<int32_t> clock, bclk, shift, extra;
};

TEST(Groups, SizesOfTheTapCellAndTheOption) {
    const GROUP_CASE cases[] = {
        {"no sizes", -1, -1, false, {}, {}, {}, {}},
        {"one size for all", 4, -1, false, {4, 3, 3}, {4, 3, 3}, {4, 3, 3}, {4, 3, 3}},
        {"the fast size is the clocks' alone", -1, 5, false, {5, 5}, {5, 5}, {}, {}},
        {"fast clocks", 4, 5, true, {5, 5}, {4, 3, 3}, {4, 3, 3}, {4, 3, 3}},
        {"the fast size serves all chains", -1, 5, true, {5, 5}, {4, 3, 3}, {5, 5}, {5, 5}},
        {"the common size serves the fast clocks",
         4,
         -1,
         true,
         {4, 3, 3},
         {3, 3, 2, 2},
         {4, 3, 3},
         {4, 3, 3}},
    };
    for (const GROUP_CASE &c : cases) {
        SCOPED_TRACE(c.what);
        rimweave_init();
        TAP_CELL tap{};
        tap.group_size = c.group_size;
        tap.df_group_size = c.df_group_size;
        TAP_CONTR = &tap;
        JTAG_OPTION[OPT_DF_SPEED] = c.df_speed;
        append_row(SCAN_TAB);
        for (CONTROL_SIGNAL signal : {SIG_CLOCK, SIG_BCLK, SIG_SHIFT})
            TREES[signal].need = 10;
        append_row(EXTRA_TREES).need = 10;
        built_bus_balance_group_tab_for_control_signal();
        EXPECT_EQ(groups_of(TREES[SIG_CLOCK].group), c.clock);
        EXPECT_EQ(groups_of(TREES[SIG_BCLK].group), c.bclk);
        EXPECT_EQ(groups_of(TREES[SIG_SHIFT].group), c.shift);
        EXPECT_EQ(groups_of(EXTRA_TREES[0].group), c.extra);
        EXPECT_EQ(TREES[SIG_UPDATE].group, nullptr);
        free_planning_tables();
        JTAG_OPTION[OPT_DF_SPEED] = 0;
        TAP_CONTR = nullptr;
    }
}

} // namespace
