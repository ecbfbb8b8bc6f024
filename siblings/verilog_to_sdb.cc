#include "siblings/verilog_to_sdb.hh"

#include "siblings/definitions.hh"
#include "siblings/flatten.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/tool.hh"
#include "siblings/verilog_reader.hh"
#include "siblings/verilog_words.hh"
#include "siblings/verin_arguments.hh"

#include "support/fnm.hh"
#include "support/text.hh"

#include <algorithm>
#include <map>
#include <sys/stat.h>

namespace {

// The module that no other one instantiates, or the one that was asked for.
int32_t find_top(const VLOG &reader, const std::string &wanted) {
    const NL_DESIGN &design = reader.design;
    std::vector<bool> used(design.modules.size());
    for (const VLOG_MODULE &record : reader.modules)
        for (const NL_INSTANCE &instance : design.modules[static_cast<size_t>(record.module)].instances)
            used[static_cast<size_t>(instance.def)] = true;
    std::vector<int32_t> tops;
    for (const VLOG_MODULE &record : reader.modules) {
        bool is_wanted =
            NL_text(design.names, design.modules[static_cast<size_t>(record.module)].name) == wanted;
        if (wanted.empty() ? !used[static_cast<size_t>(record.module)] : is_wanted)
            tops.push_back(record.module);
    }
    const std::string &file = reader.scan.files.front();
    if (!wanted.empty() && tops.empty())
        TOOL_fail(file, 0, "there is no module '%s' for -top.", wanted.c_str());
    if (tops.empty())
        TOOL_fail(file, 0, "there is no top module: every module is instantiated by another one.");
    if (tops.size() > 1)
        TOOL_fail(file, 0, "'%s' and '%s' both are instantiated by no other module; -top has to name one.",
                  NL_string(design.names, design.modules[static_cast<size_t>(tops[0])].name).c_str(),
                  NL_string(design.names, design.modules[static_cast<size_t>(tops[1])].name).c_str());
    return tops[0];
}

std::string file_of_module(const VLOG &reader, const VLOG_MODULE &record, const std::string &directory) {
    std::string name =
        NL_string(reader.design.names, reader.design.modules[static_cast<size_t>(record.module)].name);
    if (name.find('/') != std::string::npos || name == "." || name == "..")
        TOOL_fail(reader.scan.files[static_cast<size_t>(record.file)], record.line,
                  "the module name '%s' can't be the name of a file.", name.c_str());
    return TOOL_join(directory, name);
}

// The flat design has a name of its own, which no module may have.
void check_flat_name(const VLOG &reader, int32_t top) {
    const NL_DESIGN &design = reader.design;
    std::string flat = NL_string(design.names, design.modules[static_cast<size_t>(top)].name) + ".c";
    for (const VLOG_MODULE &record : reader.modules)
        if (NL_text(design.names, design.modules[static_cast<size_t>(record.module)].name) == flat)
            TOOL_fail(reader.scan.files[static_cast<size_t>(record.file)], record.line,
                      "the module '%s' would have the file of the flat design.", flat.c_str());
}

std::string log_text(const VLOG &reader, const NL_MODULE *flat) {
    const NL_DESIGN &design = reader.design;
    std::string text = "kalmverin\n\n";
    for (const std::string &file : reader.scan.files)
        text += "file                " + file + "\n";
    text += format_text("lines               %lld\n", static_cast<long long>(reader.scan.line_count));
    std::vector<int64_t> uses_of_module(design.modules.size());
    int64_t ports = 0, nets = 0, instances = 0, assigns = 0;
    for (const VLOG_MODULE &record : reader.modules) {
        const NL_MODULE &module = design.modules[static_cast<size_t>(record.module)];
        ports += static_cast<int64_t>(module.ports.size());
        nets += static_cast<int64_t>(module.nets.size());
        instances += static_cast<int64_t>(module.instances.size());
        assigns += record.assign_count;
        for (const NL_INSTANCE &instance : module.instances)
            uses_of_module[static_cast<size_t>(instance.def)]++;
    }
    text += format_text("%-20s%zu\n", reader.library ? "library cells" : "modules", reader.modules.size());
    text += format_text("ports               %lld\n", static_cast<long long>(ports));
    if (reader.library)
        return text;
    text += format_text("nets                %lld\n", static_cast<long long>(nets));
    text += format_text("assigns             %lld\n", static_cast<long long>(assigns));
    text += format_text("instances           %lld\n", static_cast<long long>(instances));
    if (flat != nullptr)
        text += format_text("flat instances      %zu\nflat nets           %zu\n",
                            flat->instances.size() - flat->scopes.size(), flat->nets.size());
    text += "\ninstances of\n";
    std::map<std::string, int64_t> uses; // by name
    for (size_t i = 0; i < uses_of_module.size(); i++)
        if (uses_of_module[i] > 0)
            uses[NL_string(design.names, design.modules[i].name)] = uses_of_module[i];
    for (const auto &[name, count] : uses)
        text += format_text("  %-30s %lld\n", name.c_str(), static_cast<long long>(count));
    return text;
}

/// The folder of -opath, which a first run has not got yet. One that can't be made is told of by the first
/// file.
void make_output_directory(const VERIN_ARGUMENTS &arguments) {
    if (!arguments.output_directory.empty())
        ::mkdir(arguments.output_directory.c_str(), 0777);
}

void write_design(VLOG &reader, const VERIN_ARGUMENTS &arguments) {
    NL_DESIGN &design = reader.design;
    std::vector<std::string> directories;
    if (!arguments.output_directory.empty())
        directories.push_back(arguments.output_directory);
    int32_t top = find_top(reader, arguments.top);
    std::vector<int32_t> modules;
    std::vector<std::string> paths;
    for (const VLOG_MODULE &record : reader.modules) {
        modules.push_back(record.module);
        paths.push_back(file_of_module(reader, record, arguments.output_directory));
    }
    check_flat_name(reader, top);
    VERIN_set_directions(design, design.modules[static_cast<size_t>(top)], arguments);
    VERIN_mark_power(design, modules, arguments);
    VLOG_link(reader, [&](NL_MODULE &module) { return DEF_read_module(design, module, directories); });
    for (size_t i = 0; i < paths.size(); i++)
        NL_check_sdb_size(design, design.modules[static_cast<size_t>(modules[i])], paths[i] + ".sdb");
    NL_MODULE flat = NL_flatten(design, top);
    NL_open_lone_pins(design, flat);
    auto top_place = std::find(modules.begin(), modules.end(), top) - modules.begin();
    NL_check_sdb_size(design, flat, paths[static_cast<size_t>(top_place)] + ".c.sdb");
    make_output_directory(arguments);
    for (size_t i = 0; i < paths.size(); i++) {
        const NL_MODULE &module = design.modules[static_cast<size_t>(modules[i])];
        NL_write_sdb(design, module, paths[i] + ".sdb");
        if (modules[i] == top)
            NL_write_sdb(design, flat, paths[i] + ".c.sdb");
    }
    std::string log = FNM_break(arguments.files[0].c_str(), "b") + ".kalmverin.log";
    TOOL_write_file(log, log_text(reader, &flat));
}

void write_library(VLOG &reader, const VERIN_ARGUMENTS &arguments) {
    std::vector<std::string> paths;
    for (const VLOG_MODULE &record : reader.modules)
        paths.push_back(file_of_module(reader, record, arguments.output_directory));
    make_output_directory(arguments);
    for (size_t i = 0; i < paths.size(); i++)
        NL_write_sdb(reader.design, reader.design.modules[static_cast<size_t>(reader.modules[i].module)],
                     paths[i] + ".sdb");
    std::string log = FNM_break(arguments.files[0].c_str(), "b") + ".kalmverin.log";
    TOOL_write_file(log, log_text(reader, nullptr));
}

} // namespace

int VTOS_main(int argc, char **argv) {
    VERIN_ARGUMENTS arguments = VERIN_read_arguments(argc, argv);
    TOOL_set_search_path();
    NL_DESIGN design;
    VLOG_put_words(design.names);
    VSCAN scan{design.names};
    scan.include_directories = arguments.include_directories;
    for (const auto &[name, text] : arguments.macros)
        VSCAN_define(scan, name, text);
    VLOG reader{design, scan, arguments.library, arguments.drop_parameters, {}};
    for (const std::string &file : arguments.files)
        VLOG_read(reader, file);
    if (reader.modules.empty())
        TOOL_fail(arguments.files[0], 0, "the file holds no module.");
    if (arguments.library)
        write_library(reader, arguments);
    else
        write_design(reader, arguments);
    return 0;
}
