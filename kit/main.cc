// rimkit VERB [options] DESIGN: drafts before a run, delivery after it.
#include "kit/verbs.hh"
#include "siblings/tool.hh"
#include "support/text.hh"

#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr const KIT_VERB *VERBS[] = {&kit_start, &kit_doctor,   &kit_run,   &kit_check,
                                     &kit_bsdl,  &kit_patterns, &kit_prove, &kit_picture};

std::string program_help() {
    std::string text = "Usage: rimkit VERB [options] DESIGN\n\n";
    for (const KIT_VERB *verb : VERBS)
        text += format_text("  %-10s %s\n", verb->name, verb->summary);
    return text +
           "\n`rimkit VERB --help` tells of its options. Status: 0 done, 1 findings, 2 usage, 255 fault.\n";
}

int print(const std::string &text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    return KIT_DONE;
}

int work(int argc, char **argv) {
    if (argc < 2)
        kit_usage_fault("a verb is missing");
    std::string word = argv[1];
    if (word == "--version")
        return print("rimkit " RW_VERSION "\n");
    if (word == "--help")
        return print(program_help());
    for (const KIT_VERB *verb : VERBS)
        if (word == verb->name) {
            KIT_CALL call = kit_parse(*verb, argc - 1, argv + 1);
            return kit_has(call, "help") ? print(kit_help(*verb)) : verb->run(call);
        }
    kit_usage_fault(format_text("there is no verb '%s'", argv[1]));
}

} // namespace

int main(int argc, char **argv) {
    return TOOL_run(work, argc, argv);
}
