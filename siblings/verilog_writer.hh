// Writing netlists as Verilog of IEEE 1364-2001.
#pragma once

#include "siblings/netlist.hh"
#include "siblings/text_sink.hh"

/// Appends the modules. A name that Verilog cannot hold, or two ports of both directions on one net, end the
/// program.
void VLOG_write_modules(TEXT_SINK &text, const NL_DESIGN &design,
                        const std::vector<const NL_MODULE *> &modules);
