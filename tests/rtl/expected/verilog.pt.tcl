# FILE : Velmora TAP Synthesis Script file for pt_shell
# NAME : chip_TAP.pt.tcl
# TOOL : RIMWEAVE V2.8.9
# TIME : <DATE>



# Loading Library
# set link_path [list {*} user_li.db] 

read_verilog chip_TAP.v 

current_design chip_tap

link_design

create_clock TCK -period 40.0 -waveform {0 20}

update_timing

check_timing

report_constraint -all_violators

report_timing -to [all_registers -data_pins]

report_timing -to [all_outputs]

