// The records that stand for one DFT file. Texts are kept to the exit; a text that the file did not give is
// null, a list that it did not give is a null table.
#pragma once

#include "support/dyna.hh"

#include <cstdint>
#include <string_view>
#include <vector>

/// A block that nobody reads field by field stays what the parser made of it, since a large file is nearly
/// all such blocks; its statements are made when they are asked for.
struct SCAN_AST;

/// One statement with its values and the statements of its body.
struct DFT_STATEMENT {
    std::string_view keyword; ///< the keyword without its '%'
    std::vector<const char *> values;
    std::vector<DFT_STATEMENT> body;
    int32_t line;
};

/// The statement that a node stands for.
DFT_STATEMENT dft_statement(const SCAN_AST *node);
/// The statements of a block, or the blocks of a list, in file order; none for null.
std::vector<DFT_STATEMENT> dft_statements(const SCAN_AST *block);

/// An integer or a percentage: the other one is -1.
struct DFT_VALUE {
    int32_t number;
    double fraction; ///< 0.5 for 50%
};

struct SELECT_SCAN {
    DFT_VALUE init;
    DFT_VALUE incr;
    DFT_VALUE max;
    const char **dont_scan_type;
    const char **must_scan_type;
    const char **dont_scan_module;
    const char **dont_scan;
    const char **must_scan;
};

struct NAME_PAIR {
    const char *first;
    const char *second;
};

struct NAME_LIST {
    const char *name;
    const char **names;
};

enum PORT_TYPE : int32_t { PORT_INPUT = 0, PORT_OUTPUT = 1, PORT_CLOCK = 2 };

struct PORT_ROW {
    const char *name;
    int32_t type; ///< PORT_TYPE, -1 when not given
    NAME_LIST *pads;
    NAME_LIST *port_map;
};

/// A %PATH; a target is `name` or `name{pin}`.
struct PATH_ROW {
    const char **from;
    const char **through;
    const char **to;
    int32_t cycle; ///< -1 when not given
    const char **files;
    int32_t *file_indices; ///< rows of the list of path files that stand for `files`
};

struct FILE_PATHS {
    const char *file;
    PATH_ROW *paths;
};

/// A %FORCE, %CLOCK or %FORCE_CLOCK of a sequence.
enum FORCE_KIND : int32_t { FORCE_SIGNAL, FORCE_IS_CLOCK, FORCE_FORCED_CLOCK };
struct FORCE_ROW {
    int32_t kind; ///< FORCE_KIND
    const char *signal;
    const char *pattern;
    int32_t line;
};

struct SEQUENCE {
    const char *name;
    FORCE_ROW *clocks; ///< the clock statements alone
    FORCE_ROW *forces; ///< all statements, in file order
    int32_t cycle_length;
    int32_t frame_length; ///< -1 when not given
    const SCAN_AST **timing;
    const SCAN_AST **launch_timing;
    const SCAN_AST **capture_timing;
    int32_t name_line;
    int32_t line;
};

struct SCAN_INSTRUCTION {
    const char *name;
    const char *mode;
    SEQUENCE **preamble;
    SEQUENCE *first_preamble;
    SEQUENCE *shift;
    SEQUENCE **extra_sequences;
    SEQUENCE *propagate;
    SEQUENCE *hold;
    SEQUENCE *runbist;
    SEQUENCE *capture;
    SEQUENCE *ram_write;
    SEQUENCE *first_postamble;
    SEQUENCE **postamble;
    int32_t name_line;
    int32_t line;
};

/// A statement of an %INSTRUCTION, in file order.
struct INSTR_ORDER_ROW {
    int32_t instruction; ///< from 0
    int32_t statement;   ///< 1 MODE, 2 PREAMBLE, 3 SHIFT, 4 PROPAGATE, 5 HOLD, 6 RUNBIST, 7 CAPTURE, 8
                         ///< POSTAMBLE, 9 RAM_WRITE, 10 EXTRA_SEQ, 0 any other
};

