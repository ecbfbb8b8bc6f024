// The files of the guide, written from the tables of description/tables.hh. They hold what the guide can edit
// and nothing else: whatever else an earlier file held is gone.
#pragma once

#include <string>

/// Writes the .bsc, the .lib and, when PIN_FILE is set and there are pins, the pin file; sets JTAG_BSC_FILE
/// and JTAG_LIB_FILE where they are null. Ends the run with status 255 on a file that cannot be written; that
/// file then is as it was, and those before it are written. A file that the guide has not read is kept as
/// "<name>~".
void save_bsc_lib();

std::string bsc_text();
std::string lib_text();
std::string pin_text();
