#include "support/run_state.hh"

#include "support/fnm.hh"

int32_t JTAG_OPTION[OPTION_COUNT] = {};
const char *TOP_MODULE = "";
const char *PATH = "";
const char *OPATH = ".";
const char *RIMWEAVE_OPATH = "./rimweave_lib";
const char *JTAG_BSC_FILE = nullptr;
const char *JTAG_LIB_FILE = nullptr;
const char *MODULE_SDB = nullptr;
const char *MODULE_C_SDB = nullptr;

const char *find_design_file(const std::string &file) {
    const char *found = *PATH == '\0' ? nullptr : FNM_find_input(PATH + file);
    return found != nullptr ? found : FNM_find_input(file);
}
