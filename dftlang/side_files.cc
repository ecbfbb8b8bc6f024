#include "dftlang/side_files.hh"

#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"
#include "dftlang/scanner.hh"
#include "support/fnm.hh"
#include "support/text.hh"

#include <utility>

int32_t print_scan_trees = 0;

const char *resolve_side_file(const char *name) {
    if (name[0] == '~') {
        const char *home = FNM_get_home(name);
        return home == nullptr ? name : home;
    }
    if (current_pathG == nullptr || name[0] == '/')
        return name;
    return keep_format("%s%s", current_pathG, name);
}

bool parse_file_if_there(const char *file_name, const char *shown_name, SCAN_FILE_KIND kind) {
    scan_yyin = FNM_open(file_name);
    if (scan_yyin == nullptr)
        return false;
    const char *outer_name = std::exchange(in_file_name, shown_name);
    scan_yyparse(kind);
    if (print_scan_trees && scan_root[kind] != nullptr)
        SCAN_PRINT_AST(stdout, scan_root[kind], 0);
    in_file_name = outer_name;
    std::fclose(std::exchange(scan_yyin, nullptr));
    return true;
}

void parse_file(const char *file_name, const char *shown_name, SCAN_FILE_KIND kind) {
    if (!parse_file_if_there(file_name, shown_name, kind))
        error_handler(in_file_name, 0, MESSAGE_CANNOT_OPEN, file_name);
}
