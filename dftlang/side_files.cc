#include "dftlang/side_files.hh"

#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"
#include "support/fnm.hh"
#include "support/text.hh"

int32_t print_scan_trees = 0;

const char *resolve_side_file(const char *directory, const char *name) {
    if (name[0] == '~') {
        const char *home = FNM_get_home(name);
        return home == nullptr ? name : home;
    }
    if (directory == nullptr || name[0] == '/')
        return name;
    return keep_format("%s%s", directory, name);
}

SCAN_AST *parse_file(const char *file_name, const char *shown_name, SCAN_FILE_KIND kind) {
    std::FILE *file = FNM_open(file_name);
    if (file == nullptr && kind == INSTANCE_FILE_KIND)
        return nullptr;
    if (file == nullptr)
        error_handler(in_file_name, 0, MESSAGE_CANNOT_OPEN, file_name);
    bool has_map_file = DFT_OBJECT != nullptr && DFT_OBJECT->read_map != nullptr;
    SCAN_AST *tree = scan_yyparse(file, shown_name, kind, has_map_file || kind == INSTANCE_FILE_KIND);
    std::fclose(file);
    if (print_scan_trees && tree != nullptr)
        SCAN_PRINT_AST(stdout, tree, 0);
    return tree;
}

SIDE_FILE read_side_file(const char *name, SCAN_FILE_KIND kind) {
    const char *found = resolve_side_file(DFT_OBJECT->path, name);
    return append_row(DFT_OBJECT->side_files, {found, parse_file(found, found, kind)});
}
