// What is kept of one DFT file. Its blocks stay in the syntax tree, which holds all that the file says;
// records are made of what is looked up or worked out alone. Texts are kept to the exit; a text that the file
// did not give is null.
#pragma once

#include "dftlang/join_inputs.hh"
#include "support/dyna.hh"

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

struct SCAN_AST;

/// A file that a DFT file names: a map, path, instance or lockup latch file.
struct SIDE_FILE {
    const char *name;     ///< as it was opened
    const SCAN_AST *tree; ///< null when it holds no statement or, for an instance file, is not there
};

/// One %NAME of a %CORE block.
struct CORE_ENTRY {
    const char *name;
    const char *dft_file;
    const char *lbist_file;
    const SCAN_AST *block; ///< with all its statements
    int32_t line;
};

/// The values that ports may take together under one mode.
struct ATPG_MODE {
    const char *mode;
    std::vector<INPUT_ROW> given;  ///< the legal rows, those made of illegal ones behind them
    std::vector<JOINED_ROW> legal; ///< joined until no two of them share a port
};

/// One DFT file.
struct DFT_CONFIGURATION {
    const char *file_name;
    const char *path;      ///< directory of the file with its '/', or null
    SCAN_AST *file;        ///< its tree, extended by what a scrambled section holds
    SIDE_FILE *side_files; ///< in the order in which they were read
    const char *top_module;
    const char *read_map; ///< name of the map file
    CORE_ENTRY *cores;
    std::unordered_map<std::string_view, const SCAN_AST *>
        sequences; ///< %SEQUENCE blocks; the first one of a name counts
    std::vector<ATPG_MODE> atpg_constraints;
    const char **dont_fault; ///< %DONT_FAULT and the words of %DONT_FAULT_FILE
    const char **must_fault;
};