/// One %NAME of a %CORE block.
struct CORE_ENTRY {
    const char *name;
    const char **clock_ports;
    const char **set_reset_ports;
    const char **bidi_ports;
    const char **scan_in_ports;
    const char **scan_out_ports;
    const char **tie0;
    const char **tie1;
    SCAN_INSTRUCTION *instructions;
    const char *dft_file;
    const char *lbist_file;
    SEQUENCE **preamble;
    const SCAN_AST **patsets;
    int32_t line;
    NAME_PAIR *dont_fix;
};

/// A control port of the scan decoder. In the `= name` form the port name stands alone.
struct CONTROL_PORT {
    int32_t in_block_form; ///< 1 for the block form
    const char *port_name;
    const char *pad_name;
    const char *pad_out;
    const char *polarity; ///< "ACTIVE_HIGH" or "ACTIVE_LOW"
    int32_t block_line;
    int32_t line;
};

enum DECODER_PORT : int32_t {
    DECODER_SCAN_MODE,
    DECODER_TEST_MODE,
    DECODER_OVERRIDE_MODE,
    DECODER_RAM_WRITE,
    DECODER_PORT_COUNT
};

struct FS_MODE_ROW {
    const char *port_name;
    int32_t value; ///< -1 without an integer and without a polarity
};

struct SCAN_DECODER {
    CONTROL_PORT ports[DECODER_PORT_COUNT];
    FS_MODE_ROW *fs_mode;
    const SCAN_AST *block; ///< with all its statements
};

/// A named instance of an instance list, or a place for a test point.
struct INSTANCE_ELEMENT {
    const char *name;
    int32_t count;     ///< the leading integer, -1 when absent
    int32_t tail_form; ///< 1 when the tail alone gives the element
    int32_t inverted;  ///< '~' stands
    int32_t bang_before;
    int32_t bang_after;
    const char *tail[3];
    int32_t control;    ///< -1, or the number of the control word
    int32_t observe;    ///< -1, 3 OBSERVE, 4 OBSERVE_BLOCK
    int32_t transition; ///< -1 or 9
    int32_t pipeline;   ///< -1 or 10
    int32_t capture1;   ///< -1 or 1
    int32_t group;      ///< group in braces that holds it, from 0; -1 outside
};

/// SCAN_IN_PAD or SCAN_OUT_PAD of an instance file.
struct PAD_RECORD {
    const char *name;
    int32_t inverted;
    int32_t bang_before;
    int32_t bang_after;
};

/// One list of instances; CONVERT_SCAN_INSTANCES makes its elements.
struct INSTANCE_LIST {
    const SCAN_AST *list;
    int32_t first_group; ///< number of its first group in braces
};
/// Appends the elements of a list, its groups' too.
void CONVERT_SCAN_INSTANCES(const INSTANCE_LIST &list, std::vector<INSTANCE_ELEMENT> &elements);

/// The instances of a block, from its list or its instance files.
struct INSTANCE_LISTS {
    INSTANCE_LIST *elements; ///< %SCAN_INSTANCES, %BIST_INSTANCES, MUST_SCAN
    INSTANCE_LIST *fs_scan;
    PAD_RECORD scan_in_pad;
    PAD_RECORD scan_out_pad;
    const SCAN_AST **files; ///< the instance files with all their statements
};

enum POLARITY_CODE : int32_t { POLARITY_NONE = 0, POLARITY_POSITIVE = 1, POLARITY_NEGATIVE = 2 };

struct SCAN_CLOCK_ROW {
    const char *keyword; ///< as written, with its number
    int32_t polarity;    ///< POLARITY_CODE
};

/// A %CONNECT_SCAN or %CONNECT_BIST.
struct CONNECT_ROW {
    const char *first;
    const char *second;
    int32_t line;
    int32_t ms_violation; ///< -1 when not given
    SCAN_CLOCK_ROW *clocks;
    INSTANCE_LISTS instances;
    const SCAN_AST *block;
};

