// Names to ids and back, plain and hierarchical, and the alias side file.
#include "tests/sdb/small_design.hh"

#include "support/dyna.hh"

#include <gtest/gtest.h>

TEST(names, lookups) {
    scratch_folder scratch;
    small_design_bytes(scratch);
    open_design design(scratch.path("small.sdb"));
    struct {
        const char *name;
        int32_t obj;
    } const cases[] = {
        {"u1", 4},       {"top_pad.u_buf", 3}, {"u_buf", -1},
        {"top_pad", -1}, {"top_pad.mid", -1},  {"top_pad.u1", -1},
        {"GND_src", 0},  {"nowhere", -1},      {"top_pad.u_buf.", -1},
        {".", -1},       {"x.y.z", -1},        {"", -1},
        {nullptr, -1},
    };
    for (const auto &one : cases)
        EXPECT_EQ(SDB_lookup_obj(one.name), one.obj) << (one.name == nullptr ? "null" : one.name);
    EXPECT_STREQ(SDB_obj_name(design.handle, 3), "top_pad.u_buf");
    EXPECT_STREQ(SDB_net_name(design.handle, 3), "top_pad.mid");
    EXPECT_STREQ(SDB_obj_name(design.handle, -1), "*UNDEF*");
    EXPECT_STREQ(SDB_net_name(design.handle, -1), "*UNDEF*");
    EXPECT_EQ(SDB_obj_name(design.handle, 99), nullptr);

    int32_t node = SDB_nl_search_node("top_pad.u_buf", "Z");
    EXPECT_EQ(node_tab[node].obj, 3);
    EXPECT_STREQ(SDB_net_name(design.handle, node_tab[node].net), "top_pad.mid");
    EXPECT_EQ(SDB_nl_search_node("u1", "NOPIN"), -2);
    EXPECT_EQ(SDB_nl_search_node("u1", "GND"), -1) << "a symbol that is no pin of u1";
    EXPECT_EQ(SDB_nl_search_node("u1", nullptr), -1);
    EXPECT_EQ(SDB_nl_search_node("nowhere", "A"), -1);
    EXPECT_EQ(SDB_nl_search_node("*", "in"), port_tab[SDB_nl_search_port("in")].node);
    EXPECT_EQ(SDB_nl_search_node(nullptr, "io"), port_tab[1].node);
    EXPECT_EQ(SDB_nl_search_node("*", "u1"), -1);
}

TEST(names, a_design_set_aside_is_taken_up_until_its_file_changes) {
    scratch_folder scratch;
    std::string bytes = small_design_bytes(scratch), path = scratch.path("small.sdb");
    scratch.write("small.asn", "ASSIGN a b\n");
    open_design design(path);
    SDB_set_aside();
    EXPECT_EQ(obj_tab, nullptr);
    EXPECT_EQ(alias_net_count, 0);
    ASSERT_TRUE(SDB_take_up(design.handle));
    SDB_setup(design.handle);
    EXPECT_EQ(SDB_lookup_obj("top_pad.u_buf"), 3);
    EXPECT_EQ(alias_net_count, 1);
    scratch.write("other.sdb", bytes);
    std::filesystem::rename(scratch.path("other.sdb"), path);
    EXPECT_FALSE(SDB_take_up(design.handle));
}

TEST(names, class_of_a_parent) {
    scratch_folder scratch;
    SDB_HANDLE *design = build_small_design(scratch.path("small.sdb"));
    int32_t row = SDB_add_prefix(design, "gone", -1);
    SDB_table<SDB_PREFIX>(design, SDB_PREFIX_TAB)[row].target =
        SDB_ENTRY_BASE - SDB_plain_name(design, "GONE_MODULE");
    int32_t bare = SDB_add_prefix(design, "bare", -1);
    SDB_close(design, 1);
    open_design read(scratch.path("small.sdb"));
    int32_t own = SDB_obj_prefix_row(read.handle, 3), parent = prefix_tab[own].parent;
    EXPECT_STREQ(SDB_prefix_instance_name(read.handle, parent), "top_pad");
    EXPECT_STREQ(SDB_prefix_class_name(read.handle, parent), "PADS");
    EXPECT_EQ(SDB_obj_prefix_row(read.handle, 4), -1);
    EXPECT_STREQ(SDB_prefix_class_name(read.handle, row), "GONE_MODULE");
    EXPECT_EQ(SDB_prefix_class_name(read.handle, bare), nullptr);
    EXPECT_EQ(PREFIX_lookup(prefix_tab, "gone", 2, -1), row);
    EXPECT_EQ(PREFIX_lookup(prefix_tab, "gone", 3, -1), row);
    EXPECT_EQ(PREFIX_lookup(prefix_tab, "gone", 1, -1), -1);
    EXPECT_EQ(PREFIX_lookup(prefix_tab, "u_buf", 1, parent), own) << "below a given row";
}

