// rimkit check: opens the chip, calls the rules in their order, and shows what they found.
#include "kit/check.hh"

#include "description/lookups.hh"
#include "kit/chip.hh"
#include "kit/engines.hh"
#include "kit/finished_run.hh"
#include "kit/json.hh"
#include "kit/names.hh"
#include "kit/progress.hh"
#include "kit/verbs.hh"
#include "planning/tracing.hh"
#include "sdb/navigation.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr KIT_OPTION CHECK_OPTIONS[] = {
    {"rule", "N", "this rule alone, 0 for the files of the run; may be repeated", true},
    {"no-engines", nullptr, "what the netlist shows alone, without simulation and proof"},
    {"strict", nullptr, "rule 14 is an error, and not a warning"},
    {"liberty", "FILE",
     "Liberty library of the pads, plain or .gz: tells which pins\na pad needs; may be repeated", true},
    {"cells", "FILE",
     "Verilog models of the cells, for the simulation; DESIGN_cells.v\nis taken without it; may be repeated",
     true},
    {"opath", "DIR", "the folder that the run's -opath named"},
};

/// Which cells serve each port, and the ports that need none.
void look_at_ports(CHECK_CHIP &chip) {
    chip.ports.resize(static_cast<size_t>(port_count));
    if (chip.found.ports.empty())
        return;
    for (int32_t port = 0; port < port_count; ++port) {
        const REGISTER_PORT &known = chip.found.ports[static_cast<size_t>(port)];
        std::string name = chip_port_name(port);
        chip.ports[static_cast<size_t>(port)].is_exempt = known.tap_port >= 0 || known.same_net >= 0 ||
                                                          skip_signal(name.c_str()) ||
                                                          kit_is_power_name(name);
    }
    for (const WALK_PAD_ROW &pad : chip.found.walk.pads)
        if (pad.minus_port >= 0)
            chip.ports[static_cast<size_t>(pad.minus_port)].is_exempt = true;
    for (const REGISTER_ROW &row : chip.found.rows) {
        if (row.port < 0)
            continue;
        CHECKED_PORT &port = chip.ports[static_cast<size_t>(row.port)];
        bool drives = row.kind == ROW_OUTPUT2 || row.kind == ROW_OUTPUT3 || row.kind == ROW_OPEN;
        port.is_driven |= drives || row.kind == ROW_BIDIR;
        port.is_read |= !drives;
    }
}

/// What stands in the way of a rule; empty when it can be checked.
std::string obstacle(const CHECK_CHIP &chip, const CHECK_RULE &rule, bool has_design) {
    if (rule.need == NEED_NOTHING)
        return rule.check == nullptr && rule.open != nullptr ? rule.open : "";
    if (!has_design)
        return "there is no edited design " + run_file(chip.run, "_jtag.c.sdb");
    if (chip.found.tap_obj < 0)
        return "the netlist has no TAP (rule 13)";
    if (rule.check == check_wires_to_pads && !TOOL_exists(chip.run.design + ".c.sdb"))
        return "there is no design before the run, " + chip.run.design + ".c.sdb";
    if (rule.need == NEED_CHAIN && chip.found.rows.empty())
        return "the chain is broken (rule 13)";
    return "";
}

/// Checks one rule; true when at least a part of it was. What was not is added to `open`.
bool check_one(CHECK_CHIP &chip, const CHECK_RULE &rule, bool has_design, std::vector<CHECK_OPEN> &open) {
    std::string why = obstacle(chip, rule, has_design);
    bool applies = true, is_free = why.empty(), is_checked = is_free && rule.check != nullptr;
    if (is_checked) {
        rule.check(chip);
        why = rule.open != nullptr ? rule.open : "";
    }
    for (const auto &[letter, check] :
         {std::pair{'F', &check_by_proof}, std::pair{'S', &check_by_simulation}}) {
        if (!is_free || rule.open != nullptr || std::strchr(rule.how, letter) == nullptr)
            continue;
        CHECK_OPEN part{&rule, ""};
        if (!chip.words.has_engines)
            part.why = "left out (--no-engines)";
        else
            is_checked = check(chip, rule, part) || is_checked;
        if (part.why != why)
            why += (why.empty() || part.why.empty() ? "" : "; ") + part.why;
        applies = applies && part.applies;
    }
    if (!why.empty())
        open.push_back({&rule, why, applies});
    return is_checked;
}

std::string place_text(const CHECK_FINDING &finding) {
    std::string text;
    for (const auto &[word, name] : {std::pair{"instance", &finding.instance}, std::pair{"net", &finding.net},
                                     std::pair{"port", &finding.port}})
        if (!name->empty())
            text += (text.empty() ? "" : ", ") + std::string(word) + " '" + *name + "'";
    return text;
}

