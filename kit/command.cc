#include "kit/command.hh"

#include "support/text.hh"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <getopt.h>

namespace {

constexpr KIT_OPTION COMMON[] = {
    {"json", nullptr, "results for machines"},
    {"help", nullptr, "this text"},
};

const char *current_verb = nullptr; // for the messages of kit_usage_fault; kit_parse sets it

std::string option_words(const KIT_OPTION &option) {
    return std::string("--") + option.name + (option.value != nullptr ? std::string(" ") + option.value : "");
}

void append_options(std::string &text, std::span<const KIT_OPTION> options) {
    constexpr size_t column = 34;
    for (const KIT_OPTION &option : options) {
        std::string words = "  " + option_words(option);
        words += words.size() + 2 > column ? "\n" + std::string(column, ' ')
                                           : std::string(column - words.size(), ' ');
        for (const char *at = option.help; *at != '\0'; ++at)
            words += *at == '\n' ? "\n" + std::string(column, ' ') : std::string(1, *at);
        text += words + "\n";
    }
}

void take_option(KIT_CALL &call, const KIT_OPTION &row) {
    std::vector<std::string> &values = call.options[row.name];
    if (!values.empty() && row.value != nullptr && !row.repeats)
        kit_usage_fault(format_text("--%s can be given once", row.name));
    values.emplace_back(::optarg != nullptr ? ::optarg : "");
}

} // namespace

const std::span<const KIT_OPTION> kit_common_options = COMMON;

void kit_usage_fault(const std::string &text) {
    std::string verb = current_verb != nullptr ? std::string(" ") + current_verb : "";
    std::fprintf(stderr, "rimkit%s: %s; `rimkit%s --help` tells more\n", verb.c_str(), text.c_str(),
                 verb.c_str());
    std::exit(KIT_USAGE);
}

KIT_CALL kit_parse(const KIT_VERB &verb, int argc, char **argv) {
    current_verb = verb.name;
    std::vector<const KIT_OPTION *> rows;
    std::vector<option> longs;
    for (std::span<const KIT_OPTION> table : {verb.options, kit_common_options})
        for (const KIT_OPTION &row : table) {
            rows.push_back(&row);
            longs.push_back({row.name, row.value != nullptr ? required_argument : no_argument, nullptr, 0});
        }
    longs.push_back({});
    KIT_CALL call;
    ::opterr = 0;
    for (::optind = 1; ::optind < argc;) {
        // A switch of another program has one dash: what begins so is a name.
        const char *word = argv[::optind];
        if (verb.passes_switches && word[0] == '-' && word[1] != '-' && word[1] != '\0') {
            call.names.emplace_back(word);
            ++::optind;
            continue;
        }
        int index = 0, found = ::getopt_long(argc, argv, "-:", longs.data(), &index);
        if (found < 0) // behind "--"
            break;
        if (found == 1)
            call.names.emplace_back(::optarg);
        else if (found == 0)
            take_option(call, *rows[static_cast<size_t>(index)]);
        else
            kit_usage_fault(format_text(found == ':' ? "%s takes a value" : "there is no option '%s'",
                                        argv[::optind - 1]));
    }
    for (; ::optind < argc; ++::optind)
        call.names.emplace_back(argv[::optind]);
    return call;
}

bool kit_has(const KIT_CALL &call, const char *option) {
    return call.options.contains(option);
}

std::string kit_value(const KIT_CALL &call, const char *option, const std::string &otherwise) {
    auto found = call.options.find(option);
    return found != call.options.end() ? found->second.back() : otherwise;
}

const std::vector<std::string> &kit_values(const KIT_CALL &call, const char *option) {
    static const std::vector<std::string> none;
    auto found = call.options.find(option);
    return found != call.options.end() ? found->second : none;
}

std::string kit_help(const KIT_VERB &verb) {
    std::string text = format_text("Usage: rimkit %s %s\n\n%s\n\n", verb.name, verb.usage, verb.summary);
    append_options(text, verb.options);
    append_options(text, kit_common_options);
    return text + "\nExample:\n" + verb.example;
}
