// The guide on a real terminal: a pseudo-terminal with its echo, its line editing and its end-of-input key.
#include "tests/guide/guide_run.hh"

#include <cerrno>
#include <poll.h>
#include <pty.h>

namespace {

/// A run of the guide whose three streams are a terminal.
struct terminal_session {
    int terminal = -1;
    pid_t child = -1;
    std::string seen; ///< all that the terminal has shown

    explicit terminal_session(const guide_folder &guide) {
        std::string command = "cd '" + guide.scratch.dir.string() + "'; " + guide.command("-add_tap_only");
        child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
            ::_exit(127);
        }
        EXPECT_GT(child, 0);
    }
    /// Reads until what came since the last key ends with `text`; false when the run ends or hangs first.
    bool wait_for(const std::string &text) {
        size_t start = seen.size();
        while (seen.size() < start + text.size() || !seen.ends_with(text))
            if (!read_some())
                return false;
        return true;
    }
    bool read_some() {
        pollfd ready = {terminal, POLLIN, 0};
        char bytes[4096];
        if (::poll(&ready, 1, 30000) <= 0)
            return false;
        ssize_t length = ::read(terminal, bytes, sizeof bytes);
        if (length > 0)
            seen.append(bytes, static_cast<size_t>(length));
        return length > 0;
    }
    void type(const std::string &keys) const {
        EXPECT_EQ(::write(terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    int end() {
        while (read_some())
            continue;
        ::close(terminal);
        int raw = 0;
        ::waitpid(child, &raw, 0);
        return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    }
};

} // namespace

TEST(GuideTerminal, ASessionWithItsEcho) {
    guide_folder guide;
    terminal_session session(guide);
    const struct {
        const char *prompt, *keys;
    } steps[] = {
        {"                     Enter Command : ", "7\n"},
        {"             Enter Command : ", "1\n"},
        {"             Enter Signal name : ", "ab\x7f"
                                              "c\n"}, // the terminal's own line editing
        {"             Enter Command : ", "1\n"},
        {"             Enter Signal name : ", "AC\n"},
        {"      Signal 'AC' is already in list.", "\n"},
        {"             Enter Command : ", "2\n"},
        {"             Enter Signal name : ", "\x04"}, // Ctrl-D leaves this menu alone
        {"                     Enter Command : ", "1\n"},
        {"                    Enter Command : ", "\x04"},
        {"                     Enter Command : ", "9\n"},
    };
    for (const auto &step : steps) {
        ASSERT_TRUE(session.wait_for(step.prompt)) << step.prompt << "\n" << session.seen;
        session.type(step.keys);
    }
    EXPECT_EQ(session.end(), 0);
    EXPECT_TRUE(session.seen.ends_with("Enter Command : 9\r\nFile was written to chip.bsc\r\n"
                                       "File was written to chip.lib\r\n"))
        << session.seen;
    expect_part(session.seen,
                "Enter Signal name : AC\r\n      Signal 'AC' is already in list.\r\n----- clear\r\n");
    expect_part(guide.scratch.read("chip.bsc"), " {\n             ac;\n }\n");
}
