// rimkit patterns: test patterns of an inserted chip, DESIGN.svf, DESIGN.stil, DESIGN_bench.v and DESIGN.cov.
#include "kit/patterns.hh"

#include "kit/bench_play.hh"
#include "kit/chip.hh"
#include "kit/grade.hh"
#include "kit/json.hh"
#include "kit/progress.hh"
#include "kit/verbs.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr KIT_OPTION PATTERNS_OPTIONS[] = {
    {"cells", "FILE",
     "Verilog models of the cells; Icarus Verilog then plays the bench on them;\nmay be repeated", true},
    {"opath", "DIR", "the folder that the run's -opath named"},
    {"grade", nullptr,
     "plants faults in the netlist, tells how many of them the bench finds, and\nlists them in DESIGN.grade; "
     "needs --cells and Icarus Verilog"},
    {"frequency", "HZ", "frequency of TCK, 1e6 otherwise"},
    {"walk", "N",
     "walking patterns for at most N outputs and N enables, 64 otherwise;\ncounting patterns tell all apart"},
};

double number_of(const KIT_CALL &call, const char *option, const char *otherwise, double least, double most) {
    std::string text = kit_value(call, option, otherwise);
    char *end = nullptr;
    double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(value >= least && value <= most))
        kit_usage_fault(
            format_text("--%s: '%s' is no number from %g to %g", option, text.c_str(), least, most));
    return value;
}

/// What the walk finds wrong, and what the instruction table does.
std::vector<std::string> read_chip(BOUNDARY_REGISTER &found, BSDL_FILE &table) {
    read_boundary_register(found);
    if (!found.cells.empty()) {
        compare_boundary_order(found, table.design + ".bso");
        compare_with_source(found, table.design + ".c.sdb");
        for (int32_t port = 0; port < port_count; ++port)
            table.word_of_port.push_back(chip_port_name(port));
        bsdl_take_instructions(table, found);
    }
    std::vector<std::string> faults;
    for (const REGISTER_FAULT &fault : found.faults)
        faults.push_back(register_fault_text(fault));
    for (const char *name : {"EXTEST", "SAMPLE"})
        if (bsdl_instruction(table, name) == nullptr)
            faults.push_back(format_text("ERROR: instruction: there is no %s", name));
    return faults;
}

/// Plays the bench on the chip, its lines in DESIGN_bench.log; its last line, or why there is none.
std::string play(const PATTERN_LIST &list, const BOUNDARY_REGISTER &found, const BENCH_CHIP &chip) {
    if (!chip.why_not.empty())
        return "not run: " + chip.why_not;
    PATTERN_LIST played = list;
    std::string said;
    if (std::string why = play_bench(played, found, chip, said); !why.empty())
        TOOL_fail("", 0, "%s_bench.v: %s.", list.design.c_str(), why.c_str());
    TOOL_write_file(list.design + "_bench.log", said);
    size_t at = said.rfind("BENCH ");
    return said.substr(at, said.find('\n', at) - at) +
           (chip.why_no_core.empty() ? "" : "; " + chip.why_no_core);
}

int refuse(const KIT_CALL &call, const std::string &design, const std::vector<std::string> &faults) {
    for (const char *ending : {".svf", "_bench.v", ".cov", ".stil", ".grade"})
        if (::unlink((design + ending).c_str()) == 0)
            kit_note("the earlier %s%s is taken away: it does not fit this netlist", design.c_str(), ending);
    if (kit_has(call, "json")) {
        std::printf("{\"design\": %s, \"files\": [], \"findings\": %s}\n", json_text(design).c_str(),
                    json_list(faults).c_str());
        return KIT_FINDINGS;
    }
    for (const std::string &fault : faults)
        std::printf("%s\n", fault.c_str());
    std::printf("no patterns are written: %zu findings\n", faults.size());
    return KIT_FINDINGS;
}

std::vector<std::string> write_patterns(const PATTERN_LIST &list) {
    std::vector<int32_t> lines;
    std::string svf = pattern_svf(list, lines);
    const std::pair<const char *, std::string> texts[] = {{".svf", svf},
                                                          {"_bench.v", pattern_bench(list)},
                                                          {".cov", pattern_cover(list, lines)},
                                                          {".stil", pattern_stil(list)}};
    std::vector<std::string> files;
    for (const auto &[ending, text] : texts) {
        files.push_back(list.design + ending);
        TOOL_write_file(files.back(), text);
    }
    return files;
}

/// What the verb says in the end.
void tell(const KIT_CALL &call, const PATTERN_LIST &list, const std::vector<std::string> &files,
          const std::string &bench, const std::vector<GRADE_FAULT> &planted) {
    if (kit_has(call, "json")) {
        std::printf("{\"design\": %s, \"steps\": %zu, \"files\": %s, \"bench\": %s, \"notes\": %s, "
                    "\"grade\": %s, \"findings\": []}\n",
                    json_text(list.design).c_str(), list.steps.size(), json_list(files).c_str(),
                    json_text(bench).c_str(), json_list(list.notes).c_str(), grade_json(planted).c_str());
        return;
    }
    for (const std::string &note : list.notes)
        std::printf("note: %s\n", note.c_str());
    for (const std::string &file : files)
        std::printf("%s%s", &file == files.data() ? "" : " ", file.c_str());
    std::printf(": %zu steps for %zu boundary cells\n", list.steps.size(), list.cells.size());
    if (!bench.empty())
        std::printf("%s\n", bench.c_str());
    if (!planted.empty())
        std::printf("%s\n", grade_summary(planted).c_str());
}

int run_patterns(const KIT_CALL &call) {
    FINISHED_RUN run = finished_run(call);
    PATTERN_LIST list;
    list.design = run.design;
    list.frequency = number_of(call, "frequency", "1e6", 1, 1e9);
    list.walk_limit = static_cast<size_t>(number_of(call, "walk", "64", 0, 1e6));
    bool is_played = kit_has(call, "cells"), is_graded = kit_has(call, "grade");
    if (is_graded && !is_played)
        kit_usage_fault("--grade needs the models of the cells: --cells FILE");
    need_run_files(run, "patterns");
    open_finished_run(run);
    BOUNDARY_REGISTER found;
    BSDL_FILE table;
    table.design = list.design;
    if (std::vector<std::string> faults = read_chip(found, table); !faults.empty())
        return refuse(call, list.design, faults);
    make_patterns(list, found, table);
    std::vector<std::string> files = write_patterns(list);
    BENCH_CHIP chip;
    if (is_played)
        chip = bench_chip(run, found);
    if (is_graded && !(chip.why_not + chip.why_no_core).empty())
        TOOL_fail("", 0, "--grade: %s.", (chip.why_not.empty() ? chip.why_no_core : chip.why_not).c_str());
    std::string result = is_played ? play(list, found, chip) : "";
    bool is_good = result.empty() || result.starts_with("BENCH PASS") || result.starts_with("not run");
    std::vector<GRADE_FAULT> planted;
    if (is_graded && is_good) {
        planted = grade_patterns(list, found, run);
        files.push_back(list.design + ".grade");
        TOOL_write_file(files.back(), grade_text(list, planted));
    }
    tell(call, list, files, result, planted);
    return is_good ? KIT_DONE : KIT_FINDINGS;
}

} // namespace

const KIT_VERB kit_patterns = {
    "patterns",
    "Writes test patterns of the inserted chip: DESIGN.svf, .stil, _bench.v, .cov.",
    "[options] DESIGN",
    PATTERNS_OPTIONS,
    "  rimkit patterns --cells pads.v --cells chip_cells.v chip\n",
    false,
    run_patterns,
};
