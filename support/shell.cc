#include "support/shell.hh"

#include "support/console.hh"
#include "support/message.hh"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

bool is_plain(char c) {
    auto byte = static_cast<unsigned char>(c);
    return std::isalnum(byte) || byte >= 0x80 || std::strchr("_-./+,:@%=", c) != nullptr;
}

/// Standard input is /dev/null as long as this lives. A command that finds a terminal there may ask, and take
/// the silence or a stray answer for a "no" that leaves its status at 0.
struct empty_input {
    int own = -1;
    bool is_set = false;

    empty_input() {
        int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        own = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        is_set = nothing >= 0 && own >= 0 && ::dup2(nothing, STDIN_FILENO) >= 0;
        if (nothing >= 0)
            ::close(nothing);
    }
    ~empty_input() {
        if (is_set)
            ::dup2(own, STDIN_FILENO);
        if (own >= 0)
            ::close(own);
    }
    empty_input(const empty_input &) = delete;
    empty_input &operator=(const empty_input &) = delete;
};

/// As long as this lives, the keyboard's signals end the command alone and nobody else hears of its end.
struct command_signals {
    struct sigaction interrupt {
    }, quit{}; ///< what holds outside
    sigset_t mask{};

    command_signals() {
        struct sigaction ignore {};
        ignore.sa_handler = SIG_IGN;
        ::sigaction(SIGINT, &ignore, &interrupt);
        ::sigaction(SIGQUIT, &ignore, &quit);
        sigset_t child;
        sigemptyset(&child);
        sigaddset(&child, SIGCHLD);
        ::sigprocmask(SIG_BLOCK, &child, &mask);
    }
    ~command_signals() {
        ::sigaction(SIGINT, &interrupt, nullptr);
        ::sigaction(SIGQUIT, &quit, nullptr);
        ::sigprocmask(SIG_SETMASK, &mask, nullptr);
    }
    command_signals(const command_signals &) = delete;
    command_signals &operator=(const command_signals &) = delete;
};

/// The words of a command that needs no shell to be understood; else none.
std::vector<std::string> plain_words(const std::string &command) {
    std::vector<std::string> words;
    bool in_word = false;
    for (char c : command) {
        if (c != ' ' && !is_plain(c))
            return {};
        if (c != ' ' && !in_word)
            words.emplace_back();
        in_word = c != ' ';
        if (in_word)
            words.back() += c;
    }
    if (!words.empty() && words[0].find('=') != std::string::npos) // sets a variable
        return {};
    return words;
}

/// Whether PWD names the working folder; a shell sees to that for its commands where it does not.
bool names_true_folder() {
    const char *folder = std::getenv("PWD");
    struct stat named {
    }, here{};
    return folder != nullptr && folder[0] == '/' && ::stat(folder, &named) == 0 && ::stat(".", &here) == 0 &&
           named.st_dev == here.st_dev && named.st_ino == here.st_ino;
}

/// The program with the signals that it would have from outside. An error number; 0 is success.
int spawn_program(std::vector<std::string> &words, const command_signals &outside, pid_t *process) {
    std::vector<char *> arguments;
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    sigset_t restored;
    sigemptyset(&restored);
    if (outside.interrupt.sa_handler != SIG_IGN)
        sigaddset(&restored, SIGINT);
    if (outside.quit.sa_handler != SIG_IGN)
        sigaddset(&restored, SIGQUIT);
    posix_spawnattr_t attributes;
    int fault = ::posix_spawnattr_init(&attributes);
    if (fault != 0)
        return fault;
    ::posix_spawnattr_setsigdefault(&attributes, &restored);
    ::posix_spawnattr_setsigmask(&attributes, &outside.mask);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    fault = ::posix_spawnp(process, arguments[0], nullptr, &attributes, arguments.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    return fault;
}

/// Runs a command of plain words without a shell, whose start takes as long as that of a small tool. False
/// when only a shell can run it or tell why not.
bool run_plain(const std::string &command, int *status) {
    std::vector<std::string> words = plain_words(command);
    if (words.empty() || std::getenv("PATH") == nullptr || !names_true_folder())
        return false;
    command_signals outside;
    pid_t process = -1;
    if (spawn_program(words, outside, &process) != 0)
        return false;
    while (::waitpid(process, status, 0) < 0)
        if (errno != EINTR) {
            *status = -1;
            break;
        }
    return true;
}

} // namespace

std::string shell_word(std::string_view name) {
    if (name.starts_with('-')) // a command would take it for a switch
        return shell_word("./" + std::string(name));
    bool plain = !name.empty();
    for (char c : name)
        plain = plain && is_plain(c);
    if (plain)
        return std::string(name);
    std::string word = "'";
    for (char c : name) {
        if (c == '\'')
            word += "'\\''";
        else
            word += c;
    }
    return word + "'";
}

int run_shell(const std::string &command) {
    std::fflush(nullptr);
    empty_input input;
    int status = -1;
    if (input.is_set && !run_plain(command, &status))
        status = std::system(command.c_str());
    if (status == -1)
        error_printf("ERROR: can't run '%s' (%s).\n", command.c_str(), std::strerror(errno));
    else if (WIFSIGNALED(status))
        error_printf("ERROR: '%s' was ended by signal %d.\n", command.c_str(), WTERMSIG(status));
    return status;
}

void add_own_folder_to_path() {
    char self[PATH_MAX];
    ssize_t length = ::readlink("/proc/self/exe", self, sizeof self);
    if (length <= 0 || length >= static_cast<ssize_t>(sizeof self))
        return;
    std::string folder(self, static_cast<size_t>(length));
    folder.resize(std::max<size_t>(folder.rfind('/'), 1)); // "/" stays
    const char *path = std::getenv("PATH");
    std::string list = path == nullptr ? "" : path;
    if (list.empty()) { // the shell would fall back to the system's own list; appending alone would lose it
        char system_list[1024] = "/usr/bin:/bin";
        ::confstr(_CS_PATH, system_list, sizeof system_list);
        list = system_list;
    }
    if (::setenv("PATH", (list + ":" + folder).c_str(), 1) != 0)
        MSG_fatal_error(MSG_NO_MEMORY);
}
