@ 1-0
== BB_bs
edit BB_bs
path ./rimweave_lib 
add tap tapm
add TMS input
connect tap{TMS} TMS
add TDI input
connect tap{TDI} TDI
add TCK input
connect tap{TCK} TCK
add TDO output
connect tap{TDO} TDO
add TDO_EN output
connect tap{TDO_EN} TDO_EN
add BC_LAST input
connect tap{BC_LAST} BC_LAST
add BC_FIRST output
connect tap{BC_FIRST} BC_FIRST
add shiftDR output
connect tap{shiftDR} shiftDR
add clockDR output
connect tap{clockDR} clockDR
add updateDR output
connect tap{updateDR} updateDR
add mode1 output
connect tap{mode1} mode1
save
quit
@ 37-45
path ./rimweave_lib 
replace B BB_bs
add TDI input
@ 47-55
connect B{TDI} TDI
connect p{vmr_tap_tms} B{TMS}
connect p{tck_c} B{TCK}
disconnect p{tdo_c}
connect p{tdo_c} B{TDO}
connect p{TDO_EN} B{TDO_EN}
connect p{shiftDR} B{shiftDR}
connect p{clockDR} B{clockDR}
connect p{updateDR} B{updateDR}
connect p{mode1} B{mode1}
connect p{chain_in} B{BC_FIRST}
connect p{chain_out} B{BC_LAST}
@ 61-61
@ 63-73
connect A{TDI} pi{C}
