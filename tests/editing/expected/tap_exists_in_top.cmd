== chip_jtag
edit chip_jtag
path ./rimweave_lib 
disconnect TAP{BC_LAST}
add BCELL0 BC_IN
disconnect pa{C}
connect BCELL0{DO} u1{D}
connect BCELL0{DI} pa{C}
connect BCELL0{SO} TAP{BC_LAST}
connect BCELL0{CK} TAP{clockDR}
connect BCELL0{SE} TAP{shiftDR}
connect BCELL0{UP} TAP{updateDR}
connect BCELL0{MD} TAP{mode1}
connect BCELL0{SI} TAP{BC_FIRST}
save
quit
