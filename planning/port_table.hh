// The port table and its companions: what planning decides and everything after it reads.
#pragma once

#include "description/tables.hh"
#include "planning/control_signals.hh"

#include <cstdint>

/// Cell kinds. The values are fixed: the emission and the function words of the boundary order file are
/// tables indexed by them.
enum CELL_KIND : int32_t {
    CELL_NONE = -1,
    CELL_CLOCK = 0,
    CELL_INPUT = 1,
    CELL_OUTPUT2 = 2,
    CELL_OUTPUT3 = 3,
    CELL_OUTPUT_EN = 4,
    CELL_BIDIR = 5,
    CELL_INOUT = 6,
    CELL_INTERNAL = 7,
    CELL_MUX_CLOCK = 8,
    CELL_MUX_INPUT = 9,
    CELL_MUX_OUTPUT2 = 10,
    CELL_MUX_OUTPUT3 = 11,
    CELL_MUX_OUTPUT_EN = 12,
    CELL_MUX_BIDIR = 13,
    CELL_MUX2_BIDIR = 14,
    CELL_MUX_INOUT = 15,
    CELL_MUX2_INOUT = 16,
    CELL_KIND_COUNT = 17
};

/// What a cell counts as in the report: the role of %SCAN_CELLS that it plays (planning/cell_roles.hh). No
/// port and no enable takes the cells of the roles with LOW, HIGH and CONTROL_MUX.
enum CELL_COUNTER : int32_t {
    COUNT_INPUT,
    COUNT_CLOCK,
    COUNT_OUTPUT,
    COUNT_BIDIR,
    COUNT_CONTROL,
    COUNT_CONTROL_LOW,
    COUNT_CONTROL_HIGH,
    COUNT_INPUT_MUX,
    COUNT_CLOCK_MUX,
    COUNT_OUTPUT_MUX,
    COUNT_BIDIR_MUX,
    COUNT_CONTROL_MUX,
    COUNT_CONTROL_OE,
    COUNT_CONTROL_OE_LOW,
    COUNT_CONTROL_OE_HIGH,
    COUNT_INTERNAL,
    CELL_COUNTER_COUNT
};

/// A cell and what it counts as, which are chosen together (planning/cell_choice.hh).
struct CHOSEN_CELL {
    SCAN_CELL *cell; ///< null for none
    CELL_COUNTER counter;
    bool is_named = false; ///< the pin file names it
};

/// What the pin file and the design say of a port. Written when the row is made and while its pad is traced.
struct PORT_FACTS {
    int32_t pin_index;      ///< row of PIN_TABLE
    const char *pin_num;    ///< INTERNAL, OBSERVE or the package pin's number
    const char *port_name;  ///< top name without '-'; instance{pin} for an internal pin
    int32_t inverted;       ///< 1 when the top name started with '-'
    const char *direction;  ///< direction of the pin list: suffix of cell instance names; null when none
    int32_t pad_obj;        ///< object of the cell next to the port, -1 none
    const char *pad_class;  ///< class of the cell next to the port, or "*UNDEF*"; null when nothing is known
    BUFFER_CELL *pad;       ///< description of pad_class, or null
    const char *pad_input;  ///< pad pin that the core drives, or null
    const char *pad_output; ///< pad pin that drives the core, or null
    const char *net_name;   ///< net at the core side of the pad; "out,in" for a bidirectional port
    const char *pad_instance;    ///< the pad's instance name without hierarchy
    const char **hier_classes;   ///< table: modules above the pad, innermost first
    const char **hier_instances; ///< table: their instance names
    /// Row of MULTI_IO_TAB; 0 for all rows where the cells lie in one module, whichever it is.
    int32_t io_module;
    int32_t mode_net[3]; ///< net at the pad's %MODE_1..3, -1 when not traced, 0 GND, 1 VCC
    /// Nets at %MUX_IN1, %MUX_IN2, %MUX_OUT, -1 when not traced.
    int32_t mux_in1_net, mux_in2_net, mux_out_net;
};

/// What the classification decides for a port. It has a cell exactly when `scan_cell` is set.
struct PORT_CHOICE {
    int32_t kind;           ///< CELL_KIND
    SCAN_CELL *scan_cell;   ///< the chosen cell, or null; written by take_cell alone
    CELL_COUNTER counter;   ///< what scan_cell counts as
    bool is_named;          ///< scan_cell is the one that the pin file names
    CHOSEN_CELL input_cell; ///< of a pair, whose output cell is scan_cell; else none
    int32_t control;        ///< 0 none, above 0 CONTROL_TAB index plus one, -1 the high-impedance signal
    int32_t oe_control;     ///< the same for CONTROL_OE_TAB
};

/// What the boundary order file shows as a port's pad in place of that of the design: an added one, or where
/// the signal of a standard port has come to in the top module.
struct SHOWN_PAD {
    bool is_set;
    const char *instance;   ///< null at a port
    const char *class_name; ///< null for that of the design
};

