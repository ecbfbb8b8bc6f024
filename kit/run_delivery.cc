#include "kit/run_delivery.hh"

#include "kit/command.hh"
#include "kit/files.hh"
#include "kit/progress.hh"
#include "siblings/tool.hh"
#include "support/shell.hh"
#include "support/text.hh"

#include <sys/wait.h>

namespace {

/// A verb, and which options of the run it takes. `check` plays the bench of the patterns.
struct DELIVERY_VERB {
    const char *name;
    bool takes_cells, takes_liberty;
};
constexpr DELIVERY_VERB VERBS[] = {{"check", true, true},
                                   {"bsdl", true, false},
                                   {"patterns", false, false},
                                   {"prove", true, false},
                                   {"picture", false, false}};

void add_each(std::vector<std::string> &words, const char *option, const std::vector<std::string> &values) {
    for (const std::string &value : values)
        words.insert(words.end(), {option, value});
}

std::string last_line(std::string text) {
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text.substr(text.rfind('\n') + 1);
}

DELIVERED deliver(const DELIVERY_PLAN &plan, const DELIVERY_VERB &verb) {
    std::vector<std::string> words = {own_folder() + "rimkit", verb.name};
    if (verb.takes_cells)
        add_each(words, "--cells", plan.cells);
    if (verb.takes_liberty)
        add_each(words, "--liberty", plan.liberty);
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
    for (const DELIVERY_VERB &verb : VERBS)
        all.push_back(deliver(plan, verb));
    return all;
}
