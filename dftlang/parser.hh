// The parser of the DFT configuration language. Which kind of file is read follows from its first token.
#pragma once

#include "dftlang/syntax_tree.hh"

#include <cstdint>

enum SCAN_FILE_KIND : int32_t {
    DFT_FILE_KIND,
    MAP_FILE_KIND,
    PATH_FILE_KIND,
    INSTANCE_FILE_KIND,
    LOCKUP_FILE_KIND,
    SCAN_FILE_KINDS
};

/// Tree of the file of each kind that was parsed last; null when that file held no statement. Written by
/// scan_yyparse alone.
extern SCAN_AST *scan_root[SCAN_FILE_KINDS];

extern int32_t sl_lockup_latch_flag; ///< 1 while the lockup latch file is parsed: bare names are statements
extern int32_t parse_path_fileG;     ///< 1 while a path file is parsed: path blocks are refused

/// Deepest nesting of blocks.
constexpr size_t deepest_block = 4000;

/// Parses the open stream scan_yyin, named in_file_name, from line 1 to its end as a file of that kind, and
/// checks a DFT file across its blocks. Any fault ends the run.
void scan_yyparse(SCAN_FILE_KIND expected);
