// The parser of the DFT configuration language. Which kind of file is read follows from its first token.
#pragma once

#include "dftlang/syntax_tree.hh"

#include <cstdint>
#include <cstdio>

enum SCAN_FILE_KIND : int32_t {
    DFT_FILE_KIND,
    MAP_FILE_KIND,
    PATH_FILE_KIND, ///< path blocks are refused with a message of their own
    INSTANCE_FILE_KIND,
    LOCKUP_FILE_KIND, ///< bare names are statements
    SCAN_FILE_KINDS
};

/// Deepest nesting of blocks.
constexpr size_t deepest_block = 4000;

/// Parses an open file, from line 1 to its end, as a file of that kind, and checks a DFT file across its
/// blocks. Gives its tree, null when it holds no statement. Any fault ends the run. `is_quiet`: nothing is
/// said of a line comment that the file's end cuts.
SCAN_AST *scan_yyparse(std::FILE *file, const char *file_name, SCAN_FILE_KIND kind, bool is_quiet);
