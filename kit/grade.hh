// How many faults in the netlist the bench of the patterns finds: a copy of the netlist has a switch at each
// place, the bench tells which fault is on, and one compiled simulation plays them all, a share on each core.
#pragma once

#include "kit/finished_run.hh"
#include "kit/patterns.hh"

#include <string>
#include <vector>

/// One fault that was planted.
struct GRADE_FAULT {
    std::string name;             ///< "BCELL3_OUT.SI stuck at 0"
    const char *reason = nullptr; ///< why a bench may not see it; null when none is known
    int32_t step = -1;            ///< that found it, or -1
};

/// Plants faults in DESIGN_jtag.c.sdb: pins of the boundary cells, of the TAP and of the pads that cells
/// serve stuck at 0 and at 1, enables inverted, the data of neighbours swapped. Writes DESIGN_graded.v,
/// compiles it with DESIGN_bench.v and the models, and plays each fault. A fault of a tool, and a
/// bench that fails without a fault, end the program.
std::vector<GRADE_FAULT> grade_patterns(const PATTERN_LIST &list, const BOUNDARY_REGISTER &found,
                                        const FINISHED_RUN &run);

/// The netlist with its switches, the TAP's name and faults from 1 on; faults[0] is the netlist without one.
struct GRADE_NETLIST {
    std::string text;
    std::vector<GRADE_FAULT> faults;
};
/// `delay` is that of a switch, in ns.
GRADE_NETLIST grade_netlist(const BOUNDARY_REGISTER &found, const std::string &design, double delay);

/// "873 of 900 planted faults found, 97.0 %; ...", the same in JSON, null when no fault was planted, and the
/// file DESIGN.grade.
std::string grade_summary(const std::vector<GRADE_FAULT> &faults);
std::string grade_json(const std::vector<GRADE_FAULT> &faults);
std::string grade_text(const PATTERN_LIST &list, const std::vector<GRADE_FAULT> &faults);
