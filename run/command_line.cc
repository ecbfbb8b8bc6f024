#include "run/command_line.hh"

#include "planning/input_files.hh"
#include "run/banner.hh"
#include "run/working_folder.hh"
#include "support/console.hh"
#include "support/program.hh"
#include "support/run_state.hh"
#include "support/text.hh"

#include <cstdlib>
#include <cstring>

namespace {

int32_t error_num = 0; ///< diagnostics so far
int32_t warning_num = 0;

/// Longest design argument: with a search directory and its extension it still fits the work area of a name.
constexpr size_t longest_design = 1000;

/// Switches that exclude each other, in the words of their message.
struct conflict_entry {
    OPTION_INDEX one, other;
    const char *one_name, *other_name;
};

constexpr conflict_entry conflicts[] = {
    {OPT_ADD_TAP, OPT_ADD_TAP_ONLY, "-add_tap", "-add_tap_only"},
    {OPT_ADD_BCM, OPT_ADD_TAP_ONLY, "-add_bcm", "-add_tap_only"}, // one reads the design, the other does not
};

constexpr const char *help_text = R"(
Please use: `rimweave <bsm_name> [Options]' for boundary scan circuits synthesis.
Options:
  -opath <dir> : output files to <dir> directory.
  -help        : printout this help message.
  -add_tap     : add tap controller and boundary scan cells.
  -add_tap_only: only add tap controller.
  -vhdl        : add RTL TAP module in VHDL format.
                 The option should be issued with -add_tap.
  -add_pad     : add pad automatically if necessary.
  -guideline   : interactive environment to generate .bsc, .pin
                 and .lib files.

  -df_speed    : Do slow to fast clock tree for update_dr, etc.
  -external_idcode : add a port for 32 bits IDCODE bus in tap controller.
                     And tap controller will not have hard coded IDCODE.
  -synch       : generate synchronous JTAG.
  -no_expand   : does not expand modified netlist.

  -no_pad      : inserting boundary scan cell after port,
                 just for input and 2-state output.

  -dont_share_control : inserting boundary scan cells in every 
                 BIDI output and 3-state output enable ports.
)";

[[noreturn]] void print_help_options() {
    console_printf("%s", help_text);
    std::exit(0);
}

/// The banner stands in front of the first diagnostic of the command line.
void banner_before_first_diagnostic() {
    if (warning_num + error_num == 0)
        top_print_copyright();
}

void take_output_directory(int32_t argc, char **argv, int32_t *index_pointer) {
    ++*index_pointer;
    if (*index_pointer >= argc || argv[*index_pointer][0] == '\0') {
        banner_before_first_diagnostic();
        console_printf("-opath: directory is missing. Please use -? for help.\n\n");
        error_num++;
        return;
    }
    std::string_view directory = argv[*index_pointer];
    while (directory.size() > 1 && directory.ends_with('/'))
        directory.remove_suffix(1);
    OPATH = keep_text(directory);
}

void scan_option(int32_t argc, char **argv, int32_t *index_pointer) {
    const char *name = argv[*index_pointer] + 1;
    if (name[0] == '\0') {
        banner_before_first_diagnostic();
        console_printf("WARNING: empty option -???, ignored.\n\n");
        warning_num++;
        return;
    }
    if (same_text_no_case(name, "help") || same_text(name, "?"))
        print_help_options();
    if (const RUN_SWITCH *known = find_switch(name); known != nullptr) {
        JTAG_OPTION[known->index] = 1;
        if (known->index == OPT_OPATH)
            take_output_directory(argc, argv, index_pointer);
        return;
    }
    banner_before_first_diagnostic();
    console_printf("-%s: unkown option. Please use -? for help.\n\n", name);
    error_num++;
}

/// Takes the design argument apart into TOP_MODULE and PATH.
void take_design_name(const char *argument) {
    if (std::strlen(argument) > longest_design) {
        banner_before_first_diagnostic();
        console_fail("\nERROR: the design name is longer than %zu characters.\n\n", longest_design);
    }
    take_design(argument);
    if (TOP_MODULE[0] == '\0') {
        banner_before_first_diagnostic();
        console_fail("\nERROR: '%s' does not name a design.\n\n", argument);
    }
}

/// Comes before the report is opened, which a run that is under way here may be writing.
void open_working_folder() {
    RIMWEAVE_OPATH = "./rimweave_lib";
    std::string fault = take_working_folder();
    if (fault.empty())
        return;
    banner_before_first_diagnostic();
    console_fail("%s", fault.c_str());
}

void open_report() {
    std::string name = format_text("%s.rwv.rpt", TOP_MODULE);
    if (option(OPT_OPATH))
        name = format_text("%s/%s", OPATH, name.c_str());
    else
        OPATH = ".";
    fd = open_stream(name.c_str(), "we");
    if (fd != nullptr)
        return;
    banner_before_first_diagnostic();
    console_printf("\nWARNING: can't create report file '%s'.\n\n", name.c_str());
    warning_num++;
}

void print_selected_options() {
    bool wanted = false;
    std::string line = "Selected option: ";
    for (const RUN_SWITCH &entry : RUN_SWITCHES) {
        if (!option(entry.index) || entry.line == HIDDEN)
            continue;
        wanted = wanted || entry.line == ASKS_FOR_LINE;
        line += std::string(" -") + entry.name;
        if (entry.index == OPT_OPATH)
            line += std::string(" ") + OPATH;
    }
    if (wanted)
        vmr_printf("%s.\n\n", line.c_str());
}

} // namespace

void jtag_parse_cmd_line(int32_t argc, char **argv) {
    const char *design = nullptr;
    int32_t designs = 0;
    for (int32_t i = 1; i < argc; i++) {
        if (argv[i][0] == '-') {
            scan_option(argc, argv, &i);
        } else {
            design = argv[i];
            designs++;
        }
    }
    if (designs == 0) {
        banner_before_first_diagnostic();
        print_help_options();
    }
    if (designs > 1) {
        banner_before_first_diagnostic();
        console_fail("\nERROR: too many arguments.\n"
                     "       rimweave can handle only one circuit at once.\n\n");
    }
    if (error_num != 0)
        end_run();
    take_design_name(design);
    open_working_folder();
    open_report();
    top_direct_output(TOP_MODULE);
    print_selected_options();
    for (const conflict_entry &pair : conflicts)
        if (option(pair.one) && option(pair.other))
            vmr_fail("ERROR:  option %s conflicts with %s.\n\n", pair.one_name, pair.other_name);
}
