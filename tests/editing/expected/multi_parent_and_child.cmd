== low_bs0
edit low_bs0
path ./rimweave_lib 
add BCELL0 BC_S
disconnect i{C}
connect BCELL0{DO} k
connect BCELL0{DI} i{C}
add BCELL3 BC_OUT
disconnect j{I}
connect BCELL3{DO} j{I}
connect BCELL3{DI} o
add shiftDR input
add clockDR input
add updateDR input
add mode1 input
connect BCELL0{CK} clockDR
connect BCELL0{SE} shiftDR
connect BCELL3{CK} clockDR
connect BCELL3{SE} shiftDR
connect BCELL3{UP} updateDR
connect BCELL3{MD} mode1
add BCELL0_SI input
connect BCELL0{SI} BCELL0_SI
add BCELL0_SO output
connect BCELL0{SO} BCELL0_SO
add BCELL3_SI input
connect BCELL3{SI} BCELL3_SI
add BCELL3_SO output
connect BCELL3{SO} BCELL3_SO
save
quit
== mid_bs0
edit mid_bs0
path ./rimweave_lib 
add BCELL1 BC_S
disconnect i{C}
connect BCELL1{DO} m
connect BCELL1{DI} i{C}
add shiftDR input
add clockDR input
add updateDR input
add mode1 input
connect BCELL1{CK} clockDR
connect BCELL1{SE} shiftDR
add BCELL1_SI input
connect BCELL1{SI} BCELL1_SI
replace u low_bs0
connect u{shiftDR} shiftDR
connect u{clockDR} clockDR
connect u{updateDR} updateDR
connect u{mode1} mode1
add BCELL0_SO output
add BCELL3_SI input
add BCELL3_SO output
connect u{BCELL0_SI} BCELL1{SO} 
connect u{BCELL0_SO} BCELL0_SO 
connect u{BCELL3_SI} BCELL3_SI 
connect u{BCELL3_SO} BCELL3_SO 
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
add TAP tapm
add BCELL2 BC_S
disconnect i{C}
connect BCELL2{DO} h{D}
connect BCELL2{DI} i{C}
connect BCELL2{CK} TAP{clockDR}
connect BCELL2{SE} TAP{shiftDR}
replace m mid_bs0
connect m{shiftDR} TAP{shiftDR}
connect m{clockDR} TAP{clockDR}
connect m{updateDR} TAP{updateDR}
connect m{mode1} TAP{mode1}
add tdi input
connect tdi TAP{TDI}
add tms input
connect tms TAP{TMS}
add tck input
connect tck TAP{TCK}
add tdo output
connect tdo TAP{TDO}
connect m{BCELL0_SO} TAP{BC_LAST} 
connect m{BCELL1_SI} BCELL2{SO} 
connect m{BCELL3_SO} BCELL2{SI} 
connect m{BCELL3_SI} TAP{BC_FIRST} 
save
quit
