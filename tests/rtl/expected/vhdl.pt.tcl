@ 11-11
read_vhdl chip_TAP.vhd 
