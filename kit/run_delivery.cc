#include "kit/run_delivery.hh"

#include "kit/command.hh"
#include "kit/files.hh"
#include "kit/progress.hh"
#include "siblings/tool.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <sys/wait.h>

namespace {

/// A verb, and which options of the run it takes. `check` plays the bench of the patterns; where it found
/// something the picture has it play once more, so that what the page tells is of the chip that it shows.
struct DELIVERY_VERB {
    const char *name;
    bool takes_cells, takes_liberty, is_picture = false;
};
constexpr DELIVERY_VERB VERBS[] = {{"check", true, true},
                                   {"bsdl", true, false},
                                   {"patterns", false, false},
                                   {"prove", true, false},
                                   {"picture", true, true, true}};

void add_each(std::vector<std::string> &words, const char *option, const std::vector<std::string> &values) {
    for (const std::string &value : values)
        words.insert(words.end(), {option, value});
}

std::string last_line(std::string text) {
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text.substr(text.rfind('\n') + 1);
}

/// What the picture takes beside cells and libraries. Its findings of the doctor are of a run with the same
/// switches, of which the folder for output says nothing.
void add_picture_words(std::vector<std::string> &words, const DELIVERY_PLAN &plan, bool has_engines) {
    if (has_engines)
        words.emplace_back("--engines");
    if (!plan.def.empty())
        add_each(words, "--def", {plan.def});
    for (size_t i = 0; i < plan.switches.size(); ++i)
        if (lower_case(plan.switches[i]) == "-opath")
            ++i;
        else
            words.push_back(plan.switches[i]);
}

DELIVERED deliver(const DELIVERY_PLAN &plan, const DELIVERY_VERB &verb, bool has_findings) {
    std::vector<std::string> words = {own_folder() + "rimkit", verb.name};
    if (verb.takes_cells)
        add_each(words, "--cells", plan.cells);
    if (verb.takes_liberty)
        add_each(words, "--liberty", plan.liberty);
    if (verb.is_picture)
        add_picture_words(words, plan, has_findings);
    if (plan.opath != ".")
        add_each(words, "--opath", {plan.opath});
    words.push_back(plan.design);
    std::string log = plan.design + "." + verb.name + ".log";
    KIT_PROGRESS progress(std::string("rimkit ") + verb.name);
    int result = run_shell(command_line(words) + " >" + shell_word(log));
    DELIVERED done = {verb.name, log, last_line(TOOL_read_file(log)),
                      WIFEXITED(result) ? WEXITSTATUS(result) : KIT_FAULT};
    if (done.status == KIT_FAULT || done.status == KIT_USAGE)
        done.summary = format_text("could not; to repeat it: rimkit%s",
                                   command_line(words).substr(words[0].size()).c_str());
    return done;
}

} // namespace

std::vector<DELIVERED> deliver_run(const DELIVERY_PLAN &plan) {
    std::vector<DELIVERED> all;
    bool has_findings = false;
    for (const DELIVERY_VERB &verb : VERBS) {
        all.push_back(deliver(plan, verb, has_findings));
        has_findings = has_findings || !all[0].summary.starts_with("0 errors, 0 warnings, 0 notes");
    }
    return all;
}
