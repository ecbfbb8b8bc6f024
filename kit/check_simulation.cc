// Rules that a simulation shows, and what the instruction table has to say of them.
#include "kit/check.hh"

#include "kit/bsdl_file.hh"
#include "kit/check_play.hh"
#include "kit/chip.hh"
#include "kit/patterns.hh"
#include "support/text.hh"

#include <algorithm>
#include <map>

namespace {

constexpr size_t PLACES_OF_RULE = 5; // findings that are told one by one
constexpr int32_t RULE_COMPLIANCE = 33, RULE_OPCODES = 34;

/// Words, and the rule that speaks of them.
struct RULE_WORDS {
    const char *words;
    int32_t rule;
};

/// What a fault of the instruction table holds.
constexpr RULE_WORDS INSTRUCTION_FAULTS[] = {
    {"the opcode of all ones", RULE_BYPASS},
    {"%INSTRUCTION_CAPTURE", RULE_INSTRUCTION},
    {"IDCODE", RULE_IDCODE},
    {"manufacturer", RULE_IDCODE},
    {"USERCODE", RULE_IDCODE},
    {"EXTEST", RULE_EXTEST},
    {"SAMPLE", RULE_EXTEST},
    {"PRELOAD", RULE_EXTEST},
    {"BYPASS", RULE_BYPASS},
    {"CLAMP", RULE_CLAMP},
    {"HIGHZ", RULE_HIGHZ},
    {"INTEST", RULE_INTEST},
    {"", RULE_OPCODES},
};

/// What a chip need not have, and its rule.
constexpr RULE_WORDS OPTIONAL[] = {{"IDCODE", RULE_IDCODE},
                                   {"CLAMP", RULE_CLAMP},
                                   {"HIGHZ", RULE_HIGHZ},
                                   {"INTEST", RULE_INTEST},
                                   {"RUNBIST", RULE_RUNBIST},
                                   {"TRST", RULE_TRST},
                                   {"reset at a control cell", RULE_OFF_VALUES},
                                   {"compliance pin", RULE_COMPLIANCE}};

bool has_fault_of(const CHECK_CHIP &chip, int32_t rule) {
    return std::any_of(chip.play.faults.begin(), chip.play.faults.end(),
                       [rule](const PLAYED_FAULT &fault) { return fault.rule == rule; });
}

/// Why the steps say nothing of a rule.
void take_reason_without_steps(const CHECK_CHIP &chip, CHECK_OPEN &open) {
    int32_t rule = open.rule->number;
    for (const RULE_WORDS &row : OPTIONAL)
        if (row.rule == rule) {
            bool has_row = bsdl_instruction(chip.play.instructions, row.words) != nullptr;
            open.applies = has_row;
            open.why = !has_row ? format_text("there is no %s", row.words)
                       : rule == RULE_INTEST && !chip.play.why_no_core.empty()
                           ? chip.play.why_no_core
                           : format_text("%s is private, and not tried", row.words);
            return;
        }
    open.why = "no step of the simulation shows it";
}

/// What holds of all pins alike is told once.
void add_lost_preload(CHECK_CHIP &chip) {
    std::vector<std::string> ports;
    FINDING_SEVERITY severity = FINDING_WARNING;
    for (const PLAYED_FAULT &fault : chip.play.faults)
        if (fault.rule == RULE_UNSELECTED && fault.port >= 0) {
            ports.push_back(chip_port_name(fault.port));
            severity = fault.severity;
        }
    if (!ports.empty())
        add_check(chip, RULE_UNSELECTED, {},
                  "a scan under BYPASS between PRELOAD and EXTEST overwrites what was preloaded: " +
                      few_of(ports),
                  severity);
}

/// One finding for a pin or cell, told as its first step shows it.
void add_played_faults(CHECK_CHIP &chip, int32_t rule) {
    std::map<std::pair<int32_t, int32_t>, size_t> first;
    std::vector<std::pair<const PLAYED_FAULT *, size_t>> places; // with the count of faults
    for (const PLAYED_FAULT &fault : chip.play.faults) {
        if (fault.rule != rule)
            continue;
        auto [at, is_new] = first.try_emplace({fault.cell, fault.port}, places.size());
        if (is_new)
            places.emplace_back(&fault, 0);
        ++places[at->second].second;
    }
    for (size_t i = 0; i < places.size() && i < PLACES_OF_RULE; ++i) {
        const auto &[fault, count] = places[i];
        std::string text = fault->step + ": " + fault->text;
        if (count > 1)
            text += format_text(", and %zu more such", count - 1);
        if (i + 1 == PLACES_OF_RULE && places.size() > PLACES_OF_RULE)
            text += format_text("; the like at %zu more pins or cells", places.size() - PLACES_OF_RULE);
        int32_t obj = fault->cell < 0 ? -1 : chip.found.cells[static_cast<size_t>(fault->cell)].obj;
        int32_t node = fault->port < 0 ? -1 : port_tab[fault->port].node;
        add_check(chip, rule, {obj, node, fault->port}, text, fault->severity);
    }
}

/// True when the description itself says that HIGHZ is not what it should be.
bool add_weak_highz(CHECK_CHIP &chip) {
    for (const std::string &warning : chip.play.instructions.warnings)
        if (warning.starts_with("HIGHZ leaves")) {
            add_check(chip, RULE_HIGHZ, {}, warning, FINDING_WARNING);
            return true;
        }
    return false;
}

} // namespace

