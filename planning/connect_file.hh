// The connection files of BIST blocks that are reached through the TAP: mbist_rimweave.cnt and
// lbist_rimweave.cnt.
#pragma once

/// Writes the files that %MEMORY_BIST and %LOGIC_BIST of the BSC file ask for, below OPATH when it was given;
/// neither without these tables. Each file is written whole; a fault ends the run before the file that it is
/// found in is written, and files written before it stay.
void rwv_write_connect_file();
