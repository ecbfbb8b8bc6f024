#include "siblings/verin_arguments.hh"

#include "siblings/tool.hh"
#include "siblings/verilog_scan.hh"

#include "support/settings.hh"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace {

using LIST = std::vector<std::string>;

void add_names(LIST &list, std::string_view names, const char *word) {
    for (;;) {
        size_t comma = names.find(',');
        std::string_view name = names.substr(0, comma);
        if (name.empty())
            TOOL_fail("", 0, "a name is missing in the list behind '%s'.", word);
        list.emplace_back(name);
        if (comma == std::string_view::npos)
            return;
        names.remove_prefix(comma + 1);
    }
}

void add_macro(VERIN_ARGUMENTS &arguments, const std::string &operand) {
    size_t equals = operand.find('=');
    std::string name = operand.substr(0, equals);
    bool is_name = !name.empty() && VSCAN_name_at(name.c_str()).size() == name.size();
    if (!is_name)
        TOOL_fail("", 0, "'%s' behind '-D' is no name of a macro.", name.c_str());
    arguments.macros.emplace_back(name, equals == std::string::npos ? "" : operand.substr(equals + 1));
}

struct SWITCH {
    const char *word;
    const char *operand; // null for a switch that stands alone
    const char *help;
    bool design_alone; // says nothing to -lib
    void (*take)(VERIN_ARGUMENTS &arguments, const char *operand);
};

constexpr SWITCH switches[] = {
    {"-lib", nullptr, "each module becomes a library cell: its ports alone matter", false,
     [](VERIN_ARGUMENTS &arguments, const char *) { arguments.library = true; }},
    {"-top", "NAME", "the module to flatten; else the one that no other instantiates", false,
     [](VERIN_ARGUMENTS &arguments, const char *name) { arguments.top = name; }},
    {"-opath", "DIR", "where the SDB files go; else the working directory", false,
     [](VERIN_ARGUMENTS &arguments, const char *path) { arguments.output_directory = path; }},
    {"-D", "NAME[=TEXT]", "defines a macro", false,
     [](VERIN_ARGUMENTS &arguments, const char *text) { add_macro(arguments, text); }},
    {"-I", "DIR", "one more directory for `include", false,
     [](VERIN_ARGUMENTS &arguments, const char *path) { arguments.include_directories.emplace_back(path); }},
    {"-as_input", "NAMES", "inout ports of the top that are inputs in truth", true,
     [](VERIN_ARGUMENTS &arguments, const char *names) { add_names(arguments.inputs, names, "-as_input"); }},
    {"-as_output", "NAMES", "inout ports of the top that are outputs in truth", true,
     [](VERIN_ARGUMENTS &arguments, const char *names) {
         add_names(arguments.outputs, names, "-as_output");
     }},
    {"-power", "NAMES", "ports that may share a net: power under several names", true,
     [](VERIN_ARGUMENTS &arguments, const char *names) { add_names(arguments.power, names, "-power"); }},
    {"-drop_parameters", nullptr, "leaves the parameters of instances of cells away, with a warning", false,
     [](VERIN_ARGUMENTS &arguments, const char *) { arguments.drop_parameters = true; }},
};

constexpr const char *verin_usage = "usage: kalmverin [-lib] FILE.v ... [SWITCH ...]";

[[noreturn]] void show_help() {
    std::printf("%s\n\n", verin_usage);
    for (const SWITCH &row : switches)
        std::printf(
            "  %-24s%s\n",
            (std::string(row.word) + (row.operand != nullptr ? std::string(" ") + row.operand : "")).c_str(),
            row.help);
    std::printf("  %-24s%s\n\n", "-help", "lists the switches");
    std::printf(
        "NAMES are separated by commas; a vector is named as a whole, and * stands for any characters.\n");
    std::exit(0);
}

