@ 37-45
add tap tapm
add TDI input
@ 47-55
connect tap{TDI} TDI
connect p{vmr_tap_tms} tap{TMS}
connect p{tck_c} tap{TCK}
disconnect p{tdo_c}
connect p{tdo_c} tap{TDO}
connect p{TDO_EN} tap{TDO_EN}
connect p{shiftDR} tap{shiftDR}
connect p{clockDR} tap{clockDR}
connect p{updateDR} tap{updateDR}
connect p{mode1} tap{mode1}
connect p{chain_in} tap{BC_FIRST}
connect p{chain_out} tap{BC_LAST}
@ 61-61
@ 63-73
connect A{TDI} pi{C}
