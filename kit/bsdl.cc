// rimkit bsdl: the chip's description for a board tester, DESIGN.bsd.
#include "description/reader.hh"
#include "kit/bsdl_file.hh"
#include "kit/cell_trials.hh"
#include "kit/engines.hh"
#include "kit/files.hh"
#include "kit/finished_run.hh"
#include "kit/json.hh"
#include "kit/progress.hh"
#include "kit/verbs.hh"
#include "planning/tracing.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace {

constexpr KIT_OPTION BSDL_OPTIONS[] = {
    {"basic", nullptr,
     "for readers that know less: no DESIGN_WARNING, INTEST_EXECUTION,\nPORT_GROUPING, own packages"},
    {"frequency", "HZ", "highest frequency of TCK, 10.0e6 otherwise"},
    {"runbist", "N,BITS", "RUNBIST ends after N cycles of TCK with BITS in its register"},
    {"output", "FILE", "the file to write, DESIGN.bsd otherwise"},
    {"opath", "DIR", "the folder that the run's -opath named"},
    {"cells", "FILE", "Verilog of the boundary cells, DESIGN_cells.v otherwise; may be repeated", true},
};

double frequency_of(const KIT_CALL &call) {
    std::string text = kit_value(call, "frequency", "10e6");
    char *end = nullptr;
    double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(value >= 1 && value <= 1e12))
        kit_usage_fault(format_text("--frequency: '%s' is no frequency in Hz", text.c_str()));
    return value;
}

/// "1000,0110".
void take_runbist(const KIT_CALL &call, BSDL_FILE &file) {
    if (!kit_has(call, "runbist"))
        return;
    std::string text = kit_value(call, "runbist");
    size_t comma = std::min(text.find(','), text.size());
    file.runbist_cycles = std::atoi(text.c_str());
    file.runbist_signature = text.substr(std::min(comma + 1, text.size()));
    bool is_number = comma > 0 && comma < 10 && text.find_first_not_of("0123456789") == comma;
    if (!is_number || file.runbist_cycles < 1 || file.runbist_signature.empty() ||
        file.runbist_signature.find_first_not_of("01") != text.npos)
        kit_usage_fault(format_text("--runbist: '%s' is no number of cycles and signature, as in 1000,0110",
                                    text.c_str()));
}

void show(const KIT_CALL &call, const BSDL_FILE &file, const BOUNDARY_REGISTER &found,
          const std::vector<std::string> &written) {
    if (kit_has(call, "json")) {
        std::string faults;
        for (const REGISTER_FAULT &fault : found.faults)
            faults += (faults.empty() ? "" : ", ") + register_fault_json(fault);
        std::printf("{\"design\": %s, \"cells\": %zu, \"files\": %s, \"warnings\": %s, \"findings\": [%s]}\n",
                    json_text(file.design).c_str(), found.cells.size(), json_list(written).c_str(),
                    json_list(file.warnings).c_str(), faults.c_str());
        return;
    }
    for (const REGISTER_FAULT &fault : found.faults)
        std::printf("%s\n", register_fault_text(fault).c_str());
    if (written.empty()) {
        std::printf("%s.bsd is not written: %zu findings\n", file.design.c_str(), found.faults.size());
        return;
    }
    for (const BSDL_NAMES::RENAMED &row : file.names.renamed)
        std::printf("renamed: %s is %s\n", row.from.c_str(), row.to.c_str());
    for (const std::string &warning : file.warnings)
        std::printf("WARNING: %s\n", warning.c_str());
    std::printf("%s: %zu boundary cells\n", written[0].c_str(), found.cells.size());
}

/// Puts the file where it belongs, or takes an older one away: what is not right has no file.
std::vector<std::string> write_files(const BSDL_FILE &file, const BOUNDARY_REGISTER &found,
                                     const std::string &path) {
    std::string package = TOOL_join(TOOL_directory(path), file.cell_package + ".bsd");
    if (!found.faults.empty()) {
        if (::unlink(path.c_str()) == 0)
            kit_note("the earlier %s is taken away: it does not describe this netlist", path.c_str());
        return {};
    }
    std::vector<std::string> written = {path};
    if (!file.own_cells.empty()) {
        TOOL_write_file(package, bsdl_package_text(file));
        written.push_back(package);
    }
    TOOL_write_file(path, bsdl_text(file, found));
    return written;
}

int run_bsdl(const KIT_CALL &call) {
    FINISHED_RUN run = finished_run(call);
    BSDL_FILE file;
    file.design = run.design;
    file.frequency = frequency_of(call);
    file.basic = kit_has(call, "basic");
    take_runbist(call, file);
    need_run_files(run, "bsdl");
    open_finished_run(run);
    BOUNDARY_REGISTER found;
    read_boundary_register(found);
    compare_boundary_order(found, file.design + ".bso");
    compare_with_source(found, file.design + ".c.sdb");
    file.entity = bsdl_take_name(file.names, TOOL_base_name(file.design));
    file.cell_package = bsdl_take_name(file.names, file.entity + "_cells");
    file.package = bsdl_take_name(file.names, PACKAGE_TYPE != nullptr ? PACKAGE_TYPE : "DEFAULT_PACKAGE");
    if (!found.cells.empty()) {
        bsdl_take_ports(file, found);
        bsdl_take_instructions(file, found);
        bsdl_take_rows(file, found, try_cells(file, found, run.models, run_text(run, "_TAP")));
    }
    std::vector<std::string> written =
        write_files(file, found, kit_value(call, "output", file.design + ".bsd"));
    show(call, file, found, written);
    return found.faults.empty() ? KIT_DONE : KIT_FINDINGS;
}

} // namespace

const KIT_VERB kit_bsdl = {
    "bsdl",
    "Describes the inserted chip for a board tester: DESIGN.bsd (IEEE 1149.1-2001).",
    "[options] DESIGN",
    BSDL_OPTIONS,
    "  rimkit bsdl --frequency 20e6 chip\n",
    false,
    run_bsdl,
};
