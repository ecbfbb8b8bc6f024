// Files that must be refused: one clear message, no handle, and never a crash.
#include "tests/sdb/small_design.hh"
#include "tests/support/expected_file.hh"

#include <gtest/gtest.h>

namespace {

constexpr const char read_failure[] = "SDB ERROR: (FA-01-0005) Failed to read the sdb file.\n\n";

/// The place of a symbol record's `left` word; the texts before it have to be passed.
size_t symbol_links_place(const std::string &bytes, int32_t id) {
    size_t at = 744 + 4 + 4 + 4;
    at += 12 + size_t{word_at(bytes, at)} * 4 + 4;
    for (int32_t i = 0; i < id; i++)
        at += 4 + word_at(bytes, at) + 8;
    return at + 4 + word_at(bytes, at);
}

} // namespace

TEST(bad_files, status_and_message) {
    auto with_word = [](size_t at, uint32_t value) {
        scratch_folder scratch;
        std::string bytes = small_design_bytes(scratch);
        set_word(bytes, at, value);
        return bytes;
    };
    auto obsolete = [](const char *number) {
        return std::string("SDB ERROR: (FA-04-0009) Obsolete SDB version (") + number +
               "). Please recompile your netlist with the latest kalmverin/kalmvhin/kalmflat.\n";
    };
    scratch_folder scratch;
    std::string path = scratch.path("x.sdb");
    struct {
        const char *what;
        int32_t status;
        std::string message, bytes;
    } const cases[] = {
        {"731 bytes", -6,
         "SDB ERROR: (FA-01-0008) The size of the sdb file '" + path +
             "' is smaller than the minimum size. Please check the sdb file.\n",
         std::string(731, '\0')},
        {"732 zero bytes", -1, "SDB (FA-04-0007) The sdb file size of '" + path + "' is zero.\n",
         std::string(732, '\0')},
        {"text", -7, read_failure, std::string(2000, '/')},
        {"another magic", -2, obsolete("0"), with_word(4, 0x00424453 + 1)},
        {"version 302", -2, obsolete("302"), with_word(version_place, 302)},
        {"marker 11", -5, read_failure, '\x0B' + with_word(8, 300)},
        {"marker 14 is none", -7, read_failure, '\x0E' + with_word(8, 300)},
    };
    for (const auto &one : cases) {
        scratch.write("x.sdb", one.bytes);
        EXPECT_EQ(refusal_of(path), one.message) << one.what;
        EXPECT_EQ(sdb_errnoG, one.status) << one.what;
    }
    EXPECT_EQ(refusal_of(scratch.path("absent.sdb")), read_failure);
    EXPECT_EQ(sdb_errnoG, -7);
    EXPECT_EQ(refusal_of(scratch.dir.string()), read_failure) << "a folder";
}

TEST(bad_files, ids_and_counts_are_checked) {
    struct word_case {
        size_t place;
        uint32_t value;
        size_t other_place = 0; ///< a second word that is changed, 0 for none
        uint32_t other_value = 0;
    };
    scratch_folder scratch;
    const std::string bytes = small_design_bytes(scratch);
    auto at = [&](int32_t table, int32_t row, int32_t word) { return record_place(bytes, table, row, word); };
    constexpr uint32_t many = 0x40000000;
    auto node_at = [&](size_t place) { return static_cast<int32_t>(word_at(bytes, place)); };
    int32_t first = node_at(at(SDB_NET_TAB, 3, 0)), second = node_at(at(SDB_NODE_TAB, first, 3));
    const word_case cases[] = {
        {descriptor_place(SDB_NODE_TAB) + 4, 0xFFFFFFFF},
        {descriptor_place(SDB_NODE_TAB) + 4, 0x7FFFFFFF},
        {descriptor_place(SDB_OBJ_TAB) + 8, 13},
        {at(SDB_CLASS_TAB, 0, 0), many},
        {at(SDB_CLASS_TAB, 1, 2), 0x7FFFFFFF},
        {at(SDB_CLASS_TAB, 1, 1), 17, at(SDB_CLASS_TAB, 1, 2), 2}, // whatever the class's type
        {at(SDB_CLASS_TAB, 1, 1), 0xFFFFFFFF, at(SDB_CLASS_TAB, 1, 3), 0xFFFFFFFE},
        {at(SDB_PORT_TAB, 2, 2), 0},
        {at(SDB_OBJ_TAB, 0, 0), 3},
        {at(SDB_OBJ_TAB, 4, 1), 0},
        {at(SDB_NODE_TAB, 6, 0), many},
        {at(SDB_NODE_TAB, 0, 1), 1},
        {at(SDB_NODE_TAB, 0, 3), 0},
        {at(SDB_NODE_TAB, first, 3), 0xFFFFFFFF, at(SDB_NODE_TAB, second, 3),
         static_cast<uint32_t>(second)}, // a ring beside the list
        {at(SDB_NET_TAB, 1, 0), many},
        {at(SDB_NET_TAB, 1, 0), 0xFFFFFFFF},
        {at(SDB_SOBJ_TAB, 0, 0), many},
        {descriptor_place(SDB_SOBJ_TAB) + 4, 4},
        {at(SDB_PREFIX_TAB, 0, 0), 0xFFFFFFFA},
        {at(SDB_PREFIX_TAB, 0, 1), 0},
        {symbol_links_place(bytes, 3), 3},
        {756, 0},
    };
    std::string text;
    for (const word_case &one : cases) {
        std::string changed = bytes;
        set_word(changed, one.place, one.value);
        if (one.other_place != 0)
            set_word(changed, one.other_place, one.other_value);
        scratch.write("bad.sdb", changed);
        std::string said = refusal_of(scratch.path("bad.sdb"));
        for (size_t at; (at = said.find(scratch.dir.string())) != said.npos;)
            said.replace(at, scratch.dir.string().size(), ".");
        text += said;
    }
    expect_file("sdb/bad_words.expected", text);
}