void take_instructions(CHECK_CHIP &chip) {
    if (DYNA_count(INSTRUCTIONS) == 0) // a TAP of the chip's own
        return;
    BSDL_FILE &table = chip.play.instructions;
    table.design = chip.run.design;
    for (int32_t port = 0; port < port_count; ++port)
        table.word_of_port.push_back(chip_port_name(port));
    size_t known = chip.found.faults.size();
    bsdl_take_instructions(table, chip.found);
    for (size_t i = known; i < chip.found.faults.size(); ++i) {
        const std::string &text = chip.found.faults[i].text;
        const RULE_WORDS *row =
            std::find_if(std::begin(INSTRUCTION_FAULTS), std::end(INSTRUCTION_FAULTS),
                         [&text](const RULE_WORDS &words) { return text.find(words.words) != text.npos; });
        add_check(chip, row->rule, {}, text, FINDING_ERROR);
    }
    chip.found.faults.resize(known);
}

bool check_by_simulation(CHECK_CHIP &chip, const CHECK_RULE &rule, CHECK_OPEN &open) {
    std::string &why = open.why;
    if (!chip.play.was_tried) {
        chip.play.was_tried = true;
        play_chip(chip);
    }
    why = chip.play.why;
    if (why.empty() && rule.number > RULE_FLUSH && has_fault_of(chip, RULE_FLUSH))
        why = "the registers do not pass what is shifted in (rule 12)";
    if (why.empty() && chip.play.is_cut && !has_fault_of(chip, rule.number))
        why = "the simulation shows more faults than are told";
    if (!why.empty())
        return false;
    if (rule.number == RULE_UNSELECTED)
        add_lost_preload(chip);
    else
        add_played_faults(chip, rule.number);
    if (rule.number ==
        RULE_EXTEST) // rule 21 has a proof of its own; what the simulation shows of it counts, too
        add_played_faults(chip, RULE_SAMPLE);
    if (rule.number == RULE_HIGHZ && add_weak_highz(chip))
        return true;
    if (rule.number == RULE_COMPLIANCE && !chip.play.held.empty()) {
        add_check(chip, RULE_COMPLIANCE, {}, "the rules were tried with " + chip.play.held);
        return true;
    }
    if (!chip.play.rules.contains(rule.number)) {
        take_reason_without_steps(chip, open);
        return false;
    }
    if (rule.number == RULE_RUNBIST)
        why = "that it runs in Run-Test/Idle alone: nobody gives its signature";
    return true;
}
