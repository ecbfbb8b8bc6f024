edit L1_bs
add shiftDR input
add clockDR input
add updateDR input
add highz input
add mode1 input
add xtra input
add chain_in input
add chain_out output
add BCELL_TCK input
replace p pads_bs
connect shiftDR p{shiftDR}
connect clockDR p{clockDR}
connect updateDR p{updateDR}
connect highz p{highz}
connect mode1 p{mode1}
connect xtra p{xtra}
connect chain_in p{chain_in}
connect chain_out p{chain_out}
connect BCELL_TCK p{BCELL_TCK}
save
quit
edit L2_bs
add tap tapm
add TDI input
add TMS input
add TCK input
add TDO output
replace l L1_bs
connect tap{TDI} TDI
connect tap{TMS} TMS
connect tap{TCK} TCK
connect tap{TDO} TDO
connect l{shiftDR} tap{shiftDR}
connect l{clockDR} tap{clockDR}
connect l{updateDR} tap{updateDR}
connect l{highz} tap{highz}
connect l{mode1} tap{mode1}
connect l{xtra} tap{xtra}
connect l{chain_in} tap{BC_FIRST}
connect l{chain_out} tap{BC_LAST}
connect l{BCELL_TCK} tap{BCELL_TCK}
save
quit
edit chip_jtag
path ./rimweave_lib 
add tdi input
add tms input
add tck input
add tdo output
replace k L2_bs
connect k{TDI} tdi
connect k{TMS} tms
connect k{TCK} tck
connect k{TDO} tdo
save
quit
edit pads_bs
add shiftDR input
add clockDR input
add updateDR input
add highz input
add mode1 input
add xtra input
add chain_in input
add chain_out output
add BCELL_TCK input
add BCELL0 BC_X
disconnect pa{C}
connect BCELL0{DO} c
connect BCELL0{DI} pa{C}
add BCELL1 BC_X
disconnect pz{I}
connect BCELL1{DO} pz{I}
connect BCELL1{DI} q
add highz_buf0 BUFX
disconnect pz{OEN}
connect highz_buf0{Z} pz{OEN}
connect highz_buf0{A} highz
connect BCELL0{SO} chain_out
connect BCELL0{CK} clockDR
connect BCELL0{TK} BCELL_TCK
connect BCELL0{SE} shiftDR
connect BCELL0{UP} updateDR
connect BCELL0{MD} mode1
connect BCELL0{XA} xtra
connect BCELL0{SI} BCELL1{SO}
connect BCELL1{CK} clockDR
connect BCELL1{TK} BCELL_TCK
connect BCELL1{SE} shiftDR
connect BCELL1{UP} updateDR
connect BCELL1{MD} mode1
connect BCELL1{XA} xtra
connect BCELL1{SI} chain_in
save
quit
