// The netlist reader program: Verilog files in, SDB files and a log out.
#pragma once

/// Runs the program; 0, or the process ends with 255 after an error.
int VTOS_main(int argc, char **argv);
