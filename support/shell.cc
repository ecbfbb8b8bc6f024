#include "support/shell.hh"

#include "support/console.hh"
#include "support/message.hh"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

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
    int status = !input.is_set ? -1 : std::system(command.c_str());
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
