// What is written reads back, in either byte order and with or without a marker byte.
#include "tests/sdb/small_design.hh"

#include "sdb/symbols.hh"
#include "support/dyna.hh"

#include <cerrno>
#include <gtest/gtest.h>
#include <map>
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

/// A word list with the byte order of the file, for images made by hand.
struct image_writer {
    bool swapped;
    std::string bytes{};
    void word(uint32_t value) {
        if (swapped)
            value = value >> 24 | (value >> 8 & 0xFF00U) | (value << 8 & 0xFF0000U) | value << 24;
        bytes.append(reinterpret_cast<const char *>(&value), 4);
    }
    void raw(uint32_t value) {
        bytes.append(reinterpret_cast<const char *>(&value), 4);
    }
    void text(const char *value, size_t size) {
        bytes.append(value, size);
    }
};

/// Flag words of the one record of each table, as they stand in the file.
struct flag_words {
    uint32_t port, obj, net, node;
};

/// The symbols *UNDEF*, X, A and p, all in one bucket's tree.
std::string make_symbols(bool swapped) {
    constexpr uint32_t none = 0xFFFFFFFFU;
    image_writer symbols{swapped};
    symbols.word(4);
    symbols.text("SYM", 4);
    for (uint32_t value : {100U, 2U, 7U, 7U, 1U, none, 4U})
        symbols.word(value); // format, buckets, two pointers, the buckets, number of records
    const char *texts[] = {"*UNDEF*", "X", "A", "p"};
    const uint32_t left[] = {none, 2, none, none};
    const uint32_t right[] = {none, none, 3, 0};
    for (int i = 0; i < 4; i++) {
        auto size = static_cast<uint32_t>(std::strlen(texts[i]) + 1);
        symbols.word(size);
        symbols.text(texts[i], size);
        symbols.word(left[i]);
        symbols.word(right[i]);
    }
    return symbols.bytes;
}

struct table_image {
    int32_t index;
    uint32_t record_size;
    std::string bytes;
};

/// One cell X with the pin A, one port p, one object p and one net p, and the two nodes on it.
std::vector<table_image> make_tables(bool swapped, const flag_words &flags) {
    constexpr uint32_t none = 0xFFFFFFFFU;
    auto words = [&](const std::vector<uint32_t> &values) {
        image_writer writer{swapped};
        for (uint32_t value : values)
            writer.word(value);
        return writer;
    };
    image_writer port = words({3, 2, 1});
    port.raw(flags.port);
    image_writer obj = words({0, 0});
    obj.raw(flags.obj);
    image_writer net = words({0});
    net.raw(flags.net);
    image_writer node = words({0, 0, 0, 1});
    node.raw(flags.node);
    return {
        {SDB_CLASS_TAB, 32, words({1, 1, 0, 1, 1, 0, 0, 0}).bytes},
        {SDB_PORT_TAB, 16, port.bytes},
        {SDB_OBJ_TAB, 12, obj.bytes},
        {SDB_NET_TAB, 8, net.bytes},
        {SDB_NODE_TAB, 20, node.bytes + words({none, 0, 0, none, 0}).bytes},
        {SDB_PIN_TAB, 8, words({2, 2}).bytes},
        {SDB_SOBJ_TAB, 4, words({3}).bytes},
        {SDB_SNET_TAB, 4, words({3}).bytes},
    };
}

std::string make_image(bool swapped, const std::string &marker, uint32_t version, const flag_words &flags) {
    std::string symbols = make_symbols(swapped);
    std::string records;
    size_t first = marker.size() + 744 + symbols.size();
    std::map<int32_t, std::pair<uint32_t, uint32_t>> places; // count and place by table
    for (const table_image &table : make_tables(swapped, flags)) {
        places[table.index] = {static_cast<uint32_t>(table.bytes.size()) / table.record_size,
                               static_cast<uint32_t>(first + records.size())};
        records += table.bytes;
    }
    image_writer header{swapped};
    header.word(4);
    header.text("SDB", 4);
    header.word(12345); // the format word may hold anything
    for (int i = 0; i < 3; i++)
        header.raw(0xDEADBEEF);
    for (int32_t i = 0; i < SDB_TAB_COUNT; i++) {
        bool fixed = i < SDB_FIXED_TAB_COUNT;
        std::string name = fixed ? sdb_table_layout[i].name : "";
        name.resize(4);
        header.text(name.data(), 4);
        header.word(places[i].first);
        header.word(fixed ? static_cast<uint32_t>(sdb_table_layout[i].record_size) : 0);
        header.raw(0xDEADBEEF); // a stored pointer
        header.word(places[i].second);
    }
    header.raw(0xDEADBEEF);
    header.raw(0xDEADBEEF);
    header.word(version);
    header.text(std::string(68, '\x55').c_str(), 68);
    return marker + header.bytes + symbols + records;
}

} // namespace

TEST(files, written_design_reads_back_equal) {
    scratch_folder scratch;
    SDB_HANDLE *built = build_small_design(scratch.path("small.sdb"));
    ASSERT_EQ(SDB_save(built), 0);
    std::string expected = dump(built);
    SDB_close(built, 0);
    SDB_HANDLE *read = SDB_open(scratch.path("small.sdb").c_str(), "r+", 0);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(dump(read), expected);
    EXPECT_EQ(read->name, "small");
    EXPECT_EQ(sdb_obj_count, 5);
    EXPECT_EQ(sdb_net_count, 5);
    std::string first_bytes = scratch.read("small.sdb");
    EXPECT_EQ(SDB_close(read, 1), 0);
    EXPECT_EQ(scratch.read("small.sdb"), first_bytes);
    EXPECT_EQ(word_at(first_bytes, 8), 300U);
    EXPECT_EQ(word_at(first_bytes, version_place), 300U);
}

