#include "support/whole_file.hh"

#include "support/console.hh"
#include "support/temporary_file.hh"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Names of the temporary files, for those who must not allocate; an empty one is free. The first character
/// is set last and cleared first.
char unfinished[2][PATH_MAX];

std::string folder_of(const std::string &path) {
    return path.substr(0, path.rfind('/') + 1);
}

bool refuse(int reason) {
    errno = reason;
    return false;
}

/// What is known of an earlier file. False, with errno, when there can be no file `path`.
bool look_at(const std::string &path, bool *exists, struct stat *status) {
    *exists = ::stat(path.c_str(), status) == 0;
    if (!*exists)
        return errno == ENOENT;
    if (S_ISDIR(status->st_mode))
        return refuse(EISDIR);
    return ::access(path.c_str(), W_OK) == 0;
}

/// Where the bytes go in the end: behind a link, so that the user's link stays a link. False, with errno,
/// when the link cannot be followed.
bool resolve(const std::string &path, bool exists, std::string *target) {
    char real[PATH_MAX];
    if (exists && ::realpath(path.c_str(), real) == nullptr)
        return false;
    *target = exists ? real : path;
    return true;
}

bool can_rename_in(const std::string &folder) {
    return ::access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) == 0;
}

mode_t mode_of_new_file() {
    mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

bool make_temporary(whole_file &file) {
    file.descriptor = make_temporary_file(folder_of(file.target), file.temporary);
    if (file.descriptor < 0)
        return false;
    file.listed = unfinished[0][0] == '\0' ? unfinished[0] : unfinished[1];
    if (file.temporary.size() < PATH_MAX) { // the system takes no longer name
        std::memcpy(file.listed + 1, file.temporary.c_str() + 1, file.temporary.size());
        file.listed[0] = file.temporary[0];
    }
    return true;
}

void remove_listed(char *name) {
    if (name[0] != '\0')
        ::unlink(name);
    name[0] = '\0';
}

void note_failure(whole_file &file, bool done) {
    if (!done && file.reason == 0)
        file.reason = errno;
}

void write_now(whole_file &file, const char *bytes, size_t size) {
    while (size > 0 && file.reason == 0) {
        ssize_t done = ::write(file.descriptor, bytes, size);
        if (done < 0 && errno == EINTR)
            continue;
        note_failure(file, done >= 0);
        if (done < 0)
            return;
        bytes += done;
        size -= static_cast<size_t>(done);
    }
}

bool begin(whole_file &file, const std::string &path) {
    struct stat earlier {};
    bool exists = false;
    if (!look_at(path, &exists, &earlier) || !resolve(path, exists, &file.target))
        return false;
    file.mode = exists ? earlier.st_mode & 07777 : mode_of_new_file();
    if (!exists || S_ISREG(earlier.st_mode))
        return make_temporary(file);
    std::fflush(nullptr); // keeps the order when the file is the console itself
    file.descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    return file.descriptor >= 0;
}

} // namespace

bool begin_file(whole_file &file, const std::string &path) {
    file = whole_file{};
    bool begun = begin(file, path);
    note_failure(file, begun);
    return begun || refuse(file.reason);
}

void write_pending(whole_file &file) {
    if (file.pending == nullptr)
        file.pending = std::make_unique_for_overwrite<char[]>(whole_file_piece);
    write_now(file, file.pending.get(), file.pending_size);
    file.pending_size = 0;
}

void put_bytes(whole_file &file, const void *bytes, size_t size) {
    if (size <= whole_file_piece) {
        std::copy_n(static_cast<const char *>(bytes), size, put_room(file, size));
        return;
    }
    write_pending(file);
    write_now(file, static_cast<const char *>(bytes), size);
}

bool finish_file(whole_file &file) {
    write_pending(file);
    bool in_place = file.temporary.empty();
    if (!in_place && file.reason == 0)
        note_failure(file, ::fchmod(file.descriptor, file.mode) == 0);
    note_failure(file, ::close(file.descriptor) == 0);
    file.descriptor = -1;
    if (!in_place && file.reason == 0)
        note_failure(file, ::rename(file.temporary.c_str(), file.target.c_str()) == 0);
    if (file.reason != 0 && !in_place)
        remove_listed(file.listed);
    if (!in_place)
        file.listed[0] = '\0';
    return file.reason == 0 || refuse(file.reason);
}

bool can_write_file(const std::string &path) {
    struct stat earlier {};
    bool exists = false;
    std::string target;
    if (!look_at(path, &exists, &earlier) || !resolve(path, exists, &target))
        return false;
    return (exists && !S_ISREG(earlier.st_mode)) || can_rename_in(folder_of(target));
}

void discard_unfinished_files() {
    for (char *name : unfinished)
        remove_listed(name);
}

bool write_text_file(const std::string &path, std::string_view text) {
    whole_file file;
    if (!begin_file(file, path))
        return false;
    put_bytes(file, text.data(), text.size());
    if (!finish_file(file))
        vmr_fail("ERROR: can't write file '%s' (%s).\n\n", path.c_str(), std::strerror(file.reason));
    return true;
}