/// Where the port's cells stand: the first fields by the scan order, the others by emission.
struct PORT_PLACE {
    int32_t sort_key;           ///< place among the rows; no place in the chain
    int32_t control_driver;     ///< 1 on the row that makes the control cell or high-impedance buffer
    int32_t highz_group;        ///< number of the row's highz_buf
    int32_t order;              ///< SCAN_TAB index of the row's cell, -1 before it has one
    int32_t chain_place;        ///< SCAN_TAB index of the row's first cell, -1 before it has one
    const char *scan_cell_name; ///< instance names of the inserted cells, null before
    SHOWN_PAD shown_pad;
};

/// One row per pin-list entry that has a top name.
struct OPIN_ROW : PORT_FACTS, PORT_CHOICE, PORT_PLACE {};

/// One row per control cell (CONTROL_TAB) or OE control cell (CONTROL_OE_TAB).
struct CONTROL_ROW {
    const char *net_name;  ///< the enable's net
    const char *bsdl_type; ///< "controlr" or "control"
    SCAN_CELL *scan_cell;
    const char *inst;     ///< set when the cell is emitted
    const char *data_out; ///< set when the cell is emitted
};

/// One row per inserted cell, in the order of insertion; row 0 is the cell nearest TDO.
struct SCAN_ROW {
    const char *inst;
    const char *tdi_pin, *tdo_pin;
    /// Control pins, null where the cell has none; [SIG_BCLK] is the %TCK pin.
    const char *pins[SIGNAL_COUNT];
    const char **extra_pins; ///< table: the cell's %EXTRA_n pins
    const OPIN_ROW *mux_pad; ///< row whose pad's mode pins need driving, or null
    int32_t io_module;       ///< that of its port
};

/// One row per module on the way from the top to a pad, a child's behind its parent's; row 0 is the top.
/// Where all cells lie in one module, whichever it is, row 0 has the trees.
struct MULTI_IO_ROW {
    const char *class_name, *inst_name;
    int32_t copy;   ///< how many earlier rows have this class
    int32_t parent; ///< -1 for row 0
    CONTROL_TREES trees;
    bool highz_buffer;      ///< the module or one below it has a high-impedance buffer; set by emission
    struct EDIT_FILE *file; ///< while it is written, null before and after (editing/edit_commands.hh)
};

extern OPIN_ROW *OPIN_TAB;       ///< filled by the classification, sorted by the scan order
extern CONTROL_ROW *CONTROL_TAB; ///< filled by save_contr_tab; emission sets inst and data_out
extern CONTROL_ROW *CONTROL_OE_TAB;
extern SCAN_ROW *SCAN_TAB;            ///< filled by add_scan_tab during emission
extern MULTI_IO_ROW *MULTI_IO_TAB;    ///< row 0 made by rimweave_init, the rest by the tracing
extern int32_t multi_io_module_flagG; ///< 1 when the cells do not all lie in one module
extern int32_t HIGHZ_CNT;          ///< planning: outputs on the high-impedance signal whose cell has %HIGHZ
extern const char **BUFFER_REPORT; ///< table: lines of the buffer report in the order written
extern const char *BSO_FILE;       ///< name of the boundary order file, null when none was written

extern int32_t SCAN_COUNT[CELL_COUNTER_COUNT]; ///< CLK_SCAN_COUNT and its sisters; counted by emission

/// The two control tables, and all that differs between them.
enum CONTROL_KIND_ID : int32_t { CONTROL_PLAIN, CONTROL_OE, CONTROL_KIND_COUNT };
struct CONTROL_KIND {
    CONTROL_ROW **table;
    int32_t OPIN_ROW::*field; ///< the rows' reference to it
    CELL_COUNTER counter;     ///< the role of its cells
};
extern const CONTROL_KIND CONTROL_KINDS[CONTROL_KIND_COUNT];

/// Data cells that a kind puts into the chain.
enum CELL_NUMBER : int32_t { NO_CELLS, ONE_CELL, CELL_PAIR };

/// What is fixed of one cell kind.
struct CELL_KIND_INFO {
    const char *bso_word; ///< function word of the boundary order file
    CELL_NUMBER cells;    ///< data cells in the chain
};
extern const CELL_KIND_INFO CELL_KINDS[CELL_KIND_COUNT];

/// True when emission puts a cell into the chain for the row: it has one, and its kind has a step for it.
bool row_gets_cells(const OPIN_ROW &row);
/// The first row of OPIN_TAB that gets a cell, whose pad gives the place of the chain; -1 when there is none.
int32_t first_row_with_cells();

/// Appends a row for the pin. `core_name` is the pin's top name, with its '-'.
OPIN_ROW &create_an_entry_of_OPIN_TAB(int32_t pin_index, const char *core_name);
