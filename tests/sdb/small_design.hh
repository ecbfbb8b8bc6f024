// A design small enough to be read here: ports, plain and hierarchical objects, the constant nets, and the
// file image of it in either byte order, put together without the writer.
#pragma once

#include "sdb/navigation.hh"
#include "tests/support/scratch.hh"
#include "tests/support/sdb_writer.hh"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

/// in -> top_pad/u_buf (BUF) -> out, with a tie cell on each constant net and a bidirectional port that hangs
/// free.
inline SDB_HANDLE *build_small_design(const std::string &path) {
    SDB_HANDLE *design = SDB_open(path.c_str(), "w", 0);
    int32_t tie = SDB_add_class(design, "TIE", SDB_KIND_CELL, {{"Z", SDB_OUTPUT}});
    int32_t buf = SDB_add_class(design, "BUF", SDB_KIND_CELL, {{"A", SDB_INPUT}, {"Z", SDB_OUTPUT}});
    int32_t pad_class = SDB_add_class(design, "PADS", SDB_KIND_DESIGN, {});
    for (const char *name : {"GND", "VCC"}) {
        int32_t net = SDB_add_net(design, SDB_plain_name(design, name));
        int32_t source = SDB_add_obj(design, SDB_plain_name(design, std::string(name) + "_src"), tie);
        SDB_connect(design, SDB_obj_node(design, source, 0), net);
    }
    int32_t in = SDB_add_port(design, "in", SDB_INPUT);
    int32_t io = SDB_add_port(design, "io", SDB_BIDIRECTIONAL);
    int32_t out = SDB_add_port(design, "out", SDB_OUTPUT);
    int32_t module_row = SDB_add_prefix(design, "top_pad", -1);
    SDB_add_obj(design, SDB_prefix_name(module_row), pad_class);
    int32_t u_buf = SDB_add_obj(design, SDB_prefix_name(SDB_add_prefix(design, "u_buf", module_row)), buf);
    int32_t u1 = SDB_add_obj(design, SDB_plain_name(design, "u1"), buf);
    int32_t n_in = SDB_add_net(design, SDB_plain_name(design, "in"));
    int32_t n_mid = SDB_add_net(design, SDB_prefix_name(SDB_add_prefix(design, "mid", module_row)));
    int32_t n_out = SDB_add_net(design, SDB_plain_name(design, "out"));
    SDB_connect(design, SDB_port_node(design, in), n_in);
    SDB_connect(design, SDB_obj_node(design, u_buf, 0), n_in);
    SDB_connect(design, SDB_obj_node(design, u_buf, 1), n_mid);
    SDB_connect(design, SDB_obj_node(design, u1, 0), n_mid);
    SDB_connect(design, SDB_obj_node(design, u1, 1), n_out);
    SDB_connect(design, SDB_port_node(design, out), n_out);
    (void)io;
    return design;
}

/// Saves and frees; the file's bytes.
inline std::string small_design_bytes(const scratch_folder &scratch) {
    EXPECT_EQ(SDB_close(build_small_design(scratch.path("small.sdb")), 1), 0);
    return scratch.read("small.sdb");
}

/// A handle that is current until the end of the scope.
struct open_design {
    SDB_HANDLE *handle;
    explicit open_design(const std::string &path) : handle(SDB_open(path.c_str(), "r", 0)) {
        SDB_setup(handle);
    }
    ~open_design() {
        SDB_close(handle, 0);
        SDB_clear_current();
    }
    open_design(const open_design &) = delete;
    open_design &operator=(const open_design &) = delete;
};

/// Opens a file that must be refused; gives what went to the console.
inline std::string refusal_of(const std::string &path) {
    testing::internal::CaptureStdout();
    SDB_HANDLE *handle = SDB_open(path.c_str(), "r", 0);
    std::fflush(stdout);
    std::string said = testing::internal::GetCapturedStdout();
    EXPECT_EQ(handle, nullptr);
    SDB_close(handle, 0);
    return said;
}

inline uint32_t word_at(const std::string &bytes, size_t at) {
    uint32_t value = 0;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}
inline void set_word(std::string &bytes, size_t at, uint32_t value) {
    std::memcpy(bytes.data() + at, &value, sizeof value);
}

/// Places in a file without a marker: descriptor fields, and a word of a record.
constexpr size_t version_place = 12 + 660;
constexpr size_t descriptor_place(int32_t table) {
    return 12 + 12 + static_cast<size_t>(table) * 20;
}
inline size_t record_place(const std::string &bytes, int32_t table, int32_t row, int32_t word) {
    size_t descriptor = descriptor_place(table);
    return word_at(bytes, descriptor + 16) + static_cast<size_t>(row) * word_at(bytes, descriptor + 8) +
           static_cast<size_t>(word) * 4;
}
