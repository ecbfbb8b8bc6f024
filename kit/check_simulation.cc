// Rules that a simulation shows: the steps of `rimkit patterns` are played on the chip by Icarus Verilog, and
// each fault of the bench is a finding of the rule that its step proves.
#include "kit/check.hh"

#include "kit/bsdl_file.hh"
#include "kit/chip.hh"
#include "kit/engines.hh"
#include "kit/patterns.hh"
#include "kit/progress.hh"
#include "kit/test_logic.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>

namespace {

constexpr size_t WALKED_CELLS = 300; // a longer register gets counting patterns alone
constexpr int32_t TOLD_FAULTS = 1000000;
constexpr size_t PLACES_OF_RULE = 5; // findings that are told one by one
constexpr int32_t RULE_OF_TDO = 11, RULE_OF_FLUSH = 12, RULE_OF_SAMPLE = 21, RULE_OF_INTEST = 25;
constexpr int32_t MOST_CELLS = 50000; // of a chip that is simulated with its core

/// What is needed of the instruction table, and the rule that speaks of it.
struct INSTRUCTION_WORDS {
    const char *words; ///< how the fault begins, or what it holds
    int32_t rule;
};
constexpr INSTRUCTION_WORDS INSTRUCTION_FAULTS[] = {
    {"the opcode of all ones", 8},
    {"%INSTRUCTION_CAPTURE", 6},
    {"IDCODE", 10},
    {"manufacturer", 10},
    {"USERCODE", 10},
    {"EXTEST", 19},
    {"SAMPLE", 19},
    {"PRELOAD", 19},
    {"BYPASS", 8},
    {"CLAMP", 23},
    {"HIGHZ", 24},
    {"INTEST", 25},
    {"", 34},
};

/// Rules about one instruction, which a chip need not have.
constexpr INSTRUCTION_WORDS INSTRUCTION_OF_RULE[] = {
    {"IDCODE", 10}, {"CLAMP", 23}, {"HIGHZ", 24}, {"INTEST", 25}, {"RUNBIST", 26}};

// ---- the bench and what it says -----------------------------------------------------------------------

/// What stands in the way of the patterns.
std::string chip_obstacle(const CHECK_CHIP &chip, const BSDL_FILE &table) {
    for (int32_t port : {PORT_TDI, PORT_TDO, PORT_TMS, PORT_TCK})
        if (chip.found.test_ports[port] < 0)
            return "a pin of the TAP reaches no port (rule 32)";
    for (const char *name : {"EXTEST", "SAMPLE"})
        if (bsdl_instruction(table, name) == nullptr)
            return std::string("there is no ") + name;
    return chip.found.rows.empty() ? "the chain is broken (rule 13)" : "";
}

/// Leaf cells of the chip that no file has a model of.
std::vector<std::string> cells_without_model(const CHECK_CHIP &chip, const std::set<std::string> &modules) {
    std::vector<bool> used(static_cast<size_t>(class_count));
    for (int32_t obj = 0; obj < obj_count; ++obj)
        if (obj_tab[obj].class_id >= 0 && obj != chip.found.tap_obj)
            used[static_cast<size_t>(obj_tab[obj].class_id)] = true;
    std::vector<std::string> names;
    for (size_t i = 0; i < used.size(); ++i)
        if (std::string name = chip_class_name(static_cast<int32_t>(i));
            used[i] && !modules.contains(name) && name != NL_SOURCE_CLASS_0 && name != NL_SOURCE_CLASS_1)
            names.push_back(name);
    return names;
}

/// The Verilog that is simulated: the whole chip where all cells have a model, else the test logic alone.
/// Empty, or why there is none.
std::string find_sources(CHECK_CHIP &chip, std::vector<std::string> &files) {
    std::string netlist = written_file(chip, "_jtag.v"), tap = written_file(chip, "_TAP.v");
    if (!TOOL_exists(tap))
        return "there is no " + tap;
    files = chip.models;
    files.push_back(tap);
    if (std::vector<std::string> missing = test_logic_lacks(chip.found, modules_of(files)); !missing.empty())
        return "there is no Verilog model (--cells) of " + few_of(missing);
    if (obj_count > MOST_CELLS)
        chip.play.why_no_core = format_text("the core is not simulated: the chip has %d cells", obj_count);
    else if (!TOOL_exists(netlist))
        chip.play.why_no_core = "the core is not simulated: there is no " + netlist;
    else {
        files.push_back(netlist);
        std::vector<std::string> missing = cells_without_model(chip, modules_of(files));
        if (!missing.empty()) {
            files.pop_back();
            chip.play.why_no_core =
                "the core is not simulated: there is no Verilog model (--cells) of " + few_of(missing);
        }
    }
    return "";
}

/// Compiles and plays the bench; `said` gets its lines.
std::string play_bench(const CHECK_CHIP &chip, const PATTERN_LIST &list, std::vector<std::string> files,
                       std::string &said) {
    SCRATCH_FOLDER folder;
    if (folder.path.empty())
        return "there is no folder for a simulation";
    std::string bench = folder.path + "/bench.v", program = folder.path + "/bench.vvp",
                log = folder.path + "/log";
    TOOL_write_file(bench, pattern_bench(list));
    if (!chip.play.why_no_core.empty()) {
        files.push_back(folder.path + "/test_logic.v");
        TOOL_write_file(files.back(), test_logic_text(chip.found, list.design));
    }
    std::vector<std::string> words = {"iverilog", "-g2005", "-s", "bench", "-o", program, bench};
    words.insert(words.end(), files.begin(), files.end());
    KIT_PROGRESS progress("simulating the chip");
    if (std::string fault = run_engine(words, log); !fault.empty())
        return fault;
    if (std::string fault = run_engine({"vvp", "-n", program}, log); !fault.empty())
        return fault;
    said = TOOL_read_file(log);
    return said.find("\nBENCH ") == said.npos && !said.starts_with("BENCH ") ? "the simulation broke off"
                                                                             : "";
}

/// True when scans of a rule's steps, whose bits are checked one by one, are of the boundary register.
bool reads_boundary(int32_t rule) {
    return rule == 19 || rule == RULE_OF_SAMPLE || rule == RULE_OF_INTEST;
}

/// "FAULT: step 12, EXTEST, pads off: pin y reads ...", with the reason as the step has it.
void take_line(CHECK_CHIP &chip, const PATTERN_LIST &list, const std::string &line) {
    constexpr std::string_view HEAD = "FAULT: step ";
    if (!line.starts_with(HEAD))
        return;
    auto step = static_cast<size_t>(std::strtoul(line.c_str() + HEAD.size(), nullptr, 10));
    size_t at = line.find(", ", HEAD.size());
    if (step >= list.steps.size() || at == line.npos)
        return;
    at += 2 + list.steps[step].reason.size() + 2;
    PLAYED_FAULT fault{list.steps[step].rule, list.steps[step].reason, line.substr(std::min(at, line.size())),
                       -1, -1};
    if (fault.text.starts_with("TDO "))
        fault.rule = RULE_OF_TDO;
    if (unsigned cell = 0;
        reads_boundary(fault.rule) && std::sscanf(fault.text.c_str(), "cell %u ", &cell) == 1)
        fault.cell = cell < list.cells.size() ? static_cast<int32_t>(cell) : -1;
    for (size_t i = 0; fault.text.starts_with("pin ") && i < list.pins.size(); ++i)
        if (fault.text.compare(4, list.pins[i].name.size() + 1, list.pins[i].name + " ") == 0)
            fault.port = static_cast<int32_t>(i);
    if (fault.cell >= 0)
        fault.port = list.cells[static_cast<size_t>(fault.cell)].pin;
    chip.play.faults.push_back(fault);
}

/// What the instruction table lacks, each a finding of the rule that it breaks.
void add_instruction_faults(CHECK_CHIP &chip, const std::vector<REGISTER_FAULT> &faults) {
    for (const REGISTER_FAULT &fault : faults)
        for (const INSTRUCTION_WORDS &row : INSTRUCTION_FAULTS)
            if (fault.text.find(row.words) != fault.text.npos) {
                add_check(chip, row.rule, {}, fault.text, FINDING_ERROR);
                break;
            }
}

/// Takes away what the core would have to answer.
void leave_core_out(PATTERN_LIST &list) {
    std::erase_if(list.steps, [](const PATTERN_STEP &step) {
        return (step.rule == RULE_OF_SAMPLE || step.rule == RULE_OF_INTEST) && step.kind != STEP_IR;
    });
}

/// Plays the steps once; chip.play tells what came of it.
void play(CHECK_CHIP &chip) {
    chip.play.was_tried = true;
    BSDL_FILE &table = chip.play.instructions;
    table.design = chip.design;
    for (int32_t port = 0; port < port_count; ++port)
        table.word_of_port.push_back(chip_port_name(port));
    size_t known = chip.found.faults.size();
    bsdl_take_instructions(table, chip.found);
    add_instruction_faults(
        chip, {chip.found.faults.begin() + static_cast<ptrdiff_t>(known), chip.found.faults.end()});
    chip.found.faults.resize(known);
    std::vector<std::string> files;
    chip.play.why = chip_obstacle(chip, table);
    if (chip.play.why.empty())
        chip.play.why = engine_obstacle("iverilog", "iverilog");
    if (chip.play.why.empty())
        chip.play.why = find_sources(chip, files);
    if (!chip.play.why.empty())
        return;
    PATTERN_LIST list;
    list.design = TOOL_base_name(chip.design);
    list.told_faults = TOLD_FAULTS;
    list.walk_limit = chip.found.cells.size() > WALKED_CELLS ? 0 : list.walk_limit;
    make_patterns(list, chip.found, table);
    if (!chip.play.why_no_core.empty())
        leave_core_out(list);
    std::string said;
    chip.play.why = play_bench(chip, list, files, said);
    if (!chip.play.why.empty())
        return;
    chip.play.rules.insert(RULE_OF_TDO);
    for (const PATTERN_STEP &step : list.steps)
        chip.play.rules.insert(step.rule);
    std::istringstream lines(said);
    for (std::string line; std::getline(lines, line);)
        take_line(chip, list, line);
}

bool has_fault_of(const CHECK_CHIP &chip, int32_t rule) {
    return std::any_of(chip.play.faults.begin(), chip.play.faults.end(),
                       [rule](const PLAYED_FAULT &fault) { return fault.rule == rule; });
}

/// Why the steps say nothing of a rule.
std::string reason_without_steps(const CHECK_CHIP &chip, const CHECK_RULE &rule) {
    if (rule.number == RULE_OF_INTEST && !chip.play.why_no_core.empty() &&
        bsdl_instruction(chip.play.instructions, "INTEST") != nullptr)
        return chip.play.why_no_core;
    for (const INSTRUCTION_WORDS &row : INSTRUCTION_OF_RULE)
        if (row.rule == rule.number)
            return bsdl_instruction(chip.play.instructions, row.words) == nullptr
                       ? format_text("there is no %s: the rule does not apply", row.words)
                       : format_text("%s is private, and not tried", row.words);
    return "no step of the simulation shows it";
}

} // namespace

