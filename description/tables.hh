// The tables that the three description files fill: the library file (.lib), the BSC file (.bsc), the pin
// file.
//
// The readers build them once per bsdft_init (description/reader.hh); the rest of the program reads them by
// name through description/lookups.hh or walks the flat lists. Records never move and live to the exit, so a
// pointer to one stays valid. A text is kept to the exit; one that the file did not give is null. Port and
// instance names stand exactly as written: a leading '-' marks an active-low port and is stripped where the
// plain name is needed (without_minus). The guide edits the tables in place before the real reading.
//
// A zeroed record (T{}) is not what the readers leave for a number that was not given: they store -1 where a
// field says so.
#pragma once

#include "support/dyna.hh"

#include <cstdint>

/// One %TAP_CONTROLLER block.
struct TAP_CELL {
    const char *name;             ///< module name, behind %TAP_CONTROLLER
    const char *instance_name;    ///< %INSTANCE_NAME
    const char *highz_command;    ///< %HIGHZ_COMMAND, output port that commands high impedance
    const char *group_method;     ///< %GROUP_METHOD, grouping method of the buffer trees
    int32_t group_size;           ///< %GROUP_SIZE, -1 when not given
    int32_t df_group_size;        ///< %DF_GROUP_SIZE, -1 when not given
    const char *signal_buffer;    ///< %SIGNAL_BUFFER, buffer cell of the control signal trees
    const char *df_signal_buffer; ///< %DF_SIGNAL_BUFFER, the same under -df_speed
    const char *inv_buffer;       ///< %INV_BUFFER, inverting buffer cell
    const char *tdi;              ///< %TDI
    const char *tdo;              ///< %TDO
    const char *tdo_en;           ///< %TDO_EN
    const char *tms;              ///< %TMS
    const char *tck;              ///< %TCK
    const char *trst;             ///< %TRST
    const char *lasttdo;          ///< %LASTTDO
    const char *clock_dr;         ///< %CLOCK_DR
    const char *shift_dr;         ///< %SHIFT_DR
    const char *update_dr;        ///< %UPDATE_DR
    const char *mode_1;           ///< %MODE_1
    const char *mode_2;           ///< %MODE_2
    const char *mode_3;           ///< %MODE_3
    const char *first_bcell;      ///< %FIRST_BCELL, port towards the first boundary cell
    const char *last_bcell;       ///< %LAST_BCELL, port from the last boundary cell
    const char *tap_reset;        ///< %TAP_RESET
    const char **extras;          ///< %EXTRA_<n>: row n-1 names extra port n, null in the gaps
};

/// One %SCAN_CELL block, or the scan cell that a %BS_BUFFER holds.
struct SCAN_CELL {
    const char *name;          ///< library cell name
    const char **std_names;    ///< %STD_NAME; the cell's own name when the file gives none
    const char **order;        ///< %ORDER
    const char *data_in;       ///< %DATA_IN
    const char *data_out;      ///< %DATA_OUT
    const char *sys_in;        ///< %SYS_IN
    const char *sys_pin;       ///< %SYS_PIN
    const char *tdi;           ///< %TDI
    const char *tdo;           ///< %TDO
    const char *tck;           ///< %TCK
    const char *highz;         ///< %HIGHZ
    const char *clock_dr;      ///< %CLOCK_DR
    const char *shift_dr;      ///< %SHIFT_DR
    const char *update_dr;     ///< %UPDATE_DR
    const char *rst;           ///< %RST
    const char *mode_1;        ///< %MODE_1
    const char *mode_2;        ///< %MODE_2
    const char *mode_3;        ///< %MODE_3
    const char *control_in;    ///< %CONTROL_IN
    const char **extras;       ///< %EXTRA_<n>, as in TAP_CELL
    const char *update_dr_out; ///< %UPDATE_DR_OUT
    const char *mux_data_in;   ///< %MUX_DATA_IN
    const char *oe_mode;       ///< %OE_MODE
    const char *en_l;          ///< %EN_L
    const char *en_h;          ///< %EN_H
    int32_t oe_mode_type;      ///< direction of the %OE_MODE port in the cell; -1 until validation sets it
    int32_t is_bs_buffer;      ///< 1 when the record comes from a %BS_BUFFER
};

