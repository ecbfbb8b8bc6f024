#include "rtl/tap_build.hh"

#include "rtl/tap_checks.hh"
#include "rtl/tap_rtl.hh"

#include "support/console.hh"
#include "support/run_state.hh"
#include "support/shell.hh"
#include "support/whole_file.hh"

#include <filesystem>
#include <string>

namespace {

/// `name` in the folder of the output files.
std::string output_file(const std::string &name) {
    return option(OPT_OPATH) ? std::string(OPATH) + "/" + name : name;
}

/// The port-only module, so that the TAP is a cell of known ports before there is any logic.
void write_pseudo_module(const std::string &base) {
    std::string file = base + ".v";
    JTAG_OPTION[OPT_PSEUDO_TAP] = 1;
    std::string text = get_TAP_in_RTL();
    JTAG_OPTION[OPT_PSEUDO_TAP] = 0;
    if (!write_text_file(file, text))
        vmr_fail("ERROR: can't open file '%s' to create a pseudo TAP module.\n\n", file.c_str());

    std::error_code missing;
    bool own_library = std::filesystem::is_directory("./lib", missing);
    if (run_shell("kalmverin -lib " + shell_word(file) + (own_library ? " -opath lib" : "") +
                  " > RIMWEAVE.log") != 0)
        vmr_fail("    Please check the \"RIMWEAVE.log\" file.\n");
    run_shell("rm -f " + shell_word(base + ".kalmverin.log"));
    run_shell("rm -f RIMWEAVE.log");
}

void write_rtl(const std::string &design, const std::vector<RTL_MODULE> &modules) {
    std::string file = output_file(design + (option(OPT_VHDL) ? ".vhd" : ".v"));
    if (!write_text_file(file, rtl_text(modules)))
        vmr_fail("ERROR: can't open file '%s'.\n\n", file.c_str());
    vmr_printf(" - Synthesizing RTL TAP module (%s) ...\n", TAP_MODULE_NAME);
    warn_about_rtl();
    vmr_printf("    .TAP module (%s) was written into file '%s'.\n\n", TAP_MODULE_NAME, file.c_str());
}

void write_scripts(const std::string &design) {
    for (const SYNTHESIS_SCRIPT &script : bs_write_synthesize_script(design)) {
        std::string file = output_file(design + script.extension);
        if (!write_text_file(file, script.text))
            vmr_fail("ERROR: can't open file '%s'.\n\n", file.c_str());
    }
}

} // namespace

void jtagsyn() {
    std::vector<RTL_MODULE> modules = refuse_broken_rtl();
    std::string design = std::string(TOP_MODULE) + "_TAP";
    write_pseudo_module(design + "_empty");
    write_rtl(design, modules);
    write_scripts(design);
}
