== low_bs0
edit low_bs0
path ./rimweave_lib 
add BCELL0 BC_S
disconnect i{C}
connect BCELL0{DO} k
connect BCELL0{DI} i{C}
add shiftDR input
add clockDR input
connect BCELL0{CK} clockDR
connect BCELL0{SE} shiftDR
add BCELL0_SI input
connect BCELL0{SI} BCELL0_SI
add BCELL0_SO output
connect BCELL0{SO} BCELL0_SO
save
quit
== mid_bs0
edit mid_bs0
path ./rimweave_lib 
add BCELL2 BC_S
disconnect i{C}
connect BCELL2{DO} m
connect BCELL2{DI} i{C}
add shiftDR input
add clockDR input
connect BCELL2{CK} clockDR
connect BCELL2{SE} shiftDR
add BCELL2_SI input
connect BCELL2{SI} BCELL2_SI
add BCELL2_SO output
connect BCELL2{SO} BCELL2_SO
replace u low_bs0
connect u{shiftDR} shiftDR
connect u{clockDR} clockDR
add BCELL0_SI input
add BCELL0_SO output
connect u{BCELL0_SI} BCELL0_SI 
connect u{BCELL0_SO} BCELL0_SO 
save
quit
== low_bs1
edit low_bs1
path ./rimweave_lib 
add BCELL1 BC_S
disconnect i{C}
connect BCELL1{DO} k
connect BCELL1{DI} i{C}
add shiftDR input
add clockDR input
connect BCELL1{CK} clockDR
connect BCELL1{SE} shiftDR
add BCELL1_SI input
connect BCELL1{SI} BCELL1_SI
add BCELL1_SO output
connect BCELL1{SO} BCELL1_SO
save
quit
== mid_bs1
edit mid_bs1
path ./rimweave_lib 
add BCELL3 BC_S
disconnect i{C}
connect BCELL3{DO} m
connect BCELL3{DI} i{C}
add shiftDR input
add clockDR input
connect BCELL3{CK} clockDR
connect BCELL3{SE} shiftDR
add BCELL3_SI input
connect BCELL3{SI} BCELL3_SI
add BCELL3_SO output
connect BCELL3{SO} BCELL3_SO
replace u low_bs1
connect u{shiftDR} shiftDR
connect u{clockDR} clockDR
add BCELL1_SI input
add BCELL1_SO output
connect u{BCELL1_SI} BCELL1_SI 
connect u{BCELL1_SO} BCELL1_SO 
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
add TAP tapm
replace m mid_bs0
connect m{shiftDR} TAP{shiftDR}
connect m{clockDR} TAP{clockDR}
replace n mid_bs1
connect n{shiftDR} TAP{shiftDR}
connect n{clockDR} TAP{clockDR}
add tdi input
connect tdi TAP{TDI}
add tms input
connect tms TAP{TMS}
add tck input
connect tck TAP{TCK}
add tdo output
connect tdo TAP{TDO}
connect m{BCELL0_SI} n{BCELL1_SO} 
connect m{BCELL0_SO} TAP{BC_LAST} 
connect n{BCELL1_SI} m{BCELL2_SO} 
connect m{BCELL2_SI} n{BCELL3_SO} 
connect n{BCELL3_SI} TAP{BC_FIRST} 
save
quit
