// The scripts that synthesize and time the TAP with outside tools. Letter: V VHDL.
#include "rtl/templates.hh"

const char AC_SHELL_SCRIPT[] = R"(
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
)";

const char DC_SHELL_SCRIPT[] = R"(
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
)";

const char PT_SHELL_SCRIPT[] = R"(
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
)";
