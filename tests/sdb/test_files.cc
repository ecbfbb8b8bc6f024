// What is written reads back, in either byte order and with or without a marker byte.
#include "tests/sdb/small_design.hh"

#include "sdb/symbols.hh"
#include "support/dyna.hh"
#include "support/text.hh"
#include "tests/support/expected_file.hh"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

/// All that a handle holds, as text.
std::string dump(const SDB_HANDLE *handle) {
    std::string text;
    for (int32_t i = 0; i < SDB_FIXED_TAB_COUNT; i++) {
        const SDB_TABLE &table = handle->tables[i];
        text += std::string(table.name) + " " + std::to_string(table.count) + ":";
        const auto *words = static_cast<const int32_t *>(table.data);
        for (int32_t word = 0; word < table.count * table.record_size / 4; word++)
            text += " " + std::to_string(words[word]);
        text += "\n";
    }
    for (int32_t id = 0; id < SYM_count(handle->symbols); id++)
        text += std::string(SYM_get(handle->symbols, id)) + "\n";
    return text;
}

/// The file as a machine of the other byte order writes it: ids and counts turned, flag words as they are.
/// `marker`: bytes that will stand in front, which the places in the file count.
std::string turned(std::string bytes, size_t marker = 0) {
    auto turn = [&](size_t at) { std::reverse(bytes.begin() + at, bytes.begin() + at + 4); };
    constexpr int32_t words[] = {8, 3, 2, 1, 4, 2, 1, 1, 1, 1, 3, 1}; // of each table's records
    for (int32_t table = 0; table < SDB_FIXED_TAB_COUNT; table++) {
        size_t descriptor = descriptor_place(table);
        for (uint32_t row = 0; row < word_at(bytes, descriptor + 4); row++)
            for (int32_t word = 0; word < words[table]; word++)
                turn(record_place(bytes, table, static_cast<int32_t>(row), word) - marker);
        for (size_t place : {4, 8, 16})
            turn(descriptor + place);
    }
    const size_t records = 772 + size_t{word_at(bytes, 756)} * 4; // behind the buckets of the symbols
    size_t at = records;
    for (uint32_t left = word_at(bytes, records - 4); left > 0; left--) {
        size_t links = at + 4 + word_at(bytes, at);
        for (size_t place : {at, links, links + 4})
            turn(place);
        at = links + 8;
    }
    for (size_t place = 752; place < records; place += 4)
        turn(place);
    for (size_t place : {size_t{0}, size_t{8}, version_place, size_t{744}})
        turn(place);
    return bytes;
}

} // namespace

TEST(files, written_design_reads_back_equal) {
    scratch_folder scratch;
    SDB_HANDLE *built = build_small_design(scratch.path("small.sdb"));
    ASSERT_EQ(SDB_save(built), 0);
    std::string expected = dump(built);
    SDB_close(built, 0);
    SDB_HANDLE *read = SDB_setup(SDB_open(scratch.path("small.sdb").c_str(), "r+", 0));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(dump(read), expected);
    EXPECT_EQ(read->name, "small");
    EXPECT_EQ(sdb_obj_count, 5);
    EXPECT_EQ(sdb_net_count, 5);
    std::string first_bytes = scratch.read("small.sdb");
    std::string ports; // by direction
    for (int32_t port = 0; port < port_count; port++) {
        ports += std::string(SYM_get(sym_tab, port_tab[port].name)) + " ";
        EXPECT_EQ(node_tab[port_tab[port].node].obj, -1);
        EXPECT_EQ(node_tab[port_tab[port].node].pin, port);
    }
    EXPECT_EQ(ports, "out io in ");
    EXPECT_EQ(SDB_close(read, 1), 0);
    EXPECT_EQ(scratch.read("small.sdb"), first_bytes);
    SDB_HANDLE *reader = SDB_open(scratch.path("small.sdb").c_str(), "r", 0);
    SDB_table<SDB_PIN>(reader, SDB_PIN_TAB)[0].direction = 1;
    EXPECT_EQ(SDB_close(reader, 1), 0); // a reader's handle is not written, whatever the caller asks for
    EXPECT_EQ(scratch.read("small.sdb"), first_bytes);
    EXPECT_EQ(word_at(first_bytes, 8), 300U);
    EXPECT_EQ(word_at(first_bytes, version_place), 300U);
}

