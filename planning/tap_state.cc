#include "planning/tap_state.hh"

TAP_CELL *TAP_CONTR = nullptr;

int32_t BCELL_HAS[SIGNAL_COUNT];
int32_t BCELL_EXTRA = 0;
int32_t TDO_EN_LOW = 0;

const char *TAP_PIN[SIGNAL_COUNT];
const char *TAP_TDO_EN_PIN = nullptr;
const char *TAP_HIZ_PIN = nullptr;
const char **TAP_EXTRA_PIN = nullptr;

const char *HIZ_BUF_NAME = nullptr;
BUFFER_CELL *HIZ_BUF = nullptr;

TAP_FLAG_WORDS TAP_FLAG = NO_TAP_NETS;

STANDARD_PORT_STATE TAP_PORT[STANDARD_PORT_COUNT] = {
    {"tdi", &GLOBAL_TDI, &TAP_CELL::tdi, nullptr, nullptr, -1},
    {"tdo", &GLOBAL_TDO, &TAP_CELL::tdo, nullptr, nullptr, -1},
    {"tms", &GLOBAL_TMS, &TAP_CELL::tms, nullptr, nullptr, -1},
    {"tck", &GLOBAL_TCK, &TAP_CELL::tck, nullptr, nullptr, -1},
    {"trst", &GLOBAL_TRST, &TAP_CELL::trst, nullptr, nullptr, -1},
};

int32_t rwv_hier_tap_ctrlG = 0;
TAP_PATH_ROW *rwv_hier_tap_ctrl_name_tabG = nullptr;
const char **rwv_hier_tap_port_tabG[TAP_PORT_TABLES];
const char *org_tap_instance_nameG = nullptr;
