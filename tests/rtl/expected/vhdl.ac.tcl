@ 11-11
read_vhdl chip_TAP.vhd 
@ 27-27
write_vhdl -hierarchical chip_TAP_gate.vhd
