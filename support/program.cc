#include "support/program.hh"

#include "support/console.hh"
#include "support/message.hh"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace {

[[noreturn]] void no_memory() {
    MSG_fatal_error(MSG_NO_MEMORY);
}

/// Comes before the constructors of global objects, which may allocate.
[[gnu::constructor(101)]] void watch_memory() {
    std::set_new_handler(no_memory);
}

void ignore_signal(int) {}

void open_standard_streams() {
    int file = 0;
    do {
        file = ::open("/dev/null", O_RDWR);
    } while (file >= 0 && file <= STDERR_FILENO);
    if (file > STDERR_FILENO)
        ::close(file);
}

} // namespace

void start_program() {
    open_standard_streams();
    // A handler, where ignoring would do, because the tools that a run starts do not inherit it.
    for (int signal : {SIGPIPE, SIGXFSZ})
        std::signal(signal, ignore_signal);
    watch_sinks();
}

void *checked_malloc(size_t size) {
    void *memory = std::malloc(size);
    if (memory == nullptr)
        no_memory();
    return memory;
}

std::FILE *open_stream(const char *name, const char *mode) {
    std::FILE *stream = std::fopen(name, mode);
    if (stream == nullptr && errno == ENOMEM)
        no_memory();
    return stream;
}
