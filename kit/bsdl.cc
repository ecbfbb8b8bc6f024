// rimkit bsdl
#include "description/reader.hh"
#include "kit/boundary_register.hh"
#include "kit/chip.hh"
#include "kit/verbs.hh"
#include "planning/tracing.hh"
#include <cstdio>
namespace {
int run_bsdl(const KIT_CALL &call) {
    const std::string &d = call.names[0];
    bsdft_init();
    get_bs_dft_file((d + ".lib").c_str(), (d + ".bsc").c_str(), 0);
    open_sdb_file((d + "_jtag.c.sdb").c_str());
    BOUNDARY_REGISTER r;
    read_boundary_register(r);
    for (auto &row : r.rows)
        std::printf("%d %d %s %s pad %d ctl %d dis %d\n", row.cell, row.kind, r.cells[(size_t)row.cell].instance.c_str(),
                    row.port < 0 ? "*" : chip_port_name(row.port).c_str(), row.pad, row.control, row.disable);
    for (auto &f : r.faults)
        std::printf("FAULT %s %s: %s [%s %s]\n", f.rule, f.instance.c_str(), f.text.c_str(), f.net.c_str(), f.port.c_str());
    return 0;
}
}
const KIT_VERB kit_bsdl = {"bsdl", "Writes DESIGN.bsd.", "[options] DESIGN", {}, "  rimkit bsdl chip\n", false, run_bsdl};
