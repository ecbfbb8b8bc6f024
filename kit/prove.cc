// rimkit prove: is the inserted chip, at rest, the chip from before?
#include "kit/prove.hh"

#include "kit/engines.hh"
#include "kit/finished_run.hh"
#include "kit/json.hh"
#include "kit/progress.hh"
#include "kit/verbs.hh"
#include "planning/tracing.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdio>
#include <set>

namespace {

constexpr KIT_OPTION PROVE_OPTIONS[] = {
    {"opath", "DIR", "the folder that the run's -opath named"},
    {"cells", "FILE", "Verilog of the boundary cells, DESIGN_cells.v otherwise; may be repeated", true},
    {"yosys", nullptr, "asks Yosys about each pin of a chip of any size"},
    {"no-yosys", nullptr, "the comparison alone"},
};

constexpr const char *NOT_ASKED = "--no-yosys";
constexpr int32_t MOST_PINS = 20000; ///< of a chip whose pins Yosys is asked about
constexpr size_t MOST_POINTS = 100;  ///< told one by one

/// How much is left to Yosys.
struct PROOF_WORDS {
    FINISHED_RUN run;
    bool with_yosys = true, forces_points = false;
};

/// What the verb has to say: proofs that ran, what stands without one, and what is not equal.
struct CHIP_PROOF {
    std::vector<std::string> proofs, assumed;
    std::vector<REGISTER_FAULT> faults;
};

std::string list_text(const std::vector<std::string> &words) {
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : ", ") + word;
    return text;
}

/// The TAP's outputs that a cell or pad has at a pin which has to rest.
std::set<std::string> needed_outputs(const BOUNDARY_REGISTER &found) {
    std::set<std::string> pins;
    for (const REGISTER_CELL &cell : found.cells) {
        for (int32_t signal : {SIG_MODE1, SIG_MODE2, SIG_MODE3, SIG_HIGHZ})
            pins.insert(cell.signals[signal].tap_pin);
        for (const REGISTER_SIGNAL &signal : cell.extras)
            pins.insert(signal.tap_pin);
    }
    pins.erase("");
    return pins;
}

/// Takes the TAP's values at rest as Yosys has proven them; as declared where it has not.
REST_VALUES take_tap(CHIP_PROOF &proof, const BOUNDARY_REGISTER &found, const PROOF_WORDS &words) {
    PROVEN_TAP tap;
    if (words.with_yosys)
        tap = prove_tap(found, run_text(words.run, "_TAP"));
    else
        tap.why_not = NOT_ASKED;
    REST_VALUES declared = declared_rest_values(*found.tap);
    if (!tap.why_not.empty()) {
        std::vector<std::string> pins;
        for (const auto &[pin, value] : declared)
            pins.push_back(pin + " = " + (value ? "1" : "0"));
        std::sort(pins.begin(), pins.end());
        proof.assumed.push_back("the TAP at rest gives " + list_text(pins) + ": " + tap.why_not);
        return declared;
    }
    std::set<std::string> needed = needed_outputs(found);
    std::vector<std::string> values;
    for (const TAP_OUTPUT &row : tap.outputs) {
        if (!needed.contains(row.pin) && !declared.contains(row.pin))
            continue;
        std::vector<std::string> moving = row.disturbing;
        if (row.in_reset < 0 || row.in_reset != row.at_rest)
            moving.emplace_back("Test-Logic-Reset");
        if (!moving.empty())
            proof.faults.push_back({"tap",
                                    "the TAP's pin " + row.pin + " does not rest under " + list_text(moving),
                                    "", "", ""});
        else
            values.push_back(format_text("%s = %d", row.pin.c_str(), row.at_rest));
    }
    if (!tap.reset_holds)
        proof.faults.push_back(
            {"tap", "Test-Logic-Reset does not reset the TAP's instruction register", "", "", ""});
    proof.proofs.push_back("TAP: " + list_text(values) + " in Test-Logic-Reset, " + list_text(tap.quiet));
    return proven_rest_values(tap);
}

void take_cells(CHIP_PROOF &proof, const std::vector<REST_KIND> &kinds, const PROOF_WORDS &words) {
    PROVEN_CELLS proven;
    if (words.with_yosys)
        proven = prove_cells(kinds, words.run.models);
    else
        proven.of_kind.assign(kinds.size(), {false, NOT_ASKED});
    std::vector<std::string> cells, pads;
    for (size_t i = 0; i < kinds.size(); ++i) {
        const PROVEN_CELLS::ANSWER &answer = proven.of_kind[i];
        std::string name = format_text("%s (%d)", kinds[i].class_name.c_str(), kinds[i].count);
        if (answer.held) {
            (kinds[i].is_pad ? pads : cells).push_back(name);
        } else if (answer.why_not.empty()) {
            proof.faults.push_back(
                {"cell",
                 kinds[i].is_pad
                     ? "the test logic inside this pad shows at rest: look at its model and at what it is "
                       "wired to"
                     : "the cell is no wire at rest: look at its model and at its mode pins",
                 kinds[i].instance, "", ""});
        }
    }
    if (!cells.empty())
        proof.proofs.push_back("Cells: wires at rest, whatever they hold: " + list_text(cells));
    if (!pads.empty())
        proof.proofs.push_back("Pads: nothing of the test inside shows at rest: " + list_text(pads));
    for (const auto &[why, names] : unanswered_kinds(kinds, proven))
        proof.assumed.push_back("nothing of the test shows at rest in " + list_text(names) + ": " + why);
}

