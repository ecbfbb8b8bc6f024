// Rules about the chip at rest and in EXTEST, by the proofs of `rimkit prove`: what the TAP gives the mode
// pins, and what each kind of cell shows then.
#include "kit/check.hh"
#include "kit/prove.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>

/// What the rules share, made by the first that asks.
struct REST_PROOF {
    PROVEN_TAP tap;
    bool has_cells = false;
    std::vector<REST_KIND> kinds{}; ///< of the cells at rest
    PROVEN_CELLS cells{};
};

namespace {

REST_PROOF &rest_proof(CHECK_CHIP &chip) {
    if (chip.rest == nullptr)
        chip.rest =
            std::make_shared<REST_PROOF>(REST_PROOF{prove_tap(chip.found, run_text(chip.run, "_TAP"))});
    return *chip.rest;
}

void prove_cells_at_rest(const CHECK_CHIP &chip, REST_PROOF &rest) {
    if (rest.has_cells)
        return;
    rest.has_cells = true;
    rest.kinds = compare_chips(chip.found, chip.run.design + ".c.sdb", proven_rest_values(rest.tap)).kinds;
    rest.cells = prove_cells(rest.kinds, chip.run.models);
}

/// What a kind of cell does wrong is a finding; the kinds that nothing was proven of are told in `why`.
void take_cells(CHECK_CHIP &chip, int32_t rule, const std::vector<REST_KIND> &kinds,
                const PROVEN_CELLS &proven, const char *words, std::string &why) {
    for (size_t i = 0; i < kinds.size(); ++i)
        if (!proven.of_kind[i].held && proven.of_kind[i].why_not.empty())
            chip.findings.push_back({&check_rule(rule), FINDING_ERROR,
                                     format_text(words, kinds[i].class_name.c_str()), "", kinds[i].instance,
                                     "", ""});
    for (const auto &[reason, names] : unanswered_kinds(kinds, proven))
        why += (why.empty() ? "" : "; ") + few_of(names) + ": " + reason;
}

/// The TAP's outputs that stand at a pin of a cell which decides what it shows.
bool is_needed(const CHECK_CHIP &chip, const std::string &pin) {
    if (declared_rest_values(*chip.found.tap).contains(pin))
        return true;
    for (const REGISTER_CELL &cell : chip.found.cells)
        for (const REGISTER_SIGNAL &signal : cell.extras)
            if (signal.tap_pin == pin)
                return true;
    return false;
}

/// The kinds of cells that drive a pad or its enable, with the constants that stand at their pins in EXTEST.
std::vector<REST_KIND> driving_kinds(const CHECK_CHIP &chip, const PROVEN_TAP &tap, std::string &why) {
    REST_VALUES values;
    for (const TAP_OUTPUT &row : tap.outputs)
        if (row.in_extest >= 0)
            values[row.pin] = row.in_extest == 1;
    CHIP_COMPARISON compared = compare_chips(chip.found, chip.run.design + ".c.sdb", values);
    std::vector<bool> drives(compared.kinds.size());
    for (const REGISTER_ROW &row : chip.found.rows) {
        const REGISTER_CELL &cell = chip.found.cells[static_cast<size_t>(row.cell)];
        auto kind = compared.kind_of_cell.find(cell.obj);
        bool is_driver = row.kind >= ROW_OUTPUT2 && row.kind <= ROW_CONTROL && cell.cell->data_out != nullptr;
        if (is_driver && kind != compared.kind_of_cell.end())
            drives[kind->second] = true;
    }
    std::vector<REST_KIND> kinds;
    std::vector<std::string> pads;
    for (size_t i = 0; i < compared.kinds.size(); ++i)
        if (compared.kinds[i].is_pad)
            pads.push_back(compared.kinds[i].class_name);
        else if (drives[i])
            kinds.push_back(std::move(compared.kinds[i]));
    if (!pads.empty())
        why = "pads with a cell or a multiplexer inside: " + few_of(pads);
    return kinds;
}

void check_isolation(CHECK_CHIP &chip, const PROVEN_TAP &tap, std::string &why) {
    std::vector<REST_KIND> kinds = driving_kinds(chip, tap, why);
    take_cells(chip, 20, kinds, prove_isolation(kinds, chip.run.models),
               "in EXTEST cells of type %s show what the core gives them", why);
}

/// The instructions that must not disturb, and the reset.
void check_rest(CHECK_CHIP &chip, REST_PROOF &rest, int32_t rule, std::string &why) {
    const PROVEN_TAP &tap = rest.tap;
    for (const TAP_OUTPUT &row : tap.outputs) {
        if (!is_needed(chip, row.pin))
            continue;
        if (rule == 22 && (row.in_reset < 0 || row.in_reset != row.at_rest))
            add_check(chip, rule, {chip.found.tap_obj, walk_pin(chip.found.tap_obj, row.pin.c_str()), -1},
                      "the TAP's pin " + row.pin + " does not rest in Test-Logic-Reset");
        for (const std::string &name : rule == 21 ? row.disturbing : std::vector<std::string>{})
            add_check(chip, rule, {chip.found.tap_obj, walk_pin(chip.found.tap_obj, row.pin.c_str()), -1},
                      name + " moves the TAP's pin " + row.pin + ", which the cells show the core through");
    }
    if (rule == 22 && !tap.reset_holds)
        add_check(chip, rule, {chip.found.tap_obj, -1, -1},
                  "Test-Logic-Reset does not reset the TAP's instruction register");
    // A cell that shows something else than the core at rest does so under all of them.
    prove_cells_at_rest(chip, rest);
    take_cells(chip, rule, rest.kinds, rest.cells,
               "at rest cells of type %s do not show what the core gives them", why);
}

} // namespace

bool check_by_rest_proof(CHECK_CHIP &chip, const CHECK_RULE &rule, CHECK_OPEN &open) {
    std::string &why = open.why;
    if (rule.number < 20 || rule.number > 22)
        return false;
    REST_PROOF &rest = rest_proof(chip);
    why = rest.tap.why_not;
    if (why.empty() && !TOOL_exists(chip.run.design + ".c.sdb"))
        why = "there is no design before the run, " + chip.run.design + ".c.sdb";
    if (!why.empty())
        return false;
    if (rule.number == 20)
        check_isolation(chip, rest.tap, why);
    else
        check_rest(chip, rest, rule.number, why);
    return true;
}