struct symbol_record {
    std::string text; // without its last NUL
    int32_t left, right;
};

/// A design of symbols alone, all in one bucket.
void write_symbols(const scratch_folder &scratch, const char *name, int32_t head,
                   const std::vector<symbol_record> &records) {
    std::string bytes = small_design_bytes(scratch).substr(0, 744);
    for (int32_t table = 0; table < SDB_TAB_COUNT; table++)
        set_word(bytes, descriptor_place(table) + 4, 0);
    auto word = [&](auto value) { bytes.append(reinterpret_cast<const char *>(&value), 4); };
    for (uint32_t value : {4U, 0x004D5953U, 100U, 1U, 0U, 0U})
        word(value);
    word(head);
    word(static_cast<uint32_t>(records.size()));
    for (const symbol_record &record : records) {
        word(static_cast<uint32_t>(record.text.size() + 1));
        bytes.append(record.text.c_str(), record.text.size() + 1);
        word(record.left);
        word(record.right);
    }
    scratch.write(name, bytes);
}

// A tree with one record at each depth, as deep as the table is long.
TEST(bad_files, deep_symbol_tree_is_read) {
    constexpr int32_t count = 200000;
    scratch_folder scratch;
    std::vector<symbol_record> records = {{"*UNDEF*", -1, 1}};
    for (int32_t i = 1; i < count; i++)
        records.push_back({"s" + std::to_string(i), -1, i + 1 < count ? i + 1 : -1});
    write_symbols(scratch, "deep.sdb", 0, records);
    open_design design(scratch.path("deep.sdb"));
    ASSERT_NE(design.handle, nullptr);
    for (int32_t asked : {199999, 2, 199999}) // few: the tree's order is not that of the texts
        EXPECT_EQ(SYM_lookup(sym_tab, ("s" + std::to_string(asked)).c_str()), asked);
    EXPECT_EQ(SYM_lookup(sym_tab, "none"), -1);
    EXPECT_EQ(SYM_lookup(sym_tab, "none"), -1);
    for (int32_t asked = 1; asked < 1000; asked++) // too many for the tree
        EXPECT_EQ(SYM_lookup(sym_tab, ("s" + std::to_string(asked)).c_str()), asked);
    EXPECT_EQ(SYM_setup(sym_tab, "none"), count);
    EXPECT_EQ(SYM_lookup(sym_tab, "none"), count);
}

// The first of few lookups goes by the file's own trees, whatever these say.
TEST(bad_files, odd_symbols_are_found) {
    scratch_folder scratch;
    // Of equal texts the lower id is meant, wherever it hangs.
    std::vector<symbol_record> twice(16, {"other", -1, -1});
    twice[0] = {"*UNDEF*", -1, -1};
    twice[1] = {"twice", -1, -1};
    twice[2] = {"twice", -1, 1};
    write_symbols(scratch, "twice.sdb", 2, twice);
    EXPECT_EQ(SYM_lookup(open_design(scratch.path("twice.sdb")).handle->symbols, "twice"), 1);
    // Behind a text that ends before its record stand no links.
    std::vector<symbol_record> short_text(16, {"other", -1, -1});
    short_text[0] = {"*UNDEF*", -1, -1};
    short_text[1] = {std::string("short\0\x7f\x7f\x7f\x7f\x7f\x7f\x7f\x7f", 14), -1, 2};
    short_text[2] = {"behind", -1, -1};
    write_symbols(scratch, "short.sdb", 1, short_text);
    EXPECT_EQ(SYM_lookup(open_design(scratch.path("short.sdb")).handle->symbols, "behind"), 2);
}
