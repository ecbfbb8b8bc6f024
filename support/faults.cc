#include "support/faults.hh"

#include <cstdlib>

FAULT_COLLECTOR *fault_collector = nullptr;

FAULT_COLLECTOR::FAULT_COLLECTOR() {
    fault_collector = this;
}

FAULT_COLLECTOR::~FAULT_COLLECTOR() {
    fault_collector = nullptr;
}

void end_process(int status) {
    if (fault_collector != nullptr)
        throw END_OF_STEP{status};
    std::exit(status);
}
