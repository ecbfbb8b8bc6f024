#include "kit/findings.hh"

#include "kit/command.hh"
#include "kit/json.hh"
#include "kit/progress.hh"
#include "support/text.hh"

#include <algorithm>
#include <set>
#include <tuple>
#include <unistd.h>

namespace {

struct SEVERITY_WORDS {
    const char *word, *plural;
    KIT_COLOUR colour;
};
constexpr SEVERITY_WORDS SEVERITIES[FINDING_SEVERITY_COUNT] = {
    {"error", "errors", KIT_RED}, {"warning", "warnings", KIT_YELLOW}, {"note", "notes", KIT_GREEN}};

std::string place_of(const FINDING &finding) {
    std::string place = finding.file;
    if (finding.line > 0)
        place += ":" + std::to_string(finding.line);
    return place.empty() ? place : place + ": ";
}

} // namespace

const char *severity_word(FINDING_SEVERITY severity) {
    return SEVERITIES[severity].word;
}

void sort_findings(std::vector<FINDING> &findings) {
    std::stable_sort(findings.begin(), findings.end(), [](const FINDING &a, const FINDING &b) {
        return std::tie(a.severity, a.file, a.line) < std::tie(b.severity, b.file, b.line);
    });
    std::set<std::tuple<std::string, std::string, int32_t, std::string, std::string>> seen;
    std::erase_if(findings, [&seen](const FINDING &finding) {
        // A finding about no object is known by its text.
        const std::string &detail = finding.object.empty() ? finding.text : finding.object;
        bool is_general = finding.rule == "run-error" || finding.rule == "run-warning";
        return !seen.insert(
                        {finding.rule, finding.file, finding.line, detail, is_general ? finding.text : ""})
                    .second;
    });
}

std::string findings_lines(const std::vector<FINDING> &findings) {
    std::string text;
    for (const FINDING &finding : findings) {
        const SEVERITY_WORDS &severity = SEVERITIES[finding.severity];
        text += place_of(finding) +
                kit_coloured(severity.colour, std::string(severity.word) + ":", STDOUT_FILENO) + " " +
                finding.text + " [" + finding.rule + "]\n";
        // Below the last of several that have it in common.
        const FINDING *next = &finding != &findings.back() ? &finding + 1 : nullptr;
        if (next != nullptr && next->rule == finding.rule && next->cure == finding.cure)
            continue;
        if (!finding.effect.empty())
            text += "    effect: " + finding.effect + "\n";
        if (!finding.cure.empty())
            text += "    cure:   " + finding.cure + "\n";
    }
    return text;
}

std::string findings_counts(const std::vector<FINDING> &findings) {
    std::string text;
    size_t counts[FINDING_SEVERITY_COUNT] = {};
    for (const FINDING &finding : findings)
        ++counts[finding.severity];
    for (int i = 0; i < FINDING_SEVERITY_COUNT; ++i)
        text += format_text("%s%zu %s", i == 0 ? "" : ", ", counts[i],
                            counts[i] == 1 ? SEVERITIES[i].word : SEVERITIES[i].plural);
    return text;
}

std::string findings_text(const std::vector<FINDING> &findings) {
    return findings_lines(findings) + findings_counts(findings) + "\n";
}

std::string findings_json(const std::vector<FINDING> &findings) {
    std::string text = "[";
    for (const FINDING &finding : findings) {
        text += format_text("%s\n  {\"severity\": \"%s\", \"rule\": %s, \"file\": %s, \"line\": %d",
                            text.size() == 1 ? "" : ",", SEVERITIES[finding.severity].word,
                            json_text(finding.rule).c_str(), json_text(finding.file).c_str(), finding.line);
        for (const auto &[name, value] :
             {std::pair{"object", &finding.object}, std::pair{"text", &finding.text},
              std::pair{"effect", &finding.effect}, std::pair{"cure", &finding.cure}})
            text += format_text(", \"%s\": %s", name, json_text(*value).c_str());
        text += "}";
    }
    return text + (findings.empty() ? "]\n" : "\n]\n");
}

int findings_status(const std::vector<FINDING> &findings) {
    bool any = std::any_of(findings.begin(), findings.end(),
                           [](const FINDING &finding) { return finding.severity != FINDING_NOTE; });
    return any ? KIT_FINDINGS : KIT_DONE;
}

std::string few_of(const std::vector<std::string> &names) {
    constexpr size_t SHOWN = 5;
    std::string text;
    for (size_t i = 0; i < names.size() && i < SHOWN; ++i)
        text += (i == 0 ? "" : ", ") + names[i];
    return names.size() > SHOWN ? text + format_text(" and %zu more", names.size() - SHOWN) : text;
}
