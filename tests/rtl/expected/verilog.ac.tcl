
# FILE : Velmora TAP Synthesis Script file for ac_shell
# NAME : chip_TAP.ac.tcl
# TOOL : RIMWEAVE V2.8.9
# TIME : <DATE>



#read_alf user_lib.alf

read_verilog chip_TAP.v 

do_build_generic 

set_current_module chip_tap

set_top_timing_module chip_tap

create_clock TCK -period 40.0 -waveform {0 20}

do_optimize -effort high -reclaim_maximum_area

report_area -hierarchical

report_timing

write_verilog -hierarchical chip_TAP_gate.v

quit