// Calls `take` for the ports that a name or a pattern stands for, vectors as a whole; the number of them.
size_t each_group(const NL_DESIGN &design, const NL_MODULE &module, const std::string &pattern,
                  const std::function<void(const NL_GROUP &)> &take) {
    size_t count = 0;
    for (const NL_GROUP &group : module.groups) {
        std::string name = NL_string(design.names, group.name);
        if (name != pattern && STR_match(pattern.c_str(), name.c_str()) != 0)
            continue;
        take(group);
        count++;
    }
    return count;
}

void set_direction(NL_DESIGN &design, NL_MODULE &top, const LIST &patterns, const char *word,
                   int32_t direction) {
    std::string top_name = NL_string(design.names, top.name);
    for (const std::string &pattern : patterns) {
        bool exact = pattern.find('*') == std::string::npos;
        size_t found = each_group(design, top, pattern, [&](const NL_GROUP &group) {
            for (int32_t i = group.first; i < group.first + group.count; i++) {
                NL_PORT &port = top.ports[static_cast<size_t>(i)];
                if (port.direction != NL_BIDI && port.direction != direction && exact)
                    TOOL_fail("", 0, "%s: the port '%s' of module '%s' is no inout.", word, pattern.c_str(),
                              top_name.c_str());
                if (port.direction == NL_BIDI)
                    port.direction = direction;
            }
        });
        int32_t name = NL_find_name(design.names, pattern);
        if (found == 0 && name >= 0 && NL_find_port(top, name) != NL_NONE)
            TOOL_fail("", 0, "%s: '%s' is a bit of a vector, which has one direction as a whole.", word,
                      pattern.c_str());
        if (found == 0)
            TOOL_fail("", 0, "%s: the module '%s' has no port '%s'.", word, top_name.c_str(),
                      pattern.c_str());
    }
}

} // namespace

VERIN_ARGUMENTS VERIN_read_arguments(int argc, char **argv) {
    VERIN_ARGUMENTS arguments;
    const char *design_switch = nullptr;
    for (int i = 1; i < argc; i++) {
        std::string_view word = argv[i];
        if (word == "-help")
            show_help();
        const SWITCH *row = std::find_if(std::begin(switches), std::end(switches),
                                         [&](const SWITCH &one) { return word == one.word; });
        if (row != std::end(switches)) {
            row->take(arguments, row->operand != nullptr ? TOOL_value(argc, argv, i) : nullptr);
            design_switch = row->design_alone ? row->word : design_switch;
        } else if (word.size() > 1 && word[0] == '-') {
            TOOL_fail("", 0, "unknown switch '%s'. -help lists all.", argv[i]);
        } else {
            arguments.files.emplace_back(word);
        }
    }
    if (arguments.files.empty())
        TOOL_fail("", 0, "%s; -help lists the switches.", verin_usage);
    if (arguments.library && design_switch != nullptr)
        TOOL_fail("", 0, "'%s' has no meaning with '-lib'.", design_switch);
    return arguments;
}

void VERIN_set_directions(NL_DESIGN &design, NL_MODULE &top, const VERIN_ARGUMENTS &arguments) {
    set_direction(design, top, arguments.inputs, "-as_input", NL_INPUT);
    set_direction(design, top, arguments.outputs, "-as_output", NL_OUTPUT);
}

void VERIN_mark_power(NL_DESIGN &design, const std::vector<int32_t> &modules,
                      const VERIN_ARGUMENTS &arguments) {
    for (const std::string &pattern : arguments.power) {
        size_t found = 0;
        for (int32_t index : modules) {
            NL_MODULE &module = design.modules[static_cast<size_t>(index)];
            found += each_group(design, module, pattern, [&](const NL_GROUP &group) {
                for (int32_t i = group.first; i < group.first + group.count; i++)
                    module.ports[static_cast<size_t>(i)].marks |= NL_MARK_POWER;
            });
        }
        if (found == 0)
            TOOL_fail("", 0, "-power: no module has a port '%s'.", pattern.c_str());
    }
}