// A design and its aliases are saved as carefully as a text: what the user set stays, and no name that can be
// foretold is followed.
TEST(files, save_keeps_what_the_user_set) {
    scratch_folder scratch;
    small_design_bytes(scratch);
    scratch.write("small.asn", "ASSIGN a b\n");
    scratch.write("victim", "kept");
    std::string tail = ".tmp" + std::to_string(::getpid());
    scratch.run("ln -s victim small.sdb" + tail +
                "; ln -s victim small.asn.tmp; chmod 640 small.sdb; chmod 604 small.asn; "
                "mkdir real; mv small.sdb small.asn real; ln -s real/small.sdb small.sdb; ln -s "
                "real/small.asn small.asn");
    SDB_HANDLE *design = SDB_open(scratch.path("small.sdb").c_str(), "r+", 0);
    ASSERT_NE(design, nullptr);
    ALIAS_add("c", "d");
    EXPECT_EQ(SDB_close(design, 1), 0);
    EXPECT_EQ(scratch.read("real/small.asn"), "ASSIGN a b\nASSIGN c d\n");
    EXPECT_EQ(scratch.read("victim"), "kept");
    EXPECT_EQ(scratch.run("stat -c %a real/*; ls -A real; readlink small.sdb small.asn").out,
              "604\n640\nsmall.asn\nsmall.sdb\nreal/small.sdb\nreal/small.asn\n");
    run_result result = run_bound_child(scratch, [&] {
        ::chmod("real/small.sdb", 0444); // refused although the folder would let it be replaced
        std::printf("%d", SDB_open("small.sdb", "w", 0) == nullptr && errno == EACCES);
    });
    EXPECT_EQ(result.out, "1");
    EXPECT_EQ(SDB_open("/no/such/folder/small.sdb", "w", 0), nullptr);
}

TEST(files, many_symbols_get_many_buckets) {
    scratch_folder scratch;
    SDB_HANDLE *design = SDB_open(scratch.path("many.sdb").c_str(), "w", 0);
    for (int32_t i = 0; i < 20000; i++)
        SDB_add_net(design, SDB_plain_name(design, "n" + std::to_string(i)));
    ASSERT_EQ(SDB_close(design, 1), 0);
    open_design read(scratch.path("many.sdb"));
    EXPECT_GT(word_at(scratch.read("many.sdb"), 12 + SDB_HEADER_BLOCK_SIZE + 12), 5000U);
    for (int32_t i : {0, 1, 9999, 19999})
        EXPECT_EQ(SDB_search_net(SYM_lookup(sym_tab, ("n" + std::to_string(i)).c_str())), i);
}

TEST(byte_order, every_form_of_a_file_reads_alike) {
    struct {
        const char *what;
        bool swapped;
        std::string marker;
    } const cases[] = {
        {"plain", false, ""},         {"swapped", true, ""},        {"marker 10", true, "\x0A"},
        {"marker 12", true, "\x0C"},  {"marker 15", true, "\x0F"},  {"marker 16", true, "\x10"},
        {"marker 13", false, "\x0D"}, {"marker 18", false, "\x12"},
    };
    scratch_folder scratch;
    const std::string small = small_design_bytes(scratch);
    open_design plain(scratch.path("small.sdb"));
    for (const auto &order : cases) {
        for (uint32_t version : {300U, 301U}) {
            std::string bytes = small;
            set_word(bytes, version_place, version);
            set_word(bytes, 8, 12345); // the format word may hold anything
            for (int32_t table = 0; table < SDB_TAB_COUNT; table++) {
                size_t place = descriptor_place(table) + 16;
                set_word(bytes, place - 4, 0xDEADBEEF); // a stored pointer
                set_word(bytes, place, word_at(bytes, place) + static_cast<uint32_t>(order.marker.size()));
            }
            scratch.write("x.sdb",
                          order.marker + (order.swapped ? turned(bytes, order.marker.size()) : bytes));
            open_design design(scratch.path("x.sdb"));
            ASSERT_NE(design.handle, nullptr) << order.what;
            EXPECT_EQ(design.handle->version, static_cast<int32_t>(version));
            EXPECT_EQ(dump(design.handle), dump(plain.handle)) << order.what;
        }
    }
}

// Flag words of a swapped file as the little-endian words that its bytes form, and what they become.
TEST(byte_order, flag_words_are_turned) {
    const struct {
        int32_t table, word;
        std::vector<uint32_t> flags;
    } cases[] = {
        {SDB_PORT_TAB, 3, {0x01020408}},
        {SDB_OBJ_TAB, 2, {0x08, 0x40, 0x10, 0x01, 0x02, 0x80, 0x100, 0x180, 0xFFFF0E00}},
        {SDB_NET_TAB, 1, {0x80, 0x04, 0x8000, 0x0400, 0x00040000, 0x00010000, 0x80000000, 0x01000000}},
        {SDB_NODE_TAB, 4, {0x01, 0x08, 0x0C, 0x01000000}},
    };
    scratch_folder scratch;
    const std::string small = small_design_bytes(scratch);
    std::string text;
    for (const auto &[table, word, flags] : cases) {
        for (uint32_t file : flags) {
            std::string bytes = turned(small);
            set_word(bytes, record_place(small, table, 0, word), file);
            scratch.write("x.sdb", bytes);
            open_design design(scratch.path("x.sdb"));
            ASSERT_NE(design.handle, nullptr);
            const SDB_TABLE &rows = design.handle->tables[table];
            text += format_text("%s: %08x becomes %08x\n", rows.name, file,
                                static_cast<uint32_t *>(rows.data)[word]);
        }
    }
    expect_file("sdb/flag_words.expected", text);
}
