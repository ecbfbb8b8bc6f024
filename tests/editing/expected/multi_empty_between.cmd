== low_bs0
edit low_bs0
path ./rimweave_lib 
add BCELL0 BC_X
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
add shiftDR input
add clockDR input
replace u low_bs0
connect u{shiftDR} shiftDR
connect u{clockDR} clockDR
add BCELL0_SI input
add BCELL0_SO output
connect u{BCELL0_SI} BCELL0_SI 
connect u{BCELL0_SO} BCELL0_SO 
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
add TAP tapm
add BCELL1 BC_X
disconnect i{C}
connect BCELL1{DO} g{D}
connect BCELL1{DI} i{C}
connect BCELL1{CK} TAP{clockDR}
connect BCELL1{SE} TAP{shiftDR}
replace m mid_bs0
connect m{shiftDR} TAP{shiftDR}
connect m{clockDR} TAP{clockDR}
add tdi input
connect tdi TAP{TDI}
add tms input
connect tms TAP{TMS}
add tck input
connect tck TAP{TCK}
add tdo output
connect tdo TAP{TDO}
connect m{BCELL0_SI} BCELL1{SO} 
connect m{BCELL0_SO} TAP{BC_LAST} 
connect TAP{BC_FIRST} BCELL1{SI} 
save
quit
