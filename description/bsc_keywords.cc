// The keywords of the .bsc language.
#include "description/keywords.hh"
#include "description/save_tables.hh"

#include "bsc_parser.hh"

namespace {

constexpr BSC_KEYWORD setting(const char *name, int32_t token, const char **text) {
    return {{name, token}, save_setting, text};
}

constexpr BSC_KEYWORD gate(const char *name, GATE_KIND kind) {
    return {{name, BSC_GATE_KEY}, nullptr, nullptr, kind};
}

constexpr BSC_KEYWORD bist_name(const char *name, int32_t token, const char *LBIST_ENTRY::*field) {
    return {{name, token}, nullptr, nullptr, GATE_NONE, field};
}

constexpr BSC_KEYWORD bist_names(const char *name, int32_t token, const char **LBIST_ENTRY::*field) {
    return {{name, token}, nullptr, nullptr, GATE_NONE, nullptr, field};
}

// clang-format off
constexpr BSC_KEYWORD bsc_words[] = {
    // Statements. %SKIP_MODULE_NAMES has no effect.
    setting("%GLOBAL_TDI", BSC_NAME_KEY, &GLOBAL_TDI),
    setting("%GLOBAL_TDO", BSC_NAME_KEY, &GLOBAL_TDO),
    setting("%GLOBAL_TMS", BSC_NAME_KEY, &GLOBAL_TMS),
    setting("%GLOBAL_TCK", BSC_NAME_KEY, &GLOBAL_TCK),
    setting("%GLOBAL_TRST", BSC_NAME_KEY, &GLOBAL_TRST),
    setting("%INPUT_BUFFER", BSC_NAME_KEY, &INPUT_BUFFER),
    setting("%OUTPUT_BUFFER", BSC_NAME_KEY, &OUTPUT_BUFFER),
    setting("%INOUT_BUFFER", BSC_NAME_KEY, &INOUT_BUFFER),
    setting("%INVERTER", BSC_NAME_KEY, &INVERTER),
    setting("%INSTRUCTION_DISABLE", BSC_NAME_KEY, &INST_DISABLE),
    setting("%INSTRUCTION_GUARD", BSC_NAME_KEY, &INST_GUARD),
    {{"%SKIP_MODULE_NAMES", BSC_NAMES_KEY}},
    {{"%UNBOUNDED_PINS", BSC_NAMES_KEY}, save_unbounded_pins},
    {{"%TRANSPARENT_BUFFER", BSC_NAMES_KEY}, save_trans_buffer},
    {{"%SKIP_SIGNAL_NAMES", BSC_SKIP_SIGNAL_NAMES}, save_skip_signal},
    {{"%SCAN_CELLS", BSC_SCAN_CELLS}, save_settings},
    {{"%TAP_MODULE", BSC_TAP_MODULE}, save_settings},
    {{"%PIN_LIST", BSC_PIN_LIST}, save_pin_list},
    {{"%PACKAGE_LIST", BSC_PACKAGE_LIST}, save_package_list},
    {{"%IDCODE_REGISTER", BSC_IDCODE_REGISTER}, save_idcode_register},
    {{"%USERCODE_REGISTER", BSC_USERCODE_REGISTER}, save_usercode_register},
    {{"%INSTRUCTION_TABLE", BSC_INSTRUCTION_TABLE}, save_instruction_table},
    {{"%INSTRUCTION_CAPTURE", BSC_INSTRUCTION_CAPTURE}, save_instruction_capture},
    {{"%INSTRUCTION_PRIVATE", BSC_INSTRUCTION_PRIVATE}, save_instruction_private},
    {{"%CONNECTION_TABLE", BSC_CONNECTION_TABLE}, save_connect_table},
    {{"%MEMORY_BIST", BSC_MEMORY_BIST}, bl_save_mbist_table},
    {{"%LOGIC_BIST", BSC_LOGIC_BIST}, bl_save_lbist_table},

    // Items of %TAP_MODULE; a BIST block has an instance too.
    setting("%MODULE_NAME", BSC_MODULE_NAME, &TAP_MODULE_NAME),
    {{"%INSTANCE_NAME", BSC_INSTANCE_NAME}, save_setting, &TAP_INSTANCE_NAME, GATE_NONE, &LBIST_ENTRY::instance_name},

    // Words of the lists and of an instruction.
    {{"%FILE_NAME", BSC_FILE_NAME}},
    {{"%CONNECT", BSC_CONNECT}},
    {{"TO", BSC_TO}},
    {{"%INSTRUCTION", BSC_INSTRUCTION}},
    {{"ACCESS", BSC_ACCESS}},
    {{"%DATA_REGISTER", BSC_DATA_REGISTER}},
    {{"%BINARY_CODE", BSC_BINARY_CODE}},
    {{"ENABLE", BSC_ENABLE}},
    {{"%ENABLE", BSC_KEY_ENABLE}},
    {{"%EN_H", BSC_LEVEL_KEY, EN_H_NODE}},
    {{"%EN_L", BSC_LEVEL_KEY, EN_L_NODE}},
    gate("AND", GATE_AND),
    gate("OR", GATE_OR),
    gate("NAND", GATE_NAND),
    gate("NOR", GATE_NOR),
    gate("XOR", GATE_XOR),
    gate("XNOR", GATE_XNOR),

    // Items of the BIST blocks; a memory's block takes the first three.
    {{"%CTRL_ORDER", BSC_CTRL_ORDER, CTRL_ORDER_NODE}},
    {{"%CNT_FILE", BSC_CNT_FILE}, nullptr, nullptr, GATE_NONE, nullptr, &LBIST_ENTRY::cnt_files, &MBIST_ENTRY::cnt_file},
    {{"%SEL_INSTRUCTION", BSC_SEL_INSTRUCTION}, nullptr, nullptr, GATE_NONE, &LBIST_ENTRY::sel_instruction, nullptr,
     &MBIST_ENTRY::sel_instruction},
    bist_name("%DFT_FILE", BSC_LBIST_NAME_KEY, &LBIST_ENTRY::dft_file),
    bist_name("%SCAN_INSTRUCTION", BSC_LBIST_NAME_KEY, &LBIST_ENTRY::scan_instruction),
    bist_name("%LBIST_INSTRUCTION", BSC_LBIST_NAME_KEY, &LBIST_ENTRY::lbist_instruction),
    bist_name("%DEBUG_INSTRUCTION", BSC_LBIST_NAME_KEY, &LBIST_ENTRY::debug_instruction),
    bist_names("%DIAG_INSTRUCTION", BSC_LBIST_NAMES_KEY, &LBIST_ENTRY::diag_instructions),
    bist_names("%DIAG_CNT_FILE", BSC_LBIST_NAMES_KEY, &LBIST_ENTRY::diag_cnt_files),
    bist_names("%TESTS", BSC_TESTS, &LBIST_ENTRY::tests),

    {{"%GROUP_METHOD", BSC_NO_PLACE}},
    {{"%GROUP_SIZE", BSC_NO_PLACE}},
    {{"%HIGHZ_COMMAND", BSC_NO_PLACE}},
    {{"%TDI", BSC_NO_PLACE}},
    {{"%TDO", BSC_NO_PLACE}},
    {{"%INPUT", BSC_NO_PLACE}},
    {{"%OUTPUT", BSC_NO_PLACE}},

    // The roles of %SCAN_CELLS.
#define ROLE_KEYWORD(name) setting("%" #name, BSC_ROLE_KEY, &name),
    FOR_EACH_CELL_ROLE(ROLE_KEYWORD)
#undef ROLE_KEYWORD
};
// clang-format on

} // namespace

const KEYWORD *bsc_keyword_lookup(const char *text) {
    static const auto &hash = *new KEYWORD_HASH(load_keywords(bsc_words));
    return find_keyword(hash, text);
}
