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
disconnect pclk{C}
connect BCELL0{DO} g0{CK}
connect BCELL0{DI} pclk{C}
add BCELL1 BC_IN
disconnect pa{C}
connect BCELL1{DO} g0{D}
connect BCELL1{DI} pa{C}
add BCELL2 BC_IN
disconnect pinv{C}
connect BCELL2{DO} g1{D}
add B_PAD_INV0 IBX
connect B_PAD_INV0{A} pinv{C}
connect B_PAD_INV0{Z} BCELL2{DI}
add BCELL3 BC_OBS
connect BCELL3{DI} pobs{C}
add BCELL4 BC_MI
disconnect pmi{T}
connect BCELL4{UO} pmi{T}
connect BCELL4{DI} pmi{C}
add BCELL5 BC_IN
disconnect tr{Z}
connect BCELL5{DO} g4{D}
connect BCELL5{DI} tr{Z}
add BCELL7_LEFT BC_OUT
disconnect py{I}
connect BCELL7_LEFT{DO} py{I}
connect BCELL7_LEFT{DI} g0{Q}
add BCELL8 BC_OUT
disconnect pt0{I}
connect BCELL8{DO} pt0{I}
connect BCELL8{DI} g1{Q}
add BCELL9 BC_CTL
disconnect pt0{OEN}
connect BCELL9{DI} g3{Q}
connect BCELL9{DO} pt0{OEN}
add BCELL10 BC_OUT
disconnect pt1{I}
connect BCELL10{DO} pt1{I}
connect BCELL10{DI} g2{Q}
disconnect pt1{OEN}
connect BCELL9{DO} pt1{OEN}
add BCELL11 BC_OUT
disconnect phz0{I}
connect BCELL11{DO} phz0{I}
connect BCELL11{DI} g4{Q}
add highz_buf0 BUFX
disconnect phz0{OEN}
connect highz_buf0{Z} phz0{OEN}
connect highz_buf0{A} TAP{highz}
add BCELL12 BC_OUT
disconnect phz1{I}
connect BCELL12{DO} phz1{I}
connect BCELL12{DI} g5{Q}
disconnect phz1{OEN}
connect highz_buf0{Z} phz1{OEN}
add BCELL13 BC_OUT
disconnect pen{EN}
connect BCELL13{DO} pen{EN}
connect BCELL13{DI} g0{Q}
add BCELL14 BC_MI
disconnect pmo{T}
connect BCELL14{UO} pmo{T}
connect BCELL14{DI} pmo{I}
add BCELL15 BC_MI
connect BCELL15{UO} pmt{T}
connect BCELL15{DI} pmt{I}
disconnect pmt{OEN}
connect BCELL9{DO} pmt{OEN}
add BCELL17 BC_OUT
disconnect pfeed{I}
connect BCELL17{DO} pfeed{I}
connect BCELL17{DI} BCELL1{DO}
add BCELL18 BC_BI
disconnect pio{I}
connect BCELL18{DI} g6{Q}
connect BCELL18{DO} pio{I}
disconnect pio{C}
connect BCELL18{SYS} g6{D}
connect BCELL18{SP} pio{C}
disconnect pio{OEN}
connect BCELL9{DO} pio{OEN}
add BCELL19 BC_MB
disconnect pmb{C}
connect BCELL19{SY} g7{D}
connect BCELL19{SP} pmb{C}
connect BCELL19{DI} pmb{I}
connect BCELL19{UO} pmb{T}
connect BCELL19{MI} pmb{X}
disconnect pmb{OEN}
connect BCELL9{DO} pmb{OEN}
add BCELL20 BC_IN
disconnect g0{Q}
connect BCELL20{DO} BCELL7_LEFT{DI}
connect BCELL20{DI} g0{Q}
add BCELL21 BC_OBS
connect BCELL21{DI} g1{D}
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
connect BCELL3{SI} BCELL4{SO}
connect BCELL4{CK} TAP{clockDR}
connect BCELL4{SE} TAP{shiftDR}
connect BCELL4{UP} TAP{updateDR}
connect pmi{M} TAP{mode2}
connect BCELL4{SI} BCELL5{SO}
connect BCELL5{CK} TAP{clockDR}
connect BCELL5{SE} TAP{shiftDR}
connect BCELL5{UP} TAP{updateDR}
connect BCELL5{MD} TAP{mode1}
connect BCELL5{SI} pbsi{SO}
connect pbsi{CK} TAP{clockDR}
connect pbsi{SE} TAP{shiftDR}
connect pbsi{UP} TAP{updateDR}
connect pbsi{MD} TAP{mode1}
connect pbsi{SI} BCELL7_LEFT{SO}
connect BCELL7_LEFT{CK} TAP{clockDR}
connect BCELL7_LEFT{SE} TAP{shiftDR}
connect BCELL7_LEFT{UP} TAP{updateDR}
connect BCELL7_LEFT{MD} TAP{mode1}
connect BCELL7_LEFT{SI} BCELL8{SO}
connect BCELL8{CK} TAP{clockDR}
connect BCELL8{SE} TAP{shiftDR}
connect BCELL8{UP} TAP{updateDR}
connect BCELL8{MD} TAP{mode1}
connect BCELL8{SI} BCELL9{SO}
connect BCELL9{CK} TAP{clockDR}
connect BCELL9{SE} TAP{shiftDR}
connect BCELL9{UP} TAP{updateDR}
connect BCELL9{MD} TAP{mode1}
connect BCELL9{SI} BCELL10{SO}
connect BCELL10{CK} TAP{clockDR}
connect BCELL10{SE} TAP{shiftDR}
connect BCELL10{UP} TAP{updateDR}
connect BCELL10{MD} TAP{mode1}
connect BCELL10{SI} BCELL11{SO}
connect BCELL11{CK} TAP{clockDR}
connect BCELL11{SE} TAP{shiftDR}
connect BCELL11{UP} TAP{updateDR}
connect BCELL11{MD} TAP{mode1}
connect BCELL11{SI} BCELL12{SO}
connect BCELL12{CK} TAP{clockDR}
connect BCELL12{SE} TAP{shiftDR}
connect BCELL12{UP} TAP{updateDR}
connect BCELL12{MD} TAP{mode1}
connect BCELL12{SI} BCELL13{SO}
connect BCELL13{CK} TAP{clockDR}
connect BCELL13{SE} TAP{shiftDR}
connect BCELL13{UP} TAP{updateDR}
connect BCELL13{MD} TAP{mode1}
connect BCELL13{SI} BCELL14{SO}
connect BCELL14{CK} TAP{clockDR}
connect BCELL14{SE} TAP{shiftDR}
connect BCELL14{UP} TAP{updateDR}
connect pmo{M} TAP{mode1}
connect BCELL14{SI} BCELL15{SO}
connect BCELL15{CK} TAP{clockDR}
connect BCELL15{SE} TAP{shiftDR}
connect BCELL15{UP} TAP{updateDR}
connect pmt{M} TAP{mode1}
connect BCELL15{SI} pbso{SO}
connect pbso{CK} TAP{clockDR}
connect pbso{SE} TAP{shiftDR}
connect pbso{UP} TAP{updateDR}
connect pbso{MD} TAP{mode1}
connect pbso{SI} BCELL17{SO}
connect BCELL17{CK} TAP{clockDR}
connect BCELL17{SE} TAP{shiftDR}
connect BCELL17{UP} TAP{updateDR}
connect BCELL17{MD} TAP{mode1}
connect BCELL17{SI} BCELL18{SO}
connect BCELL18{CK} TAP{clockDR}
connect BCELL18{SE} TAP{shiftDR}
connect BCELL18{UP} TAP{updateDR}
connect BCELL18{MD} TAP{mode1}
connect BCELL18{SI} BCELL19{SO}
connect BCELL19{CK} TAP{clockDR}
connect BCELL19{SE} TAP{shiftDR}
connect BCELL19{UP} TAP{updateDR}
connect pmb{M} TAP{mode1}
connect BCELL19{SI} BCELL20{SO}
connect BCELL20{CK} TAP{clockDR}
connect BCELL20{SE} TAP{shiftDR}
connect BCELL20{UP} TAP{updateDR}
connect BCELL20{MD} TAP{mode1}
connect BCELL20{SI} BCELL21{SO}
connect BCELL21{CK} TAP{clockDR}
connect BCELL21{SE} TAP{shiftDR}
connect BCELL21{SI} TAP{BC_FIRST}
save
quit
