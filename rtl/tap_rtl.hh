// The TAP as text.
#pragma once

#include <string>

/// The port-only Verilog module while OPT_PSEUDO_TAP is set, else the whole RTL file in the language of the
/// run. Its Verilog header also makes rwv_hier_tap_port_tabG.
std::string get_TAP_in_RTL();

/// The three synthesis scripts. `design` is the RTL file's name without directory and extension.
struct SYNTHESIS_SCRIPT {
    const char *extension; ///< behind the design's name: ".ac.tcl"
    std::string text;
};
constexpr int SYNTHESIS_SCRIPTS = 3;
void bs_write_synthesize_script(SYNTHESIS_SCRIPT (&scripts)[SYNTHESIS_SCRIPTS], const std::string &design);
