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
    {"debug", OPT_DEBUG, false},
    {"add_tap", OPT_ADD_TAP, false},
    {"add_tap_only", OPT_ADD_TAP_ONLY, false},
    {"add_bcm", OPT_ADD_BCM, false},
    {"add_pad", OPT_ADD_PAD, false},
    {"dont_share_control", OPT_DONT_SHARE_CONTROL, false},
    {"vhdl", OPT_VHDL, false},
    {"guideline", OPT_GUIDELINE, false},
    {"df_speed", OPT_DF_SPEED, false},
    {"external_idcode", OPT_EXTERNAL_IDCODE, false},
    {"synch", OPT_SYNCH, false},
    {"no_expand", OPT_NO_EXPAND, false},
    {"no_pad", OPT_NO_PAD, false},
    {"opath", OPT_OPATH, true},
};

} // namespace

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
