// The netlist editor program: an edit command file in, the edited SDB file out.
#pragma once

/// Runs the program; 0, or the process ends with 255 after an error, which names the line.
int EDIT_main(int argc, char **argv);
