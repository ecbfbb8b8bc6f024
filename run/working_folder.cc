// A run works in files of fixed names: copies of modules beside the design, command files and results in the
// folder, the report. Two runs at once would edit each other's copies and still end well, so a run holds the
// folder itself locked. The kernel lets go of such a lock when the process ends in whatever way, and no file
// tells of it.
#include "run/working_folder.hh"

#include "support/run_state.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

bool is_there() {
    struct stat state;
    return ::stat(RIMWEAVE_OPATH, &state) == 0 && S_ISDIR(state.st_mode);
}

/// The process that holds a lock on the open file; 0 where the system does not show it, as for a process of
/// another container.
int lock_holder(int file) {
    struct stat state;
    if (::fstat(file, &state) != 0)
        return 0;
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);) {
        int process = 0;
        unsigned major = 0, minor = 0;
        unsigned long long inode = 0;
        if (std::sscanf(line.c_str(), "%*d: FLOCK %*s WRITE %d %x:%x:%llu", &process, &major, &minor,
                        &inode) == 4 &&
            inode == state.st_ino && makedev(major, minor) == state.st_dev)
            return process;
    }
    return 0;
}

/// The descriptor stays open: its end is the end of the lock. The tools that the run starts do not get it, or
/// one that outlives a killed run would hold the lock for it.
std::string lock_folder() {
    int folder = ::open(RIMWEAVE_OPATH, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0 && ::flock(folder, LOCK_EX | LOCK_NB) == 0)
        return {};
    if (folder < 0 || errno != EWOULDBLOCK)
        return format_text("\nERROR: can't lock %s (%s).\n\n", RIMWEAVE_OPATH, std::strerror(errno));
    int process = lock_holder(folder);
    std::string who = process > 0 ? format_text(", process %d", process) : "";
    return format_text("\nERROR: %s is used by another run%s.\n\n", RIMWEAVE_OPATH, who.c_str());
}

} // namespace

std::string take_working_folder() {
    // Another run may make the folder between the look and the command.
    if (!is_there() && run_shell("mkdir ./rimweave_lib") != 0 && !is_there())
        return "\nERROR: can't open default directory .\\'rimweave_lib'.\n\n";
    if (::access(RIMWEAVE_OPATH, W_OK) != 0)
        return format_text("\nERROR: %s, write permission denied.\n\n", RIMWEAVE_OPATH);
    return lock_folder();
}
