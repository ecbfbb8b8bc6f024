#include "run/fault_handlers.hh"
#include "run/sequence.hh"
#include "support/console.hh"
#include "support/program.hh"

#include <exception>

int main(int argc, char **argv) {
    start_program();
    try {
        run_sequence(argc, argv);
    } catch (const std::exception &fault) {
        error_printf("%s\n", fault.what());
        dosegv(0);
    }
}
