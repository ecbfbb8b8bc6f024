// The description tables, empty until a reader fills them.
#include "description/tables.hh"

#include "description/hash_tables.hh"
#include "description/reader.hh"

BUCKET_TAB<TAP_CELL> TAP_CELL_HASH_TAB = nullptr;
BUCKET_TAB<SCAN_CELL> SCAN_CELL_HASH_TAB = nullptr;
BUCKET_TAB<BUFFER_CELL> BUFFER_HASH_TAB = nullptr;
BUCKET_TAB<SKIP_SIGNAL> SKIP_SIGNAL_HASH_TAB = nullptr;
BUCKET_TAB<const char> TRANS_BUF_HASH_TAB = nullptr;

TAP_CELL **TAP_CELL_TAB = nullptr;
SCAN_CELL **SCAN_CELL_TAB = nullptr;
BUFFER_CELL **BUFFER_TAB = nullptr;
SKIP_SIGNAL **SKIP_SIGNAL_TAB = nullptr;
const char **TRANS_BUF_TAB = nullptr;
PIN_ENTRY **PIN_TABLE = nullptr;
const char **WILD_CARD_BUF_TAB = nullptr;

#define DEFINE_ROLE(name) const char *name = nullptr;
FOR_EACH_CELL_ROLE(DEFINE_ROLE)
#undef DEFINE_ROLE

const char *GLOBAL_TDI = nullptr;
const char *GLOBAL_TDO = nullptr;
const char *GLOBAL_TMS = nullptr;
const char *GLOBAL_TCK = nullptr;
const char *GLOBAL_TRST = nullptr;
const char *INPUT_BUFFER = nullptr;
const char *OUTPUT_BUFFER = nullptr;
const char *INOUT_BUFFER = nullptr;
const char *INVERTER = nullptr;
const char *TAP_MODULE_NAME = nullptr;
const char *TAP_INSTANCE_NAME = nullptr;
const char *INST_DISABLE = nullptr;
const char *INST_GUARD = nullptr;
const char *IDCODE_REG = nullptr;

INSTRUCTION *INSTRUCTIONS = nullptr;
const char **INST_CAPTURE = nullptr;
const char **INST_PRIVATE = nullptr;
const char **USERCODE_REG = nullptr;

const char *PIN_FILE = nullptr;
const char *PACKAGE_TYPE = nullptr;
int32_t PACKAGE_PIN_NUMBER = 0;
const char **ALLOWED_MULTIPLE_LIST = nullptr;
int32_t BS_PIN_COUNT = 0;

PACKAGE_ENTRY *PACKAGE_TABLE = nullptr;
CONNECT_ENTRY *CONNECT_TABLE = nullptr;
const char **UNBOUNDED_PIN_TAB = nullptr;
MBIST_ENTRY *BL_MBIST_TAB = nullptr;
LBIST_ENTRY *BL_LBIST_TAB = nullptr;

int32_t GLOBAL_EXIT = 0;

namespace {

template <class T> void empty_table(T *&table) {
    DYNA_free(&table);
    table = DYNA_init<T>();
}

template <class T> void empty_hash(BUCKET_TAB<T> &table) {
    for (T **bucket : rows(table))
        DYNA_free(&bucket);
    empty_table(table);
}

// The tables of an instruction or a BIST block belong to the rows of a table that is about to go.
void free_row_tables() {
    for (INSTRUCTION &row : rows(INSTRUCTIONS))
        free_instruction(row);
    for (MBIST_ENTRY &row : rows(BL_MBIST_TAB))
        DYNA_free(&row.ctrl_order);
    for (LBIST_ENTRY &row : rows(BL_LBIST_TAB)) {
        DYNA_free(&row.cnt_files);
        DYNA_free(&row.diag_instructions);
        DYNA_free(&row.diag_cnt_files);
        DYNA_free(&row.tests);
        DYNA_free(&row.ctrl_order);
    }
}

} // namespace

void free_instruction(INSTRUCTION &row) {
    DYNA_free(&row.patterns);
    DYNA_free(&row.enable_pins);
    DYNA_free(&row.enable_values);
    DYNA_free(&row.gate_signals);
    DYNA_free(&row.gate_kinds);
}

void bsdft_init() {
    free_row_tables();
    empty_hash(TAP_CELL_HASH_TAB);
    empty_hash(SCAN_CELL_HASH_TAB);
    empty_hash(BUFFER_HASH_TAB);
    empty_hash(SKIP_SIGNAL_HASH_TAB);
    empty_hash(TRANS_BUF_HASH_TAB);
    empty_table(TAP_CELL_TAB);
    empty_table(SCAN_CELL_TAB);
    empty_table(BUFFER_TAB);
    empty_table(SKIP_SIGNAL_TAB);
    empty_table(PIN_TABLE);
    empty_table(INSTRUCTIONS);
    for (const char ***list : {&TRANS_BUF_TAB, &WILD_CARD_BUF_TAB, &INST_CAPTURE, &INST_PRIVATE,
                               &USERCODE_REG, &UNBOUNDED_PIN_TAB, &ALLOWED_MULTIPLE_LIST})
        empty_table(*list);
    DYNA_free(&BL_MBIST_TAB);
    BL_MBIST_TAB = nullptr;
    DYNA_free(&BL_LBIST_TAB);
    BL_LBIST_TAB = nullptr;
    for (const char **text :
         {&INST_DISABLE, &INST_GUARD, &IDCODE_REG, &GLOBAL_TDI, &GLOBAL_TDO, &GLOBAL_TMS, &GLOBAL_TCK,
          &GLOBAL_TRST, &INPUT_BUFFER, &OUTPUT_BUFFER, &INOUT_BUFFER, &INVERTER, &PIN_FILE, &PACKAGE_TYPE})
        *text = nullptr;
    PACKAGE_PIN_NUMBER = 0;
    BS_PIN_COUNT = 0;
    PACKAGE_TABLE = nullptr;
    CONNECT_TABLE = nullptr;
    GLOBAL_EXIT = 0;
}
