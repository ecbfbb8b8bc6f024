#include "support/shell.hh"

#include "support/console.hh"
#include "support/temporary_file.hh"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool is_plain(char c) {
    auto byte = static_cast<unsigned char>(c);
    return std::isalnum(byte) || byte >= 0x80 || std::strchr("_-./+,:@%=", c) != nullptr;
}

std::string folder_of(const std::string &path) {
    size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

/// Writes all of the text; 0, or the errno of the first failure.
int write_all(int file, std::string_view text) {
    while (!text.empty()) {
        ssize_t done = ::write(file, text.data(), text.size());
        if (done < 0 && errno == EINTR)
            continue;
        if (done < 0)
            return errno;
        text.remove_prefix(static_cast<size_t>(done));
    }
    return 0;
}

[[noreturn]] void write_failed(const std::string &path, int reason) {
    vmr_fail("ERROR: can't write file '%s' (%s).\n\n", path.c_str(), std::strerror(reason));
}

/// Devices and pipes are written as they stand; there is nothing to keep and nothing to rename.
bool write_in_place(const std::string &path, std::string_view text) {
    std::fflush(nullptr); // keeps the order when the file is the console itself
    int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    int reason = write_all(file, text);
    if (::close(file) != 0 && reason == 0)
        reason = errno;
    if (reason != 0)
        write_failed(path, reason);
    return true;
}

mode_t mode_of_new_file() {
    mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
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

/// Where the bytes go in the end: behind a link, so that the user's link stays a link.
std::string resolved(const std::string &path) {
    char *real = ::realpath(path.c_str(), nullptr);
    if (real == nullptr)
        return path;
    std::string target(real);
    std::free(real);
    return target;
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
    return input.is_set ? std::system(command.c_str()) : -1;
}

void add_own_folder_to_path() {
    char self[PATH_MAX];
    ssize_t length = ::readlink("/proc/self/exe", self, sizeof self);
    if (length <= 0 || length >= static_cast<ssize_t>(sizeof self))
        return;
    std::string folder = folder_of(std::string(self, static_cast<size_t>(length)));
    if (folder.size() > 1)
        folder.pop_back();
    const char *path = std::getenv("PATH");
    std::string list = path == nullptr ? "" : path;
    if (list.empty()) { // the shell would fall back to the system's own list; appending alone would lose it
        char system_list[1024] = "/usr/bin:/bin";
        ::confstr(_CS_PATH, system_list, sizeof system_list);
        list = system_list;
    }
    ::setenv("PATH", (list + ":" + folder).c_str(), 1);
}

bool write_text_file(const std::string &path, std::string_view text) {
    struct stat known;
    bool exists = ::stat(path.c_str(), &known) == 0;
    if (!exists && errno != ENOENT) // no such file can be made, whatever its temporary name would do
        return false;
    if (exists && !S_ISREG(known.st_mode))
        return write_in_place(path, text);
    if (exists && ::access(path.c_str(), W_OK) != 0)
        return false;
    std::string target = exists ? resolved(path) : path;
    std::string temporary;
    int file = make_temporary_file(folder_of(target), temporary);
    if (file < 0)
        return false;
    int reason = write_all(file, text);
    if (reason == 0 && ::fchmod(file, exists ? known.st_mode & 07777 : mode_of_new_file()) != 0)
        reason = errno;
    if (::close(file) != 0 && reason == 0)
        reason = errno;
    if (reason == 0 && ::rename(temporary.c_str(), target.c_str()) != 0)
        reason = errno;
    if (reason != 0) {
        ::unlink(temporary.c_str());
        write_failed(path, reason);
    }
    return true;
}
