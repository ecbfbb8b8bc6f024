// Path blocks with their files, the scan decoder, and the map file.
#include "dftlang/mapping.hh"
#include "dftlang/messages.hh"
#include "dftlang/side_files.hh"

#include <cstring>
#include <strings.h>

namespace {

/// `path_file` is the name of the path file that holds the statement, or null in the DFT file.
void check_cycle(SCAN_AST &statement, bool is_false_path, const char *path_file) {
    int32_t line = scan_child(&statement)->line;
    if (is_false_path && path_file == nullptr)
        scan_error_fail("ERROR: line %d, the CYCLE can not be supported in FALSE_PATH.\n", line);
    if (is_false_path)
        scan_error_fail("ERROR: line %d, the CYCLE can not be accepted in the %%FALSE_PATH in file %s.\n",
                        line, path_file);
    if (value_number(&statement) < 1)
        scan_error_fail("ERROR: line %d, the CYCLE must be greater than 0.\n", line);
}

[[noreturn]] void refuse_file_name(SCAN_AST &statement, bool is_false_path, const char *path_file) {
    int32_t line = scan_child(&statement)->line;
    if (!is_false_path)
        scan_error_fail("ERROR: line %d, the FILE_NAME  can not  be accepted in the path file again .\n",
                        line);
    scan_error_fail("ERROR: line %d, the FILE_NAME  can not  be accepted in the path file %s again .\n", line,
                    path_file);
}

void check_path(SCAN_AST &path, bool is_false_path, const char *path_file) {
    for (SCAN_AST &statement : scan_children(&path)) {
        if (statement.kind == CYCLE_NODE)
            check_cycle(statement, is_false_path, path_file);
        else if (statement.kind == FILE_NAME_NODE && path_file != nullptr)
            refuse_file_name(statement, is_false_path, path_file);
    }
}

/// A %POLARITY without a value says nothing.
void check_polarity(SCAN_AST *block) {
    SCAN_AST *statement = SCAN_FIND_CHILD(block, DECODER_POLARITY_NODE);
    const char *word = value_text(statement);
    if (word != nullptr && std::strcmp(word, "ACTIVE_HIGH") != 0 && std::strcmp(word, "ACTIVE_LOW") != 0)
        error_handler(in_file_name, statement->line, MESSAGE_POLARITY);
}

/// A pad of a control port has both its name and its output; the form with '=' has neither.
void check_control_port(SCAN_AST *port) {
    SCAN_AST *name = SCAN_FIND_CHILD(port, DECODER_PAD_NAME_NODE);
    SCAN_AST *out = SCAN_FIND_CHILD(port, DECODER_PAD_OUT_NODE);
    if (name != nullptr && out == nullptr)
        error_handler(in_file_name, name->line + 1, MESSAGE_NOT_DEFINED, "%PAD_OUT");
    if (out != nullptr && name == nullptr)
        error_handler(in_file_name, out->line - 1, MESSAGE_NOT_DEFINED, "%PAD_NAME");
    check_polarity(port);
}

constexpr SCAN_KIND decoder_ports[] = {SCAN_MODE_NODE, TEST_MODE_NODE, OVERRIDE_MODE_NODE, RAM_WRITE_NODE};

} // namespace

void map_paths(SCAN_AST *block) {
    bool is_false_path = block->kind == FALSE_PATH_NODE;
    for (SCAN_AST &path : scan_children(block)) {
        check_path(path, is_false_path, nullptr);
        for (SCAN_AST &statement : scan_children(&path)) {
            if (statement.kind != FILE_NAME_NODE)
                continue;
            SIDE_FILE file = read_side_file(value_text(&statement), PATH_FILE_KIND);
            for (SCAN_AST &own_path : scan_children(file.tree))
                check_path(own_path, is_false_path, file.name);
        }
    }
}

void map_scan_decoder(SCAN_AST *block) {
    for (SCAN_KIND port : decoder_ports)
        check_control_port(SCAN_FIND_CHILD(block, port));
    check_polarity(SCAN_FIND_CHILD(block, FS_MODE_NODE));
}

void map_map_file(const SIDE_FILE &map) {
    for (SCAN_AST &block : scan_children(SCAN_FIND_CHILD(map.tree, MAP_SCAN_LIST_NODE))) {
        for (SCAN_AST &cell : scan_children(SCAN_FIND_CHILD(&block, MAP_CELL_LIST_NODE))) {
            SCAN_AST *statement = SCAN_FIND_CHILD(&cell, SCAN_MODE_ACTIVE_NODE);
            const char *word = value_text(statement);
            if (word != nullptr && ::strcasecmp(word, "HIGH") != 0 && ::strcasecmp(word, "LOW") != 0)
                error_handler(map.name, statement->line, MESSAGE_MODE_ACTIVE);
        }
    }
}
