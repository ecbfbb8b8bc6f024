edit chip_jtag
path ./rimweave_lib 
add TAP tapm
replace p pads_bs
connect p{i} TAP{TDI}
connect p{vmr_tap_tms} TAP{TMS}
connect p{vmr_tap_tck} TAP{TCK}
connect p{t} TAP{TDO}
connect p{TDO_EN} TAP{TDO_EN}
connect p{vmr_tap_trst} TAP{TRST}
connect p{shiftDR} TAP{shiftDR}
connect p{clockDR} TAP{clockDR}
connect p{updateDR} TAP{updateDR}
connect p{mode1} TAP{mode1}
connect p{chain_in} TAP{BC_FIRST}
connect p{chain_out} TAP{BC_LAST}
save
quit
edit pads_bs
add vmr_tap_tms output
add vmr_tap_tck output
add vmr_tap_trst output
add shiftDR input
add clockDR input
add updateDR input
add mode1 input
add chain_in input
add chain_out output
add TDO_EN input
connect pm{C} vmr_tap_tms
connect pk{C} vmr_tap_tck
connect pr{C} vmr_tap_trst
disconnect po{OEN}
connect po{OEN} TDO_EN
add BCELL0 BC_IN
disconnect pa{C}
connect BCELL0{DO} c
connect BCELL0{DI} pa{C}
connect BCELL0{SO} chain_out
connect BCELL0{CK} clockDR
connect BCELL0{SE} shiftDR
connect BCELL0{UP} updateDR
connect BCELL0{MD} mode1
connect BCELL0{SI} chain_in
save
quit
