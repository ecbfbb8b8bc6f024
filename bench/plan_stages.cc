// The stages of planning timed one by one in the design folder it is started in: one line per stage with its
// name and the processor milliseconds. bench_flow --stages runs it on designs of several sizes.
//
//   plan_stages DESIGN
#include "description/reader.hh"
#include "planning/planning.hh"
#include "planning/tracing.hh"
#include "planning/validation.hh"
#include "support/fnm.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <utility>

namespace {

double milliseconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

template <class Stage> void timed(const char *name, Stage stage) {
    double start = milliseconds();
    stage();
    std::fprintf(stderr, "%s %.3f\n", name, milliseconds() - start);
}

const char *input(const std::string &name) {
    const char *found = FNM_find_input(name);
    if (found == nullptr) {
        std::fprintf(stderr, "plan_stages: there is no '%s'\n", name.c_str());
        std::exit(255);
    }
    return found;
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 2)
        return 255;
    std::string design = argv[1];
    CMD_set_path(nullptr, ".", "designs:lib:scanforge_lib");
    TOP_MODULE = argv[1];
    PATH = "";
    JTAG_OPTION[OPT_ADD_TAP] = 1;
    JTAG_LIB_FILE = input(design + ".lib");
    JTAG_BSC_FILE = input(design + ".bsc");
    MODULE_C_SDB = input(design + ".c.sdb");
    timed("descriptions", [] {
        bsdft_init();
        get_bs_dft_file(JTAG_LIB_FILE, JTAG_BSC_FILE, 0);
        check_scan_cells();
    });
    timed("opening", [] { open_sdb_file(MODULE_C_SDB); });
    timed("fields", [] {
        rimweave_init();
        check_necessary_fields();
    });
    timed("classification", [] { produce_opin_control_tab(); });
    timed("order", [] { arrange_opin_tab_from_tdo(); });
    timed("control_cells", [] { setup_driving_control_cell_and_highz_buf(); });
    timed("standard_ports", [] { bs_reset_standard_port_ptr_of_TAP(); });
    return 0;
}
