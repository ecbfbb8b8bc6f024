// Path blocks with their files, the scan decoder, and the map file.
#include "dftlang/mapping.hh"
#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"
#include "dftlang/side_files.hh"

#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace {

/// What differs between the two kinds of path blocks.
struct PATH_BLOCK {
    bool with_cycle;
    PATH_ROW *DFT_CONFIGURATION::*own_rows;
    PATH_ROW *DFT_CONFIGURATION::*all_rows;
    FILE_PATHS *DFT_CONFIGURATION::*files;
};

constexpr PATH_BLOCK multicycle_block = {true, &DFT_CONFIGURATION::multicycle_rows,
                                         &DFT_CONFIGURATION::multicycle_paths,
                                         &DFT_CONFIGURATION::file_multicycle_paths};
constexpr PATH_BLOCK false_block = {false, &DFT_CONFIGURATION::false_rows, &DFT_CONFIGURATION::false_paths,
                                    &DFT_CONFIGURATION::file_false_paths};

/// `path_file` is the name of the path file that holds the statement, or null in the DFT file.
int32_t path_cycle(SCAN_AST &statement, const PATH_BLOCK &block, const char *path_file) {
    int32_t line = scan_child(&statement)->line;
    if (!block.with_cycle && path_file == nullptr)
        scan_error_fail("ERROR: line %d, the CYCLE can not be supported in FALSE_PATH.\n", line);
    if (!block.with_cycle)
        scan_error_fail("ERROR: line %d, the CYCLE can not be accepted in the %%FALSE_PATH in file %s.\n",
                        line, path_file);
    int32_t cycle = value_number(&statement);
    if (cycle < 1)
        scan_error_fail("ERROR: line %d, the CYCLE must be greater than 0.\n", line);
    return cycle;
}

[[noreturn]] void refuse_file_name(SCAN_AST &statement, const PATH_BLOCK &block, const char *path_file) {
    int32_t line = scan_child(&statement)->line;
    if (block.with_cycle)
        scan_error_fail("ERROR: line %d, the FILE_NAME  can not  be accepted in the path file again .\n",
                        line);
    scan_error_fail("ERROR: line %d, the FILE_NAME  can not  be accepted in the path file %s again .\n", line,
                    path_file);
}

PATH_ROW path_row(SCAN_AST &path, const PATH_BLOCK &block, const char *path_file) {
    PATH_ROW row = {nullptr, nullptr, nullptr, -1, nullptr, nullptr};
    for (SCAN_AST &statement : scan_children(&path)) {
        if (statement.kind == FROM_NODE)
            append_targets(&statement, row.from);
        else if (statement.kind == THROUGH_NODE)
            append_targets(&statement, row.through);
        else if (statement.kind == TO_NODE)
            append_targets(&statement, row.to);
        else if (statement.kind == CYCLE_NODE)
            row.cycle = path_cycle(statement, block, path_file);
        else if (path_file != nullptr)
            refuse_file_name(statement, block, path_file);
        else
            append_row(row.files, value_text(&statement));
    }
    return row;
}

/// Reads one path file; its place in the list goes to the row that names it. A file without a path adds
/// nothing.
void read_path_file(PATH_ROW &row, const char *file, const PATH_BLOCK &block) {
    const char *name = resolve_side_file(file);
    parse_path_fileG = 1;
    parse_file(name, name, PATH_FILE_KIND);
    parse_path_fileG = 0;
    if (scan_root[PATH_FILE_KIND] == nullptr)
        return;
    FILE_PATHS made = {file, nullptr};
    for (SCAN_AST &path : scan_children(scan_root[PATH_FILE_KIND]))
        append_row(made.paths, path_row(path, block, name));
    append_row(row.file_indices, DYNA_count(DFT_OBJECT->*block.files));
    append_row(DFT_OBJECT->*block.files, made);
}

void map_paths(SCAN_AST *node, const PATH_BLOCK &block) {
    for (SCAN_AST &path : scan_children(node)) {
        PATH_ROW row = path_row(path, block, nullptr);
        for (const char *file : rows(row.files))
            read_path_file(row, file, block);
        append_row(DFT_OBJECT->*block.all_rows, row);
        if (row.files == nullptr)
            append_row(DFT_OBJECT->*block.own_rows, row);
    }
}

constexpr const char *active_high = "ACTIVE_HIGH";
constexpr const char *active_low = "ACTIVE_LOW";

