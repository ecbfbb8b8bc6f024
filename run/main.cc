#include "run/fault_handlers.hh"
#include "run/sequence.hh"
#include "support/console.hh"
#include "support/message.hh"

#include <exception>
#include <new>

int main(int argc, char **argv) {
    open_standard_streams();
    try {
        run_sequence(argc, argv);
    } catch (const std::bad_alloc &) {
        MSG_fatal_error(MSG_NO_MEMORY);
    } catch (const std::exception &fault) {
        error_printf("%s\n", fault.what());
        dosegv(0);
    }
}
