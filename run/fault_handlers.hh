// What a run does about faults that come from outside its own logic.
#pragma once

/// Installs the handler of the memory fault, on a stack of its own.
void install_fault_handlers();

/// Prints that the program has failed and whom to tell, and ends the process with status 255. Safe in a
/// handler.
[[noreturn]] void dosegv(int signal_number);
