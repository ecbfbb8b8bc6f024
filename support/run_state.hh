// What the whole run knows of itself: the switches of the command line and the names that follow from them.
//
// The command line writes all of these before anything else reads them, apart from what a line says
// otherwise.
#pragma once

#include <cstdint>
#include <span>
#include <string>

/// Places of the switches in JTAG_OPTION.
enum OPTION_INDEX : int32_t {
    OPT_OPATH = 0,
    OPT_PSEUDO_TAP = 1, // set by jtagsyn while it writes the port-only TAP module
    OPT_ADD_TAP = 2,
    OPT_ADD_TAP_ONLY = 3,
    OPT_VHDL = 4,
    OPT_ADD_PAD = 5,
    OPT_GUIDELINE = 6,
    OPT_DEBUG = 7,
    OPT_UNUSED = 8,
    OPT_DF_SPEED = 9,
    OPT_EXTERNAL_IDCODE = 10,
    OPT_SYNCH = 11,
    OPT_NO_EXPAND = 12,
    OPT_ADD_BCM = 13,
    OPT_NO_PAD = 14,
    OPT_DONT_SHARE_CONTROL = 15,
    OPTION_COUNT = 16
};

/// What the line of selected options shows of a switch. The line is printed when one that asks for it is set.
enum SWITCH_LINE { HIDDEN, SHOWN, ASKS_FOR_LINE };

/// A switch of the command line, which is read without regard to case.
struct RUN_SWITCH {
    const char *name; ///< without its dash
    OPTION_INDEX index;
    SWITCH_LINE line;
};
/// All of them, in the order of the line. -opath takes a directory.
extern const std::span<const RUN_SWITCH> RUN_SWITCHES;
/// The switch of that name, without its dash; null when there is none.
const RUN_SWITCH *find_switch(const char *name);

extern int32_t JTAG_OPTION[OPTION_COUNT]; ///< one flag per switch
extern const char *TOP_MODULE;            ///< design name, without directory and without `.sdb`
extern const char *PATH;                  ///< directory of the design argument with its '/', or empty
extern const char *OPATH;                 ///< directory of output files; "." by default
extern const char *RIMWEAVE_OPATH;        ///< directory of edit command files: "./rimweave_lib"
extern const char *JTAG_BSC_FILE;         ///< found .bsc file or null; the guide may set it too
extern const char *JTAG_LIB_FILE;         ///< found .lib file or null; the guide may set it too
extern const char *MODULE_SDB;            ///< found <design>.sdb or null; set when the inputs are checked
extern const char *MODULE_C_SDB;          ///< found <design>.c.sdb or null; set when the inputs are checked

/// Looks up a file of one of the design's modules or cells: in the folder that the design was given with,
/// below each directory of the search list, then on the list itself. The name as found, or null.
const char *find_design_file(const std::string &file);

/// True when the switch was given.
inline bool option(OPTION_INDEX index) {
    return JTAG_OPTION[index] != 0;
}
