#include "support/dyna.hh"

#include <gtest/gtest.h>
#include <vector>

namespace {

int compare_ints(const void *a, const void *b) {
    int left = *static_cast<const int *>(a);
    int right = *static_cast<const int *>(b);
    return (left > right) - (left < right);
}

struct keyed {
    int key;
    int place;
};

int compare_keyed(const void *a, const void *b) {
    return static_cast<const keyed *>(a)->key - static_cast<const keyed *>(b)->key;
}

int *table_of(const std::vector<int> &values) {
    int *tab = nullptr;
    for (int value : values)
        append_row(tab, value);
    return tab;
}

std::vector<int> values_of(int *tab) {
    return {rows(tab).begin(), rows(tab).end()};
}

} // namespace

TEST(Dyna, DeleteClosesUpAndRefusesWhatIsNotThere) {
    struct {
        int index;
        int result;
        std::vector<int> left;
    } const cases[] = {
        {1, 1, {10, 30}},
        {2, 1, {10, 20}},
        {-7, 1, {20, 30}},
        {3, -1, {10, 20, 30}},
    };
    for (const auto &one : cases) {
        int *tab = table_of({10, 20, 30});
        EXPECT_EQ(DYNA_delete(&tab, one.index), one.result) << one.index;
        EXPECT_EQ(values_of(tab), one.left) << one.index;
        DYNA_free(&tab);
    }
}

TEST(Dyna, SearchBeforeAndAfterSorting) {
    int *tab = table_of({5, 3, 9, 3, 1});
    auto search = [&](int key) { return DYNA_search(&tab, &key, compare_ints); };
    EXPECT_EQ(search(5), 0);
    EXPECT_EQ(search(3), 1);
    EXPECT_EQ(search(4), -1);
    DYNA_sort(&tab, compare_ints);
    EXPECT_EQ(values_of(tab), (std::vector<int>{1, 3, 3, 5, 9}));
    EXPECT_EQ(search(1), 0);
    EXPECT_EQ(search(3), 1);
    EXPECT_EQ(search(9), 4);
    EXPECT_EQ(search(10), -1);
    append_row(tab, 0); // out of order: bisection would miss it
    EXPECT_EQ(search(0), 5);
    DYNA_free(&tab);
}

TEST(Dyna, SortKeepsEqualRowsInOrder) {
    keyed *tab = nullptr;
    for (int i = 0; i < 300; i++)
        append_row(tab, keyed{i % 3, i});
    DYNA_sort(&tab, compare_keyed);
    for (int i = 1; i < 300; i++)
        EXPECT_LT(tab[i - 1].key * 1000 + tab[i - 1].place, tab[i].key * 1000 + tab[i].place);
    DYNA_free(&tab);
}

TEST(DynaDeath, RoomThatCannotBeCounted) {
    struct wide {
        char bytes[1 << 20];
    };
    wide *tab = DYNA_init<wide>(1);
    EXPECT_EXIT(
        DYNA_resize(&tab, 2147483647), testing::ExitedWithCode(255),
        "%FATAL% DYNA resize failed!\n            .element size: 1048576. .array length: 2147483647.\n\n"
        "\nFATAL 002: Fatal Error - Not enough memory\n");
    DYNA_free(&tab);
}
