#include "support/run_state.hh"

#include "support/fnm.hh"
#include "support/text.hh"

int32_t JTAG_OPTION[OPTION_COUNT] = {};
const char *TOP_MODULE = "";
const char *PATH = "";
const char *OPATH = ".";
const char *RIMWEAVE_OPATH = "./rimweave_lib";
const char *JTAG_BSC_FILE = nullptr;
const char *JTAG_LIB_FILE = nullptr;
const char *MODULE_SDB = nullptr;
const char *MODULE_C_SDB = nullptr;

namespace {

constexpr RUN_SWITCH SWITCHES[] = {
    {"debug", OPT_DEBUG, HIDDEN},
    {"guideline", OPT_GUIDELINE, HIDDEN},
    {"add_tap", OPT_ADD_TAP, ASKS_FOR_LINE},
    {"add_tap_only", OPT_ADD_TAP_ONLY, ASKS_FOR_LINE},
    {"add_bcm", OPT_ADD_BCM, ASKS_FOR_LINE},
    {"vhdl", OPT_VHDL, ASKS_FOR_LINE},
    {"add_pad", OPT_ADD_PAD, ASKS_FOR_LINE},
    {"opath", OPT_OPATH, ASKS_FOR_LINE},
    {"df_speed", OPT_DF_SPEED, ASKS_FOR_LINE},
    {"external_idcode", OPT_EXTERNAL_IDCODE, SHOWN},
    {"synch", OPT_SYNCH, SHOWN},
    {"no_expand", OPT_NO_EXPAND, SHOWN},
    {"no_pad", OPT_NO_PAD, SHOWN},
    {"dont_share_control", OPT_DONT_SHARE_CONTROL, SHOWN},
};

} // namespace

const std::span<const RUN_SWITCH> RUN_SWITCHES = SWITCHES;

const RUN_SWITCH *find_switch(const char *name) {
    for (const RUN_SWITCH &known : SWITCHES)
        if (same_text_no_case(name, known.name))
            return &known;
    return nullptr;
}

const char *find_design_file(const std::string &file) {
    const char *found = *PATH == '\0' ? nullptr : FNM_find_input(PATH + file);
    return found != nullptr ? found : FNM_find_input(file);
}
