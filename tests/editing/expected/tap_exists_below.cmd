== B_bs
edit B_bs
path ./rimweave_lib 
disconnect tap{BC_LAST}
add TMS input
connect tap{TMS} TMS
add TCK input
connect tap{TCK} TCK
add shiftDR output
connect tap{shiftDR} shiftDR
add clockDR output
connect tap{clockDR} clockDR
add updateDR output
connect tap{updateDR} updateDR
add mode1 output
connect tap{mode1} mode1
add BC_FIRST output
connect tap{BC_FIRST} BC_FIRST
add BC_LAST input
connect tap{BC_LAST} BC_LAST
save
quit
== A_bs
edit A_bs
path ./rimweave_lib 
replace b B_bs
add TMS input
connect b{TMS} TMS
add TCK input
connect b{TCK} TCK
add shiftDR output
connect b{shiftDR} shiftDR
add clockDR output
connect b{clockDR} clockDR
add updateDR output
connect b{updateDR} updateDR
add mode1 output
connect b{mode1} mode1
add BC_FIRST output
connect b{BC_FIRST} BC_FIRST
add BC_LAST input
connect b{BC_LAST} BC_LAST
save
quit
== pads_bs
edit pads_bs
add vmr_tap_tms output
add vmr_tap_tck output
add shiftDR input
add clockDR input
add updateDR input
add mode1 input
add chain_in input
add chain_out output
connect pm{C} vmr_tap_tms
connect pc{C} vmr_tap_tck
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
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
replace top_a A_bs
replace p pads_bs
connect p{vmr_tap_tms} top_a{TMS}
connect p{vmr_tap_tck} top_a{TCK}
connect p{shiftDR} top_a{shiftDR}
connect p{clockDR} top_a{clockDR}
connect p{updateDR} top_a{updateDR}
connect p{mode1} top_a{mode1}
connect p{chain_in} top_a{BC_FIRST}
connect p{chain_out} top_a{BC_LAST}
save
quit
