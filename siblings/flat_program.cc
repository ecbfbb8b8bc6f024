#include "siblings/flat_program.hh"

#include "siblings/definitions.hh"
#include "siblings/flatten.hh"
#include "siblings/netlist_sdb.hh"
#include "siblings/tool.hh"
#include "siblings/verilog_writer.hh"
#include "support/heap.hh"

namespace {

struct FLAT_ARGUMENTS {
    bool keep_empty = false;
    std::string design; ///< directory and name, without ".sdb"
    std::string output_directory;
};

FLAT_ARGUMENTS read_flat_arguments(int argc, char **argv) {
    FLAT_ARGUMENTS arguments;
    for (int i = 1; i < argc; i++) {
        std::string_view word = argv[i];
        if (word == "-keepempty")
            arguments.keep_empty = true;
        else if (word == "-opath")
            arguments.output_directory = TOOL_value(argc, argv, i);
        else if (word == "-cellonly")
            continue; // there is no other level to expand to
        else if (word.size() > 1 && word[0] == '-')
            TOOL_fail("", 0, "unknown switch '%s'.", argv[i]);
        else if (!arguments.design.empty())
            TOOL_fail("", 0, "two designs are given, '%s' and '%s'.", arguments.design.c_str(), argv[i]);
        else
            arguments.design = word;
    }
    if (arguments.design.empty() || TOOL_base_name(arguments.design).empty())
        TOOL_fail("", 0, "usage: kalmflat -cellonly -keepempty DIR/NAME -opath D");
    return arguments;
}

// True for a module that has ports and nothing else: no instance, no constant, no two ports on one net. It
// stands for something whose contents come later.
bool is_empty(const NL_MODULE &module) {
    std::unordered_set<int32_t> nets;
    for (const NL_PORT &port : module.ports)
        if (port.net != NL_NONE && (port.net <= NL_VCC || !nets.insert(port.net).second))
            return false;
    return module.instances.empty();
}

// Ends what has been expanded: of a module whose instances stay, the ports alone are asked for.
void free_contents(NL_MODULE &module) {
    module.nets = {};
    module.instances = {};
    module.pins = {};
}

} // namespace

int FLAT_main(int argc, char **argv) {
    keep_heap_in_large_pages();
    FLAT_ARGUMENTS arguments = read_flat_arguments(argc, argv);
    TOOL_set_search_path();
    std::string name = TOOL_base_name(arguments.design);
    std::string directory = TOOL_directory(arguments.design);
    std::string path = arguments.design + ".sdb";
    if (!TOOL_exists(path))
        TOOL_fail("", 0, "there is no file '%s'.", path.c_str());
    NL_DESIGN design;
    std::vector<int32_t> order;
    int32_t top = DEF_read_tree(design, path, name, {directory.empty() ? "." : directory}, order);
    if (design.modules[static_cast<size_t>(top)].is_cell)
        TOOL_fail(path, 0, "this is a library cell, which has nothing to expand.");
    for (int32_t index : order) {
        NL_MODULE &module = design.modules[static_cast<size_t>(index)];
        if (arguments.keep_empty && index != top && is_empty(module))
            module.is_cell = true;
    }
    NL_MODULE flat = NL_flatten(design, top);
    for (int32_t index : order)
        free_contents(design.modules[static_cast<size_t>(index)]);
    TEXT_SINK text = TEXT_open(TOOL_join(arguments.output_directory, name + "_flat.v"));
    VLOG_write_modules(text, design, {&flat});
    NL_open_lone_pins(design, flat);
    NL_write_sdb(design, flat, TOOL_join(arguments.output_directory, name + ".c.sdb"));
    TEXT_finish(text);
    return 0;
}