TEST(names, separator_is_a_setting) {
    scratch_folder scratch;
    small_design_bytes(scratch);
    open_design design(scratch.path("small.sdb"));
    sdb_hier_dot = '/';
    PREFIX_set_dot('/');
    EXPECT_EQ(SDB_lookup_obj("top_pad/u_buf"), 3);
    EXPECT_EQ(SDB_lookup_obj("top_pad.u_buf"), -1);
    EXPECT_STREQ(SDB_obj_name(design.handle, 3), "top_pad/u_buf");
    sdb_hier_dot = '.';
    PREFIX_set_dot('.');
}

// Verilog names may hold the separator. What a text can mean, and that each object's own text means it.
TEST(names, separators_inside_components) {
    scratch_folder scratch;
    SDB_HANDLE *file = SDB_open(scratch.path("dots.sdb").c_str(), "w", 0);
    int32_t cell = SDB_add_class(file, "C", SDB_KIND_CELL, {{"A", SDB_INPUT}});
    int32_t scope_a = SDB_add_prefix(file, "a", -1), scope_ab = SDB_add_prefix(file, "a.b", -1);
    for (int32_t scope : {scope_a, scope_ab})
        SDB_add_obj(file, SDB_prefix_name(scope), cell);
    auto below = [&](int32_t scope, const char *name) {
        return SDB_add_obj(file, SDB_prefix_name(SDB_add_prefix(file, name, scope)), cell);
    };
    struct {
        int32_t obj;
        const char *name; ///< by which it is shown and found
    } const objects[] = {
        {below(scope_a, "b"), "a.b"},
        {below(scope_a, "b.c"), "a.b\\.c"},
        {below(scope_ab, "c"), "a\\.b.c"},
        {below(scope_ab, "d"), "a.b.d"},
        {SDB_add_obj(file, SDB_plain_name(file, "g[0].p"), cell), "g[0].p"},
        {SDB_add_obj(file, SDB_plain_name(file, "a.b.e"), cell), "a.b.e"},
        {below(scope_a, "x\\"), "a.x\\"},
        {below(scope_ab, "..."), "a.b...."},
    };
    ASSERT_EQ(SDB_close(file, 1), 0);
    open_design design(scratch.path("dots.sdb"));
    for (const auto &one : objects) {
        EXPECT_STREQ(SDB_obj_name(design.handle, one.obj), one.name);
        EXPECT_EQ(SDB_lookup_obj(one.name), one.obj) << one.name;
    }
    EXPECT_EQ(SDB_lookup_obj("a.b.c"), -1);
    EXPECT_EQ(SDB_obj_readings("a.b.c"), (std::vector<std::string>{"a.b\\.c", "a\\.b.c"}));
    EXPECT_EQ(SDB_instance_obj("a.b"), 1) << "the instance of exactly this name";
    EXPECT_EQ(SDB_path_obj({"a.b", "c"}), objects[2].obj);
    EXPECT_EQ(SDB_path_obj({"a", "c"}), -1);
}

