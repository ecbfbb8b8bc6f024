// The chip, or its test logic alone, played by Icarus Verilog with the steps of `rimkit patterns`: what the
// bench says, as faults of the rules.
#include "kit/check_play.hh"

#include "kit/bench_play.hh"
#include "kit/chip.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <unordered_map>

namespace {

constexpr size_t WALKED_CELLS = 300; // a longer register gets counting patterns alone
constexpr int32_t TOLD_FAULTS = 1000000;

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

/// What a pad makes of an open input: its library says so, or nobody knows.
bool is_pulled_up(const CHECK_CHIP &chip, const PATTERN_LIST &list, int32_t port) {
    if (list.pins[static_cast<size_t>(port)].pull == '1')
        return true;
    for (int32_t row : chip.found.ports[static_cast<size_t>(port)].pads) {
        const WALK_PAD_ROW &pad = chip.found.walk.pads[static_cast<size_t>(row)];
        auto cell = chip.library.cells.find(chip_class_name(obj_tab[pad.obj].class_id));
        if (cell == chip.library.cells.end())
            continue;
        for (const LIBERTY_PIN &pin : cell->second.pins)
            if (walk_is_pin(walk_pin(pad.obj, pad.pin), pin.name.c_str()) &&
                std::find(pin.driver_types.begin(), pin.driver_types.end(), "pull_up") !=
                    pin.driver_types.end())
                return true;
    }
    return false;
}

/// An input that reads 0 when it is open is wrong; one that reads nothing may have a pull-up that no model
/// has.
bool judge_open_input(const CHECK_CHIP &chip, const PATTERN_LIST &list, PLAYED_FAULT &fault) {
    bool reads_0 = fault.text.find(" reads 0") != fault.text.npos || fault.port < 0;
    if (!reads_0 && is_pulled_up(chip, list, fault.port))
        return false;
    fault.severity = reads_0 ? FINDING_ERROR : FINDING_WARNING;
    if (!reads_0)
        fault.text =
            "nothing tells of a pull-up at the pad of " + list.pins[static_cast<size_t>(fault.port)].name;
    return true;
}

using PIN_NUMBERS = std::unordered_map<std::string, int32_t>; // by name

/// The cell or pin that a message is about, and the rule of those that any step may break.
void find_place(const PATTERN_LIST &list, const PATTERN_STEP &step, const PIN_NUMBERS &pins,
                PLAYED_FAULT &fault) {
    bool is_boundary = step.rule == RULE_EXTEST || step.rule == RULE_SAMPLE || step.rule == RULE_INTEST;
    unsigned cell = 0;
    if (std::sscanf(fault.text.c_str(), "cell %u ", &cell) == 1 && cell < list.cells.size()) {
        if (is_boundary) {
            fault.cell = static_cast<int32_t>(cell);
            fault.port = list.cells[cell].pin;
        } else { // another register, as long as the chain
            fault.text = format_text("bit %u", cell) + fault.text.substr(list.cells[cell].name.size());
        }
    }
    if (fault.text.starts_with("pin "))
        if (auto pin = pins.find(fault.text.substr(4, fault.text.find(' ', 4) - 4)); pin != pins.end())
            fault.port = pin->second;
    if ((fault.text.starts_with("TDO ") && step.kind != STEP_WALK) ||
        (fault.port >= 0 && fault.port == list.test_ports[PORT_TDO]))
        fault.rule = RULE_TDO;
    else if (fault.text.find(" changes at another time") != fault.text.npos)
        fault.rule = step.kind == STEP_IR ? RULE_INSTRUCTION : RULE_EXTEST;
}

/// "FAULT: step 12, EXTEST, pads off: pin y reads ...", with the reason as the step has it; NOTE for what a
/// chip need not keep.
void take_line(CHECK_CHIP &chip, const PATTERN_LIST &list, const PIN_NUMBERS &pins, const std::string &line) {
    constexpr std::string_view STEP = ": step ";
    size_t at = line.find(STEP);
    if (at == line.npos || (!line.starts_with("FAULT") && !line.starts_with("NOTE")))
        return;
    auto number = static_cast<size_t>(std::strtoul(line.c_str() + at + STEP.size(), nullptr, 10));
    at = line.find(", ", at);
    if (number >= list.steps.size() || at == line.npos)
        return;
    const PATTERN_STEP &step = list.steps[number];
    at = std::min(at + 2 + step.reason.size() + 2, line.size());
    PLAYED_FAULT fault{step.rule, check_rule(step.rule).severity, step.reason, line.substr(at), -1, -1};
    if (step.rule == RULE_UNSELECTED && chip.is_strict)
        fault.severity = FINDING_ERROR;
    find_place(list, step, pins, fault);
    if (step.rule != RULE_OPEN_INPUTS || judge_open_input(chip, list, fault))
        chip.play.faults.push_back(fault);
}

} // namespace

void play_chip(CHECK_CHIP &chip) {
    chip.play.why = chip_obstacle(chip, chip.play.instructions);
    if (!chip.play.why.empty())
        return;
    BENCH_CHIP played = bench_chip(chip.run, chip.found);
    chip.play.why = played.why_not;
    chip.play.why_no_core = played.why_no_core;
    if (!chip.play.why.empty())
        return;
    PATTERN_LIST list;
    list.design = TOOL_base_name(chip.run.design);
    list.told_faults = TOLD_FAULTS;
    list.walk_limit = chip.found.cells.size() > WALKED_CELLS ? 0 : list.walk_limit;
    make_patterns(list, chip.found, chip.play.instructions);
    std::string said;
    chip.play.why = play_bench(list, chip.found, played, said);
    if (!chip.play.why.empty())
        return;
    chip.play.rules.insert(RULE_TDO);
    for (const PATTERN_STEP &step : list.steps)
        chip.play.rules.insert(step.rule);
    PIN_NUMBERS pins;
    for (const PATTERN_PIN &pin : list.pins) {
        pins.emplace(pin.name, static_cast<int32_t>(pins.size()));
        if (pin.held != '-')
            chip.play.held += (chip.play.held.empty() ? "" : ", ") + pin.name + " at " + pin.held;
    }
    chip.play.is_cut = said.find("more faults are not told") != said.npos;
    std::istringstream lines(said);
    for (std::string line; std::getline(lines, line);)
        take_line(chip, list, pins, line);
}
