== chip_jtag
edit chip_jtag
path ./rimweave_lib 
add TAP tapm
connect tdi TAP{TDI}
add tms input
add TMS_PAD IBUF
connect TMS_PAD{PAD} tms
connect TMS_PAD{C} TAP{TMS}
add tck input
add TCK_PAD IBUF
connect TCK_PAD{PAD} tck
connect TCK_PAD{C} TAP{TCK}
add tdo output
add TDO_PAD TBUF
connect TDO_PAD{PAD} tdo
connect TDO_PAD{I} TAP{TDO}
connect TDO_PAD{OEN} TAP{TDO_EN}
add BCELL0 BC_IN
add B_PAD0 IBUF
disconnect a
connect B_PAD0{PAD} a
connect u1{A} BCELL0{DO}
connect BCELL0{DI} B_PAD0{C}
add BCELL1 BC_IN
add B_PAD1 IBUF
disconnect n
connect B_PAD1{PAD} n
add B_PAD_INV1 IBX
connect B_PAD1{C} B_PAD_INV1{A}
connect u9{A} BCELL1{DO}
connect BCELL1{DI} B_PAD_INV1{Z}
add BCELL2 BC_OUT
add B_PAD2 OBUF
disconnect y
connect B_PAD2{PAD} y
connect BCELL2{DO} B_PAD2{I}
connect BCELL2{DI} u2{Q}
add BCELL3 BC_OUT
add B_PAD3 TBUF
disconnect y2
connect B_PAD3{PAD} y2
connect B_PAD3{OEN} GND
connect BCELL3{DO} B_PAD3{I}
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
