#include "run/fault_handlers.hh"
#include "run/sequence.hh"
#include "support/console.hh"
#include "support/heap.hh"
#include "support/program.hh"

#include <exception>

int main(int argc, char **argv) {
    start_program();
    keep_heap_in_large_pages();
    try {
        run_sequence(argc, argv);
    } catch (const std::exception &fault) {
        error_printf("%s\n", fault.what());
        dosegv(0);
    }
}
