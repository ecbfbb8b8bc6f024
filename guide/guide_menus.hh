// The menus of the guide that others open.
#pragma once

#include "guide/menu.hh"

// Below the main menu, in the order of its entries.
extern const GUIDE_MENU Global_port_menu, TAP_menu, INST_menu, test_reg_menu, PAD_menu, PIN_menu,
    Skip_Signal_menu;

// Behind an entry of those.
extern const GUIDE_MENU TAP_lib_menu1, BD_name_menu, BD_module_menu;
void edit_PAD(int32_t kind); ///< 1 to 5, as the entries of the pad menu

/// Adds the valid opcodes of `text` to the instruction.
void put_opcode_into_instruction(int32_t row, const std::string &text);

/// True for a pattern of G_INST_LEN characters 0, 1, x or X.
bool check_inst(const std::string &text);

/// True for a pattern of 32 such characters; says what is wrong otherwise and waits.
bool check_idcode_reg(const std::string &text);