TEST(files, ports_are_saved_by_direction_with_their_nodes) {
    scratch_folder scratch;
    small_design_bytes(scratch);
    open_design design(scratch.path("small.sdb"));
    ASSERT_EQ(port_count, 3);
    const char *expected[] = {"out", "io", "in"};
    for (int32_t port = 0; port < port_count; port++) {
        EXPECT_STREQ(SYM_get(sym_tab, port_tab[port].name), expected[port]);
        EXPECT_EQ(node_tab[port_tab[port].node].obj, -1);
        EXPECT_EQ(node_tab[port_tab[port].node].pin, port);
    }
}

// A reader's handle is not written, whatever the caller asks for.
TEST(files, handle_opened_for_reading_saves_nothing) {
    scratch_folder scratch;
    std::string bytes = small_design_bytes(scratch);
    SDB_HANDLE *handle = SDB_open(scratch.path("small.sdb").c_str(), "r", 0);
    ASSERT_NE(handle, nullptr);
    SDB_table<SDB_PIN>(handle, SDB_PIN_TAB)[0].direction = 1;
    EXPECT_EQ(SDB_close(handle, 1), 0);
    EXPECT_EQ(scratch.read("small.sdb"), bytes);
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

struct order_case {
    const char *what;
    bool swapped;
    std::string marker;
};

TEST(byte_order, every_form_of_a_file_reads_alike) {
    const order_case cases[] = {
        {"plain", false, ""},         {"swapped", true, ""},        {"marker 10", true, "\x0A"},
        {"marker 12", true, "\x0C"},  {"marker 15", true, "\x0F"},  {"marker 16", true, "\x10"},
        {"marker 13", false, "\x0D"}, {"marker 18", false, "\x12"},
    };
    for (const order_case &order : cases) {
        for (uint32_t version : {300U, 301U}) {
            scratch_folder scratch;
            scratch.write("x.sdb", make_image(order.swapped, order.marker, version, {0, 0, 0, 0}));
            open_design design(scratch.path("x.sdb"));
            ASSERT_NE(design.handle, nullptr) << order.what;
            EXPECT_EQ(design.handle->version, static_cast<int32_t>(version));
            EXPECT_EQ(SDB_nl_search_port("p"), 0) << order.what;
            EXPECT_EQ(SDB_nl_search_node("p", "A"), 0) << order.what;
            EXPECT_EQ(port_tab[0].flags & SDB_DIRECTION_MASK, SDB_INPUT) << order.what;
            EXPECT_EQ(node_tab[0].next, 1) << order.what;
            EXPECT_STREQ(SDB_obj_class_name(design.handle, 0), "X") << order.what;
            EXPECT_STREQ(SDB_net_name(design.handle, 0), "p") << order.what;
        }
    }
}

// Flag words of a swapped file as the little-endian words that its bytes form, and what they become.
TEST(byte_order, flag_words_are_turned) {
    struct single_case {
        const char *what;
        uint32_t file;
        uint32_t memory;
    };
    auto read_back = [](const flag_words &file) {
        scratch_folder scratch;
        scratch.write("x.sdb", make_image(true, "", 300, file));
        open_design design(scratch.path("x.sdb"));
        return flag_words{static_cast<uint32_t>(port_tab[0].attributes),
                          static_cast<uint32_t>(obj_tab[0].flags), static_cast<uint32_t>(net_tab[0].flags),
                          static_cast<uint32_t>(node_tab[0].flags)};
    };
    EXPECT_EQ(read_back({0x01020408, 0, 0, 0}).port, 0x80402010U);
    const single_case objs[] = {
        {"bit 3 goes to bit 6", 0x08, 0x40},         {"bit 6 goes to bit 3", 0x40, 0x08},
        {"bit 4 goes to bit 5", 0x10, 0x20},         {"code 1 becomes bit 8", 0x01, 0x100},
        {"code 2 becomes bit 7", 0x02, 0x80},        {"bit 7 becomes code 1", 0x80, 0x01},
        {"bit 8 becomes code 2", 0x100, 0x02},       {"both become code 3", 0x180, 0x03},
        {"other bits stay", 0xFFFF0E00, 0xFFFF0E00},
    };
    for (const single_case &one : objs)
        EXPECT_EQ(read_back({0, one.file, 0, 0}).obj, one.memory) << one.what;
    const single_case nets[] = {
        {"bit 0 comes from bit 7", 0x80, 0x01},
        {"bit 5, from bit 2, goes to bit 12", 0x04, 0x1000},
        {"bit 8, from bit 15, goes to bit 9", 0x8000, 0x0200},
        {"bit 13, from bit 10, goes to bit 20", 0x0400, 0x100000},
        {"bit 21, from bit 18, goes to bit 22", 0x00040000, 0x400000},
        {"bit 23, from bit 16, goes to bit 26", 0x00010000, 0x04000000},
        {"bit 24, from bit 31, goes to bit 25", 0x80000000, 0x02000000},
        {"bit 31 comes from bit 24", 0x01000000, 0x80000000},
    };
    for (const single_case &one : nets)
        EXPECT_EQ(read_back({0, 0, one.file, 0}).net, one.memory) << one.what;
    const single_case nodes[] = {
        {"bit 7 comes from bit 0", 0x01, 0x80},
        {"bit 4, from bit 3, goes to bit 5", 0x08, 0x20},
        {"both bits of the field", 0x0C, 0x30},
        {"last byte", 0x01000000, 0x80000000},
    };
    for (const single_case &one : nodes)
        EXPECT_EQ(read_back({0, 0, 0, one.file}).node, one.memory) << one.what;
}
