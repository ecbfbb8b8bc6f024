#include "support/fnm.hh"
#include "support/text.hh"
#include "tests/support/scratch.hh"

#include <gtest/gtest.h>
#include <string>

namespace {

std::string shown(const char *text) {
    return text == nullptr ? "-" : text;
}

/// Stands in a scratch folder while it lives.
struct inside {
    std::filesystem::path before = std::filesystem::current_path();
    explicit inside(const scratch_folder &scratch) {
        std::filesystem::current_path(scratch.dir);
    }
    ~inside() {
        std::filesystem::current_path(before);
    }
};

} // namespace

TEST(FileNames, ParseAndMake) {
    struct {
        const char *name;
        const char *parts; ///< volume, path, name, extension
        const char *made;
    } const cases[] = {
        {"dir/chip.sdb", "- dir chip sdb", "dir/chip.sdb"},
        {"a.b.c", "- - a.b c", "a.b.c"},
        {"foo.", "- - foo -", "foo"},
        {"a:b/c.d", "a a:b c d", "a:b/c.d"},
        {"x.y/", "- x.y - -", "x.y/"},
        {"", "- - - -", ""},
    };
    for (const auto &one : cases) {
        FNM_NAME parsed = FNM_parse(one.name);
        EXPECT_EQ(shown(parsed.volume) + " " + shown(parsed.path) + " " + shown(parsed.name) + " " +
                      shown(parsed.ext),
                  one.parts)
            << one.name;
        EXPECT_EQ(FNM_make(&parsed), one.made) << one.name;
    }
}

TEST(FileNames, Home) {
    std::string home = shown(FNM_get_home("~"));
    EXPECT_EQ(shown(FNM_get_home("~/x/y")), home + "/x/y");
    EXPECT_EQ(shown(FNM_get_home("~root/x")), "/root/x");
    EXPECT_EQ(FNM_get_home("~no_such_user_here/x"), nullptr);
    EXPECT_EQ(FNM_break("~root/chip.sdb", "p"), "/root/");
}

TEST(FileNames, LinkChains) {
    scratch_folder scratch;
    scratch.write("sub/real", "");
    ASSERT_EQ(scratch.run("ln -s real sub/one; ln -s sub/one two; ln -s gone dangling").status, 0);
    EXPECT_EQ(FNM_get_link(scratch.path("sub/one").c_str()), scratch.path("sub/real"));
    inside here(scratch);
    EXPECT_EQ(FNM_get_link("two"), "sub/real");
    EXPECT_EQ(FNM_get_link("dangling"), "gone");
    EXPECT_EQ(FNM_get_link("."), std::filesystem::current_path());
    EXPECT_EQ(FNM_get_link(""), std::filesystem::current_path());
}

TEST(SearchPath, DefaultsThenEnvironmentWithSubdirectories) {
    scratch_folder scratch;
    for (const char *file :
         {"lib/l.txt", "designs/d.txt", "v/v.txt", "v/lib/l.txt", "v/lib/vl.txt", "w/w.txt"})
        scratch.write(file, file);
    ASSERT_EQ(scratch.run("ln -s v same_v").status, 0);
    inside here(scratch);
    const char *first = CMD_set_path("v:gone:w:same_v:v", ".", "designs:lib:scanforge_lib");
    EXPECT_EQ(shown(first), "v");
    struct {
        const char *name;
        const char *found;
    } const cases[] = {
        {"l.txt", "./lib/l.txt"},
        {"d.txt", "./designs/d.txt"},
        {"vl.txt", "v/lib/vl.txt"},
        {"w.txt", "w/w.txt"},
        {"lib/vl.txt", "v/lib/vl.txt"},
        {"lib/l.txt", "./lib/l.txt"},
        {"v", "./v"},
    };
    for (const auto &one : cases)
        EXPECT_EQ(shown(FNM_find_input(one.name)), one.found) << one.name;
    EXPECT_EQ(shown(FNM_search("lib/l.txt", 0, FNM_HERE)), "lib/l.txt");
    EXPECT_EQ(FNM_search("lib/l.txt", 0, 7), nullptr);

    // What replaces the list replaces all of it, the working directory and the subdirectories too.
    EXPECT_EQ(shown(CMD_set_path("w", nullptr, nullptr)), "w");
    EXPECT_EQ(FNM_find_input("lib/l.txt"), nullptr);
    EXPECT_EQ(shown(FNM_find_input("w.txt")), "w/w.txt");
}

TEST(SearchPath, NamesPastTheWorkAreaAreFoundNowhere) {
    scratch_folder scratch;
    inside here(scratch);
    CMD_set_path(nullptr, ".", nullptr);
    for (size_t length : {1023U, 1024U, 5000U, 100000U}) {
        EXPECT_EQ(FNM_find_input(std::string(length, 'n')), nullptr);
        EXPECT_EQ(FNM_search(std::string(length, 'n').c_str(), 0, FNM_HERE), nullptr);
    }
    std::string deep; // it exists, yet with the search directory it passes the work area
    for (int i = 0; i < 510; i++)
        deep += "./";
    EXPECT_NE(FNM_search(deep.c_str(), 0, FNM_HERE), nullptr);
    EXPECT_NE(FNM_find_input(deep), nullptr);
    EXPECT_EQ(FNM_find_input(deep + "//"), nullptr);
    EXPECT_EXIT(CMD_set_path(std::string(3000, 'd').c_str(), nullptr, nullptr), testing::ExitedWithCode(255),
                "^FATAL A directory of the search path is longer than 1023 characters: 'd{60}...'.\n$");
}
