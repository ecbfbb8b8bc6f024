== low_bs0
edit low_bs0
path ./rimweave_lib 
add BCELL1 BC_OUT
disconnect j{I}
connect BCELL1{DO} j{I}
connect BCELL1{DI} o
add highz_buf0 BUFX
disconnect j{OEN}
connect highz_buf0{Z} j{OEN}
add BCELL2 BC_OUT
disconnect h{I}
connect BCELL2{DO} h{I}
connect BCELL2{DI} o
disconnect h{OEN}
connect highz_buf0{Z} h{OEN}
add BCELL3 BC_X
disconnect i{C}
connect BCELL3{DO} k
connect BCELL3{DI} i{C}
add shiftDR input
add clockDR input
add updateDR input
add highz input
add mode1 input
add BCELL_TCK input
add xtra1 input
add xtra2 input
connect highz_buf0{A} highz
add bclk_buf_1_1 BUFX
connect bclk_buf_1_1{A} BCELL_TCK
add bclk_buf_1_2 BUFX
connect bclk_buf_1_2{A} BCELL_TCK
add shift_buf_1_1 BUFX
connect shift_buf_1_1{A} shiftDR
add shift_buf_1_2 BUFX
connect shift_buf_1_2{A} shiftDR
add clock_buf_1_1 BUFX
connect clock_buf_1_1{A} clockDR
add clock_buf_1_2 BUFX
connect clock_buf_1_2{A} clockDR
add update_buf_1_1 BUFX
connect update_buf_1_1{A} updateDR
add mode1_buf_1_1 BUFX
connect mode1_buf_1_1{A} mode1
add extra1_buf_1_1 BUFX
connect extra1_buf_1_1{A} xtra1
add extra2_buf_1_1 BUFX
connect extra2_buf_1_1{A} xtra2
connect BCELL1{CK} clock_buf_1_1{Z}
connect BCELL1{TK} bclk_buf_1_1{Z}
connect BCELL1{SE} shift_buf_1_1{Z}
connect BCELL1{UP} update_buf_1_1{Z}
connect BCELL1{MD} mode1_buf_1_1{Z}
connect BCELL2{CK} clock_buf_1_1{Z}
connect BCELL2{TK} bclk_buf_1_1{Z}
connect BCELL2{SE} shift_buf_1_1{Z}
connect BCELL2{UP} update_buf_1_1{Z}
connect BCELL2{MD} mode1_buf_1_1{Z}
connect BCELL3{CK} clock_buf_1_2{Z}
connect BCELL3{TK} bclk_buf_1_2{Z}
connect BCELL3{SE} shift_buf_1_2{Z}
connect BCELL3{XA} extra1_buf_1_1{Z}
connect BCELL3{XB} extra2_buf_1_1{Z}
connect BCELL1{SI} BCELL2{SO}
add BCELL1_SO output
connect BCELL1{SO} BCELL1_SO
connect BCELL2{SI} BCELL3{SO}
add BCELL3_SI input
connect BCELL3{SI} BCELL3_SI
save
quit
== mid_bs0
edit mid_bs0
path ./rimweave_lib 
add shiftDR input
add clockDR input
add updateDR input
add highz input
add mode1 input
add BCELL_TCK input
add xtra1 input
add xtra2 input
replace u low_bs0
connect u{shiftDR} shiftDR
connect u{clockDR} clockDR
connect u{updateDR} updateDR
connect u{highz} highz
connect u{mode1} mode1
connect u{BCELL_TCK} BCELL_TCK
connect u{xtra1} xtra1
connect u{xtra2} xtra2
add BCELL1_SO output
add BCELL3_SI input
connect u{BCELL1_SO} BCELL1_SO 
connect u{BCELL3_SI} BCELL3_SI 
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
add TAP tapm
add BCELL0 BC_X
disconnect i{C}
connect BCELL0{DO} f{D}
connect BCELL0{DI} i{C}
add bclk_buf_1_1 BUFX
connect TAP{BCELL_TCK} bclk_buf_1_1{A}
add shift_buf_1_1 BUFX
connect TAP{shiftDR} shift_buf_1_1{A}
add clock_buf_1_1 BUFX
connect TAP{clockDR} clock_buf_1_1{A}
add update_buf_1_1 BUFX
connect TAP{updateDR} update_buf_1_1{A}
add mode1_buf_1_1 BUFX
connect TAP{mode1} mode1_buf_1_1{A}
add extra1_buf_1_1 BUFX
connect TAP{xtra1} extra1_buf_1_1{A}
add extra2_buf_1_1 BUFX
connect TAP{xtra2} extra2_buf_1_1{A}
connect BCELL0{CK} clock_buf_1_1{Z}
connect BCELL0{TK} bclk_buf_1_1{Z}
connect BCELL0{SE} shift_buf_1_1{Z}
connect BCELL0{XA} extra1_buf_1_1{Z}
connect BCELL0{XB} extra2_buf_1_1{Z}
replace m mid_bs0
connect m{shiftDR} TAP{shiftDR}
connect m{clockDR} TAP{clockDR}
connect m{updateDR} TAP{updateDR}
connect m{highz} TAP{highz}
connect m{mode1} TAP{mode1}
connect m{BCELL_TCK} TAP{BCELL_TCK}
connect m{xtra1} TAP{xtra1}
connect m{xtra2} TAP{xtra2}
add tdi input
connect tdi TAP{TDI}
add tms input
connect tms TAP{TMS}
add tck input
connect tck TAP{TCK}
add tdo output
connect tdo TAP{TDO}
connect m{BCELL1_SO} BCELL0{SI} 
connect TAP{BC_LAST} BCELL0{SO} 
connect m{BCELL3_SI} TAP{BC_FIRST} 
save
quit
