#include "kit/bench_play.hh"

#include "kit/chip.hh"
#include "kit/engines.hh"
#include "kit/findings.hh"
#include "kit/progress.hh"
#include "kit/test_logic.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

namespace {

constexpr int32_t MOST_CELLS = 50000; // of a chip that is simulated with its core

/// Leaf cells of the chip that no file has a model of. What has no output needs to be there alone.
std::vector<std::string> cells_without_model(const BOUNDARY_REGISTER &found, const VERILOG_MODULES &modules) {
    std::vector<bool> used(static_cast<size_t>(class_count));
    for (int32_t obj = 0; obj < obj_count; ++obj)
        if (obj_tab[obj].class_id >= 0 && obj != found.tap_obj)
            used[static_cast<size_t>(obj_tab[obj].class_id)] = true;
    std::vector<std::string> names;
    for (size_t i = 0; i < used.size(); ++i)
        if (std::string name = chip_class_name(static_cast<int32_t>(i));
            used[i] && name != NL_SOURCE_CLASS_0 && name != NL_SOURCE_CLASS_1) {
            auto module = modules.find(name);
            if (module == modules.end() ||
                (!module->second && chip_class_has(static_cast<int32_t>(i), SDB_OUTPUT)))
                names.push_back(name);
        }
    return names;
}

/// Takes away what the core would have to answer; the steps keep their numbers.
void leave_core_out(PATTERN_LIST &list) {
    for (PATTERN_STEP &step : list.steps)
        if ((step.rule == RULE_SAMPLE || step.rule == RULE_INTEST) && step.kind != STEP_IR) {
            step.rule = 0;
            for (std::string *text : {&step.tdo, &step.driven, &step.shown})
                text->assign(text->size(), '-');
        }
}

} // namespace

BENCH_CHIP bench_chip(const FINISHED_RUN &run, const BOUNDARY_REGISTER &found) {
    std::string netlist = run_text(run, "_jtag"), tap = run_text(run, "_TAP");
    BENCH_CHIP chip{run.models, engine_obstacle("iverilog", "iverilog"), ""};
    if (chip.why_not.empty())
        chip.why_not = verilog_obstacle(tap);
    if (!chip.why_not.empty())
        return chip;
    chip.files.push_back(tap);
    VERILOG_MODULES modules = modules_of(chip.files);
    if (std::vector<std::string> missing = test_logic_lacks(found, modules); !missing.empty()) {
        chip.why_not = "there is no Verilog model (--cells) of " + few_of(missing);
        return chip;
    }
    std::string why =
        obj_count > MOST_CELLS ? format_text("the chip has %d cells", obj_count) : verilog_obstacle(netlist);
    if (why.empty()) {
        modules.merge(modules_of({netlist}));
        if (std::vector<std::string> missing = cells_without_model(found, modules); missing.empty())
            chip.files.push_back(netlist);
        else
            why = "there is no Verilog model (--cells) of " + few_of(missing);
    }
    if (!why.empty())
        chip.why_no_core = "the core is not simulated: " + why;
    return chip;
}

std::string play_bench(PATTERN_LIST &list, const BOUNDARY_REGISTER &found, const BENCH_CHIP &chip,
                       std::string &said) {
    SCRATCH_FOLDER folder;
    std::string bench = folder.path + "/bench.v", program = folder.path + "/bench.vvp",
                log = folder.path + "/log";
    std::vector<std::string> words = {"iverilog", "-g2005", "-s", "bench", "-o", program, bench};
    words.insert(words.end(), chip.files.begin(), chip.files.end());
    if (!chip.why_no_core.empty()) {
        leave_core_out(list);
        words.push_back(folder.path + "/test_logic.v");
        TOOL_write_file(words.back(), test_logic_text(found, list.design));
    }
    TOOL_write_file(bench, pattern_bench(list));
    KIT_PROGRESS progress("simulating the chip");
    if (std::string fault = run_engine(words, log); !fault.empty())
        return fault;
    if (std::string fault = run_engine({"vvp", "-n", program}, log); !fault.empty())
        return fault;
    said = TOOL_read_file(log);
    return said.find("\nBENCH ") == said.npos && !said.starts_with("BENCH ") ? "the simulation broke off"
                                                                             : "";
}
