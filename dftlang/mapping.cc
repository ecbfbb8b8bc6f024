// Which blocks are looked into, in the order in which they are taken: later ones look up earlier ones. All
// others stay as the parser made them.
#include "dftlang/mapping.hh"

#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"
#include "dftlang/side_files.hh"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view port_types[] = {"I", "O", "CLK"};

void map_port_info(SCAN_AST *block) {
    for (SCAN_AST &port : scan_children(block)) {
        for (SCAN_AST &statement : scan_children(&port)) {
            const char *type = value_text(&statement);
            if (statement.kind == TYPE_NODE && std::ranges::count(port_types, type) == 0)
                scan_fail("ERROR : Unknown port type '%s'.\n", type);
        }
    }
}

struct MAP_STEP {
    SCAN_KIND kind; ///< of the block, or of the list of all blocks of its kind
    void (*map)(SCAN_AST *);
};

constexpr MAP_STEP map_steps[] = {
    {PORT_INFO_NODE, map_port_info},
    {MULTICYCLE_PATH_NODE, map_paths},
    {FALSE_PATH_NODE, map_paths},
    {SCAN_DECODER_NODE, map_scan_decoder},
    {SEQUENCE_LIST_NODE, map_sequences},
    {CORE_LIST_NODE, map_cores},
    {INSTRUCTION_LIST_NODE, map_instructions},
    {CONNECT_SCAN_LIST_NODE, map_connections},
    {CONNECT_BIST_LIST_NODE, map_connections},
    {ATPG_CONSTAINTS_NODE, map_atpg_constraints},
    {SELECT_FAULT_NODE, map_select_fault},
};

} // namespace

void MAP_AST_2_OBJECT() {
    const SCAN_AST *root = DFT_OBJECT->file;
    DFT_OBJECT->top_module = value_text(SCAN_FIND_CHILD(root, TOP_MODULE_NODE));
    DFT_OBJECT->read_map = value_text(scan_child(SCAN_FIND_CHILD(root, READ_MAP_NODE)));
    SIDE_FILE map = {nullptr, nullptr};
    if (DFT_OBJECT->read_map != nullptr)
        map = read_side_file(DFT_OBJECT->read_map, MAP_FILE_KIND);
    for (const MAP_STEP &step : map_steps) {
        if (SCAN_AST *block = SCAN_FIND_CHILD(root, step.kind))
            step.map(block);
    }
    for (const CORE_ENTRY &core : rows(DFT_OBJECT->cores))
        append_row(SL_CORE_LIST, {core.dft_file, core.name, DFT_OBJECT->path, nullptr});
    map_map_file(map);
}
