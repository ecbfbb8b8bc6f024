== four_bs0
edit four_bs0
path ./rimweave_lib 
add BCELL0 BC_X
disconnect i{C}
connect BCELL0{DO} k
connect BCELL0{DI} i{C}
add BCELL2 BC_X
disconnect j{C}
connect BCELL2{DO} l
connect BCELL2{DI} j{C}
add BCELL4 BC_X
disconnect h{C}
connect BCELL4{DO} m
connect BCELL4{DI} h{C}
add BCELL6 BC_X
disconnect g{C}
connect BCELL6{DO} n
connect BCELL6{DI} g{C}
add shiftDR input
add clockDR input
connect BCELL0{CK} clockDR
connect BCELL0{SE} shiftDR
connect BCELL2{CK} clockDR
connect BCELL2{SE} shiftDR
connect BCELL4{CK} clockDR
connect BCELL4{SE} shiftDR
connect BCELL6{CK} clockDR
connect BCELL6{SE} shiftDR
add BCELL0_SI input
connect BCELL0{SI} BCELL0_SI
add BCELL0_SO output
connect BCELL0{SO} BCELL0_SO
add BCELL2_SI input
connect BCELL2{SI} BCELL2_SI
add BCELL2_SO output
connect BCELL2{SO} BCELL2_SO
add BCELL4_SI input
connect BCELL4{SI} BCELL4_SI
add BCELL4_SO output
connect BCELL4{SO} BCELL4_SO
add BCELL6_SI input
connect BCELL6{SI} BCELL6_SI
add BCELL6_SO output
connect BCELL6{SO} BCELL6_SO
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
add TAP tapm
add BCELL1 BC_X
disconnect i1{C}
connect BCELL1{DO} f1{D}
connect BCELL1{DI} i1{C}
add BCELL3 BC_X
disconnect i2{C}
connect BCELL3{DO} f3{D}
connect BCELL3{DI} i2{C}
add BCELL5 BC_X
disconnect i3{C}
connect BCELL5{DO} f5{D}
connect BCELL5{DI} i3{C}
connect BCELL1{CK} TAP{clockDR}
connect BCELL1{SE} TAP{shiftDR}
connect BCELL3{CK} TAP{clockDR}
connect BCELL3{SE} TAP{shiftDR}
connect BCELL5{CK} TAP{clockDR}
connect BCELL5{SE} TAP{shiftDR}
replace u four_bs0
connect u{shiftDR} TAP{shiftDR}
connect u{clockDR} TAP{clockDR}
add tdi input
connect tdi TAP{TDI}
add tms input
connect tms TAP{TMS}
add tck input
connect tck TAP{TCK}
add tdo output
connect tdo TAP{TDO}
connect u{BCELL0_SI} BCELL1{SO} 
connect u{BCELL0_SO} TAP{BC_LAST} 
connect u{BCELL2_SO} BCELL1{SI} 
connect u{BCELL2_SI} BCELL3{SO} 
connect u{BCELL4_SO} BCELL3{SI} 
connect u{BCELL4_SI} BCELL5{SO} 
connect u{BCELL6_SO} BCELL5{SI} 
connect u{BCELL6_SI} TAP{BC_FIRST} 
save
quit
