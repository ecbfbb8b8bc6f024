== chip_jtag
edit chip_jtag
path ./rimweave_lib 
add TAP tapm
connect pi{C} TAP{TDI}
connect pm{C} TAP{TMS}
connect pc{C} TAP{TCK}
connect po{I} TAP{TDO}
disconnect po{OEN}
connect po{OEN} TAP{TDO_EN}
add BCELL0 BC_IN
disconnect pa{C}
connect BCELL0{DO} u1{A}
connect BCELL0{DI} pa{C}
add BCELL1 BC_OUT
disconnect py{I}
connect BCELL1{DO} py{I}
connect BCELL1{DI} u2{Q}
add BCELL2 BC_OUT
disconnect pz0{I}
connect BCELL2{DO} pz0{I}
connect BCELL2{DI} u3{Q}
add BCELL3 BC_CTL
disconnect pz0{OEN}
connect BCELL3{DI} u4{Q}
connect BCELL3{DO} pz0{OEN}
add BCELL4 BC_OUT
disconnect pz1{I}
connect BCELL4{DO} pz1{I}
connect BCELL4{DI} u5{Q}
disconnect pz1{OEN}
connect BCELL3{DO} pz1{OEN}
add BCELL5 BC_BI
disconnect pb{I}
connect BCELL5{DI} u6{Q}
connect BCELL5{DO} pb{I}
disconnect pb{C}
connect BCELL5{SYS} u7{A}
connect BCELL5{SP} pb{C}
add BCELL6 BC_CTL
disconnect pb{OEN}
connect BCELL6{DI} u8{Q}
connect BCELL6{DO} pb{OEN}
connect u2{CK} pck{C}
connect a pa{PAD}
connect py{PAD} y
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
connect BCELL3{SI} BCELL4{SO}
connect BCELL4{CK} TAP{clockDR}
connect BCELL4{SE} TAP{shiftDR}
connect BCELL4{UP} TAP{updateDR}
connect BCELL4{MD} TAP{mode1}
connect BCELL4{SI} BCELL5{SO}
connect BCELL5{CK} TAP{clockDR}
connect BCELL5{SE} TAP{shiftDR}
connect BCELL5{UP} TAP{updateDR}
connect BCELL5{MD} TAP{mode1}
connect BCELL5{SI} BCELL6{SO}
connect BCELL6{CK} TAP{clockDR}
connect BCELL6{SE} TAP{shiftDR}
connect BCELL6{UP} TAP{updateDR}
connect BCELL6{MD} TAP{mode1}
connect BCELL6{SI} TAP{BC_FIRST}
save
quit