/// The polarity of a block, or null without one. A %POLARITY without a value says nothing.
const char *decoder_polarity(SCAN_AST *block) {
    SCAN_AST *statement = SCAN_FIND_CHILD(block, DECODER_POLARITY_NODE);
    const char *word = value_text(statement);
    if (word != nullptr && std::strcmp(word, active_high) != 0 && std::strcmp(word, active_low) != 0)
        error_handler(in_file_name, statement->line, MESSAGE_POLARITY, active_high, active_low);
    return word;
}

CONTROL_PORT save_decoder_control_port(SCAN_AST *node) {
    CONTROL_PORT port = {};
    if (node == nullptr)
        return port;
    port.block_line = port.line = node->line;
    if (value_text(node) != nullptr) { // the form with '='
        port.port_name = value_text(node);
        return port;
    }
    port.in_block_form = 1;
    SCAN_AST *name = SCAN_FIND_CHILD(node, DECODER_PAD_NAME_NODE);
    SCAN_AST *out = SCAN_FIND_CHILD(node, DECODER_PAD_OUT_NODE);
    if (name != nullptr && out == nullptr)
        error_handler(in_file_name, name->line + 1, MESSAGE_NOT_DEFINED, "%PAD_OUT");
    if (out != nullptr && name == nullptr)
        error_handler(in_file_name, out->line - 1, MESSAGE_NOT_DEFINED, "%PAD_NAME");
    port.port_name = value_text(SCAN_FIND_CHILD(node, DECODER_PORT_NAME_NODE));
    port.pad_name = value_text(name);
    port.pad_out = value_text(out);
    port.polarity = decoder_polarity(node);
    return port;
}

void map_fs_mode(SCAN_AST *block, SCAN_DECODER &decoder) {
    const char *polarity = decoder_polarity(block);
    int32_t value = polarity == nullptr ? -1 : std::strcmp(polarity, active_high) == 0 ? 1 : 0;
    for (SCAN_AST &statement : scan_children(block)) {
        if (statement.kind != DECODER_PORT_NAME_NODE)
            continue;
        DFT_VALUE own = {value, -1.0};
        if (const char *number = scan_text(scan_child(&statement)->sibling))
            own.number = static_cast<int32_t>(std::strtol(number, nullptr, 10));
        append_row(decoder.fs_mode, {value_text(&statement), own.number});
    }
}

constexpr SCAN_KIND decoder_ports[DECODER_PORT_COUNT] = {SCAN_MODE_NODE, TEST_MODE_NODE, OVERRIDE_MODE_NODE,
                                                         RAM_WRITE_NODE};

/// The modes in which mapped cells shift; the name of the cell is its second one.
void map_scan_mode_active(SCAN_AST *map_scan, MAP_OBJECT_RECORD &map, const char *map_file) {
    for (SCAN_AST &cell : scan_children(SCAN_FIND_CHILD(map_scan, MAP_CELL_LIST_NODE))) {
        SCAN_AST *statement = SCAN_FIND_CHILD(&cell, SCAN_MODE_ACTIVE_NODE);
        const char *word = statement == nullptr ? "HIGH" : value_text(statement);
        if (::strcasecmp(word, "HIGH") != 0 && ::strcasecmp(word, "LOW") != 0)
            error_handler(map_file, statement->line, MESSAGE_MODE_ACTIVE, "HIGH", "LOW");
        append_row(map.scan_mode_active, {scan_text(scan_child(&cell)->sibling), word});
    }
}

} // namespace

void map_multicycle_path(SCAN_AST *block) {
    map_paths(block, multicycle_block);
}

void map_false_path(SCAN_AST *block) {
    map_paths(block, false_block);
}

void map_scan_decoder(SCAN_AST *block) {
    auto *decoder = new SCAN_DECODER();
    for (int32_t i = 0; i < DECODER_PORT_COUNT; i++)
        decoder->ports[i] = save_decoder_control_port(SCAN_FIND_CHILD(block, decoder_ports[i]));
    map_fs_mode(SCAN_FIND_CHILD(block, FS_MODE_NODE), *decoder);
    decoder->block = block;
    DFT_OBJECT->scan_decoder = decoder;
}

MAP_OBJECT_RECORD *map_map_file(SCAN_AST *root, const char *map_file) {
    auto *map = new MAP_OBJECT_RECORD();
    for (SCAN_AST &block : scan_children(SCAN_FIND_CHILD(root, MAP_SCAN_LIST_NODE)))
        map_scan_mode_active(&block, *map, map_file);
    map->repair_cells = SCAN_FIND_CHILD(root, REPAIR_CELL_NODE);
    map->test_point_cells = SCAN_FIND_CHILD(root, TEST_POINT_CELL_NODE);
    map->file = root;
    return map;
}
