== B_bs
edit B_bs
path ./rimweave_lib 
add tap tapm
connect tap{IDCODE[31]} GND
connect tap{IDCODE[30]} GND
connect tap{IDCODE[29]} GND
connect tap{IDCODE[28]} VCC
connect tap{IDCODE[27]} GND
connect tap{IDCODE[26]} VCC
connect tap{IDCODE[25]} GND
connect tap{IDCODE[24]} VCC
connect tap{IDCODE[23]} GND
connect tap{IDCODE[22]} VCC
connect tap{IDCODE[21]} GND
connect tap{IDCODE[20]} VCC
connect tap{IDCODE[19]} VCC
connect tap{IDCODE[18]} VCC
connect tap{IDCODE[17]} GND
connect tap{IDCODE[16]} GND
connect tap{IDCODE[15]} GND
connect tap{IDCODE[14]} GND
connect tap{IDCODE[13]} VCC
connect tap{IDCODE[12]} VCC
connect tap{IDCODE[11]} VCC
connect tap{IDCODE[10]} VCC
connect tap{IDCODE[9]} VCC
connect tap{IDCODE[8]} VCC
connect tap{IDCODE[7]} VCC
connect tap{IDCODE[6]} VCC
connect tap{IDCODE[5]} VCC
connect tap{IDCODE[4]} VCC
connect tap{IDCODE[3]} VCC
connect tap{IDCODE[2]} VCC
connect tap{IDCODE[1]} GND
connect tap{IDCODE[0]} X_NET
add TMS input
connect tap{TMS} TMS
add TDI input
connect tap{TDI} TDI
add TCK input
connect tap{TCK} TCK
add TDO output
connect tap{TDO} TDO
add TDO_EN output
connect tap{TDO_EN} TDO_EN
add BC_LAST input
connect tap{BC_LAST} BC_LAST
add BC_FIRST output
connect tap{BC_FIRST} BC_FIRST
add shiftDR output
connect tap{shiftDR} shiftDR
add clockDR output
connect tap{clockDR} clockDR
add updateDR output
connect tap{updateDR} updateDR
add mode1 output
connect tap{mode1} mode1
save
quit
== A_bs
edit A_bs
path ./rimweave_lib 
replace b B_bs
add TMS input
connect b{TMS} TMS
add TDI input
connect b{TDI} TDI
add TCK input
connect b{TCK} TCK
add TDO output
connect b{TDO} TDO
add TDO_EN output
connect b{TDO_EN} TDO_EN
add BC_LAST input
connect b{BC_LAST} BC_LAST
add BC_FIRST output
connect b{BC_FIRST} BC_FIRST
add shiftDR output
connect b{shiftDR} shiftDR
add clockDR output
connect b{clockDR} clockDR
add updateDR output
connect b{updateDR} updateDR
add mode1 output
connect b{mode1} mode1
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
replace top_a A_bs
connect pi{C} top_a{TDI}
connect pm{C} top_a{TMS}
connect pc{C} top_a{TCK}
connect po{I} top_a{TDO}
disconnect po{OEN}
connect po{OEN} top_a{TDO_EN}
add BCELL0 BC_IN
disconnect pa{C}
connect BCELL0{DO} top_a{i}
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
connect BCELL0{SO} top_a{BC_LAST}
connect BCELL0{CK} top_a{clockDR}
connect BCELL0{SE} top_a{shiftDR}
connect BCELL0{UP} top_a{updateDR}
connect BCELL0{MD} top_a{mode1}
connect BCELL0{SI} BCELL1{SO}
connect BCELL1{CK} top_a{clockDR}
connect BCELL1{SE} top_a{shiftDR}
connect BCELL1{UP} top_a{updateDR}
connect BCELL1{MD} top_a{mode1}
connect BCELL1{SI} BCELL2{SO}
connect BCELL2{CK} top_a{clockDR}
connect BCELL2{SE} top_a{shiftDR}
connect BCELL2{UP} top_a{updateDR}
connect BCELL2{MD} top_a{mode1}
connect BCELL2{SI} BCELL3{SO}
connect BCELL3{CK} top_a{clockDR}
connect BCELL3{SE} top_a{shiftDR}
connect BCELL3{UP} top_a{updateDR}
connect BCELL3{MD} top_a{mode1}
connect BCELL3{SI} BCELL4{SO}
connect BCELL4{CK} top_a{clockDR}
connect BCELL4{SE} top_a{shiftDR}
connect BCELL4{UP} top_a{updateDR}
connect BCELL4{MD} top_a{mode1}
connect BCELL4{SI} BCELL5{SO}
connect BCELL5{CK} top_a{clockDR}
connect BCELL5{SE} top_a{shiftDR}
connect BCELL5{UP} top_a{updateDR}
connect BCELL5{MD} top_a{mode1}
connect BCELL5{SI} BCELL6{SO}
connect BCELL6{CK} top_a{clockDR}
connect BCELL6{SE} top_a{shiftDR}
connect BCELL6{UP} top_a{updateDR}
connect BCELL6{MD} top_a{mode1}
connect BCELL6{SI} top_a{BC_FIRST}
save
quit
