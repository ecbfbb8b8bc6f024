// rimkit patterns --grade: the faults are played, and what is found is told.
#include "kit/grade.hh"

#include "kit/files.hh"
#include "kit/json.hh"
#include "kit/progress.hh"
#include "siblings/tool.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <thread>

namespace {

/// The steps that found the faults, from the lines of one simulation.
void take_results(const std::string &text, std::vector<GRADE_FAULT> &faults, std::vector<bool> &is_played) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        int number = 0, step = 0;
        if (std::sscanf(line.c_str(), "PLANTED %d %d", &number, &step) == 2 && number >= 0 &&
            static_cast<size_t>(number) < faults.size()) {
            faults[static_cast<size_t>(number)].step = step;
            is_played[static_cast<size_t>(number)] = true;
        }
    }
}

/// A simulation on each core, each with its share.
void play(const std::string &program, std::vector<GRADE_FAULT> &faults) {
    size_t shares = std::clamp<size_t>(std::thread::hardware_concurrency(), 1, 16);
    std::string command;
    std::vector<std::string> logs;
    for (size_t i = 0; i < shares; ++i) {
        logs.push_back(format_text("%s.%zu.log", program.c_str(), i));
        command +=
            command_line({"vvp", "-n", program, format_text("+first=%zu", i),
                          format_text("+last=%zu", faults.size() - 1), format_text("+stride=%zu", shares)}) +
            " >" + shell_word(logs.back()) + " & ";
    }
    KIT_PROGRESS progress(format_text("playing %zu planted faults", faults.size() - 1));
    run_shell(command + "wait");
    std::vector<bool> is_played(faults.size());
    for (const std::string &log : logs) {
        take_results(TOOL_read_file(log), faults, is_played);
        std::remove(log.c_str());
    }
    if (auto at = std::find(is_played.begin(), is_played.end(), false); at != is_played.end())
        TOOL_fail("", 0, "the simulation of %s ended before its fault %td.", program.c_str(),
                  at - is_played.begin());
}

bool is_missed(const GRADE_FAULT &fault) {
    return fault.step < 0;
}

} // namespace

std::vector<GRADE_FAULT> grade_patterns(const PATTERN_LIST &list, const BOUNDARY_REGISTER &found,
                                        const FINISHED_RUN &run) {
    GRADE_NETLIST netlist = grade_netlist(found, list.design, 1e9 / list.frequency / 200);
    std::string source = list.design + "_graded.v", program = list.design + "_graded.vvp";
    TOOL_write_file(source, netlist.text);
    std::vector<std::string> words = {"iverilog",
                                      "-g2005",
                                      "-s",
                                      "bench",
                                      "-o",
                                      program,
                                      list.design + "_bench.v",
                                      source,
                                      run_file(run, "_TAP.v")};
    words.insert(words.end(), run.models.begin(), run.models.end());
    run_step(words);
    play(program, netlist.faults);
    if (!is_missed(netlist.faults[0]))
        TOOL_fail("", 0, "the bench fails at step %d without a planted fault.", netlist.faults[0].step);
    netlist.faults.erase(netlist.faults.begin());
    return std::move(netlist.faults);
}

std::string grade_summary(const std::vector<GRADE_FAULT> &faults) {
    auto missed = std::count_if(faults.begin(), faults.end(), is_missed);
    auto known = std::count_if(faults.begin(), faults.end(), [](const GRADE_FAULT &fault) {
        return is_missed(fault) && fault.reason != nullptr;
    });
    size_t found = faults.size() - static_cast<size_t>(missed);
    return format_text(
        "%zu of %zu planted faults found, %.1f %%; %td not found for a known reason, %td for none", found,
        faults.size(),
        faults.empty() ? 0.0 : 100.0 * static_cast<double>(found) / static_cast<double>(faults.size()), known,
        missed - known);
}

std::string grade_json(const std::vector<GRADE_FAULT> &faults) {
    if (faults.empty())
        return "null";
    std::string missed;
    for (const GRADE_FAULT &fault : faults)
        if (is_missed(fault))
            missed += (missed.empty() ? "" : ", ") +
                      format_text("{\"fault\": %s, \"reason\": %s}", json_text(fault.name).c_str(),
                                  fault.reason != nullptr ? json_text(fault.reason).c_str() : "null");
    return format_text("{\"planted\": %zu, \"missed\": [%s]}", faults.size(), missed.c_str());
}

std::string grade_text(const PATTERN_LIST &list, const std::vector<GRADE_FAULT> &faults) {
    std::string text = "# Faults planted in the netlist of " + list.design +
                       ", and the step of the bench that finds each.\n# " + grade_summary(faults) + ".\n",
                found;
    for (const GRADE_FAULT &fault : faults)
        if (is_missed(fault))
            text +=
                format_text("not found  %s%s%s\n", fault.name.c_str(), fault.reason != nullptr ? ": " : "",
                            fault.reason != nullptr ? fault.reason : "");
        else
            found += format_text("step %-5d %s (%s)\n", fault.step, fault.name.c_str(),
                                 list.steps[static_cast<size_t>(fault.step)].reason.c_str());
    return text + found;
}
