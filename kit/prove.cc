// rimkit prove: is the inserted chip, at rest, the chip from before?
#include "kit/prove.hh"

#include "kit/finished_run.hh"
#include "kit/json.hh"
#include "kit/progress.hh"
#include "kit/verbs.hh"
#include "planning/tracing.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <cstdio>

namespace {

constexpr KIT_OPTION OPTIONS[] = {
    {"cells", "FILE", "Verilog of the boundary cells, DESIGN_cells.v otherwise; may be repeated", true},
};

int run_prove(const KIT_CALL &call) {
    if (call.names.size() != 1)
        kit_usage_fault("one DESIGN, the name of the top module, is needed");
    std::string design = call.names[0];
    TOOL_set_search_path();
    need_run_files(design, "prove", {".lib", ".bsc", ".c.sdb", "_jtag.c.sdb", ".bso"});
    open_finished_run(design, design + "_jtag.c.sdb");
    BOUNDARY_REGISTER found;
    read_boundary_register(found);
    compare_boundary_order(found, design + ".bso");
    if (found.tap_obj < 0)
        TOOL_fail("", 0, "%s", register_fault_text(found.faults[0]).c_str());
    CHIP_COMPARISON result = compare_chips(found, design + ".c.sdb", declared_rest_values(*found.tap));
    for (const REGISTER_FAULT &fault : found.faults)
        std::printf("%s\n", register_fault_text(fault).c_str());
    for (const REGISTER_FAULT &fault : result.faults)
        std::printf("%s\n", register_fault_text(fault).c_str());
    std::printf("Comparison: %d nets, %d pins of %d instances, %d ports\n", result.nets, result.pins,
                result.objects, result.ports);
    return found.faults.empty() && result.faults.empty() ? KIT_DONE : KIT_FINDINGS;
}

} // namespace

const KIT_VERB kit_prove = {
    "prove",
    "Proves that the inserted chip, at rest, is the chip from before the run.",
    "[options] DESIGN",
    OPTIONS,
    "  rimkit prove --cells cells.v chip\n",
    false,
    run_prove,
};