TEST(names, hierarchical_name_as_long_as_the_buffer) {
    SYM_TABLE *symbols = SYM_init(7);
    SDB_PREFIX *rows = PREFIX_init(nullptr, symbols);
    auto name = [&](size_t length, char letter) { return SYM_setup(symbols, std::string(length, letter)); };
    for (SDB_PREFIX row : {SDB_PREFIX{name(2046, 'a'), -1, -1}, SDB_PREFIX{name(2047, 'b'), 0, -1},
                           SDB_PREFIX{name(2048, 'c'), 0, -1}, SDB_PREFIX{-3, -1, -1},
                           SDB_PREFIX{SDB_ENTRY_BASE - 1, -1, -1}, SDB_PREFIX{name(0, ' '), -1, -1}})
        append_row(rows, row);
    PREFIX_init(rows, symbols);
    EXPECT_EQ(std::strlen(PREFIX_get(rows, 1)), 4094U);
    EXPECT_EQ(std::strlen(PREFIX_get(rows, 4)), 2047U) << "the name of row 1 is meant";
    struct {
        int32_t row;
        const char *message;
    } const cases[] = {
        {2, "has exceeded the internal limit \\( 4096 \\)"},
        {3, "FA-02-0026. Encountered an illegal object id"},
        {5, "FA-02-0027. Hierarchical name contains blank id"},
    };
    for (const auto &one : cases)
        EXPECT_EXIT((dup2(2, 1), PREFIX_get(rows, one.row)), testing::ExitedWithCode(255), one.message);
    PREFIX_release(rows);
    DYNA_free(&rows);
    SYM_free(symbols);
}

// The row of a hierarchical name and the table of names must agree when they are used.
TEST(names, inconsistent_name_ends_the_run) {
    scratch_folder scratch;
    std::string bytes = small_design_bytes(scratch);
    set_word(bytes, record_place(bytes, SDB_PREFIX_TAB, 1, 2), SDB_OBJ_TARGET | 4);
    set_word(bytes, record_place(bytes, SDB_SOBJ_TAB, 0, 0), static_cast<uint32_t>(-2));
    scratch.write("bad.sdb", bytes);
    open_design design(scratch.path("bad.sdb"));
    ASSERT_NE(design.handle, nullptr);
    const char *message = "SDB FATAL: .FA-02-0020. Hierarchical name data inconsistency";
    EXPECT_EXIT((dup2(2, 1), SDB_lookup_obj("top_pad.u_buf")), testing::ExitedWithCode(255), message);
    EXPECT_EXIT((dup2(2, 1), SDB_obj_name(design.handle, 3)), testing::ExitedWithCode(255), message);
    testing::internal::CaptureStdout();
    EXPECT_EQ(SDB_obj_name(design.handle, 0), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "SDB FATAL: (FA-02-0008) Encountered an illegal object id.\n");
}

TEST(aliases, are_read_followed_and_written) {
    scratch_folder scratch;
    small_design_bytes(scratch);
    scratch.write("small.asn",
                  "ASSIGN a b noise ASSIGN \\esc [3] c [1]\nALIAS p q r ;\nASSIGN b d ASSIGN b d");
    SDB_HANDLE *design = SDB_open(scratch.path("small.sdb").c_str(), "r+", 0);
    ASSERT_NE(design, nullptr);
    ASSERT_EQ(alias_net_count, 3);
    EXPECT_STREQ(alias_net_tab[0].target, "d") << "a stood for b, which stands for d";
    EXPECT_STREQ(alias_net_tab[1].name, "\\esc[3]");
    EXPECT_STREQ(alias_net_tab[1].target, "c[1]");
    ASSERT_EQ(DYNA_count(sdb_port_aliasG), 1);
    EXPECT_EQ(DYNA_count(sdb_port_aliasG[0].aliases), 2);
    ALIAS_add("", "x");
    SDB_close(design, 1);
    EXPECT_EQ(scratch.read("small.asn"), "ASSIGN a d\nASSIGN \\esc[3] c[1]\nASSIGN b d\nALIAS p q r ;\n");
    EXPECT_EQ(alias_net_tab, nullptr);

    scratch.write("small.asn", "ALIAS p q");
    testing::internal::CaptureStdout();
    open_design corrupted(scratch.path("small.sdb"));
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "SDB ERROR: (FA-01-0006) The sdb file '" + scratch.path("small.asn") +
                  "' is corrupted. Please generate the sdb file again.\n");
    EXPECT_NE(corrupted.handle, nullptr);
    EXPECT_EQ(sdb_port_aliasG, nullptr);
}
