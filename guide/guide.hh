// The guide: full-screen text menus on the console with which a user writes a first .bsc, .lib and pin file
// without knowing their languages.
#pragma once

/// Reads the description files when both were found, lets the user edit the tables of description/tables.hh,
/// and saves them as .bsc, .lib and pin file. Returns when the run is to go on, with tables, roles and TAP
/// names left to the reading that follows; ends the process when the user quits (status 0 after a save, 255
/// after an abort) or when a file cannot be written.
void guideline_handler();
