== pads_bs
edit pads_bs
add vmr_tap_tms output
add shiftDR input
add clockDR input
add updateDR input
add mode1 input
add chain_in input
add chain_out output
connect pm{C} vmr_tap_tms
add BCELL0 BC_IN
disconnect pa{C}
connect BCELL0{DO} a_c
connect BCELL0{DI} pa{C}
add BCELL1 BC_OUT
disconnect py{I}
connect BCELL1{DO} py{I}
connect BCELL1{DI} y_i
add BCELL2 BC_BI
disconnect pb{I}
connect BCELL2{DI} b_o
connect BCELL2{DO} pb{I}
disconnect pb{C}
connect BCELL2{SYS} b_c
connect BCELL2{SP} pb{C}
add BCELL3 BC_CTL
disconnect pb{OEN}
connect BCELL3{DI} b_en
connect BCELL3{DO} pb{OEN}
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
connect BCELL1{SI} BCELL2{SO}
connect BCELL2{CK} clockDR
connect BCELL2{SE} shiftDR
connect BCELL2{UP} updateDR
connect BCELL2{MD} mode1
connect BCELL2{SI} BCELL3{SO}
connect BCELL3{CK} clockDR
connect BCELL3{SE} shiftDR
connect BCELL3{UP} updateDR
connect BCELL3{MD} mode1
connect BCELL3{SI} chain_in
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
disconnect TAP{BC_LAST}
replace p pads_bs
connect p{tdi_c} TAP{TDI}
connect p{vmr_tap_tms} TAP{TMS}
connect p{tck_c} TAP{TCK}
connect p{tdo_c} TAP{TDO}
connect p{shiftDR} TAP{shiftDR}
connect p{clockDR} TAP{clockDR}
connect p{updateDR} TAP{updateDR}
connect p{mode1} TAP{mode1}
connect p{chain_in} TAP{BC_FIRST}
connect p{chain_out} TAP{BC_LAST}
save
quit
