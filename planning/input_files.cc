#include "planning/input_files.hh"

#include "sdb/sdb.hh"
#include "sdb/symbols.hh"
#include "support/console.hh"
#include "support/fnm.hh"
#include "support/run_state.hh"
#include "support/settings.hh"
#include "support/text.hh"

#include <cstdlib>

namespace {

constexpr const char *default_directories = ".";
constexpr const char *default_subdirectories = "designs:lib:scanforge_lib";

/// Looks up one SDB file of the design; false, with its message, when there is none.
bool find_sdb_file(const char *ending, const char *&found) {
    std::string name = format_text("%s%s%s", PATH, TOP_MODULE, ending);
    found = FNM_find_input(name);
    if (found == nullptr)
        vmr_printf("ERROR: can't find SDB file '%s' in default searching path.\n\n", name.c_str());
    return found != nullptr;
}

} // namespace

const char *set_up_search() {
    CMD_set_path(std::getenv("VELMORA"), default_directories, default_subdirectories);
    const char *first = nullptr;
    const char *directories = std::getenv("VELMORA_DIRS");
    if (directories != nullptr && directories[0] != '\0')
        first = CMD_set_path(directories, nullptr, nullptr);
    RC_load("velmora", nullptr);
    const char *hier_dot = RC_sget("hier_dot*", ".");
    if (hier_dot != nullptr && hier_dot[0] != '\0') {
        sdb_hier_dot = hier_dot[0];
        PREFIX_set_dot(hier_dot[0]);
    }
    return first;
}

void take_design(const char *argument) {
    bool is_sdb = FNM_break(argument, "e") == ".sdb";
    TOP_MODULE = keep_text(FNM_break(argument, is_sdb ? "b" : "be"));
    PATH = keep_text(FNM_break(argument, "p"));
}

void find_description_files() {
    JTAG_BSC_FILE = FNM_find_input(format_text("%s.bsc", TOP_MODULE));
    JTAG_LIB_FILE = FNM_find_input(format_text("%s.lib", TOP_MODULE));
}

void find_input_files(bool with_design) {
    bool complete = JTAG_BSC_FILE != nullptr && JTAG_LIB_FILE != nullptr;
    if (JTAG_BSC_FILE == nullptr)
        vmr_printf("ERROR: can't find BSC file '%s.bsc' in default searching path.\n\n", TOP_MODULE);
    if (JTAG_LIB_FILE == nullptr)
        vmr_printf("ERROR: can't find LIB file '%s.lib' in default searching path.\n\n", TOP_MODULE);
    if (with_design) {
        complete = find_sdb_file(".sdb", MODULE_SDB) && complete;
        complete = find_sdb_file(".c.sdb", MODULE_C_SDB) && complete;
    }
    if (!complete)
        end_run();
}
