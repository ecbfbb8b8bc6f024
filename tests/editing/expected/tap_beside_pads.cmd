@ 1-0
== CC_bs
edit CC_bs
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
@ 61-61
replace C CC_bs
@ 63-73
connect pi{C} C{TDI}
connect A{vmr_tap_tms} C{TMS}
connect A{vmr_tap_tck} C{TCK}
connect A{tdo_c2} C{TDO}
connect A{TDO_EN} C{TDO_EN}
connect A{shiftDR} C{shiftDR}
connect A{clockDR} C{clockDR}
connect A{updateDR} C{updateDR}
connect A{mode1} C{mode1}
connect A{chain_in} C{BC_FIRST}
connect A{chain_out} C{BC_LAST}
