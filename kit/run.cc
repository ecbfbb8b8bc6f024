// rimkit run: the whole road, from the netlist to the chip with its boundary register.
#include "kit/doctor.hh"
#include "kit/files.hh"
#include "kit/json.hh"
#include "kit/progress.hh"
#include "kit/run_delivery.hh"
#include "kit/start.hh"
#include "kit/verbs.hh"
#include "siblings/tool.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unordered_set>

namespace {

/// DESIGN and the switches of rimweave among the names of the command line.
struct RUN_WORDS {
    std::string design, opath = ".";
    std::vector<std::string> switches;
};

/// Cells that TCK clocks and the TAP that clocks them so belong together: --synch and -synch mean both.
RUN_WORDS split_names(KIT_CALL &call) {
    RUN_WORDS words;
    bool adds = false;
    std::unordered_set<std::string> switches;
    for (size_t i = 0; i < call.names.size(); ++i) {
        const std::string &word = call.names[i];
        if (word[0] != '-') {
            if (!words.design.empty())
                kit_usage_fault(format_text("'%s' is one DESIGN too many", word.c_str()));
            words.design = word;
            continue;
        }
        words.switches.push_back(word);
        std::string low = lower_case(word);
        switches.insert(low);
        adds = adds || low == "-add_tap" || low == "-add_tap_only" || low == "-add_bcm";
        if (low == "-opath") {
            if (i + 1 == call.names.size())
                kit_usage_fault("-opath takes a folder");
            words.switches.push_back(words.opath = call.names[++i]);
        }
    }
    if (switches.contains("-synch"))
        call.options["synch"];
    else if (kit_has(call, "synch"))
        words.switches.emplace_back("-synch");
    if (words.design.empty())
        kit_usage_fault("one DESIGN, the name of the top module, is needed");
    if (!adds)
        words.switches.insert(words.switches.begin(), "-add_tap");
    return words;
}

/// The lines of the console that tell of faults, or its end when none does.
void show_faults(const std::string &log) {
    std::string text = TOOL_read_file(log);
    size_t fault = text.find("ERROR");
    fault = fault == text.npos ? text.find("FATAL") : fault;
    std::fprintf(
        stderr, "%s",
        text.substr(fault != text.npos ? fault : text.size() - std::min<size_t>(text.size(), 400)).c_str());
}

/// Runs rimweave; its console stands in a log.
void run_rimweave(const RUN_WORDS &words) {
    std::vector<std::string> command = {"rimweave", words.design};
    command.insert(command.end(), words.switches.begin(), words.switches.end());
    std::string line = command_line(command), log = words.design + ".console";
    kit_note("$ %s", line.c_str());
    KIT_PROGRESS progress("rimweave");
    int status = run_shell(line + " >" + shell_word(log));
    if (status == 0)
        return;
    show_faults(log);
    TOOL_fail("", 0, "rimweave ended with status %d; to repeat it: %s",
              WIFEXITED(status) ? WEXITSTATUS(status) : status, line.c_str());
}

/// What would end the run, or give a chip that does not work, ends it here, all of it at once.
bool is_healthy(const KIT_CALL &call, const RUN_WORDS &words) {
    std::vector<FINDING> findings = doctor_findings(
        {words.design, words.switches, kit_values(call, "liberty"), kit_values(call, "netlist"), false});
    int32_t counts[FINDING_SEVERITY_COUNT] = {};
    for (const FINDING &finding : findings)
        ++counts[finding.severity];
    if (counts[FINDING_ERROR] == 0) {
        kit_note("doctor: no errors; warnings: %d, notes: %d; to see them: rimkit doctor %s",
                 counts[FINDING_WARNING], counts[FINDING_NOTE], words.design.c_str());
        return true;
    }
    std::erase_if(findings, [](const FINDING &finding) { return finding.severity != FINDING_ERROR; });
    std::string text = kit_has(call, "json") ? findings_json(findings) : findings_text(findings);
    std::fwrite(text.data(), 1, text.size(), stdout);
    kit_note("to repeat this step: rimkit doctor %s", words.design.c_str());
    return false;
}

/// Numbers out of the report: "** Add total 54 Boundary Scan Cells" and "** Add 25 INPUT SCAN Cells: BC_1".
struct RUN_SUMMARY {
    int total = 0, warnings = 0;
    std::vector<std::string> kinds;
};

RUN_SUMMARY read_report(const std::string &path) {
    RUN_SUMMARY summary;
    std::string text = TOOL_read_file(path);
    for (size_t at = 0; at < text.size();) {
        size_t end = std::min(text.find('\n', at), text.size());
        std::string line = text.substr(at, end - at);
        at = end + 1;
        if (line.compare(0, 8, "WARNING:") == 0)
            ++summary.warnings;
        size_t add = line.find("** Add ");
        if (add == line.npos)
            continue;
        if (std::sscanf(line.c_str() + add, "** Add total %d", &summary.total) != 1 &&
            line.find("SCAN Cells") != line.npos)
            summary.kinds.push_back(line.substr(add + std::strlen("** Add ")));
    }
    return summary;
}

/// The files that the run leaves, of those that it should; false when one is missing or older than the run.
bool check_outputs(const RUN_WORDS &words, time_t start, std::vector<std::string> &files) {
    bool complete = true;
    auto has = [&words](const char *option) {
        for (const std::string &word : words.switches)
            if (lower_case(word) == option)
                return true;
        return false;
    };
    std::string ending = has("-vhdl") ? ".vhd" : ".v", place = words.opath == "." ? "" : words.opath + "/";
    std::vector<std::string> expected;
    if (!has("-add_tap_only"))
        expected.push_back(words.design + ".bso"); // stays beside the descriptions
    if (has("-add_tap") || has("-add_tap_only"))
        expected.push_back(place + words.design + "_TAP" + ending);
    if (!has("-add_tap_only") && !has("-no_expand"))
        expected.push_back(place + words.design + "_jtag" + ending);
    for (const std::string &file : expected) {
        struct stat info;
        bool is_new = ::stat(file.c_str(), &info) == 0 && info.st_mtime >= start;
        if (is_new)
            files.push_back(file);
        else
            kit_warn("%s was not written by this run.", file.c_str());
        complete = complete && is_new;
    }
    return complete;
}

/// What can be delivered: the chip with its TAP, expanded. None for a run that leaves something else.
std::vector<DELIVERED> deliver(const KIT_CALL &call, const RUN_WORDS &words) {
    if (kit_has(call, "no-delivery"))
        return {};
    for (const std::string &word : words.switches)
        if (std::string low = lower_case(word);
            low == "-add_tap_only" || low == "-no_expand" || low == "-add_bcm") {
            kit_note("check, bsdl, patterns, prove and picture need the whole chip with its TAP; with %s "
                     "there is none.",
                     word.c_str());
            return {};
        }
    return deliver_run({words.design, words.opath, kit_values(call, "cells"), kit_values(call, "liberty"),
                        kit_value(call, "def"), words.switches});
}

std::string delivered_json(const std::vector<DELIVERED> &delivered) {
    std::string list;
    for (const DELIVERED &done : delivered)
        list += format_text("%s{\"verb\": %s, \"status\": %d, \"summary\": %s, \"log\": %s}",
                            list.empty() ? "" : ", ", json_text(done.verb).c_str(), done.status,
                            json_text(done.summary).c_str(), json_text(done.log).c_str());
    return "[" + list + "]";
}

void show_summary(const KIT_CALL &call, const RUN_WORDS &words, const RUN_SUMMARY &summary,
                  const std::vector<std::string> &files, const std::vector<DELIVERED> &delivered,
                  double seconds) {
    if (kit_has(call, "json")) {
        std::printf("{\"design\": %s, \"cells\": %d, \"kinds\": %s, \"warnings\": %d, \"files\": %s, "
                    "\"delivery\": %s, \"seconds\": %.1f}\n",
                    json_text(words.design).c_str(), summary.total, json_list(summary.kinds).c_str(),
                    summary.warnings, json_list(files).c_str(), delivered_json(delivered).c_str(), seconds);
        return;
    }
    std::printf("boundary register: %d cells\n", summary.total);
    for (const std::string &kind : summary.kinds)
        std::printf("  %s\n", kind.c_str());
    std::printf("warnings of the run: %d (%s.rwv.rpt)\nwritten:", summary.warnings, words.design.c_str());
    for (const std::string &file : files)
        std::printf(" %s", file.c_str());
    std::printf("\n");
    for (const DELIVERED &done : delivered)
        std::printf("%s: %s (%s)\n", done.verb.c_str(), done.summary.c_str(), done.log.c_str());
    std::printf("time: %.1f s\n", seconds);
}

/// Those of `start`, and what the end of the run takes.
std::vector<KIT_OPTION> run_options() {
    std::vector<KIT_OPTION> options(start_options.begin(), start_options.end());
    options.push_back({"no-delivery", nullptr, "leave out check, bsdl, patterns, prove and picture"});
    return options;
}
const std::vector<KIT_OPTION> RUN_OPTIONS = run_options();

int run_run(const KIT_CALL &given) {
    KIT_CALL call = given;
    RUN_WORDS words = split_names(call);
    auto begin = std::chrono::steady_clock::now();
    time_t start = std::time(nullptr);
    if (TOOL_exists(words.design + ".lib") && TOOL_exists(words.design + ".bsc") && !kit_has(call, "force"))
        start_update(call, words.design);
    else if (std::string report = start_report(start_drafts(call, words.design)); !kit_has(call, "json"))
        std::printf("%s", report.c_str());
    std::fflush(stdout);
    if (!is_healthy(call, words))
        return KIT_FINDINGS;
    run_rimweave(words);
    std::string place = words.opath == "." ? "" : words.opath + "/";
    RUN_SUMMARY summary = read_report(place + words.design + ".rwv.rpt");
    std::vector<std::string> files;
    bool complete = check_outputs(words, start, files);
    std::vector<DELIVERED> delivered;
    if (complete)
        delivered = deliver(call, words);
    for (const DELIVERED &done : delivered)
        complete = complete && done.status == KIT_DONE;
    std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    show_summary(call, words, summary, files, delivered, seconds.count());
    return complete ? KIT_DONE : KIT_FINDINGS;
}

} // namespace

const KIT_VERB kit_run = {
    "run",
    "Takes a chip the whole way: drafts where there are none, the design database, rimweave, a summary.",
    "[options of start] [switches of rimweave] DESIGN",
    RUN_OPTIONS,
    "  rimkit run --liberty pads.lib --cells cells.v --idcode 1,0x2650,0x2aa chip -vhdl\n",
    true,
    run_run,
};
