#include "rtl/tap_rtl.hh"

#include "planning/tap_state.hh"
#include "rtl/templates.hh"
#include "support/console.hh"
#include "support/run_state.hh"
#include "support/template_text.hh"

void bs_write_synthesize_script(SYNTHESIS_SCRIPT (&scripts)[SYNTHESIS_SCRIPTS], const std::string &design) {
    TEMPLATE_VALUES values;
    if (option(OPT_VHDL))
        values.letters = "V";
    values.names = {{"NAME", design},
                    {"TAP_MODULE", TAP_MODULE_NAME},
                    {"TCK", TAP_PORT[PORT_TCK].tap_pin},
                    {"DATE", get_time_string()}};
    scripts[0] = {".ac.tcl", expand_template(AC_SHELL_SCRIPT, values)};
    scripts[1] = {".dc.scr", expand_template(DC_SHELL_SCRIPT, values)};
    scripts[2] = {".pt.tcl", expand_template(PT_SHELL_SCRIPT, values)};
}
