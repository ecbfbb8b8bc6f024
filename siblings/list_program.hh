// The netlist writer program: an SDB file and the modules below it in, one Verilog or VHDL file out.
#pragma once

/// Runs the program; 0, or the process ends with 255 after an error.
int LIST_main(int argc, char **argv);
