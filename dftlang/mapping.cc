// One table says which block fills which field, in the order in which blocks are taken: later ones look up
// earlier ones.
#include "dftlang/mapping.hh"

#include "dftlang/checks.hh"

#include "dftlang/messages.hh"
#include "dftlang/scan_interface.hh"
#include "dftlang/side_files.hh"

#include <cstdlib>
#include <cstring>

namespace {

using CONFIGURATION = DFT_CONFIGURATION;

void map_select_scan(SCAN_AST *block) {
    auto *made = new SELECT_SCAN();
    made->init = GET_VALUE(SCAN_FIND_CHILD(block, SCAN_INIT_NODE));
    made->incr = GET_VALUE(SCAN_FIND_CHILD(block, SCAN_INCR_NODE));
    made->max = GET_VALUE(SCAN_FIND_CHILD(block, SCAN_MAX_NODE));
    append_names(SCAN_FIND_CHILD(block, DONT_SCAN_TYPE_NODE), made->dont_scan_type);
    append_names(SCAN_FIND_CHILD(block, MUST_SCAN_TYPE_NODE), made->must_scan_type);
    append_names(SCAN_FIND_CHILD(block, DONT_SCAN_MODULE_NODE), made->dont_scan_module);
    append_names(SCAN_FIND_CHILD(block, DONT_SCAN_NODE), made->dont_scan);
    append_names(SCAN_FIND_CHILD(block, MUST_SCAN_NODE), made->must_scan);
    DFT_OBJECT->select_scan = made;
}

struct PORT_TYPE_WORD {
    const char *word;
    PORT_TYPE type;
};

constexpr PORT_TYPE_WORD port_types[] = {{"I", PORT_INPUT}, {"O", PORT_OUTPUT}, {"CLK", PORT_CLOCK}};

int32_t port_type(const char *word) {
    for (const PORT_TYPE_WORD &row : port_types) {
        if (std::strcmp(row.word, word) == 0)
            return row.type;
    }
    scan_fail("ERROR : Unknown port type '%s'.\n", word);
}

NAME_LIST name_list(SCAN_AST &statement) {
    NAME_LIST row = {value_text(&statement), nullptr};
    append_names(SCAN_FIND_CHILD(&statement, IDENT_LIST_NODE), row.names);
    return row;
}

void map_port_info(SCAN_AST *block) {
    for (SCAN_AST &port : scan_children(block)) {
        PORT_ROW row = {value_text(&port), -1, nullptr, nullptr};
        for (SCAN_AST &statement : scan_children(&port)) {
            if (statement.kind == TYPE_NODE)
                row.type = port_type(value_text(&statement));
            else if (statement.kind == PAD_NODE)
                append_row(row.pads, name_list(statement));
            else if (statement.kind == PORT_MAP_NODE)
                append_row(row.port_map, name_list(statement));
        }
        append_row(DFT_OBJECT->port_info, row);
    }
}

void map_critical_path(SCAN_AST *block) {
    for (SCAN_AST &statement : scan_children(block))
        append_targets(&statement, DFT_OBJECT->critical_paths);
}

void map_mbist_constraints(SCAN_AST *block) {
    for (SCAN_AST &control : scan_children(block)) {
        MBIST_CONTROL row = {value_number(&control), nullptr};
        for (SCAN_AST *pin = scan_child(&control)->sibling; pin != nullptr; pin = pin->sibling) {
            DFT_STATEMENT copy = dft_statement(pin);
            bool two = copy.values.size() == 2;
            append_row(row.pins, {copy.keyword, two ? copy.values[0] : nullptr, copy.values.back()});
        }
        append_row(DFT_OBJECT->mbist_constraints, row);
    }
}

/// One row of the mapping. At most one of the members behind the kind is set.
struct MAP_STEP {
    SCAN_KIND kind;
    void (*map)(SCAN_AST *) = nullptr;
    const SCAN_AST *CONFIGURATION::*block = nullptr; ///< the block, or the list of its kind, as it stands
    const char **CONFIGURATION::*names = nullptr;    ///< all names of the block
    const char *CONFIGURATION::*text = nullptr;      ///< the value, or that of the block's one statement
};

constexpr MAP_STEP map_steps[] = {
    {.kind = SELECT_SCAN_NODE, .map = map_select_scan},
    {.kind = PORT_INFO_NODE, .map = map_port_info},
    {.kind = SCAN_IN_LIST_NODE, .names = &CONFIGURATION::scan_in_list},
    {.kind = CORE_NO_SCAN, .names = &CONFIGURATION::core_no_scan},
    {.kind = SCAN_OUT_LIST_NODE, .names = &CONFIGURATION::scan_out_list},
    {.kind = GUI_NODE, .block = &CONFIGURATION::gui},
    {.kind = CAPTURE_CLOCK_NODE, .block = &CONFIGURATION::capture_clock},
    {.kind = HOOKUP_NODE, .block = &CONFIGURATION::hookup},
    {.kind = MULTICYCLE_PATH_NODE, .map = map_multicycle_path},
    {.kind = CRITICAL_PATH_NODE, .map = map_critical_path},
    {.kind = FALSE_PATH_NODE, .map = map_false_path},
    {.kind = NONTPI_INSTANCE_NODE, .names = &CONFIGURATION::nontpi_instances},
    {.kind = CLOCK_PERIOD_NODE, .block = &CONFIGURATION::clock_period},
    {.kind = TEST_FILES_NODE, .block = &CONFIGURATION::test_files},
    {.kind = TOP_MODULE_NODE, .text = &CONFIGURATION::top_module},
    {.kind = MBIST_CONSTRAINTS_NODE, .map = map_mbist_constraints},
    {.kind = SCAN_DECODER_NODE, .map = map_scan_decoder},
    {.kind = SEQUENCE_LIST_NODE, .map = map_sequences},
    {.kind = TEST_SCHEDULE_LIST_NODE, .block = &CONFIGURATION::test_schedule},
    {.kind = TEST_SESSION_LIST_NODE, .block = &CONFIGURATION::test_session},
    {.kind = TEST_ARCHITECTURE_LIST_NODE, .block = &CONFIGURATION::test_architecture},
    {.kind = CORE_LIST_NODE, .map = map_cores},
    {.kind = WRAPPER_NODE, .block = &CONFIGURATION::wrapper},
    {.kind = DEEP_SCAN_INFO_NODE, .block = &CONFIGURATION::deep_scan},
    {.kind = DEF_INFO_NODE, .names = &CONFIGURATION::def_info},
    {.kind = MBIST_BSD_NODE, .block = &CONFIGURATION::mbist_bsd},
    {.kind = INSTRUCTION_LIST_NODE, .map = map_instructions},
    {.kind = PLL_CLOCK_FIX_LIST_NODE, .block = &CONFIGURATION::pll_clock_fix},
    {.kind = PLL_LIST_NODE, .block = &CONFIGURATION::plls},
    {.kind = BLACKBOX_LIST_NODE, .block = &CONFIGURATION::blackboxes},
    {.kind = READ_MAP_NODE, .text = &CONFIGURATION::read_map},
    {.kind = LOCKUP_LATCH_FILE_NODE, .text = &CONFIGURATION::lockup_latch_file},
    {.kind = MODIFY_CMD_NODE, .text = &CONFIGURATION::modify_cmd},
    {.kind = SCAN_REPAIR_NODE, .block = &CONFIGURATION::scan_repair},
    {.kind = CONNECT_SCAN_LIST_NODE, .map = map_connect_scans},
    {.kind = CONNECT_CORE_LIST_NODE, .block = &CONFIGURATION::connect_cores},
    {.kind = CONNECT_BIST_LIST_NODE, .map = map_connect_bists},
    {.kind = ATPG_CONSTAINTS_NODE, .map = map_atpg_constraints},
    {.kind = SELECT_FAULT_NODE, .map = map_select_fault},
    {.kind = TEST_CONVERSION_NODE, .block = &CONFIGURATION::test_conversion},
    {.kind = TA_CONSTRAINTS_NODE, .block = &CONFIGURATION::ta_constraints},
    {.kind = FOLD_SCAN_INFO_LIST_NODE, .block = &CONFIGURATION::fold_scan_info},
    {.kind = CIPHERTEXT_NODE, .names = &CONFIGURATION::ciphertext},
    {.kind = CFG_INSTRUCTION_BINARY_NODE, .text = &CONFIGURATION::instruction_binary},
    {.kind = CFG_REGISTER_LENGTH_NODE, .text = &CONFIGURATION::register_length},
    {.kind = CFG_FOLD_SCAN_IN_LIST_NODE, .map = map_fold_scan},
    {.kind = CFG_FOLD_SCAN_OUT_LIST_NODE, .map = map_fold_scan},
    {.kind = SCAN_MODULE_LIST_NODE, .block = &CONFIGURATION::scan_modules},
};

/// Names of a block that stand in its statements.
void append_all_names(SCAN_AST *block, const char **&names) {
    append_names(block, names);
    for (SCAN_AST &statement : scan_children(block))
        append_names(&statement, names);
}

void take_step(const MAP_STEP &step, SCAN_AST *node) {
    if (step.map != nullptr)
        step.map(node);
    else if (step.block != nullptr)
        DFT_OBJECT->*step.block = node;
    else if (step.names != nullptr && scan_child(node) != nullptr &&
             scan_child(node)->kind == IDENT_LIST_NODE)
        append_names(node, DFT_OBJECT->*step.names);
    else if (step.names != nullptr)
        append_all_names(node, DFT_OBJECT->*step.names);
    else if (scan_child(node) != nullptr)
        DFT_OBJECT->*step.text =
            value_text(node) != nullptr ? value_text(node) : value_text(scan_child(node));
}

} // namespace

void MAP_AST_2_OBJECT() {
    SCAN_AST *root = scan_root[DFT_FILE_KIND];
    DFT_OBJECT = nullptr;
    if (root == nullptr)
        return;
    DFT_OBJECT = new DFT_CONFIGURATION();
    DFT_OBJECT->index = new DFT_INDEX;
    DFT_OBJECT->path = current_pathG;
    SCAN_AST *first_of[SCAN_KIND_COUNT] = {};
    for (SCAN_AST &block : scan_children(root)) {
        if (first_of[block.kind] == nullptr)
            first_of[block.kind] = &block;
    }
    for (const MAP_STEP &step : map_steps) {
        if (first_of[step.kind] != nullptr)
            take_step(step, first_of[step.kind]);
    }
    for (const CORE_ENTRY &core : rows(DFT_OBJECT->cores))
        append_row(SL_CORE_LIST, {core.dft_file, core.name, current_pathG, nullptr});
    if (has_map_file && scan_root[MAP_FILE_KIND] != nullptr)
        DFT_OBJECT->map = map_map_file(scan_root[MAP_FILE_KIND], resolve_side_file(map_file_name));
}
