// What the readers of the .lib and .bsc files share: the syntax tree between a parser and its save step, the
// keyword tables, and the messages of a reading.
//
// A parser builds the tree of one file and leaves its root in theAST; the save step walks it in file order
// and fills the tables of description/tables.hh. Nodes are never freed.
#pragma once

#include "description/hash_tables.hh"
#include "support/program.hh"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

/// Node kinds of both languages: first the leaves, then the lists and constructs, then one per keyword.
enum NODE_KIND : int32_t {
    NO_NODE = -1,
    IDENT_NODE,
    INTEGER_NODE,
    PATTERN_NODE,
    PROGRAM_NODE,
    DUMMY, // a list under construction; its children move to the statement that owns them
    IDENT_LIST_NODE,
    INST_LIST_NODE,
    INT_LIST_NODE,
    STD_NAME_LIST_NODE,
    ORDER_LIST_NODE,

    // Heads and items of the .lib file.
    TAP_CELL_NODE,
    SCAN_CELL_NODE,
    BUFFER_CELL_NODE,
    DIFF_V_BUFFER_CELL_NODE,
    DIFF_I_BUFFER_CELL_NODE,
    BS_BUFFER_NODE,
    BCELL_NODE,
    CLOCK_DR_NODE,
    CONTROL_BCELL_NODE,
    CONTROL_IN_NODE,
    DATA_IN_NODE,
    DATA_OUT_NODE,
    EN_L_NODE,
    EN_H_NODE,
    EXTRA_NODE,
    FIRST_BCELL_NODE,
    FUNCTION_NODE,
    GROUP_METHOD_NODE,
    GROUP_SIZE_NODE,
    DF_GROUP_SIZE_NODE,
    HIGHZ_COMMAND_NODE,
    BS_HIGHZ_NODE,
    IN_BCELL_NODE,
    INOUT_NODE,
    INPUT_NODE,
    INPUT_M_NODE,
    INSTANCE_NAME_NODE,
    INV_BUFFER_NODE,
    KEEPER_NODE,
    LAST_BCELL_NODE,
    LASTTDO_NODE,
    MODE_1_NODE,
    MODE_2_NODE,
    MODE_3_NODE,
    MUX_DATA_IN_NODE,
    MUX_IN1_NODE,
    MUX_IN2_NODE,
    MUX_IN3_NODE,
    MUX_OUT_NODE,
    OE_MODE_NODE,
    OUT_BCELL_NODE,
    OUTPUT_NODE,
    OUTPUT_M_NODE,
    PULL_0_NODE,
    PULL_1_NODE,
    RST_NODE,
    SHIFT_DR_NODE,
    SIGNAL_BUFFER_NODE,
    DF_SIGNAL_BUFFER_NODE,
    SYS_IN_NODE,
    SYS_PIN_NODE,
    TAP_RESET_NODE,
    TDI_NODE,
    TDO_NODE,
    TDO_EN_NODE,
    TMS_NODE,
    TCK_NODE,
    TRST_NODE,
    UPDATE_DR_NODE,
    UPDATE_DR_OUT_NODE,
    WEAK_0_NODE,
    WEAK_1_NODE,

