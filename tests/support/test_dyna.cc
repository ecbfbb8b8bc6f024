#include "support/dyna.hh"

#include <gtest/gtest.h>
#include <vector>

namespace {

int compare_ints(const void *a, const void *b) {
    int left = *static_cast<const int *>(a);
    int right = *static_cast<const int *>(b);
    return (left > right) - (left < right);
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

TEST(Dyna, SearchGivesTheFirstOfEqualRows) {
    int *tab = table_of({5, 3, 9, 3, 1});
    auto search = [&](int key) { return DYNA_search(&tab, &key, compare_ints); };
    EXPECT_EQ(search(5), 0);
    EXPECT_EQ(search(3), 1);
    EXPECT_EQ(search(4), -1);
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
