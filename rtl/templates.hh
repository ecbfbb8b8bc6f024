// The texts of the generated TAP, as templates of support/template_text.hh; tap_values.hh gives the letters
// and names. A VHDL module has its port clause apart, since the component declaration of the top repeats it.
#pragma once

// clang-format off
extern const char TAP_CONTROLLER_V[], TAP_CONTROLLER_PORTS_VHDL[], TAP_CONTROLLER_BODY_VHDL[];
extern const char BYPASS_REG_V[],     BYPASS_REG_PORTS_VHDL[],     BYPASS_REG_BODY_VHDL[];
extern const char ID_REG_V[],         ID_REG_PORTS_VHDL[],         ID_REG_BODY_VHDL[];
extern const char IR_REG_V[],         IR_REG_PORTS_VHDL[],         IR_REG_BODY_VHDL[];
extern const char IR_DEC_V[],         IR_DEC_PORTS_VHDL[],         IR_DEC_BODY_VHDL[];
extern const char DR_MUX_V[],         DR_MUX_PORTS_VHDL[],         DR_MUX_BODY_VHDL[];
extern const char IR_DR_MUX_V[],      IR_DR_MUX_PORTS_VHDL[],      IR_DR_MUX_BODY_VHDL[];
extern const char TDO_REG_V[],        TDO_REG_PORTS_VHDL[],        TDO_REG_BODY_VHDL[];
extern const char TOP_V[],            TOP_VHDL[];
extern const char LIBRARY_VHDL[], TAP_CONTROLLER_LIBRARY_VHDL[];
extern const char AC_SHELL_SCRIPT[], DC_SHELL_SCRIPT[], PT_SHELL_SCRIPT[];
// clang-format on
