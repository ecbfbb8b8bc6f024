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
add vmr_tap_tms output
add vmr_tap_tck output
add shiftDR input
add clockDR input
add updateDR input
add mode1 input
add chain_in input
add chain_out output
add TDO_EN input
replace p pads_bs
 connect p{vmr_tap_tms} vmr_tap_tms
connect p{tck_c} vmr_tap_tck
 connect p{TDO_EN} TDO_EN
connect p{shiftDR} shiftDR
connect p{clockDR} clockDR
connect p{updateDR} updateDR
connect p{mode1} mode1
connect p{chain_in} chain_in
connect p{chain_out} chain_out
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
add TAP tapm
replace A AA_bs
connect pi{C} TAP{TDI}
connect A{vmr_tap_tms} TAP{TMS}
connect A{vmr_tap_tck} TAP{TCK}
connect A{tdo_c2} TAP{TDO}
connect A{TDO_EN} TAP{TDO_EN}
connect A{shiftDR} TAP{shiftDR}
connect A{clockDR} TAP{clockDR}
connect A{updateDR} TAP{updateDR}
connect A{mode1} TAP{mode1}
connect A{chain_in} TAP{BC_FIRST}
connect A{chain_out} TAP{BC_LAST}
save
quit
