// The sixteen states of the TAP controller (IEEE 1149.1), as the one table that both languages are made from.
#include "rtl/tap_values.hh"

#include <string_view>

namespace {

/// Columns of the state diagram.
enum STATE_COLUMN : char { IDLE_COLUMN = 'X', DATA_COLUMN = 'Y', INSTRUCTION_COLUMN = 'Z' };
constexpr char ALL_STATES = 'W';

struct TAP_STATE {
    const char *verilog, *vhdl, *code;
    const char *if_0, *if_1; ///< next state by TMS, by its Verilog name
    STATE_COLUMN column;
};

// The codes are part of the logic: the first bit selects between the data and the instruction column.
constexpr TAP_STATE TAP_STATES[] = {
    {"TEST_LOGIC_RESET", "TEST_RESET_ST", "0100", "RUN_TEST_IDLE", "TEST_LOGIC_RESET", IDLE_COLUMN},
    {"RUN_TEST_IDLE", "TEST_IDLE_ST", "1100", "RUN_TEST_IDLE", "SELECT_DR_SCAN", IDLE_COLUMN},
    {"SELECT_DR_SCAN", "DR_SCAN_ST", "0000", "CAPTURE_DR", "SELECT_IR_SCAN", DATA_COLUMN},
    {"CAPTURE_DR", "CAPTURE_DR_ST", "0001", "SHIFT_DR", "EXIT1_DR", DATA_COLUMN},
    {"SHIFT_DR", "SHIFT_DR_ST", "0011", "SHIFT_DR", "EXIT1_DR", DATA_COLUMN},
    {"EXIT1_DR", "EXIT1_DR_ST", "0010", "PAUSE_DR", "UPDATE_DR", DATA_COLUMN},
    {"PAUSE_DR", "PAUSE_DR_ST", "0110", "PAUSE_DR", "EXIT2_DR", DATA_COLUMN},
    {"EXIT2_DR", "EXIT2_DR_ST", "0111", "SHIFT_DR", "UPDATE_DR", DATA_COLUMN},
    {"UPDATE_DR", "UPDATE_DR_ST", "0101", "RUN_TEST_IDLE", "SELECT_DR_SCAN", DATA_COLUMN},
    {"SELECT_IR_SCAN", "IR_SCAN_ST", "1000", "CAPTURE_IR", "TEST_LOGIC_RESET", INSTRUCTION_COLUMN},
    {"CAPTURE_IR", "CAPTURE_IR_ST", "1001", "SHIFT_IR", "EXIT1_IR", INSTRUCTION_COLUMN},
    {"SHIFT_IR", "SHIFT_IR_ST", "1011", "SHIFT_IR", "EXIT1_IR", INSTRUCTION_COLUMN},
    {"EXIT1_IR", "EXIT1_IR_ST", "1010", "PAUSE_IR", "UPDATE_IR", INSTRUCTION_COLUMN},
    {"PAUSE_IR", "PAUSE_IR_ST", "1110", "PAUSE_IR", "EXIT2_IR", INSTRUCTION_COLUMN},
    {"EXIT2_IR", "EXIT2_IR_ST", "1111", "SHIFT_IR", "UPDATE_IR", INSTRUCTION_COLUMN},
    {"UPDATE_IR", "UPDATE_IR_ST", "1101", "RUN_TEST_IDLE", "SELECT_DR_SCAN", INSTRUCTION_COLUMN},
};

std::string vhdl_state(std::string_view verilog) {
    for (const TAP_STATE &state : TAP_STATES)
        if (verilog == state.verilog)
            return state.vhdl;
    return "";
}

} // namespace

void add_state_values(TEMPLATE_VALUES &values) {
    for (const TAP_STATE &state : TAP_STATES) {
        std::string padded_verilog = state.verilog, padded_vhdl = state.vhdl;
        padded_verilog.resize(18, ' ');
        padded_vhdl.resize(13, ' ');
        TEMPLATE_NAMES row = {{"STATE", state.verilog},
                              {"STATE18", padded_verilog},
                              {"CODE", state.code},
                              {"IF0", state.if_0},
                              {"IF1", state.if_1},
                              {"VSTATE", state.vhdl},
                              {"VSTATE13", padded_vhdl},
                              {"VIF0", vhdl_state(state.if_0)},
                              {"VIF1", vhdl_state(state.if_1)}};
        values.lists[ALL_STATES].push_back(row);
        values.lists[state.column].push_back(row);
    }
}
