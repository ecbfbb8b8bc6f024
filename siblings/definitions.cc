#include "siblings/definitions.hh"

#include "siblings/netlist_sdb.hh"
#include "siblings/tool.hh"

#include "support/fnm.hh"

namespace {

struct TREE {
    NL_DESIGN &design;
    const std::vector<std::string> &directories;
    std::vector<int32_t> &order;
    std::vector<int32_t> open; // modules on the way down
};

void read_module(TREE &tree, int32_t index, const std::string &path);

// The module of a class, read in full before its first instance: its ports are then known in their order.
int32_t module_of_class(TREE &tree, int32_t name, const std::string &path) {
    int32_t index = NL_module(tree.design, name);
    std::string text = NL_string(tree.design.names, name);
    for (int32_t module : tree.open)
        if (module == index)
            TOOL_fail(path, 0, "the module '%s' contains itself.", text.c_str());
    if (tree.design.modules[static_cast<size_t>(index)].defined)
        return index;
    std::string file = DEF_find(tree.directories, text);
    if (file.empty())
        TOOL_fail(path, 0, "the module or cell '%s' has no SDB file on the search path.", text.c_str());
    read_module(tree, index, file);
    return index;
}

void read_module(TREE &tree, int32_t index, const std::string &path) {
    constexpr size_t DEPTH_LIMIT = 1000;
    if (tree.open.size() >= DEPTH_LIMIT)
        TOOL_fail(path, 0, "the hierarchy is more than %zu levels deep.", DEPTH_LIMIT);
    tree.open.push_back(index);
    NL_MODULE &module = tree.design.modules[static_cast<size_t>(index)];
    NL_read_sdb(tree.design, module, path, [&](int32_t name) { return module_of_class(tree, name, path); });
    tree.open.pop_back();
    if (!module.is_cell)
        tree.order.push_back(index);
}

} // namespace

std::string DEF_find(const std::vector<std::string> &directories, const std::string &name) {
    std::string file = name + ".sdb";
    // A name with a '/' is no file of a directory on the list.
    if (name.find('/') != std::string::npos)
        return {};
    for (const std::string &directory : directories) {
        std::string path = TOOL_join(directory, file);
        if (TOOL_exists(path))
            return path;
    }
    const char *found = FNM_find_input(file);
    return found != nullptr ? found : std::string();
}

bool DEF_read_ports(NL_DESIGN &design, NL_MODULE &module, const std::vector<std::string> &directories) {
    std::string path = DEF_find(directories, NL_string(design.names, module.name));
    if (path.empty())
        return false;
    NL_read_sdb_ports(design, module, path);
    return true;
}

bool DEF_read_module(NL_DESIGN &design, NL_MODULE &module, const std::vector<std::string> &directories) {
    std::string path = DEF_find(directories, NL_string(design.names, module.name));
    if (path.empty())
        return false;
    std::vector<int32_t> order;
    TREE tree = {design, directories, order, {}};
    read_module(tree, NL_module(design, module.name), path);
    return true;
}

int32_t DEF_read_tree(NL_DESIGN &design, const std::string &path, const std::string &name,
                      const std::vector<std::string> &directories, std::vector<int32_t> &order) {
    // What a flat design keeps of its modules is their names; taken for instances, they would be there twice.
    if (name.ends_with(".c"))
        TOOL_fail(path, 0, "this is a flat design, which has no modules below it.");
    TREE tree = {design, directories, order, {}};
    int32_t index = NL_module(design, NL_name(design.names, name));
    read_module(tree, index, path);
    return index;
}
