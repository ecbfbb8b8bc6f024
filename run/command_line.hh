// The command line: from argv to the run state of support/run_state.hh and the open report.
#pragma once

#include <cstdint>

/// Reads the arguments, makes and locks ./rimweave_lib, opens the report, prints the banner and the selected
/// options. Ends the run with status 0 after the help text, and with
/// 255 on a fault; unknown switches are all reported first.
void jtag_parse_cmd_line(int32_t argc, char **argv);