/// Head keyword of a BUFFER_CELL.
enum BUFFER_KIND : int32_t {
    BUFFER_PLAIN = 0,        // %BUFFER, %INV_BUFFER
    BUFFER_DIFF_VOLTAGE = 1, // %DIFFERENTIAL_VOLTAGE
    BUFFER_DIFF_CURRENT = 2, // %DIFFERENTIAL_CURRENT
    BUFFER_BS = 3            // %BS_BUFFER
};

/// One name of a buffer block's head; all names of a head have the same attributes.
struct BUFFER_CELL {
    const char *name;          ///< library cell name; it may hold '*'
    const char *function;      ///< %FUNCTION, free text
    const char *inout;         ///< %INOUT
    const char *input;         ///< %INPUT or %INPUT_P, the last one given
    const char *output;        ///< %OUTPUT or %OUTPUT_P, the last one given
    const char *input_m;       ///< %INPUT_M
    const char *output_m;      ///< %OUTPUT_M
    const char *en_l;          ///< %EN_L
    const char *en_h;          ///< %EN_H
    const char *mux_in1;       ///< %MUX_IN1
    const char *mux_in2;       ///< %MUX_IN2
    const char *mux_in3;       ///< %MUX_IN3
    const char *mux_out;       ///< %MUX_OUT
    const char *mode_1;        ///< %MODE_1; null for a %BS_BUFFER, whose scan cell has it
    const char *mode_2;        ///< %MODE_2; the same
    const char *mode_3;        ///< %MODE_3; the same
    int32_t weak_0;            ///< %WEAK_0, 0 or 1
    int32_t weak_1;            ///< %WEAK_1, 0 or 1
    int32_t pull_0;            ///< %PULL_0, 0 or 1
    int32_t pull_1;            ///< %PULL_1, 0 or 1
    int32_t keeper;            ///< %KEEPER, 0 or 1
    int32_t kind;              ///< BUFFER_KIND
    const char *bcell;         ///< %BCELL, scan cell name
    const char *in_bcell;      ///< %IN_BCELL, scan cell name
    const char *out_bcell;     ///< %OUT_BCELL, scan cell name
    const char *control_bcell; ///< %CONTROL_BCELL, scan cell name
};

/// Gate of an instruction's enable.
enum GATE_KIND : int32_t {
    GATE_NONE = -1,
    GATE_AND = 18,
    GATE_NAND = 19,
    GATE_OR = 20,
    GATE_NOR = 21,
    GATE_XOR = 22,
    GATE_XNOR = 23
};

/// One %INSTRUCTION of the instruction table. The four enable tables are parallel: row i describes one
/// enable. They are null where there is none.
struct INSTRUCTION {
    const char *name;           ///< instruction name
    const char **patterns;      ///< opcodes of '0', '1', 'X', 'x'
    const char *register_name;  ///< behind ACCESS or %DATA_REGISTER; "bypass" when not given
    const char **enable_pins;   ///< signal name
    const char **enable_values; ///< "1" for %EN_H, "0" for %EN_L, the pattern or null for ENABLE and %ENABLE
    const char **gate_signals;  ///< second input of the gate, or null
    int32_t *gate_kinds;        ///< GATE_KIND
};

/// Releases the tables of a row that is about to go.
void free_instruction(INSTRUCTION &row);

/// What a BSC(...) list of a pin row holds.
enum BSC_KIND : int32_t {
    BSC_NO_LIST = -1, // no BSC clause, or BSC(<name>)
    BSC_I = 0,
    BSC_O = 1,
    BSC_C = 2,
    BSC_O_C = 3,
    BSC_I_O = 4,
    BSC_I_O_C = 5,
    BSC_I_ONLY = 6,
    BSC_O_ONLY = 7,
    BSC_O_ONLY_C = 8,
    BSC_IO = 9,
    BSC_IO_C = 10
};

