// The netlist expander program: an SDB file and the modules below it in, the flat design out.
#pragma once

/// Runs the program; 0, or the process ends with 255 after an error.
int FLAT_main(int argc, char **argv);