    // Statements and items of the .bsc file.
    SCAN_CELLS_NODE,
    OUTPUT_MUX_SCAN_NODE,
    OUTPUT_SCAN_NODE,
    INPUT_MUX_SCAN_NODE,
    INPUT_SCAN_NODE,
    CONTROL_OE_SCAN_NODE,
    CONTROL_OE_LOW_SCAN_NODE,
    CONTROL_OE_HIGH_SCAN_NODE,
    CONTROL_MUX_SCAN_NODE,
    CONTROL_SCAN_NODE,
    CONTROL_LOW_SCAN_NODE,
    CONTROL_HIGH_SCAN_NODE,
    BIDIR_MUX_SCAN_NODE,
    BIDIR_SCAN_NODE,
    BIDIR_HIGH_SCAN_NODE,
    BIDIR_LOW_SCAN_NODE,
    CLOCK_MUX_SCAN_NODE,
    CLOCK_SCAN_NODE,
    INTERNAL_SCAN_NODE,
    OBSERVE_ONLY_SCAN_NODE,
    CONTROL_HZ_SCAN_NODE,
    GLOBAL_TDI_NODE,
    GLOBAL_TDO_NODE,
    GLOBAL_TMS_NODE,
    GLOBAL_TCK_NODE,
    GLOBAL_TRST_NODE,
    INPUT_BUFFER_NODE,
    OUTPUT_BUFFER_NODE,
    INOUT_BUFFER_NODE,
    INVERTER_NODE,
    INSTRUCTION_DISABLE_NODE,
    INSTRUCTION_GUARD_NODE,
    INSTRUCTION_CAPTURE_NODE,
    INSTRUCTION_PRIVATE_NODE,
    INSTRUCTION_TABLE_NODE,
    INSTRUCTION_NODE,
    INST_NAME_NODE,
    ACCESS_NODE,
    ENABLE_NODE,
    INSTRUCTION_AND_NODE,
    INSTRUCTION_OR_NODE,
    INSTRUCTION_NAND_NODE,
    INSTRUCTION_NOR_NODE,
    INSTRUCTION_XOR_NODE,
    INSTRUCTION_XNOR_NODE,
    IDCODE_REGISTER_NODE,
    USERCODE_REGISTER_NODE,
    TAP_MODULE_NODE,
    MODULE_NAME_NODE,
    PIN_LIST_NODE,
    PACKAGE_LIST_NODE,
    FILE_NAME_NODE,
    CONNECT_TABLE_NODE,
    CONNECT_NODE,
    CONNECT_PORT_NODE,
    CONNECT_PIN_NODE,
    SKIP_MODULE_NAMES_NODE,
    SKIP_SIGNAL_NAMES_NODE,
    SKIP_IDENT_NODE,
    UNBOUNDED_PINS_NODE,
    TRANSPARENT_BUFFER_NODE,
    MEMORY_BIST_NODE,
    MEMORY_BIST_ELEMENT_NODE,
    LOGIC_BIST_NODE,
    LOGIC_BIST_ELEMENT_NODE,
    CTRL_ORDER_NODE,
    CNT_FILE_NODE,
    DFT_FILE_NODE,
    BL_SEL_INST_NODE,
    BL_DEBUG_INST_NODE,
    BL_DIAG_INST_NODE,
    BL_DIAG_CNT_NODE,
    BL_SCAN_INST_NODE,
    BL_LBIST_INST_NODE,
    BL_TEST_SETING_NODE,
};

struct AST_NODE {
    NODE_KIND kind;
    const char *text; ///< the token of a leaf, else null
    int32_t line;     ///< the scanner's line when the node was made
    AST_NODE *first_child;
    AST_NODE *last_child; ///< lets a list of any length grow in constant time
    AST_NODE *next_sibling;
    AST_NODE *parent;
};

/// One entry of a parser's stack.
struct TOKEN_VALUE {
    const char *text; ///< the matched characters, kept to the exit
    int32_t type;     ///< the token
    int32_t line;     ///< line of the token
    AST_NODE *ast;    ///< a leaf for names and numbers; what a rule has built
};

extern AST_NODE *theAST; ///< root of the file parsed last
extern const int
    *current_line; ///< line counter of the scanner in use; get_bs_dft_file and the pin lists set it

AST_NODE *MAKE_AST(NODE_KIND kind);
/// A leaf that holds a token's text.
AST_NODE *make_leaf(NODE_KIND kind, const char *text);
/// A node with the given children and their following siblings, in order; null children are left out.
AST_NODE *MAKE_SOLO_AST(NODE_KIND kind, AST_NODE *a);
AST_NODE *MAKE_DUET_AST(NODE_KIND kind, AST_NODE *a, AST_NODE *b);
AST_NODE *MAKE_TRIO_AST(NODE_KIND kind, AST_NODE *a, AST_NODE *b, AST_NODE *c);
AST_NODE *MAKE_QUARTET_AST(NODE_KIND kind, AST_NODE *a, AST_NODE *b, AST_NODE *c, AST_NODE *d);
/// Moves `child` and its following siblings to the end of the parent's children. Returns the parent.
AST_NODE *APPEND_CHILD(AST_NODE *parent, AST_NODE *child);
/// The first node of that kind among `node` and its following siblings, or null.
AST_NODE *FIND_AST(AST_NODE *node, NODE_KIND kind);