/// Values that a group of ports may take together.
struct LEGAL_ROW {
    const char **ports;
    const char **patterns;
    int32_t line;
};

struct MERGED_LEGAL {
    LEGAL_ROW row;
    LEGAL_ROW *sources;
};

struct ATPG_MODE {
    const char *mode;
    LEGAL_ROW *legal;            ///< joined until no two rows share a port
    MERGED_LEGAL *combine_legal; ///< the joined rows with the rows that they come from
    const SCAN_AST *block;
};

struct MBIST_PIN {
    std::string_view keyword; ///< without its '%'
    const char *instance;     ///< null when the statement gives the pin alone
    const char *pin;
};

struct MBIST_CONTROL {
    int32_t number;
    MBIST_PIN *pins;
};

struct FOLD_GROUP {
    const char *name;
    NAME_PAIR pairs[2];      ///< signal and instance
    const char **operations; ///< of a scrambled row: "pass" and "xor"
    const char **members;    ///< of a scan-out group
    int32_t port;            ///< number of the port
};

struct FOLD_PORT {
    const char *name;
    FOLD_GROUP *groups;
};

struct MAP_OBJECT_RECORD {
    NAME_PAIR *scan_mode_active; ///< per %MAP_CELL: its second name, "HIGH" or "LOW" as written
    const SCAN_AST *repair_cells;
    const SCAN_AST *test_point_cells;
    const SCAN_AST *file;
};

struct DFT_INDEX;

/// One DFT file. A field of a block is null when the file has no such block.
struct DFT_CONFIGURATION {
    const SCAN_AST *test_schedule;
    const SCAN_AST *test_session;
    const SCAN_AST *test_architecture;
    const SCAN_AST *hookup;
    const char *instruction_binary;
    const char *register_length;
    FOLD_PORT *fold_scan_in;
    FOLD_PORT *fold_scan_out;
    const SCAN_AST *fold_scan_info;
    const SCAN_AST *clock_period;
    CORE_ENTRY *cores;
    const char *file_name;
    const char *path; ///< directory of the file with its '/', or null
    const SCAN_AST *test_files;
    MBIST_CONTROL *mbist_constraints;
    const SCAN_AST *mbist_bsd;
    SELECT_SCAN *select_scan;
    SEQUENCE **sequences;
    SCAN_INSTRUCTION *instructions;
    INSTR_ORDER_ROW *instruction_order;
    const char *read_map;
    const char *lockup_latch_file;
    const char **lockup_latch_list;
    const char *modify_cmd;
    CONNECT_ROW *connect_scans;
    const SCAN_AST *connect_cores;
    CONNECT_ROW *connect_bists;
    ATPG_MODE *atpg_constraints;
    const SCAN_AST *select_fault;
    const char **dont_fault; ///< %DONT_FAULT and the words of %DONT_FAULT_FILE
    const char **must_fault;
    const SCAN_AST *scan_repair;
    const SCAN_AST *test_conversion;
    SCAN_DECODER *scan_decoder;
    const SCAN_AST *ta_constraints;
    const SCAN_AST *scan_modules;
    const SCAN_AST *pll_clock_fix;
    const SCAN_AST *plls;
    const SCAN_AST *blackboxes;
    const char *top_module;
    const char **ciphertext;
    PATH_ROW *multicycle_rows;
    PATH_ROW *multicycle_paths;
    FILE_PATHS *file_multicycle_paths;
    const char **critical_paths;
    PATH_ROW *false_rows;
    PATH_ROW *false_paths;
    FILE_PATHS *file_false_paths;
    const char **scan_in_list;
    const char **scan_out_list;
    PORT_ROW *port_info;
    const SCAN_AST *gui;
    const SCAN_AST *capture_clock;
    const char **nontpi_instances;
    const SCAN_AST *wrapper;
    const SCAN_AST *deep_scan;
    const char **def_info;
    MAP_OBJECT_RECORD *map;
    const char **core_no_scan;
    DFT_INDEX *index; ///< look-ups by name; of dftlang alone
};
