// A scratch folder for one test, and commands run in it as a user would run them.
//
//   scratch_folder scratch;
//   scratch.write("chip.bsc", "...");
//   run_result result = scratch.run(RW_BIN_DIR "/rimweave chip");
//   EXPECT_EQ(result.status, 255);
#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

/// What a command left: its exit status (128 + n when signal n ended it) and its two streams.
struct run_result {
    int status;
    std::string out;
    std::string err;
};

/// A folder of its own below the system's temporary folder; removed with all that it holds.
struct scratch_folder {
    std::filesystem::path dir;

    scratch_folder() {
        std::string name = (std::filesystem::temp_directory_path() / "rw-test-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            ADD_FAILURE() << "no scratch folder can be made from " << name;
        dir = name;
    }
    ~scratch_folder() {
        std::error_code ignored;
        std::filesystem::permissions(dir, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(dir, ignored);
    }
    scratch_folder(const scratch_folder &) = delete;
    scratch_folder &operator=(const scratch_folder &) = delete;

    /// The full name of a file in the folder.
    std::string path(std::string_view name) const {
        return (dir / name).string();
    }
    bool has(std::string_view name) const {
        return std::filesystem::exists(dir / name);
    }
    /// Writes a file, with the folders on the way to it; returns its full name.
    std::string write(std::string_view name, std::string_view text) const {
        std::filesystem::create_directories((dir / name).parent_path());
        std::ofstream(dir / name, std::ios::binary) << text;
        return path(name);
    }
    /// The whole of a file; empty when it is not there.
    std::string read(std::string_view name) const {
        std::ifstream file(dir / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    /// Runs a shell command with the folder as working directory. `input` is its standard input.
    run_result run(const std::string &command, std::string_view input = "") const {
        scratch_folder
            streams; // the streams lie elsewhere, so that the folder holds the command's own files alone
        streams.write("in", input);
        std::string whole = "cd '" + dir.string() + "' || exit 254\n(" + command + "\n) <'" +
                            streams.path("in") + "' >'" + streams.path("out") + "' 2>'" +
                            streams.path("err") + "'";
        int raw = std::system(whole.c_str());
        int status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
        return {status, streams.read("out"), streams.read("err")};
    }
};

/// Runs `action` in a child process with the folder as working directory, so that it starts fresh, may end
/// the run, and its streams and status can be looked at.
inline run_result run_child(const scratch_folder &scratch, const std::function<void()> &action) {
    scratch_folder streams;
    std::fflush(nullptr);
    pid_t child = ::fork();
    if (child == 0) {
        std::filesystem::current_path(scratch.dir);
        if (std::freopen(streams.path("out").c_str(), "w", stdout) == nullptr ||
            std::freopen(streams.path("err").c_str(), "w", stderr) == nullptr)
            ::_exit(99);
        action();
        std::fflush(nullptr);
        ::_exit(0);
    }
    int raw = 0;
    ::waitpid(child, &raw, 0);
    int status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
    return {status, streams.read("out"), streams.read("err")};
}

/// The same as a user whom permissions bind: root becomes one who owns the folder and nothing else.
inline run_result run_bound_child(const scratch_folder &scratch, const std::function<void()> &action) {
    constexpr uid_t somebody = 65534;
    return run_child(scratch, [&] {
        for (const auto &entry : std::filesystem::recursive_directory_iterator(scratch.dir))
            (void)!::lchown(entry.path().c_str(), somebody, somebody);
        (void)!::chown(scratch.dir.c_str(), somebody, somebody);
        (void)!::setuid(somebody);
        action();
    });
}

/// Expects a run to its end; gives what it printed.
inline std::string succeed(const run_result &result) {
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    return result.out;
}

/// Expects a text to hold a part.
inline void expect_part(const std::string &text, const std::string &part) {
    EXPECT_NE(text.find(part), std::string::npos) << part << " is not in\n" << text;
}