/// One pin row of the pin file.
struct PIN_ENTRY {
    const char *top_name;     ///< third column, pin of the top module; null for '*'
    const char *package_name; ///< second column, pin of the package; null for '*'
    const char *number;       ///< first column
    const char *direction;    ///< fourth column, free text; null for '*'
    const char *bsc_name;     ///< cell of BSC(<name>)
    const char *bsc_c;        ///< cell of C: in a BSC list
    const char *bsc_i;        ///< cell of I: or I_ONLY:
    const char *bsc_o;        ///< cell of O: or O_ONLY:
    const char *bsc_io;       ///< cell of IO:
    const char *pad_name;     ///< pad cell of PAD(...)
    const char *pad_c;        ///< pad port of C:
    const char *pad_i;        ///< pad port of I:
    const char *pad_o;        ///< pad port of O:
    int32_t bsc_kind;         ///< BSC_KIND
    int32_t pad_enable;       ///< 0 PAD_EN_L, 1 PAD_EN_H, -1 neither
    int32_t line;             ///< line of the entry in the pin file
};

/// One row of a package's pin file; the fields mean what they mean in PIN_ENTRY.
struct PACKAGE_PIN {
    const char *number;
    const char *package_name;
    const char *top_name;
    const char *direction;
    const char *bsc_name; ///< the text of the BSC clause, whatever its form
    const char *pad_name;
    const char *pad_c;
    const char *pad_i;
    const char *pad_o;
    int32_t pad_enable;
    int32_t line;
    PACKAGE_PIN *next;
};

/// One file of %PACKAGE_LIST.
struct PACKAGE_ENTRY {
    const char *file;
    const char *type;
    int32_t pin_count;
    PACKAGE_PIN *pins;
    PACKAGE_ENTRY *next;
};

/// One %CONNECT; an instance is null when the file writes the port alone.
struct CONNECT_ENTRY {
    const char *from_instance;
    const char *from_port;
    const char *to_instance;
    const char *to_port;
    CONNECT_ENTRY *next;
};

/// One name of %SKIP_SIGNAL_NAMES.
struct SKIP_SIGNAL {
    const char *name;
    const char *value; ///< the text in parentheses, or null
};

/// One %INSTRUCTION of %MEMORY_BIST.
struct MBIST_ENTRY {
    const char *instruction;     ///< name behind %INSTRUCTION
    const char *cnt_file;        ///< %CNT_FILE, its first name
    const char *sel_instruction; ///< %SEL_INSTRUCTION
    int32_t *ctrl_order;         ///< %CTRL_ORDER
};

/// One %INSTRUCTION of %LOGIC_BIST. Its lists of texts hold no name twice, compared without regard to case.
struct LBIST_ENTRY {
    const char *instruction;        ///< name behind %INSTRUCTION; null in the form without %INSTRUCTION
    const char *dft_file;           ///< %DFT_FILE
    const char **cnt_files;         ///< %CNT_FILE
    const char **diag_instructions; ///< %DIAG_INSTRUCTION
    const char **diag_cnt_files;    ///< %DIAG_CNT_FILE
    const char *scan_instruction;   ///< %SCAN_INSTRUCTION
    const char *debug_instruction;  ///< %DEBUG_INSTRUCTION
    const char *lbist_instruction;  ///< %LBIST_INSTRUCTION
    const char *instance_name;      ///< %INSTANCE_NAME
    const char *sel_instruction;    ///< %SEL_INSTRUCTION
    const char **tests;             ///< %TESTS
    int32_t *ctrl_order;            ///< %CTRL_ORDER
};

// Flat lists: DYNA tables of pointers to the records, in hash order (bucket 0 upwards, each bucket in file
// order). The readers fill them; the guide appends and edits rows.
extern TAP_CELL **TAP_CELL_TAB;
extern SCAN_CELL **SCAN_CELL_TAB;
extern BUFFER_CELL **BUFFER_TAB;
extern SKIP_SIGNAL **SKIP_SIGNAL_TAB;
extern const char **TRANS_BUF_TAB;

/// Rows of the pin file, in file order.
extern PIN_ENTRY **PIN_TABLE;

/// Every buffer name that holds a '*', in file order.
extern const char **WILD_CARD_BUF_TAB;

