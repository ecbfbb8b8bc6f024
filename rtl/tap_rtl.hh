// The TAP as text.
#pragma once

#include "rtl/decode_terms.hh"

#include <string>
#include <string_view>
#include <vector>

/// One module of the RTL file, with the names of the tables marked (rtl/module_names.hh). The head are the
/// lines of a VHDL unit that stand outside its scope.
struct RTL_MODULE {
    std::string head, text;
};
/// The modules in the order of the file.
std::vector<RTL_MODULE> tap_modules(RTL_LANGUAGE language);

/// True for the name of a module below the TAP.
bool is_name_of_part(std::string_view name, RTL_LANGUAGE language);

/// The modules as the text of a file.
std::string rtl_text(const std::vector<RTL_MODULE> &modules);

/// The port-only Verilog module while OPT_PSEUDO_TAP is set, else the whole RTL file in the language of the
/// run. Its Verilog header also makes rwv_hier_tap_port_tabG.
std::string get_TAP_in_RTL();

/// The three synthesis scripts. `design` is the RTL file's name without directory and extension.
struct SYNTHESIS_SCRIPT {
    const char *extension; ///< behind the design's name: ".ac.tcl"
    std::string text;
};
std::vector<SYNTHESIS_SCRIPT> bs_write_synthesize_script(const std::string &design);