std::string proof_json(const CHIP_PROOF &proof, const std::string &design) {
    std::string faults;
    for (const REGISTER_FAULT &fault : proof.faults)
        faults += std::string(faults.empty() ? "" : ",") + "\n  " + register_fault_json(fault);
    return format_text(
        "{\"design\": %s, \"proven\": %s, \"proofs\": %s, \"assumed\": %s, \"findings\": [%s]}\n",
        json_text(design).c_str(), proof.faults.empty() ? "true" : "false", json_list(proof.proofs).c_str(),
        json_list(proof.assumed).c_str(), faults.c_str());
}

std::string proof_text(const CHIP_PROOF &proof, const std::string &design) {
    std::string text;
    for (const REGISTER_FAULT &fault : proof.faults)
        text += register_fault_text(fault) + "\n";
    for (const std::string &line : proof.proofs)
        text += line + "\n";
    for (const std::string &line : proof.assumed)
        text += "Assumed: " + line + "\n";
    return text + (proof.faults.empty() ? design + " is, at rest, the chip from before the run\n"
                                        : format_text("%s is not proven: %zu findings\n", design.c_str(),
                                                      proof.faults.size()));
}

/// The cross-check: what the comparison found must be what Yosys finds.
void take_points(CHIP_PROOF &proof, const BOUNDARY_REGISTER &found, const REST_VALUES &values,
                 const CHIP_COMPARISON &compared, const PROOF_WORDS &words) {
    POINT_PROOF points;
    if (!words.with_yosys)
        points.why_not = NOT_ASKED;
    else if (compared.pins > MOST_PINS && !words.forces_points)
        points.why_not = format_text("the chip has more than %d pins (--yosys)", MOST_PINS);
    else
        points = prove_points(found, words.run.design + ".c.sdb", values, compared, words.run.models);
    if (!points.why_not.empty()) {
        proof.proofs.push_back("Yosys was not asked about each pin: " + points.why_not);
        return;
    }
    proof.proofs.push_back(
        format_text("Yosys: %zu of %d points proven", points.points - points.unproven.size(), points.points));
    for (size_t i = 0; i < std::min(points.unproven.size(), MOST_POINTS); ++i)
        proof.faults.push_back(
            {"yosys", points.unproven[i] + " has not the value from before the run", "", "", ""});
}

CHIP_PROOF prove_chip(const PROOF_WORDS &words) {
    BOUNDARY_REGISTER found;
    read_boundary_register(found);
    if (found.tap_obj < 0)
        TOOL_fail("", 0, "%s.", found.faults[0].text.c_str());
    compare_boundary_order(found, words.run.design + ".bso");
    CHIP_PROOF proof;
    proof.faults = found.faults;
    REST_VALUES values = take_tap(proof, found, words);
    CHIP_COMPARISON compared = compare_chips(found, words.run.design + ".c.sdb", values);
    proof.proofs.push_back(format_text("Comparison: %d nets, %d pins of %d instances, %d ports%s",
                                       compared.nets, compared.pins, compared.objects, compared.ports,
                                       compared.faults.empty() ? ", equal" : ""));
    proof.faults.insert(proof.faults.end(), compared.faults.begin(), compared.faults.end());
    proof.assumed.insert(proof.assumed.end(), compared.assumed.begin(), compared.assumed.end());
    take_cells(proof, compared.kinds, words);
    take_points(proof, found, values, compared, words);
    return proof;
}

int run_prove(const KIT_CALL &call) {
    PROOF_WORDS words{finished_run(call), !kit_has(call, "no-yosys"), kit_has(call, "yosys")};
    need_run_files(words.run, "prove");
    open_finished_run(words.run);
    CHIP_PROOF proof = prove_chip(words);
    std::string text =
        kit_has(call, "json") ? proof_json(proof, words.run.design) : proof_text(proof, words.run.design);
    std::fwrite(text.data(), 1, text.size(), stdout);
    return proof.faults.empty() ? KIT_DONE : KIT_FINDINGS;
}

} // namespace

const KIT_VERB kit_prove = {
    "prove",
    "Proves that the inserted chip, at rest, is the chip from before the run.",
    "[options] DESIGN",
    PROVE_OPTIONS,
    "  rimkit prove --cells cells.v chip\n\n"
    "Status: 0 proven, 1 not equal, 2 usage, 255 could not.\n",
    false,
    run_prove,
};
