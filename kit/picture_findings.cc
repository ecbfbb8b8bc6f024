// What rimkit check and doctor say of a chip, and where in the picture it stands.
//
// Both look anew at what lies there each time a picture is drawn: nothing is taken from the log of an earlier
// run. The doctor reads the design of before the run into the tables of its process, so it has one of its
// own, whose findings come through a pipe: eight texts each, a NUL behind every one.
#include "kit/picture.hh"

#include "kit/doctor.hh"
#include "kit/doctor_rules.hh"
#include "kit/names.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>
#include <unordered_map>

namespace {

// ---- the doctor's process -----------------------------------------------------------------------------

constexpr size_t TEXTS_OF_A_FINDING = 8;

std::string packed(const std::vector<FINDING> &findings) {
    std::string bytes;
    for (const FINDING &finding : findings)
        for (const std::string &text :
             {std::to_string(finding.severity), finding.rule, finding.file, std::to_string(finding.line),
              finding.object, finding.text, finding.effect, finding.cure}) {
            bytes += text;
            bytes += '\0';
        }
    return bytes;
}

std::vector<FINDING> unpacked(const std::string &bytes) {
    std::vector<std::string> texts;
    for (size_t at = 0; at < bytes.size(); at += texts.back().size() + 1)
        texts.push_back(bytes.substr(at, bytes.find('\0', at) - at));
    std::vector<FINDING> findings;
    for (size_t at = 0; at + TEXTS_OF_A_FINDING <= texts.size(); at += TEXTS_OF_A_FINDING)
        findings.push_back({static_cast<FINDING_SEVERITY>(std::atoi(texts[at].c_str())), texts[at + 1],
                            texts[at + 2], std::atoi(texts[at + 3].c_str()), texts[at + 4], texts[at + 5],
                            texts[at + 6], texts[at + 7]});
    return findings;
}

[[noreturn]] void examine(const DOCTOR_CALL &call, int out) {
    std::string bytes = packed(doctor_findings(call));
    for (size_t at = 0; at < bytes.size();) {
        ssize_t done = TEMP_FAILURE_RETRY(::write(out, bytes.data() + at, bytes.size() - at));
        if (done < 0)
            std::_Exit(KIT_FAULT);
        at += static_cast<size_t>(done);
    }
    std::_Exit(KIT_DONE);
}

std::string read_all(int in) {
    std::string bytes;
    char buffer[1 << 16];
    for (ssize_t done; (done = TEMP_FAILURE_RETRY(::read(in, buffer, sizeof buffer))) > 0;)
        bytes.append(buffer, static_cast<size_t>(done));
    return bytes;
}

// ---- places -------------------------------------------------------------------------------------------

struct PLACE {
    std::vector<int32_t> cells{}, pads{};
};
using PLACE_OF_NAME = std::unordered_map<std::string, PLACE>;

/// Whatever a finding can be about, by its name.
struct PLACES {
    const PICTURE &picture;
    PLACE_OF_NAME instances{}, ports{}, kinds{};              ///< the last: classes, and vectors of ports
    std::unordered_map<int32_t, std::vector<int32_t>> rows{}; ///< pads by the line of the pin file
};

PLACES places_of(const PICTURE &picture) {
    PLACES places{picture};
    for (size_t i = 0; i < picture.cells.size(); ++i) {
        places.instances[picture.cells[i].instance].cells.push_back(static_cast<int32_t>(i));
        places.kinds[picture.cells[i].class_name].cells.push_back(static_cast<int32_t>(i));
    }
    for (size_t i = 0; i < picture.pads.size(); ++i) {
        const PICTURE_PAD &pad = picture.pads[i];
        auto id = static_cast<int32_t>(i);
        // A port with several pins is at its first one.
        if (PLACE &port = places.ports[pad.port]; port.pads.empty())
            port.pads.push_back(id);
        if (PLACE &instance = places.instances[pad.instance]; instance.pads.empty())
            instance.pads.push_back(id);
        places.kinds[pad.class_name].pads.push_back(id);
        places.rows[pad.row].push_back(id);
        if (std::string base = kit_bit(pad.port).base; base != pad.port)
            places.kinds[base].pads.push_back(id);
    }
    return places;
}

/// Puts the finding where the name is among these; false when nothing has it. A cell is more than a pad.
bool put(PICTURE_FINDING &finding, const PLACE_OF_NAME &places, const std::string &name) {
    auto at = places.find(name);
    if (name.empty() || at == places.end())
        return false;
    finding.cells = at->second.cells;
    if (finding.cells.empty())
        finding.pads = at->second.pads;
    return true;
}

bool is_tap(const PLACES &places, const std::string &name) {
    return !name.empty() && (name == places.picture.tap_instance || name == places.picture.tap_class);
}

/// At its cell, else at its port, else at the pad or the TAP that is its instance.
PICTURE_FINDING placed(const CHECK_FINDING &said, const PLACES &places) {
    PICTURE_FINDING finding{.severity = said.severity,
                            .verb = "check",
                            .rule = check_rule_text(*said.rule),
                            .text = clean_text(said.text),
                            .effect = said.rule->effect,
                            .cure = said.rule->cure,
                            .file = clean_text(said.file),
                            .instance = clean_text(said.instance),
                            .net = clean_text(said.net),
                            .port = clean_text(said.port)};
    put(finding, places.instances, finding.instance);
    if (PICTURE_FINDING at_port; finding.cells.empty() && put(at_port, places.ports, finding.port))
        finding.pads = at_port.pads;
    finding.is_at_tap = finding.cells.empty() && finding.pads.empty() && is_tap(places, finding.instance);
    return finding;
}

/// Puts the finding at whatever has that name; false when nothing has.
bool put_anywhere(PICTURE_FINDING &finding, const PLACES &places, const std::string &name) {
    finding.is_at_tap = is_tap(places, name);
    return finding.is_at_tap || put(finding, places.ports, name) || put(finding, places.instances, name) ||
           put(finding, places.kinds, name);
}

/// At its object; else at the row of the pin file, or at the first port that its text has between quotes.
PICTURE_FINDING placed(const FINDING &said, const PLACES &places) {
    std::string line = said.line > 0 ? format_text(":%d", said.line) : "";
    PICTURE_FINDING finding{.severity = said.severity,
                            .verb = "doctor",
                            .rule = said.rule,
                            .text = clean_text(said.text),
                            .effect = clean_text(said.effect),
                            .cure = clean_text(said.cure),
                            .file = clean_text(said.file + line)};
    if (put_anywhere(finding, places, clean_text(said.object)))
        return finding;
    if (auto row = places.rows.find(said.line);
        row != places.rows.end() && said.line > 0 && said.file.ends_with(".pin"))
        finding.pads = row->second;
    for (size_t open = 0, close = 0; finding.pads.empty(); open = close + 1) {
        open = finding.text.find('\'', open);
        close = open == std::string::npos ? open : finding.text.find('\'', open + 1);
        if (close == std::string::npos ||
            put_anywhere(finding, places, finding.text.substr(open + 1, close - open - 1)))
            break;
    }
    const DOCTOR_RULE *rule = find_doctor_rule(said.rule);
    if (finding.pads.empty() && finding.cells.empty() && rule != nullptr && rule->about_tap)
        finding.is_at_tap = true;
    return finding;
}

} // namespace

