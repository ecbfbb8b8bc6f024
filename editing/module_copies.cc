#include "editing/module_copies.hh"

#include "support/console.hh"
#include "support/run_state.hh"
#include "support/shell.hh"
#include "support/text.hh"

namespace {

std::string command_file(const std::string &edited) {
    return format_text("%s/%s.cmd", RIMWEAVE_OPATH, edited.c_str());
}

} // namespace

int copy_file(const std::string &from, const std::string &to) {
    return run_shell("cp " + shell_word(from) + " " + shell_word(to));
}

EDIT_FILE *begin_top_file(bool with_path) {
    std::string module = format_text("%s_jtag", TOP_MODULE);
    if (copy_file(MODULE_SDB, module + ".sdb") != 0)
        vmr_fail("ERROR: can't copy file %s. Perhaps permission denied.\n\n", MODULE_SDB);
    std::string path = command_file(module);
    EDIT_FILE *file = edit_begin_file(path, module, with_path);
    if (file == nullptr)
        vmr_fail("ERROR: can't open %s to update sdb.\n\n", path.c_str());
    vmr_printf("    .Editing command file    %s ...\n", path.c_str());
    return file;
}

const char *found_module_file(const char *module) {
    std::string file = std::string(module) + ".sdb";
    const char *found = find_design_file(file);
    if (found == nullptr)
        console_fail("ERROR: Can not find \"%s\" file.\n\n", file.c_str());
    return keep_text(found);
}

void copy_module(const char *sdb_path, const std::string &edited) {
    if (copy_file(sdb_path, edited + ".sdb") != 0)
        vmr_fail("\nERROR: can not copy file \"%s\" to file \"%s.sdb\".\n"
                 "       Perhaps permission deny ...\n\n",
                 sdb_path, edited.c_str());
}

EDIT_FILE *begin_module_file(const std::string &edited) {
    std::string path = command_file(edited);
    EDIT_FILE *file = edit_begin_file(path, edited, true);
    if (file == nullptr)
        vmr_fail("ERROR: can't open command file \"%s\" to update SDB.\n", path.c_str());
    return file;
}

const char *found_level_file(const char *module) {
    const char *found = find_design_file(format_text("%s.sdb", module));
    if (found == nullptr)
        console_fail("ERROR: Can't find file %s%s.sdb.\n\n", PATH, module);
    return keep_text(found);
}

EDIT_FILE *begin_level_file(const char *module, bool with_path) {
    const char *found = found_level_file(module);
    std::string edited = std::string(module) + "_bs";
    if (copy_file(found, edited + ".sdb") != 0)
        vmr_fail("\nERROR: can't copy file '%s' to file '%s/%s.sdb'.\n       Perhaps permission deny ...\n\n",
                 found, RIMWEAVE_OPATH, edited.c_str());
    std::string path = command_file(edited);
    EDIT_FILE *file = edit_begin_file(path, edited, with_path);
    if (file == nullptr)
        vmr_fail("ERROR: can't open command file '%s' to update SDB.\n\n", path.c_str());
    vmr_printf("    .Editing command file    %s ...\n", path.c_str());
    file->sdb_path = found;
    return file;
}

std::string edited_module_name(int32_t module) {
    const MULTI_IO_ROW &row = MULTI_IO_TAB[module];
    return module == 0 ? format_text("%s_jtag", row.class_name)
                       : format_text("%s_bs%d", row.class_name, row.copy);
}

std::vector<int32_t> modules_children_first() {
    std::vector<std::vector<int32_t>> children(DYNA_count(MULTI_IO_TAB));
    for (int32_t module = 1; module < DYNA_count(MULTI_IO_TAB); module++)
        children[MULTI_IO_TAB[module].parent].push_back(module);
    // Parents first and the last child first, turned round.
    std::vector<int32_t> order, waiting = {0};
    while (!waiting.empty()) {
        order.push_back(waiting.back());
        waiting.pop_back();
        waiting.insert(waiting.end(), children[order.back()].begin(), children[order.back()].end());
    }
    return {order.rbegin(), order.rend()};
}
