// The menus of the guide, each from its first screen to the moment when it is left.
#pragma once

#include "guide/dialog.hh"

// Below the main menu, in the order of its entries.
void Global_port_menu();
void TAP_menu();
void INST_menu();
void test_reg_menu();
void PAD_menu();
void PIN_menu();
void Skip_Signal_menu();

// Behind an entry of those.
void TAP_lib_menu1();
void BD_name_menu();
void BD_module_menu();
void edit_PAD(int32_t kind); ///< 1 to 5, as the entries of the pad menu

/// Adds the valid opcodes of `text` to the instruction.
void put_opcode_into_instruction(int32_t row, const std::string &text);

/// True for a pattern of G_INST_LEN characters 0, 1, x or X.
bool check_inst(const std::string &text);

/// True for a pattern of 32 such characters; says what is wrong otherwise and waits.
bool check_idcode_reg(const std::string &text);
