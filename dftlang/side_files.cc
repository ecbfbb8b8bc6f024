#include "dftlang/side_files.hh"

#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"
#include "dftlang/scanner.hh"
#include "support/fnm.hh"
#include "support/text.hh"

#include <utility>

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
    scan_yyin = FNM_open(file_name);
    if (scan_yyin == nullptr && kind == INSTANCE_FILE_KIND)
        return nullptr;
    if (scan_yyin == nullptr)
        error_handler(in_file_name, 0, MESSAGE_CANNOT_OPEN, file_name);
    const char *outer_name = std::exchange(in_file_name, shown_name);
    sl_lockup_latch_flag = kind == LOCKUP_FILE_KIND;
    parse_path_fileG = kind == PATH_FILE_KIND;
    int32_t had_map_file = has_map_file;
    if (kind == INSTANCE_FILE_KIND)
        has_map_file = 1;
    scan_yyparse(kind);
    has_map_file = kind == INSTANCE_FILE_KIND ? had_map_file : has_map_file;
    if (print_scan_trees && scan_root[kind] != nullptr)
        SCAN_PRINT_AST(stdout, scan_root[kind], 0);
    in_file_name = outer_name;
    std::fclose(std::exchange(scan_yyin, nullptr));
    return scan_root[kind];
}

SIDE_FILE read_side_file(const char *name, SCAN_FILE_KIND kind) {
    const char *found = resolve_side_file(DFT_OBJECT->path, name);
    return append_row(DFT_OBJECT->side_files, {found, parse_file(found, found, kind)});
}