/// The children of a node as a range: for (AST_NODE &child : children(node)).
struct SIBLING_RANGE {
    struct iterator {
        AST_NODE *node;
        AST_NODE &operator*() const {
            return *node;
        }
        iterator &operator++() {
            node = node->next_sibling;
            return *this;
        }
        bool operator!=(const iterator &other) const {
            return node != other.node;
        }
    };
    AST_NODE *first;
    iterator begin() const {
        return {first};
    }
    iterator end() const {
        return {nullptr};
    }
};
inline SIBLING_RANGE children(const AST_NODE &node) {
    return {node.first_child};
}

/// A keyword's text with its token, and for a keyword that heads a node of its own, the kind of that node.
struct KEYWORD {
    const char *name;
    int32_t token;
    NODE_KIND kind = NO_NODE;
};

extern BUCKET_TAB<KEYWORD> bs_lib_k_hash;
extern BUCKET_TAB<KEYWORD> bs_dft_k_hash;
extern BUCKET_TAB<KEYWORD> bs_pin_k_hash;

/// Load the keyword table of a language; a second call does nothing.
void make_lib_keyword_hash();
void make_dft_keyword_hash();
void make_pin_keyword_hash();

/// The token of that keyword, compared as a whole and with regard to case; -1 for any other text.
int32_t lib_keyword_lookup(const char *text);
int32_t dft_keyword_lookup(const char *text);
int32_t pin_keyword_lookup(const char *text);

/// The node kind of the keyword that a token stands for.
NODE_KIND lib_node_kind(const TOKEN_VALUE &token);
NODE_KIND dft_node_kind(const TOKEN_VALUE &token);

// The three parsers and their scanners' input.
extern std::FILE *lib_yyin;
extern std::FILE *dft_yyin;
extern std::FILE *pin_yyin;
extern int lib_yylineno;
extern int dft_yylineno;
extern int pin_yylineno;
int lib_yyparse();
int dft_yyparse();
int pin_yyparse();
void lib_yyrestart(std::FILE *file);
void dft_yyrestart(std::FILE *file);
void pin_yyrestart(std::FILE *file);

/// Codes of error_msg.
enum READER_ERROR : int32_t {
    MISSING_COMMENT_END = 0,
    NO_SUCH_CELL = 1,
    PIN_NUMBER_REPEATED = 3,
    PIN_NAME_REPEATED = 4
};

/// Prints one of the fixed messages on the console; the caller decides whether the run goes on.
void error_msg(const char *file, int32_t line, READER_ERROR code, const char *text);

/// Prints that `text` cannot stand there, on the console.
void print_syntax_error(const char *file, int32_t line, const char *text);

/// A character that starts no token: prints the syntax error and ends the run. A NUL is shown as \0.
[[noreturn]] void bad_character(const char *file, int32_t line, char character);

/// The error routine of the parsers: `reason` is the generator's, `token` the current token's text.
[[noreturn]] void parser_error(const char *file, int32_t line, const char *reason, const char *token);

/// Ends the run with the message for a comment that is opened twice or never closed.
[[noreturn]] void missing_comment_end(const char *file, int32_t line);

/// The scanners' way out: prints the generator's `reason` on the error stream and ends the run, with status 2
/// for a token that is too long.
[[noreturn]] void scanner_failed(const char *reason);

// In place of what the generators would define.
#define YY_FATAL_ERROR(reason) scanner_failed(reason)
#define YYMALLOC checked_malloc
#define YYFREE std::free

/// Value of a string of digits. Ends the run when it is above 2147483647.
int32_t number_value(const char *file, int32_t line, const char *digits);
