// Writing netlists as VHDL of IEEE 1076-1993, which later readers take as well.
#pragma once

#include "siblings/netlist.hh"
#include "siblings/text_sink.hh"

/// Appends the modules as entities, each behind those that it instantiates. Modules and cells are
/// instantiated as components, which find the entities of their names. A name that VHDL cannot hold, or two
/// ports of both directions on one net, end the program.
void VHDL_write_modules(TEXT_SINK &text, const NL_DESIGN &design,
                        const std::vector<const NL_MODULE *> &modules);
