#include "support/message.hh"
#include "support/shell.hh"
#include "support/temporary_file.hh"
#include "support/whole_file.hh"
#include "tests/support/scratch.hh"

#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

TEST(MessageDeath, Layout) {
    EXPECT_EXIT(MSG_fatal("#017: one\ntwo\nthree"), testing::ExitedWithCode(255),
                "^FATAL 017: one\n           two\n           three$");
    EXPECT_EXIT(MSG_fatal_error(9), testing::ExitedWithCode(255),
                "^\nFATAL 003: Fatal Error - Error Code 9\n$");
}

TEST(Shell, WordsReachTheCommandAsTheyAre) {
    scratch_folder scratch;
    for (const char *name : {"chip", "dir/chip_TAP.v", "a;b", "a b", "it's", "$HOME", "`id`", "a&b|c", "*",
                             "", "\\n", "\"q\"", "~", "#c", "new\nline", "A=b", "chip[3]", "!x"}) {
        std::string word = shell_word(name);
        EXPECT_EQ(scratch.run("touch marker; printf '<%s>' " + word).out, "<" + std::string(name) + ">")
            << word;
    }
    EXPECT_EQ(shell_word("./rimweave_lib/chip.c.sdb"), "./rimweave_lib/chip.c.sdb");
    EXPECT_EQ(shell_word("-a b"), "'./-a b'"); // no switch
}

TEST(Shell, PlainCommandsRunAsFromAShell) {
    scratch_folder scratch;
    scratch.write("no_head", "echo $0 $PWD");
    scratch.write("closed", "");
    scratch.write("killed", "#!/bin/sh\nkill -9 $$\n");
    ASSERT_EQ(scratch.run("chmod 755 no_head killed").status, 0);
    auto ran = [&scratch](const std::string &line) {
        return run_child(scratch, [&line] {
            ::setenv("PWD", std::filesystem::current_path().c_str(), 1); // with another it is left to the shell
            ::signal(SIGQUIT, SIG_IGN);
            int status = run_shell(line);
            std::printf("%d\n", status);
        });
    };
    for (std::string command :
         {"ls -a  ./killed ", "ls none", "false", "no_such_program a", "./closed", "./no_head", ".", "A=b",
          "A=b ls", "cd ..", "printenv PWD", "readlink /proc/self/fd/0", "grep Sig /proc/self/status"}) {
        std::string quoted = command; // the same, but nothing that is plain
        quoted.insert(std::min(command.find(' '), command.size()), "''");
        run_result direct = ran(command), shell = ran(quoted);
        EXPECT_EQ(direct.out, shell.out) << command;
        EXPECT_EQ(direct.err, shell.err) << command;
    }
    EXPECT_EQ(ran("./killed").err, "ERROR: './killed' was ended by signal 9.\n");
}

TEST(Shell, OwnFolderComesLastOnPath) {
    std::string before = std::getenv("PATH");
    add_own_folder_to_path();
    EXPECT_EQ(std::getenv("PATH"),
              before + ":" + std::filesystem::read_symlink("/proc/self/exe").parent_path().string());
    ::unsetenv("PATH");
    add_own_folder_to_path();
    EXPECT_EQ(run_shell("ls / >/dev/null"), 0); // the system's tools are still there
    ::setenv("PATH", before.c_str(), 1);
}

TEST(WriteFile, ReplacesWholeAndKeepsWhatTheUserSet) {
    scratch_folder scratch;
    scratch.write("old", "a longer text than the new one");
    ASSERT_EQ(scratch.run("chmod 640 old; mkdir real; echo x >real/file; ln -s real/file link").status, 0);
    EXPECT_TRUE(write_text_file(scratch.path("old"), "new\n"));
    EXPECT_TRUE(write_text_file(scratch.path("link"), "through\n"));
    mode_t mask = ::umask(027);
    EXPECT_TRUE(write_text_file(scratch.path("fresh"), ""));
    ::umask(mask);
    EXPECT_EQ(scratch.read("old"), "new\n");
    EXPECT_EQ(scratch.read("real/file"), "through\n");
    EXPECT_EQ(scratch.run("stat -c %a old fresh; ls -A; readlink link").out,
              "640\n640\nfresh\nlink\nold\nreal\nreal/file\n");
}

TEST(WriteFile, RemovesWhatAKilledProcessLeftAndNothingElse) {
    scratch_folder scratch;
    for (const char *name : {".rw-aB3456", ".rw-short", ".rw-longer7", ".rw-a.b.c.", "kept"})
        scratch.write(name, "");
    scratch.write(".rw-folder/file", "");
    ASSERT_EQ(scratch.run("ln -s kept .rw-linked; mkfifo .rw-ispipe").status, 0);
    std::string busy;
    int file = make_temporary_file(scratch.path(""), busy);
    EXPECT_FALSE(scratch.has(".rw-aB3456"));
    ::close(file); // but not yet renamed
    scratch.write(".rw-aB3456", "");
    run_child(scratch, [] { write_text_file("new", ""); }); // a folder is cleared once under one name
    std::filesystem::rename(busy, scratch.path("renamed"));
    EXPECT_EQ(scratch.run("ls -A").out, ".rw-a.b.c.\n.rw-folder\n.rw-ispipe\n.rw-linked\n.rw-longer7\n"
                                        ".rw-short\nkept\nnew\nrenamed\n");
}

TEST(WriteFile, RefusesWhatCannotBeCreated) {
    scratch_folder scratch;
    scratch.write("dir/file", "kept");
    EXPECT_FALSE(write_text_file(scratch.path("gone/file"), "x"));
    EXPECT_FALSE(write_text_file(scratch.path("dir"), "x"));
    EXPECT_FALSE(write_text_file(scratch.path(std::string(300, 'n')), "x"));
    ASSERT_EQ(scratch.run("chmod 555 dir").status, 0); // the file may be written, but not replaced
    run_result result = run_bound_child(scratch, [] { std::printf("%d", write_text_file("dir/file", "x")); });
    EXPECT_EQ(result.out, "0");
    EXPECT_EQ(scratch.read("dir/file"), "kept");
}
