// The way into the readers of the description files.
#pragma once

#include <cstdint>

/// Empties the tables of description/tables.hh and clears the settings that each reading sets anew. The cell
/// roles, TAP_MODULE_NAME and TAP_INSTANCE_NAME keep their values. Runs before every get_bs_dft_file.
void bsdft_init();

/// Reads the library file, then the BSC file, and through it the pin files, into the tables. Both files are
/// opened before the first is parsed. `dump_level` is 0 in every run and prints nothing.
///
/// Any fault of form ends the run with status 255 after one message; a token of more than 8191 characters
/// ends it with status 2. It may run again in one process after bsdft_init; line numbers of messages then go
/// on counting from the earlier reading.
void get_bs_dft_file(const char *lib_file, const char *bsc_file, int32_t dump_level);
