// The scripts that synthesize and time the TAP with outside tools.
#include "rtl/tap_rtl.hh"

#include "planning/tap_state.hh"
#include "rtl/templates.hh"
#include "support/console.hh"
#include "support/run_state.hh"

// clang-format off

const SCRIPT_TEMPLATE SCRIPT_TEMPLATES[] = {
{".ac.tcl", {"V", "", R"(
      |
      |# FILE : Velmora TAP Synthesis Script file for ac_shell
      |# NAME : <NAME>.ac.tcl
      |# TOOL : RIMWEAVE V2.8.9
      |# TIME : <DATE>
      |
      |
      |#read_alf user_lib.alf
      |
    v |read_verilog <NAME>.v 
    V |read_vhdl <NAME>.vhd 
      |
      |do_build_generic 
      |
      |set_current_module <TAP_MODULE>
      |
      |set_top_timing_module <TAP_MODULE>
      |
      |create_clock <TCK> -period 40.0 -waveform {0 20}
      |
      |do_optimize -effort high -reclaim_maximum_area
      |
      |report_area -hierarchical
      |
      |report_timing
      |
    v |write_verilog -hierarchical <NAME>_gate.v
    V |write_vhdl -hierarchical <NAME>_gate.vhd
      |
      |quit
)"}},

{".dc.scr", {"V", "", R"(
      |
      |/*
      |  FILE : Velmora TAP Synthesis Script file for dc_shell
      |  NAME : <NAME>.dc.scr
      |  TOOL : RIMWEAVE V2.8.9
      |  TIME :  <DATE>
      |
      |
      |*/
      |
      |/* Loading Library & Designs    */
      |/*
      |link_library = {user_lib.db}
      |target_library = {user_lib.db}
      |symbol_library = {generic.sdb}
      |*/
      |
    v |analyze -format verilog <NAME>.v 
    V |analyze -format vhdl  <NAME>.vhd 
      |
      |elaborate <TAP_MODULE>
      |
      |current_design <TAP_MODULE>
      |
      |link
      |
      |uniquify
      |
      |check_design
      |
      |create_clock -period 40.0 -waveform {0 20} <TCK>
      |
      |compile
      |
      |report_area
      |
      |report_timing
      |
    v |write -f  verilog -h -o <NAME>_gate.v
    V |write -f vhdl -h -o <NAME>_gate.vhd
      |
      |quit
)"}},

{".pt.tcl", {"V", "", R"(
      |# FILE : Velmora TAP Synthesis Script file for pt_shell
      |# NAME : <NAME>.pt.tcl
      |# TOOL : RIMWEAVE V2.8.9
      |# TIME : <DATE>
      |
      |
      |# Loading Library
      |# set link_path [list {*} user_li.db] 
      |
    v |read_verilog <NAME>.v 
    V |read_vhdl <NAME>.vhd 
      |
      |current_design <TAP_MODULE>
      |
      |link_design
      |
      |create_clock <TCK> -period 40.0 -waveform {0 20}
      |
      |update_timing
      |
      |check_timing
      |
      |report_constraint -all_violators
      |
      |report_timing -to [all_registers -data_pins]
      |
      |report_timing -to [all_outputs]
      |
)"}}};

// clang-format on

std::vector<SYNTHESIS_SCRIPT> bs_write_synthesize_script(const std::string &design) {
    TEMPLATE_VALUES values;
    values.letters = option(OPT_VHDL) ? "V" : "";
    values.names = {{"NAME", design},
                    {"TAP_MODULE", TAP_MODULE_NAME},
                    {"TCK", TAP_PORT[PORT_TCK].tap_pin},
                    {"DATE", get_time_string()}};
    std::vector<SYNTHESIS_SCRIPT> scripts;
    for (const SCRIPT_TEMPLATE &one : SCRIPT_TEMPLATES)
        scripts.push_back({one.extension, expand_template(one.script.text, values)});
    return scripts;
}