std::string check_by_simulation(CHECK_CHIP &chip, const CHECK_RULE &rule) {
    if (!chip.play.was_tried)
        play(chip);
    if (!chip.play.why.empty())
        return chip.play.why;
    if (rule.number > RULE_OF_FLUSH && has_fault_of(chip, RULE_OF_FLUSH))
        return "the register does not pass what is shifted in (rule 12)";
    // One finding for a pin or cell, told as its first step shows it.
    std::map<std::pair<int32_t, int32_t>, size_t> first;
    std::vector<std::pair<const PLAYED_FAULT *, size_t>> places;
    for (const PLAYED_FAULT &fault : chip.play.faults) {
        if (fault.rule != rule.number)
            continue;
        auto [at, is_new] = first.try_emplace({fault.cell, fault.port}, places.size());
        if (is_new)
            places.emplace_back(&fault, 0);
        ++places[at->second].second;
    }
    for (size_t i = 0; i < places.size() && i < PLACES_OF_RULE; ++i) {
        const PLAYED_FAULT &fault = *places[i].first;
        size_t others = places[i].second - 1;
        std::string text = fault.step + ": " + fault.text;
        if (others > 0)
            text += format_text(", and %zu more such", others);
        if (i + 1 == PLACES_OF_RULE && places.size() > PLACES_OF_RULE)
            text += format_text("; the like at %zu more pins or cells", places.size() - PLACES_OF_RULE);
        int32_t obj = fault.cell < 0 ? -1 : chip.found.cells[static_cast<size_t>(fault.cell)].obj;
        add_check(chip, rule.number, {obj, fault.port < 0 ? -1 : port_tab[fault.port].node, fault.port},
                  text);
    }
    return chip.play.rules.contains(rule.number) ? "" : reason_without_steps(chip, rule);
}
