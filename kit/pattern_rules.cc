// Steps for rules of `rimkit check` that a tester's patterns leave open. They stand at the end of the bench.
#include "kit/pattern_maker.hh"

#include "kit/chip.hh"
#include "kit/tap_diagram.hh"
#include "support/text.hh"

#include <algorithm>

namespace {

/// A fault in the scan belongs to the rule at hand, too.
void load_for_rule(STEP_MAKER &maker, const char *name) {
    if (load(maker, name))
        maker.list.steps.back().rule = maker.rule;
}

// ---- the states of the TAP ----------------------------------------------------------------------------

/// The shortest way between two states, as values of TMS.
std::string way(size_t from, size_t to) {
    std::vector<std::string> ways(std::size(TAP_DIAGRAM), "?");
    std::vector<size_t> met = {from};
    ways[from] = "";
    for (size_t i = 0; i < met.size() && ways[to] == "?"; ++i)
        for (size_t tms : {0, 1})
            if (size_t next = TAP_DIAGRAM[met[i]].next[tms]; ways[next] == "?") {
                ways[next] = ways[met[i]] + digit(tms != 0);
                met.push_back(next);
            }
    return ways[to];
}

/// A walk by TMS from Run-Test/Idle.
PATTERN_STEP &walk(STEP_MAKER &maker, const std::string &reason, const std::string &tms) {
    PATTERN_STEP &step = add_step(maker, STEP_WALK, reason);
    size_t state = TAP_IDLE_STATE;
    for (char value : tms) {
        step.tdo += digit(TAP_DIAGRAM[state].shifts);
        state = TAP_DIAGRAM[state].next[value == '1'];
    }
    step.tdi = tms;
    return step;
}

/// From each state by both arcs, and on by both arcs of the next one; then a scan shows that the way has led
/// back to Run-Test/Idle.
void try_states(STEP_MAKER &maker) {
    maker.rule = RULE_STATES;
    for (size_t state = 0; state < std::size(TAP_DIAGRAM); ++state) {
        std::string tms;
        for (size_t first : {0, 1})
            for (size_t second : {0, 1})
                tms += way(TAP_IDLE_STATE, state) + digit(first != 0) + digit(second != 0) +
                       way(TAP_DIAGRAM[TAP_DIAGRAM[state].next[first]].next[second], TAP_IDLE_STATE);
        walk(maker, std::string("the arcs from ") + TAP_DIAGRAM[state].name, tms);
        load_for_rule(maker, "BYPASS");
        std::string marker = maker.random_bits(8);
        scan(maker, std::string("BYPASS behind the arcs from ") + TAP_DIAGRAM[state].name, marker + "1",
             "0" + marker);
    }
}

void try_trst(STEP_MAKER &maker) {
    if (maker.found.test_ports[PORT_TRST] < 0)
        return;
    maker.rule = RULE_TRST;
    const BSDL_INSTRUCTION &selected = reset_instruction(maker);
    for (WALK_RESET reset : {WALK_RESET_LOW, WALK_RESET_HIGH}) {
        std::string where = reset == WALK_RESET_LOW ? "low" : "high";
        load_for_rule(maker, "SAMPLE");
        walk(maker, "TRST in Pause-DR with TCK " + where, "1010").pause = reset;
        std::string marker = maker.random_bits(8), captured = captured_code(maker, selected);
        scan(maker, selected.name + " behind TRST with TCK " + where,
             marker + std::string(captured.size(), '1'), captured + marker);
    }
}

// ---- what the register keeps --------------------------------------------------------------------------

/// Preloads a pattern.
void preload(STEP_MAKER &maker, const std::string &pattern) {
    load_for_rule(maker, "SAMPLE");
    scan(maker, "PRELOAD, pads on", pattern, std::string(maker.cells(), '-'));
}

void try_unselected(STEP_MAKER &maker, const std::string &pads_on) {
    maker.rule = RULE_UNSELECTED;
    preload(maker, pads_on);
    load_for_rule(maker, "BYPASS");
    std::string zeros(maker.cells(), '0');
    scan(maker, "a scan under BYPASS", zeros, std::string(maker.cells(), '-'));
    load_for_rule(maker, "EXTEST");
    set_pins(maker, "EXTEST behind a scan under BYPASS", shown_by(maker, pads_on));
    maker.list.steps.back().is_note = true;
}

/// Pads are off behind a reset where their control cells are reset.
void try_off_values(STEP_MAKER &maker, const std::string &pads_on) {
    std::string shown(maker.list.pins.size(), '-'), off = shown_by(maker, safe_pattern(maker));
    for (const REGISTER_ROW &row : maker.found.rows)
        if (drives(row) && row.control >= 0 &&
            maker.found.cells[static_cast<size_t>(row.control)].signals[SIG_RST].source.end == WALK_TAP)
            shown[static_cast<size_t>(row.port)] = off[static_cast<size_t>(row.port)];
    if (shown.find_first_not_of('-') == shown.npos)
        return;
    maker.rule = RULE_OFF_VALUES;
    preload(maker, pads_on);
    add_step(maker, STEP_RESET, "reset with pads on in the register");
    load_for_rule(maker, "EXTEST");
    count_pins(maker, 1, shown);
    set_pins(maker, "EXTEST right behind a reset", shown);
    maker.list.steps.back().is_note = true; // a tester preloads first
}

void try_runbist(STEP_MAKER &maker, const std::string &pads_on) {
    if (bsdl_instruction(maker.table, "RUNBIST") == nullptr)
        return;
    maker.rule = RULE_RUNBIST;
    preload(maker, pads_on);
    load_for_rule(maker, "EXTEST");
    load_for_rule(maker, "RUNBIST");
    for (size_t round : {0, 1}) {
        count_pins(maker, round, shown_by(maker, pads_on));
        set_pins(maker, "RUNBIST holds the pins", shown_by(maker, pads_on));
        maker.list.steps.back().is_note = true;
    }
}

void try_open_inputs(STEP_MAKER &maker) {
    maker.rule = RULE_OPEN_INPUTS;
    PATTERN_STEP &step = add_step(maker, STEP_OPEN, "open inputs");
    step.is_note = true;
    step.shown.assign(maker.list.pins.size(), '-');
    for (int32_t port : {PORT_TDI, PORT_TMS, PORT_TRST})
        if (int32_t pin = maker.found.test_ports[port]; pin >= 0)
            step.shown[static_cast<size_t>(pin)] = '1';
}

} // namespace

void try_rules(STEP_MAKER &maker, const std::string &pads_on) {
    size_t first = maker.list.steps.size();
    try_trst(maker);
    try_unselected(maker, pads_on);
    try_off_values(maker, pads_on);
    try_runbist(maker, pads_on);
    maker.rule = RULE_STATES;
    add_step(maker, STEP_RESET, "reset before a walk");
    try_states(maker);
    try_open_inputs(maker);
    for (size_t i = first; i < maker.list.steps.size(); ++i)
        maker.list.steps[i].needs_pins = true;
}