// Cell roles: %SCAN_CELLS has a keyword of the role's name, and a global of that name holds the scan cell
// that it gives; null at start. bsdft_init leaves them.
#define FOR_EACH_CELL_ROLE(ROLE)                                                                             \
    ROLE(OUTPUT_MUX_SCAN)                                                                                    \
    ROLE(OUTPUT_SCAN)                                                                                        \
    ROLE(INPUT_MUX_SCAN)                                                                                     \
    ROLE(INPUT_SCAN)                                                                                         \
    ROLE(CONTROL_OE_SCAN)                                                                                    \
    ROLE(CONTROL_OE_LOW_SCAN)                                                                                \
    ROLE(CONTROL_OE_HIGH_SCAN)                                                                               \
    ROLE(CONTROL_MUX_SCAN)                                                                                   \
    ROLE(CONTROL_SCAN)                                                                                       \
    ROLE(CONTROL_LOW_SCAN)                                                                                   \
    ROLE(CONTROL_HIGH_SCAN)                                                                                  \
    ROLE(BIDIR_MUX_SCAN)                                                                                     \
    ROLE(BIDIR_SCAN)                                                                                         \
    ROLE(BIDIR_HIGH_SCAN)                                                                                    \
    ROLE(BIDIR_LOW_SCAN)                                                                                     \
    ROLE(CLOCK_MUX_SCAN)                                                                                     \
    ROLE(CLOCK_SCAN)                                                                                         \
    ROLE(INTERNAL_SCAN)                                                                                      \
    ROLE(OBSERVE_ONLY_SCAN)                                                                                  \
    ROLE(CONTROL_HZ_SCAN)
#define DECLARE_ROLE(name) extern const char *name;
FOR_EACH_CELL_ROLE(DECLARE_ROLE)
#undef DECLARE_ROLE

// Single settings of the BSC file, each from the keyword of its name unless told otherwise; null until set.
// The guide writes them too.
extern const char *GLOBAL_TDI;
extern const char *GLOBAL_TDO;
extern const char *GLOBAL_TMS;
extern const char *GLOBAL_TCK;
extern const char *GLOBAL_TRST;
extern const char *INPUT_BUFFER;
extern const char *OUTPUT_BUFFER;
extern const char *INOUT_BUFFER;
extern const char *INVERTER;
extern const char *TAP_MODULE_NAME;   ///< %MODULE_NAME of %TAP_MODULE; jtag_init gives the default
extern const char *TAP_INSTANCE_NAME; ///< %INSTANCE_NAME of %TAP_MODULE; jtag_init gives the default
extern const char *INST_DISABLE;      ///< %INSTRUCTION_DISABLE
extern const char *INST_GUARD;        ///< %INSTRUCTION_GUARD
extern const char *IDCODE_REG;        ///< %IDCODE_REGISTER, exactly 32 characters

// Instruction data of the BSC file, in file order.
extern INSTRUCTION *INSTRUCTIONS;
extern const char **INST_CAPTURE; ///< capture patterns
extern const char **INST_PRIVATE; ///< names of private instructions
extern const char **USERCODE_REG; ///< patterns of exactly 32 characters

// Summary of the pin file.
extern const char *PIN_FILE;               ///< name without a leading "./"
extern const char *PACKAGE_TYPE;           ///< %PACKAGE_TYPE, its name
extern int32_t PACKAGE_PIN_NUMBER;         ///< %PACKAGE_TYPE, its count; 0 when not given
extern const char **ALLOWED_MULTIPLE_LIST; ///< %ALLOWED_MULTIPLE
extern int32_t BS_PIN_COUNT;               ///< rows of PIN_TABLE

// Other statements of the BSC file, in file order.
extern PACKAGE_ENTRY *PACKAGE_TABLE;   ///< list of the files of %PACKAGE_LIST
extern CONNECT_ENTRY *CONNECT_TABLE;   ///< list of %CONNECT
extern const char **UNBOUNDED_PIN_TAB; ///< %UNBOUNDED_PINS
extern MBIST_ENTRY *BL_MBIST_TAB;      ///< null without %MEMORY_BIST
extern LBIST_ENTRY *BL_LBIST_TAB;      ///< null without %LOGIC_BIST

/// Set by the pin reader on an error that is reported only; get_bs_dft_file ends the run at its end.
extern int32_t GLOBAL_EXIT;

// Names of the files being read, for messages; get_bs_dft_file writes them.
extern const char *LIB_FILE;
extern const char *BSC_FILE;
