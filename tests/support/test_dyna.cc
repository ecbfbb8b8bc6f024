#include "support/dyna.hh"

#include <array>
#include <gtest/gtest.h>
#include <vector>

TEST(Dyna, DeleteClosesUpAndRefusesWhatIsNotThere) {
    struct {
        int index, result;
        std::vector<int> left;
    } const cases[] = {{1, 1, {10, 30}}, {2, 1, {10, 20}}, {-7, 1, {20, 30}}, {3, -1, {10, 20, 30}}};
    for (const auto &one : cases) {
        int *tab = nullptr;
        for (int value : {10, 20, 30})
            append_row(tab, value);
        EXPECT_EQ(DYNA_delete(&tab, one.index), one.result) << one.index;
        EXPECT_EQ(std::vector<int>(rows(tab).begin(), rows(tab).end()), one.left) << one.index;
        DYNA_free(&tab);
    }
}

TEST(DynaDeath, RoomThatCannotBeCounted) {
    using wide = std::array<char, 1 << 20>;
    wide *tab = DYNA_init<wide>();
    EXPECT_EXIT(
        DYNA_resize(&tab, 2147483647), testing::ExitedWithCode(255),
        "%FATAL% DYNA resize failed!\n            .element size: 1048576. .array length: 2147483647.\n\n"
        "\nFATAL 002: Fatal Error - Not enough memory\n");
    DYNA_free(&tab);
}
