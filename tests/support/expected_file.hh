// Whole texts against the files that they have to be. RW_WRITE_EXPECTED=1 in the environment writes those
// anew, for a look at the difference under version control.
#pragma once

#include "tests/support/scratch.hh"

/// The whole of a file that has to be there.
inline std::string read_whole(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Compares with the file below tests/. With `like`, another file there, the expected file holds what is
/// different from that one: the lines that stand in the place of its lines "@ first-last" (last = first - 1:
/// ahead of first).
inline void expect_file(const std::string &name, std::string text, const std::string &like = "") {
    const std::string tests = RW_SOURCE_DIR "/tests/";
    if (!like.empty()) {
        scratch_folder scratch;
        scratch.write("text", text);
        text = scratch
                   .run("diff --unchanged-group-format= --changed-group-format='@ %df-%dl\n%>' '" + tests +
                        like + "' text")
                   .out;
    }
    if (std::getenv("RW_WRITE_EXPECTED") != nullptr)
        std::ofstream(tests + name, std::ios::binary) << text;
    EXPECT_EQ(text, read_whole(tests + name)) << name;
}

/// What a run left, below a line that names it: a section of an expected file.
inline std::string section(const std::string &name, const run_result &result) {
    return "== " + name + "\nstatus " + std::to_string(result.status) + "\n" + result.out +
           (result.err.empty() ? "" : "-- error stream\n" + result.err);
}