/// The findings in the form of all verbs, and below them what was not checked.
std::string result_text(const CHECK_RESULT &result) {
    std::vector<FINDING> findings;
    for (const CHECK_FINDING &found : result.findings) {
        std::string place = place_text(found);
        findings.push_back({found.severity, check_rule_text(*found.rule), found.file, 0, place,
                            found.text + (place.empty() ? "" : " (" + place + ")"), found.rule->effect,
                            found.rule->cure});
    }
    std::string text = findings_lines(findings);
    size_t absent = 0;
    std::vector<std::pair<std::string, std::string>> reasons; // with the rules that share each
    for (const CHECK_OPEN &open : result.open) {
        absent += open.applies ? 0 : 1;
        std::string why = open.why + (open.applies ? "" : ", so this does not apply");
        auto reason = std::find_if(reasons.begin(), reasons.end(),
                                   [&why](const auto &known) { return known.first == why; });
        if (reason == reasons.end())
            reason = reasons.insert(reasons.end(), {why, ""});
        reason->second += (reason->second.empty() ? "" : ", ") + check_rule_text(*open.rule);
    }
    for (const auto &[why, rules] : reasons)
        text += "not checked: " + rules + ": " + why + "\n";
    return text + findings_counts(findings) +
           format_text("; %d of %zu rules checked, %zu do not apply, %zu not or not whole\n", result.checked,
                       check_rules.size() - 1, absent, result.open.size() - absent);
}

std::string result_json(const CHECK_RESULT &result) {
    std::string text = "{\"findings\": [";
    for (const CHECK_FINDING &found : result.findings) {
        text += format_text("%s\n  {\"severity\": \"%s\", \"number\": %d",
                            &found == result.findings.data() ? "" : ",", severity_word(found.severity),
                            found.rule->number);
        for (const auto &[name, value] :
             {std::pair{"rule", std::string(found.rule->name)}, std::pair{"text", found.text},
              std::pair{"file", found.file}, std::pair{"instance", found.instance},
              std::pair{"net", found.net}, std::pair{"port", found.port},
              std::pair{"effect", std::string(found.rule->effect)},
              std::pair{"cure", std::string(found.rule->cure)}})
            text += format_text(", \"%s\": %s", name, json_text(value).c_str());
        text += "}";
    }
    text += "\n], \"not_checked\": [";
    for (const CHECK_OPEN &open : result.open)
        text += format_text("%s\n  {\"number\": %d, \"rule\": %s, \"why\": %s, \"applies\": %s}",
                            &open == result.open.data() ? "" : ",", open.rule->number,
                            json_text(open.rule->name).c_str(), json_text(open.why).c_str(),
                            open.applies ? "true" : "false");
    return text + format_text("\n], \"checked\": %d}\n", result.checked);
}

int32_t rule_of(const std::string &text) {
    bool is_number = !text.empty() && text.size() < 4 && text.find_first_not_of("0123456789") == text.npos;
    int32_t number = is_number ? std::atoi(text.c_str()) : -1;
    if (number < 0 || static_cast<size_t>(number) >= check_rules.size())
        kit_usage_fault(
            format_text("--rule: '%s' is no number from 0 to %zu", text.c_str(), check_rules.size() - 1));
    return number;
}

int run_check(const KIT_CALL &call) {
    CHECK_WORDS words{kit_values(call, "liberty"), kit_has(call, "strict"), !kit_has(call, "no-engines")};
    for (const std::string &text : kit_values(call, "rule"))
        words.rules.insert(rule_of(text));
    CHECK_RESULT result = check_chip(finished_run(call), words);
    std::string text = kit_has(call, "json") ? result_json(result) : result_text(result);
    std::fwrite(text.data(), 1, text.size(), stdout);
    bool has_error =
        std::any_of(result.findings.begin(), result.findings.end(),
                    [](const CHECK_FINDING &finding) { return finding.severity == FINDING_ERROR; });
    return has_error ? KIT_FINDINGS : KIT_DONE;
}

} // namespace

std::string check_rule_text(const CHECK_RULE &rule) {
    return (rule.number > 0 ? std::to_string(rule.number) + " " : "") + rule.name;
}

CHECK_RESULT check_chip(const FINISHED_RUN &run, const CHECK_WORDS &words) {
    CHECK_CHIP chip{.run = run, .words = words, .library = {}};
    for (const std::string &file : words.liberty) {
        KIT_PROGRESS progress("reading " + file);
        liberty_read(chip.library, file);
    }
    for (const char *ending : {".lib", ".bsc"})
        if (!TOOL_exists(run.design + ending))
            TOOL_fail("", 0, "there is no '%s%s'; `rimkit check` runs in the folder of a finished run.",
                      run.design.c_str(), ending);
    bool has_design = open_finished_run(run);
    if (has_design)
        read_boundary_register(chip.found);
    look_at_ports(chip);
    if (chip.found.tap_obj >= 0)
        take_instructions(chip);
    CHECK_RESULT result;
    for (const CHECK_RULE &rule : check_rules) {
        if (!words.rules.empty() && !words.rules.contains(rule.number))
            continue;
        bool is_checked = check_one(chip, rule, has_design, result.open);
        result.checked += is_checked && rule.number > 0 ? 1 : 0;
    }
    std::stable_sort(chip.findings.begin(), chip.findings.end(),
                     [](const CHECK_FINDING &a, const CHECK_FINDING &b) {
                         return std::pair{a.severity, a.rule->number} < std::pair{b.severity, b.rule->number};
                     });
    result.findings = std::move(chip.findings);
    return result;
}

const KIT_VERB kit_check = {
    "check",
    "Checks the inserted chip against the rules of IEEE 1149.1.",
    "[options] DESIGN",
    CHECK_OPTIONS,
    "  rimkit check --liberty pads.lib chip\n\n"
    "Status: 0 without errors, 1 with errors, 2 usage, 255 could not check. Each rule has its section in\n"
    "docs/rimkit_check.md.\n",
    false,
    run_check,
};
