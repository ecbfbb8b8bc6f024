// A temporary file is locked as long as its process may need it, so that a file without a lock is one that
// was left. The lock hangs on a descriptor of its own: the writer closes the file before it renames it, and
// between the two the name must stay.
#include "support/temporary_file.hh"

#include <cctype>
#include <dirent.h>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_set>

namespace {

constexpr std::string_view prefix = ".rw-";
constexpr std::string_view random_part = "XXXXXX";

int lock_of_last = -1; ///< holds the lock of the file made last
std::unordered_set<std::string> cleared_folders;

bool is_temporary_name(std::string_view name) {
    if (!name.starts_with(prefix) || name.size() != prefix.size() + random_part.size())
        return false;
    for (char c : name.substr(prefix.size()))
        if (std::isalnum(static_cast<unsigned char>(c)) == 0)
            return false;
    return true;
}

void remove_when_left(const std::string &path) {
    int file = ::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    struct stat state;
    if (file >= 0 && ::fstat(file, &state) == 0 && S_ISREG(state.st_mode) &&
        ::flock(file, LOCK_EX | LOCK_NB) == 0)
        ::unlink(path.c_str());
    if (file >= 0)
        ::close(file);
}

void clear_folder(const std::string &folder) {
    DIR *listing = ::opendir(folder.empty() ? "." : folder.c_str());
    if (listing == nullptr)
        return;
    while (const dirent *entry = ::readdir(listing))
        if (is_temporary_name(entry->d_name))
            remove_when_left(folder + entry->d_name);
    ::closedir(listing);
}

/// Locks a new file. False when another process took it for one that was left, before it had its lock.
bool lock_new_file(int file) {
    if (lock_of_last >= 0)
        ::close(lock_of_last);
    lock_of_last = ::fcntl(file, F_DUPFD_CLOEXEC, 0);
    ::flock(file, LOCK_EX); // without it, where a file system knows no locks, nothing is removed either
    struct stat state;
    return ::fstat(file, &state) != 0 || state.st_nlink > 0;
}

} // namespace

int make_temporary_file(const std::string &folder, std::string &path) {
    if (cleared_folders.insert(folder).second)
        clear_folder(folder);
    while (true) {
        path = folder + std::string(prefix) + std::string(random_part);
        int file = ::mkostemp(path.data(), O_CLOEXEC);
        if (file < 0 || lock_new_file(file))
            return file;
        ::close(file);
    }
}
