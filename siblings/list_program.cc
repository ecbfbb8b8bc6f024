#include "siblings/list_program.hh"

#include "siblings/definitions.hh"
#include "siblings/tool.hh"
#include "siblings/verilog_writer.hh"
#include "siblings/vhdl_writer.hh"
#include "support/heap.hh"

namespace {

constexpr const char *list_usage =
    "usage: kalmlist -verilog|-vhdl -hierarchy -o OUT FILE.sdb [-add_path DIR]";

using WRITE_MODULES = void (*)(TEXT_SINK &text, const NL_DESIGN &design,
                               const std::vector<const NL_MODULE *> &modules);

struct LIST_ARGUMENTS {
    WRITE_MODULES write = nullptr;
    bool hierarchy = false;
    std::string output;
    std::string file;
    std::vector<std::string> paths;
};

void take_language(LIST_ARGUMENTS &arguments, WRITE_MODULES write) {
    if (arguments.write != nullptr && arguments.write != write)
        TOOL_fail("", 0, "-verilog and -vhdl exclude each other.");
    arguments.write = write;
}

LIST_ARGUMENTS read_list_arguments(int argc, char **argv) {
    LIST_ARGUMENTS arguments;
    for (int i = 1; i < argc; i++) {
        std::string_view word = argv[i];
        if (word == "-verilog")
            take_language(arguments, VLOG_write_modules);
        else if (word == "-vhdl")
            take_language(arguments, VHDL_write_modules);
        else if (word == "-hierarchy")
            arguments.hierarchy = true;
        else if (word == "-o")
            arguments.output = TOOL_value(argc, argv, i);
        else if (word == "-add_path")
            arguments.paths.emplace_back(TOOL_value(argc, argv, i));
        else if (word.size() > 1 && word[0] == '-')
            TOOL_fail("", 0, "unknown switch '%s'.", argv[i]);
        else if (!arguments.file.empty())
            TOOL_fail("", 0, "two SDB files are given, '%s' and '%s'.", arguments.file.c_str(), argv[i]);
        else
            arguments.file = word;
    }
    if (arguments.write == nullptr || arguments.output.empty() || arguments.file.empty())
        TOOL_fail("", 0, "%s", list_usage);
    return arguments;
}

// The name of the design is that of its file.
std::string design_name(const std::string &file) {
    std::string name = TOOL_base_name(file);
    constexpr std::string_view ending = ".sdb";
    if (name.size() <= ending.size() || !name.ends_with(ending))
        TOOL_fail("", 0, "'%s' is not the name of an SDB file.", file.c_str());
    return name.substr(0, name.size() - ending.size());
}

} // namespace

int LIST_main(int argc, char **argv) {
    keep_heap_in_large_pages();
    LIST_ARGUMENTS arguments = read_list_arguments(argc, argv);
    TOOL_set_search_path();
    std::string name = design_name(arguments.file);
    std::string own_directory = TOOL_directory(arguments.file);
    std::vector<std::string> directories = {own_directory.empty() ? "." : own_directory};
    directories.insert(directories.end(), arguments.paths.begin(), arguments.paths.end());
    std::string path = arguments.file;
    // A name that begins with '-' comes with "./" in front, and is no less a bare name.
    if ((own_directory.empty() || own_directory == "./") && !TOOL_exists(path))
        path = DEF_find(directories, name);
    if (path.empty() || !TOOL_exists(path))
        TOOL_fail("", 0, "there is no file '%s'.", arguments.file.c_str());
    NL_DESIGN design;
    std::vector<int32_t> order;
    int32_t top = DEF_read_tree(design, path, name, directories, order);
    if (design.modules[static_cast<size_t>(top)].is_cell)
        TOOL_fail(path, 0, "this is a library cell, which has no contents.");
    if (!arguments.hierarchy)
        order = {top};
    std::vector<const NL_MODULE *> modules;
    for (int32_t index : order)
        modules.push_back(&design.modules[static_cast<size_t>(index)]);
    TEXT_SINK text = TEXT_open(arguments.output);
    arguments.write(text, design, modules);
    TEXT_finish(text);
    return 0;
}
