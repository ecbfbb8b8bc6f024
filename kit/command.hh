// The command line of a verb: GNU long options, a table row each, and the names that stand beside them.
#pragma once

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

/// Exit statuses of rimkit.
enum KIT_STATUS : int { KIT_DONE = 0, KIT_FINDINGS = 1, KIT_USAGE = 2, KIT_FAULT = 255 };

/// One option of a verb.
struct KIT_OPTION {
    const char *name;  ///< without the dashes
    const char *value; ///< what stands for its value in the help text; null for an option without one
    const char *help;  ///< may hold line ends
    bool repeats = false;
};

/// What a command line gave.
struct KIT_CALL {
    std::unordered_map<std::string, std::vector<std::string>> options; ///< values by name, in order
    std::vector<std::string> names;                                    ///< the words that are no options
};

/// A verb: a row of the table in main.cc, a file of its own.
struct KIT_VERB {
    const char *name;
    const char *summary; ///< one line
    const char *usage;   ///< what follows the verb on its command line
    std::span<const KIT_OPTION> options;
    const char *example;  ///< closes its help text
    bool passes_switches; ///< single-dash words are collected among the names
    int (*run)(const KIT_CALL &call);
};

/// The options that every verb has.
extern const std::span<const KIT_OPTION> kit_common_options;

/// Reads a command line. A word that it can't take ends the program with one line on the error stream and
/// KIT_USAGE.
KIT_CALL kit_parse(const KIT_VERB &verb, int argc, char **argv);
/// Ends the program with that line, which names the verb's help.
[[noreturn]] void kit_usage_fault(const std::string &text);

bool kit_has(const KIT_CALL &call, const char *option);
/// The value given last, or `otherwise`.
std::string kit_value(const KIT_CALL &call, const char *option, const std::string &otherwise = {});
const std::vector<std::string> &kit_values(const KIT_CALL &call, const char *option);

/// The help text of a verb.
std::string kit_help(const KIT_VERB &verb);
