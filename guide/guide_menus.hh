// The menus below the main menu, in the order of its entries.
#pragma once

#include "guide/menu.hh"

extern const GUIDE_MENU Global_port_menu, TAP_menu, INST_menu, test_reg_menu, PAD_menu, PIN_menu,
    Skip_Signal_menu;
