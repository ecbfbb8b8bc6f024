== pa_bs0
edit pa_bs0
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
== pb_bs0
edit pb_bs0
path ./rimweave_lib 
add BCELL1 BC_X
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
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
add TAP tapm
replace ua pa_bs0
connect ua{shiftDR} TAP{shiftDR}
connect ua{clockDR} TAP{clockDR}
replace ub pb_bs0
connect ub{shiftDR} TAP{shiftDR}
connect ub{clockDR} TAP{clockDR}
add tdi input
connect tdi TAP{TDI}
add tms input
connect tms TAP{TMS}
add tck input
connect tck TAP{TCK}
add tdo output
connect tdo TAP{TDO}
connect ua{BCELL0_SI} ub{BCELL1_SO} 
connect ua{BCELL0_SO} TAP{BC_LAST} 
connect ub{BCELL1_SI} TAP{BC_FIRST} 
save
quit
