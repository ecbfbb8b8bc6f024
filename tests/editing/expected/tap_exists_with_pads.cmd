== pads_bs
edit pads_bs
disconnect tap{BC_LAST}
connect tap{TCK} pc{C}
add BCELL0 BC_IN
disconnect pa{C}
connect BCELL0{DO} a_c
connect BCELL0{DI} pa{C}
add BCELL1 BC_OUT
disconnect py{I}
connect BCELL1{DO} py{I}
connect BCELL1{DI} y_i
connect BCELL0{SO} tap{BC_LAST}
connect BCELL0{CK} tap{clockDR}
connect BCELL0{SE} tap{shiftDR}
connect BCELL0{UP} tap{updateDR}
connect BCELL0{MD} tap{mode1}
connect BCELL0{SI} BCELL1{SO}
connect BCELL1{CK} tap{clockDR}
connect BCELL1{SE} tap{shiftDR}
connect BCELL1{UP} tap{updateDR}
connect BCELL1{MD} tap{mode1}
connect BCELL1{SI} tap{BC_FIRST}
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
replace p pads_bs
save
quit
