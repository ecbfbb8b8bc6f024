// Where a run looks for its files, and whether they are all there.
#pragma once

/// Sets the search list from VELMORA and VELMORA_DIRS, and reads the settings. Returns the first directory of
/// VELMORA_DIRS, null when that is not set.
const char *set_up_search();

/// Takes the design argument, DIR/NAME or DIR/NAME.sdb, apart into PATH and TOP_MODULE.
void take_design(const char *argument);

/// Looks up the .bsc and the .lib file of the design. Nothing is said about one that is not found: the guide
/// can still write it.
void find_description_files();

/// Looks up the design's SDB files, too, where it is read. All files that are missing are reported before the
/// run ends.
void find_input_files(bool with_design);