std::vector<FINDING> picture_doctor(const FINISHED_RUN &run, const PICTURE_WORDS &words) {
    int ends[2];
    std::fflush(nullptr);
    if (::pipe(ends) != 0)
        TOOL_fail("", 0, "no pipe can be made for rimkit doctor.");
    pid_t child = ::fork();
    if (child < 0)
        TOOL_fail("", 0, "no process can be made for rimkit doctor.");
    if (child == 0) {
        ::close(ends[0]);
        examine({run.design, words.switches, words.liberty, {}, false}, ends[1]);
    }
    ::close(ends[1]);
    std::vector<FINDING> findings = unpacked(read_all(ends[0]));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == KIT_USAGE)
        std::exit(KIT_USAGE); // which it has told
    if (!WIFEXITED(status) || WEXITSTATUS(status) != KIT_DONE)
        TOOL_fail("", 0, "rimkit doctor came to no end; to see why: rimkit doctor --no-run %s",
                  run.design.c_str());
    return findings;
}

void take_picture_findings(PICTURE &picture, const CHECK_RESULT &checked, bool has_engines,
                           const std::vector<FINDING> &doctor) {
    PLACES places = places_of(picture);
    for (const CHECK_FINDING &said : checked.findings)
        picture.findings.push_back(placed(said, places));
    for (const FINDING &said : doctor)
        picture.findings.push_back(placed(said, places));
    for (const CHECK_OPEN &open : checked.open)
        if (open.applies && has_engines)
            picture.unchecked.push_back("not checked: " + check_rule_text(*open.rule) + ": " +
                                        clean_text(open.why));
    if (!has_engines)
        picture.unchecked.emplace_back("without simulation and proofs, which rimkit picture --engines adds");
}
