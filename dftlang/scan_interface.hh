// The reader of DFT configurations: one .dft file with its side files and the .dft files of all its cores.
//
// Nothing outside this folder sees the syntax tree. A fault prints one message and ends the run; warnings go
// to the error stream and the read goes on.
#pragma once

#include "dftlang/dft_object.hh"

#include <cstdint>

/// A DFT file of the design. The top file's row is first; cores follow in the order in which they are met.
struct SL_CORE_ROW {
    const char *dft_file; ///< as written
    const char *core_name;
    const char *named_in;             ///< directory of the file that names this one, with its '/', or null
    DFT_CONFIGURATION *configuration; ///< null until the file has been read
};

struct DFT_TREE {
    DFT_CONFIGURATION *configuration;
};

extern DFT_CONFIGURATION *DFT_OBJECT; ///< the current configuration
extern SL_CORE_ROW *SL_CORE_LIST;     ///< table; scan_interface starts a new one
extern DFT_TREE *SL_TOP_DFT_TREE;     ///< the top file of the last scan_interface
extern CORE_ENTRY *current_core_name; ///< set by set_current_core_name alone

/// Reads the file `path`: without a directory <base>.dft in the working directory, else as it stands. With
/// the option "hier_dft" the files of all cores are read too. `debug` not 0 prints the syntax trees on the
/// console. The top configuration is current at the end. Gives 0.
int32_t scan_interface(const char *path, int32_t debug, const char *option);

/// Makes the configuration of `tree` current: 1, or 0 with nothing changed when it has none.
int32_t DFT_setup(DFT_TREE *tree);
/// Makes the configuration of the first core of that name current, whatever its case, reading its file at the
/// first use: 1, or 0 with nothing changed when there is no such core.
int32_t DFT_inst_setup(const char *core_name);

/// Number of cores of the current configuration; 0 without one.
int32_t SL_core_name_countG();
/// Makes the core at `index` current and gives it; null when the index is out of range.
CORE_ENTRY *set_current_core_name(int32_t index);
