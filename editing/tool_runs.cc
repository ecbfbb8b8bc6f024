#include "editing/tool_runs.hh"

#include "editing/module_copies.hh"
#include "planning/port_table.hh"
#include "planning/tap_state.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/shell.hh"
#include "support/text.hh"
#include "support/whole_file.hh"

#include <fstream>
#include <string_view>

namespace {

std::string in_library(const std::string &name) {
    return std::string(RIMWEAVE_OPATH) + "/" + name;
}

/// Runs kalmedit on DIR/<module>.cmd. `blanks` part "file" from the name.
void run_editor(const std::string &module, const char *blanks = "  ") {
    vmr_printf("    .Executing command file%s%s.cmd ...\n", blanks, in_library(module).c_str());
    if (run_shell("kalmedit -nologo -b " + shell_word(in_library(module))) != 0)
        end_run();
}

void move_to_library(const std::string &module) {
    if (run_shell("mv " + shell_word(module + ".sdb") + " " + shell_word(RIMWEAVE_OPATH)) != 0)
        end_run();
}

/// Copies the side file `<module><ext>` of a module, where there is one, under the edited module's name.
void copy_side_file(const char *module, const std::string &edited, const char *ext) {
    const char *found = find_design_file(std::string(module) + ext);
    if (found != nullptr && copy_file(found, in_library(edited + ext)) != 0)
        end_run();
}

void collect_module(const char *module, const char *suffix) {
    std::string edited = std::string(module) + suffix;
    move_to_library(edited);
    copy_side_file(module, edited, ".asn");
    if (option(OPT_VHDL))
        copy_side_file(module, edited, ".inf");
}

std::string netlist_command(const char *extension) {
    std::string netlist = shell_word(format_text("%s/%s_jtag.%s", OPATH, TOP_MODULE, extension));
    std::string design = format_text("%s_jtag.sdb", TOP_MODULE);
    if (option(OPT_VHDL))
        return "kalmlist -vhdl -hierarchy -o " + netlist + " " + shell_word(design) + " -add_path " +
               shell_word(RIMWEAVE_OPATH) + " > bs_kalmlist.log";
    return "kalmlist -verilog -hierarchy -o " + netlist + " " + shell_word("rimweave_lib/" + design) +
           " > bs_kalmlist.log";
}

/// `<design>.f` beside the netlist: the files that the run wrote, for a simulator's -f. The TAP comes first,
/// since a netlist may set `default_nettype none, which would hold for all that is read behind it. A file of
/// that name that the user has made stays.
void write_file_list(const char *extension) {
    constexpr std::string_view head = "// What rimweave has written, in the order to compile it.\n";
    std::string design = format_text("%s/%s", OPATH, TOP_MODULE);
    std::string first(head.size(), '\0');
    std::ifstream old(design + ".f");
    if (old.is_open() && (!old.read(first.data(), head.size()) || first != head)) {
        vmr_printf("WARNING: file '%s.f' is none that rimweave has written. It stays as it is.\n\n",
                   design.c_str());
        return;
    }
    std::string list(head);
    if (option(OPT_ADD_TAP))
        list += (option(OPT_OPATH) ? design : std::string(TOP_MODULE)) + "_TAP." + extension + "\n";
    list += design + "_jtag." + extension + "\n";
    if (!write_text_file(design + ".f", list))
        vmr_fail("ERROR: can't open file '%s.f'.\n\n", design.c_str());
}

} // namespace

void do_kalmedit() {
    const char **classes = OPIN_TAB[first_row_with_cells()].hier_classes;
    for (const char *module : rows(classes))
        run_editor(std::string(module) + "_bs");
    run_editor(std::string(TOP_MODULE) + "_jtag");
    for (const char *module : rows(classes))
        collect_module(module, "_bs");
    collect_module(TOP_MODULE, "_jtag");
    print_closing_lines();
}

void rwv_hier_do_kalmedit_for_tap_instance(int last) {
    for (int32_t i = DYNA_count(rwv_hier_tap_ctrl_name_tabG) - 2; i >= last; i--) {
        std::string module = std::string(rwv_hier_tap_ctrl_name_tabG[i].module) + "_bs";
        run_editor(module);
        move_to_library(module);
    }
}

void hier_do_kalmedit() {
    for (int32_t index : modules_children_first()) {
        std::string module = edited_module_name(index);
        run_editor(module, " ");
        move_to_library(module);
    }
}

void print_closing_lines() {
    vmr_printf("\n - Synthesis  done!\n\n");
    if (BSO_FILE != nullptr)
        vmr_printf("    .The Boundary-scan Pin List was stored in file '%s'.\n", BSO_FILE);
    BSO_FILE = nullptr;
    vmr_printf("    .Modified sdb files were stored in directory %s.\n\n", RIMWEAVE_OPATH);
    if (!option(OPT_NO_EXPAND))
        bs_get_and_expand_netlist_with_jtag();
}

void bs_get_and_expand_netlist_with_jtag() {
    const char *extension = option(OPT_VHDL) ? "vhd" : "v";
    if (run_shell(netlist_command(extension)) != 0)
        console_fail("    Please check the \"bs_kalmlist.log\" file.\n");
    vmr_printf("    .Modified netlist file was stored in file %s/%s_jtag.%s.\n", OPATH, TOP_MODULE,
               extension);
    run_shell("rm -f bs_kalmlist.log");
    write_file_list(extension);
    vmr_printf("    .Expanding modified netlist ...\n\n");
    std::string design = shell_word(format_text("rimweave_lib/%s_jtag", TOP_MODULE));
    if (run_shell("kalmflat -cellonly -keepempty " + design + " -opath " + shell_word(OPATH) +
                  " > bs_kalmflat.log") != 0)
        console_fail("    Please check the \"bs_kalmflat.log\" file.\n");
    run_shell("rm -f bs_kalmflat.log");
}
