// The texts of the generated TAP, as templates of support/template_text.hh. A VHDL module has its port clause
// apart, since the component declaration of the top repeats it.
#pragma once

#include <vector>

/// A template with the condition letters and the lists of rows that its margins use (tap_values.cc gives
/// them, and the names).
///
/// Letters: T TRST, U update output, O the reset is a port, S -synch, C CLAMP, G the identification register,
/// I two codes in it, E -external_idcode, D an enable port for TDO, A that enable is active low, M ATPG mode;
/// in the scripts V VHDL.
///
/// Rows: B the data registers, L those that nothing drives, R those outside the TAP; F the opcodes with the
/// register that each selects; Q, V and = the ports of the decoder in the orders of header, declarations and
/// assignments; P the enable pins with a gate, J outputs that a gate reads back (VHDL); W all states of the
/// controller, X the two idle ones, Y the data column, Z the instruction column.
struct RTL_TEMPLATE {
    const char *letters, *rows, *text;
};

/// One module below the TAP.
struct TAP_PART {
    const char *name;
    RTL_TEMPLATE verilog, vhdl_ports, vhdl_body;
};

struct SCRIPT_TEMPLATE {
    const char *extension; ///< behind the design's name: ".ac.tcl"
    RTL_TEMPLATE script;
};

extern const TAP_PART TAP_CONTROLLER, BYPASS_REG, ID_REG, IR_REG, IR_DEC, DR_MUX, IR_DR_MUX, TDO_REG;
extern const RTL_TEMPLATE TOP_V, TOP_VHDL, LIBRARY_VHDL, TAP_CONTROLLER_LIBRARY_VHDL;
extern const SCRIPT_TEMPLATE SCRIPT_TEMPLATES[3];

/// All of them but the scripts.
std::vector<RTL_TEMPLATE> tap_templates();
