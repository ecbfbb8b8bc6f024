// The keywords of the .lib language, with the node that each heads.
#include "description/keywords.hh"

#include "lib_parser.hh"

BUCKET_TAB<KEYWORD> bs_lib_k_hash = nullptr;

void make_lib_keyword_hash() {
    // clang-format off
    static KEYWORD keywords[] = {
        {"%BUFFER", LIB_BUFFER, BUFFER_CELL_NODE},
        {"%BS_BUFFER", LIB_BS_BUFFER, BS_BUFFER_NODE},
        {"%BCELL", LIB_BCELL, BCELL_NODE},
        {"%DIFFERENTIAL_VOLTAGE", LIB_DIFFERENTIAL_VOLTAGE, DIFF_V_BUFFER_CELL_NODE},
        {"%DIFFERENTIAL_CURRENT", LIB_DIFFERENTIAL_CURRENT, DIFF_I_BUFFER_CELL_NODE},
        {"%CLOCK_DR", LIB_CLOCK_DR, CLOCK_DR_NODE},
        {"%CONTROL_BCELL", LIB_CONTROL_BCELL, CONTROL_BCELL_NODE},
        {"%CONTROL_IN", LIB_CONTROL_IN, CONTROL_IN_NODE},
        {"%DATA_IN", LIB_DATA_IN, DATA_IN_NODE},
        {"%DATA_OUT", LIB_DATA_OUT, DATA_OUT_NODE},
        {"%EN_L", LIB_EN_L, EN_L_NODE},
        {"%EN_H", LIB_EN_H, EN_H_NODE},
        {"%EXTRA_", LIB_EXTRA, EXTRA_NODE},
        {"%FIRST_BCELL", LIB_FIRST_BCELL, FIRST_BCELL_NODE},
        {"%FUNCTION", LIB_FUNCTION, FUNCTION_NODE},
        {"%GROUP_METHOD", LIB_GROUP_METHOD, GROUP_METHOD_NODE},
        {"%GROUP_SIZE", LIB_GROUP_SIZE, GROUP_SIZE_NODE},
        {"%DF_GROUP_SIZE", LIB_DF_GROUP_SIZE, DF_GROUP_SIZE_NODE},
        {"%HIGHZ_COMMAND", LIB_HIGHZ_COMMAND, HIGHZ_COMMAND_NODE},
        {"%HIGHZ", LIB_HIGHZ, BS_HIGHZ_NODE},
        {"%IN_BCELL", LIB_IN_BCELL, IN_BCELL_NODE},
        {"%INOUT", LIB_INOUT, INOUT_NODE},
        {"%INPUT", LIB_INPUT, INPUT_NODE},
        {"%INPUT_P", LIB_INPUT_P, INPUT_NODE},
        {"%INPUT_M", LIB_INPUT_M, INPUT_M_NODE},
        {"%INSTANCE_NAME", LIB_INSTANCE_NAME, INSTANCE_NAME_NODE},
        {"%INV_BUFFER", LIB_INV_BUFFER, INV_BUFFER_NODE},
        {"%KEEPER", LIB_KEEPER, KEEPER_NODE},
        {"%LAST_BCELL", LIB_LAST_BCELL, LAST_BCELL_NODE},
        {"%LASTTDO", LIB_LASTTDO, LASTTDO_NODE},
        {"%MODE_1", LIB_MODE_1, MODE_1_NODE},
        {"%MODE_2", LIB_MODE_2, MODE_2_NODE},
        {"%MODE_3", LIB_MODE_3, MODE_3_NODE},
        {"%MUX_DATA_IN", LIB_MUX_DATA_IN, MUX_DATA_IN_NODE},
        {"%MUX_IN1", LIB_MUX_IN1, MUX_IN1_NODE},
        {"%MUX_IN2", LIB_MUX_IN2, MUX_IN2_NODE},
        {"%MUX_IN3", LIB_MUX_IN3, MUX_IN3_NODE},
        {"%MUX_OUT", LIB_MUX_OUT, MUX_OUT_NODE},
        {"%OE_MODE", LIB_OE_MODE, OE_MODE_NODE},
        {"%ORDER", LIB_ORDER, ORDER_LIST_NODE},
        {"%OUT_BCELL", LIB_OUT_BCELL, OUT_BCELL_NODE},
        {"%OUTPUT", LIB_OUTPUT, OUTPUT_NODE},
        {"%OUTPUT_P", LIB_OUTPUT_P, OUTPUT_NODE},
        {"%OUTPUT_M", LIB_OUTPUT_M, OUTPUT_M_NODE},
        {"%PULL_0", LIB_PULL_0, PULL_0_NODE},
        {"%PULL_1", LIB_PULL_1, PULL_1_NODE},
        {"%RST", LIB_RST, RST_NODE},
        {"%SCAN_CELL", LIB_SCAN_CELL, SCAN_CELL_NODE},
        {"%SHIFT_DR", LIB_SHIFT_DR, SHIFT_DR_NODE},
        {"%SIGNAL_BUFFER", LIB_SIGNAL_BUFFER, SIGNAL_BUFFER_NODE},
        {"%DF_SIGNAL_BUFFER", LIB_DF_SIGNAL_BUFFER, DF_SIGNAL_BUFFER_NODE},
        {"%STD_NAME", LIB_STD_NAME, STD_NAME_LIST_NODE},
        {"%SYS_IN", LIB_SYS_IN, SYS_IN_NODE},
        {"%SYS_PIN", LIB_SYS_PIN, SYS_PIN_NODE},
        {"%TAP_CONTROLLER", LIB_TAP_CONTROLLER, TAP_CELL_NODE},
        {"%TAP_RESET", LIB_TAP_RESET, TAP_RESET_NODE},
        {"%TDI", LIB_TDI, TDI_NODE},
        {"%TDO", LIB_TDO, TDO_NODE},
        {"%TDO_EN", LIB_TDO_EN, TDO_EN_NODE},
        {"%TMS", LIB_TMS, TMS_NODE},
        {"%TCK", LIB_TCK, TCK_NODE},
        {"%TRST", LIB_TRST, TRST_NODE},
        {"%UPDATE_DR", LIB_UPDATE_DR, UPDATE_DR_NODE},
        {"%UPDATE_DR_OUT", LIB_UPDATE_DR_OUT, UPDATE_DR_OUT_NODE},
        {"%WEAK_0", LIB_WEAK_0, WEAK_0_NODE},
        {"%WEAK_1", LIB_WEAK_1, WEAK_1_NODE},
    };
    // clang-format on
    load_keywords(bs_lib_k_hash, keywords);
}

int32_t lib_keyword_lookup(const char *text) {
    return keyword_token(bs_lib_k_hash, text);
}

NODE_KIND lib_node_kind(const TOKEN_VALUE &token) {
    return find_record(bs_lib_k_hash, token.text)->kind;
}
