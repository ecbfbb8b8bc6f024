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
add tap tapm
add TDI input
replace p pads_bs
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
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
replace A AA_bs
connect A{TDI} pi{C}
save
quit
