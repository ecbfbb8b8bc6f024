== chip_jtag
edit chip_jtag
path ./rimweave_lib 
add TAP tapm
connect tdi TAP{TDI}
add tms input
connect tms TAP{TMS}
add tck input
connect tck TAP{TCK}
add tdo output
connect tdo TAP{TDO}
add BCELL0 BC_IN
disconnect a
connect BCELL0{DO} u1{A}
connect BCELL0{DI} a
add BCELL1 BC_IN
disconnect n
connect BCELL1{DO} u9{A}
connect BCELL1{DI} n
add BCELL2 BC_OUT
disconnect y
connect BCELL2{DO} y
connect BCELL2{DI} u2{Q}
add BCELL3 BC_OUT
disconnect y2
connect BCELL3{DO} y2
connect BCELL3{DI} u3{Q}
connect BCELL0{SO} TAP{BC_LAST}
connect BCELL0{CK} TAP{clockDR}
connect BCELL0{SE} TAP{shiftDR}
connect BCELL0{UP} TAP{updateDR}
connect BCELL0{MD} TAP{mode1}
connect BCELL0{SI} BCELL1{SO}
connect BCELL1{CK} TAP{clockDR}
connect BCELL1{SE} TAP{shiftDR}
connect BCELL1{UP} TAP{updateDR}
connect BCELL1{MD} TAP{mode1}
connect BCELL1{SI} BCELL2{SO}
connect BCELL2{CK} TAP{clockDR}
connect BCELL2{SE} TAP{shiftDR}
connect BCELL2{UP} TAP{updateDR}
connect BCELL2{MD} TAP{mode1}
connect BCELL2{SI} BCELL3{SO}
connect BCELL3{CK} TAP{clockDR}
connect BCELL3{SE} TAP{shiftDR}
connect BCELL3{UP} TAP{updateDR}
connect BCELL3{MD} TAP{mode1}
connect BCELL3{SI} TAP{BC_FIRST}
save
quit
