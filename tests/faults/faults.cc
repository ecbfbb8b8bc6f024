// A library that is preloaded into every process of a run and makes the n-th call of a kind fail, once or
// from then on, or kills the whole run there. faults.py sets it up through the file that RW_FAULTS names,
// which all processes of the run map, so that the calls of one run are counted across its programs, shells
// and tools.
//
// Memory is counted in this project's own programs alone, writing where it goes to a regular file: that is
// what a full disk is. Nothing of the C++ library is used, since it allocates.
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

enum KIND : uint32_t { MALLOC = 1, WRITE = 2, OPEN = 4, RENAME = 8, FORK = 16 };
enum MODE : uint32_t { COUNT, ONCE, LASTING, KILL };

/// The file of RW_FAULTS.
struct CONTROL {
    uint32_t kinds; ///< kinds that count
    uint32_t mode;
    uint64_t point; ///< the call, counted from 1, that the mode speaks of
    uint64_t calls; ///< so far
    char where[64]; ///< program and call of the first failure
};
CONTROL *control = nullptr;
bool own_program = false;

/// The function of that name which ours stands in front of. Looked up at each call, since constructors of
/// other libraries may call before ours.
template <class FUNCTION> FUNCTION *real(FUNCTION *, const char *name) {
    void *found = dlsym(RTLD_NEXT, name);
    FUNCTION *function = nullptr;
    std::memcpy(&function, &found, sizeof function);
    return function;
}

[[gnu::constructor]] void start() {
    const char *name = program_invocation_short_name;
    own_program = std::strcmp(name, "rimweave") == 0 || std::strncmp(name, "kalm", 4) == 0;
    const char *path = std::getenv("RW_FAULTS");
    int file =
        path == nullptr ? -1 : static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, O_RDWR | O_CLOEXEC));
    void *map = mmap(nullptr, sizeof(CONTROL), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (file >= 0)
        close(file);
    if (map != MAP_FAILED)
        control = static_cast<CONTROL *>(map);
}

/// True when this call has to fail, with errno.
bool fails(KIND kind, const char *call, int reason) {
    if (control == nullptr || (control->kinds & kind) == 0 || (kind == MALLOC && !own_program))
        return false;
    uint64_t number = __atomic_add_fetch(&control->calls, 1, __ATOMIC_SEQ_CST);
    if (control->mode == COUNT || number < control->point ||
        (control->mode == ONCE && number > control->point))
        return false;
    if (number == control->point)
        std::snprintf(control->where, sizeof control->where, "%s: %s", program_invocation_short_name, call);
    if (control->mode == KILL)
        kill(0, SIGKILL);
    errno = reason;
    return true;
}

bool write_fails(int file, const char *call) {
    struct stat status;
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode) && fails(WRITE, call, ENOSPC);
}

} // namespace

extern "C" {

void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *memory, size_t size);

void *malloc(size_t size) {
    return fails(MALLOC, "malloc", ENOMEM) ? nullptr : __libc_malloc(size);
}
void *calloc(size_t count, size_t size) {
    return fails(MALLOC, "calloc", ENOMEM) ? nullptr : __libc_calloc(count, size);
}
void *realloc(void *memory, size_t size) {
    return fails(MALLOC, "realloc", ENOMEM) ? nullptr : __libc_realloc(memory, size);
}

// A disk that fills up takes the first half of what comes.
ssize_t write(int file, const void *bytes, size_t size) {
    if (write_fails(file, "write")) {
        if (control->mode != LASTING || control->calls != control->point || size < 2)
            return -1;
        size /= 2;
    }
    return syscall(SYS_write, file, bytes, size);
}
size_t fwrite(const void *bytes, size_t size, size_t count, FILE *stream) {
    if (!write_fails(fileno(stream), "fwrite"))
        return real(fwrite, "fwrite")(bytes, size, count, stream);
    stream->_flags |= 0x20; // as ferror reads it
    return 0;
}

int open(const char *path, int flags, ...) {
    va_list mode;
    va_start(mode, flags);
    unsigned bits = va_arg(mode, unsigned);
    va_end(mode);
    return fails(OPEN, path, EIO) ? -1 : static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, bits));
}
int openat(int folder, const char *path, int flags, ...) {
    va_list mode;
    va_start(mode, flags);
    unsigned bits = va_arg(mode, unsigned);
    va_end(mode);
    return fails(OPEN, path, EIO) ? -1 : static_cast<int>(syscall(SYS_openat, folder, path, flags, bits));
}
int open64(const char *path, int flags, ...) __attribute__((alias("open")));
FILE *fopen(const char *path, const char *mode) {
    return fails(OPEN, path, EIO) ? nullptr : real(fopen, "fopen")(path, mode);
}
DIR *opendir(const char *path) {
    return fails(OPEN, path, EIO) ? nullptr : real(opendir, "opendir")(path);
}
int mkostemp(char *path, int flags) {
    return fails(OPEN, path, EIO) ? -1 : real(mkostemp, "mkostemp")(path, flags);
}

int rename(const char *from, const char *to) noexcept {
    return fails(RENAME, to, EIO) ? -1 : static_cast<int>(syscall(SYS_rename, from, to));
}
int renameat(int from_folder, const char *from, int to_folder, const char *to) noexcept {
    return fails(RENAME, to, EIO)
               ? -1
               : static_cast<int>(syscall(SYS_renameat2, from_folder, from, to_folder, to, 0));
}
int renameat2(int from_folder, const char *from, int to_folder, const char *to, unsigned flags) noexcept {
    return fails(RENAME, to, EIO)
               ? -1
               : static_cast<int>(syscall(SYS_renameat2, from_folder, from, to_folder, to, flags));
}

int system(const char *command) {
    return fails(FORK, command, EAGAIN) ? -1 : real(system, "system")(command);
}
pid_t fork() noexcept {
    return fails(FORK, "fork", EAGAIN) ? -1 : real(fork, "fork")();
}
pid_t vfork() noexcept {
    return fork();
}
}
