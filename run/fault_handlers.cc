#include "run/fault_handlers.hh"

#include "support/console.hh"
#include "support/whole_file.hh"

#include <csignal>
#include <cstring>
#include <unistd.h>

namespace {

alignas(16) char fault_stack[64 * 1024]; ///< a run that has overflown its own stack still says so

constexpr const char *fault_text =
    "\nInternal Error:\n"
    "Please contact the rimweave developers and send them the report and the input files of this run.\n";

void write_now(int file, const char *text) {
    [[maybe_unused]] ssize_t written = ::write(file, text, std::strlen(text));
}

} // namespace

// Both sinks are flushed after every text, so that the calls below the streams keep the order. Neither the
// streams nor the exit handlers are entered: the fault may have struck inside them.
void dosegv(int) {
    write_now(STDOUT_FILENO, fault_text);
    if (fd != nullptr)
        write_now(::fileno(fd), fault_text);
    discard_unfinished_files();
    ::_exit(255);
}

void install_fault_handlers() {
    stack_t stack = {};
    stack.ss_sp = fault_stack;
    stack.ss_size = sizeof fault_stack;
    ::sigaltstack(&stack, nullptr);
    struct sigaction action = {};
    action.sa_handler = dosegv;
    action.sa_flags = SA_ONSTACK | static_cast<int>(SA_RESETHAND);
    ::sigaction(SIGSEGV, &action, nullptr);
}
