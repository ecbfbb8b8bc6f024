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
== pads_bs
edit pads_bs
add vmr_tap_tms output
add shiftDR input
add clockDR input
add updateDR input
add mode1 input
add chain_in input
add chain_out output
add TDO_EN input
connect pm{C} vmr_tap_tms
disconnect po{OEN}
connect po{OEN} TDO_EN
add BCELL0 BC_IN
disconnect pa{C}
connect BCELL0{DO} a_c
connect BCELL0{DI} pa{C}
add BCELL1 BC_OUT
disconnect py{I}
connect BCELL1{DO} py{I}
connect BCELL1{DI} y_i
connect BCELL0{SO} chain_out
connect BCELL0{CK} clockDR
connect BCELL0{SE} shiftDR
connect BCELL0{UP} updateDR
connect BCELL0{MD} mode1
connect BCELL0{SI} BCELL1{SO}
connect BCELL1{CK} clockDR
connect BCELL1{SE} shiftDR
connect BCELL1{UP} updateDR
connect BCELL1{MD} mode1
connect BCELL1{SI} chain_in
save
quit
== AA_bs
edit AA_bs
path ./rimweave_lib 
replace B BB_bs
add TDI input
replace p pads_bs
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
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
replace A AA_bs
connect A{TDI} pi{C}
save
quit
