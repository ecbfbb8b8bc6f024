edit chip_jtag
add chip_BCM chip_BCM
connect pi{C} chip_BCM{BCM_TDI}
connect pm{C} chip_BCM{BCM_TMS}
connect pc{C} chip_BCM{BCM_TCK}
connect po{I} chip_BCM{BCM_TDO}
disconnect po{OEN}
connect po{OEN} chip_BCM{BCM_TDO_EN}
disconnect  pclk{C}
connect  chip_BCM{BCELL0_OUT}  g0{CK}
connect chip_BCM{BCELL0_IN}  pclk{C}
disconnect  pa{C}
connect  chip_BCM{BCELL1_OUT}  g0{D}
connect chip_BCM{BCELL1_IN}  pa{C}
disconnect  pinv{C}
connect  chip_BCM{BCELL2_OUT}  g1{D}
connect chip_BCM{BCELL2_IN}  pinv{C}
connect chip_BCM{BCELL3_IN}  pobs{C}
disconnect pmi{T}
connect chip_BCM{BCELL4_UPD_OUT} pmi{T}
connect chip_BCM{BCELL4_IN} pmi{C}
connect chip_BCM{BCELL4_MODE2} pmi{M}
disconnect  pthru{C}
connect  chip_BCM{BCELL5_OUT}  tr{A}
connect chip_BCM{BCELL5_IN}  pthru{C}
disconnect  py{I}
connect  chip_BCM{BCELL7_LEFT_OUT}  py{I}
connect chip_BCM{BCELL7_LEFT_IN}  g0{Q}
disconnect  pt0{I}
connect  chip_BCM{BCELL8_OUT}  pt0{I}
connect chip_BCM{BCELL8_IN}  g1{Q}
disconnect pt0{OEN}
connect chip_BCM{BCELL9_IN} g3{Q}
connect chip_BCM{BCELL9_OUT} pt0{OEN}
disconnect  pt1{I}
connect  chip_BCM{BCELL10_OUT}  pt1{I}
connect chip_BCM{BCELL10_IN}  g2{Q}
disconnect pt1{OEN}
connect chip_BCM{BCELL9_OUT} pt1{OEN}
disconnect  phz0{I}
connect  chip_BCM{BCELL11_OUT}  phz0{I}
connect chip_BCM{BCELL11_IN}  g4{Q}
add highz_buf0 BUFX
disconnect phz0{OEN}
connect highz_buf0{Z} phz0{OEN}
connect highz_buf0{A} chip_BCM{highz}
disconnect  phz1{I}
connect  chip_BCM{BCELL12_OUT}  phz1{I}
connect chip_BCM{BCELL12_IN}  g5{Q}
disconnect phz1{OEN}
connect highz_buf0{Z} phz1{OEN}
disconnect  pen{EN}
connect  chip_BCM{BCELL13_OUT}  pen{EN}
connect chip_BCM{BCELL13_IN}  g0{Q}
disconnect pmo{T}
connect chip_BCM{BCELL14_UPD_OUT} pmo{T}
connect chip_BCM{BCELL14_IN} pmo{I}
connect chip_BCM{BCELL14_MODE1} pmo{M}
add BCELL15 BC_MI
connect BCELL15{UO} pmt{T}
connect BCELL15{DI} pmt{I}
disconnect pmt{OEN}
connect chip_BCM{BCELL9_OUT} pmt{OEN}
disconnect  pfeed{I}
connect  chip_BCM{BCELL17_OUT}  pfeed{I}
connect chip_BCM{BCELL17_IN}  chip_BCM{BCELL1_OUT}
disconnect pio{I}
connect chip_BCM{BCELL16_DATA_IN} g6{Q}
connect chip_BCM{BCELL16_PAD_OUT}  pio{I}
disconnect pio{C}
connect chip_BCM{BCELL16_DATA_OUT}  g6{D}
connect chip_BCM{BCELL16_PAD_IN}  pio{C}
disconnect pio{OEN}
connect chip_BCM{BCELL9_OUT} pio{OEN}
disconnect pmb{C}
connect chip_BCM{BCELL18_DATA_OUT} g7{D}
connect chip_BCM{BCELL18_PAD_IN} pmb{C}
connect chip_BCM{BCELL18_DATA_IN} pmb{I}
connect chip_BCM{BCELL18_UPD_OUT} pmb{T}
connect chip_BCM{BCELL18_MUX_DATA_IN} pmb{X}
connect chip_BCM{BCELL18_MODE1} pmb{M}
disconnect pmb{OEN}
connect chip_BCM{BCELL9_OUT} pmb{OEN}
add BCELL20 BC_IN
disconnect g0{Q}
connect BCELL20{DO} chip_BCM{BCELL7_LEFT_IN}
connect BCELL20{DI} g0{Q}
add BCELL21 BC_OBS
connect BCELL21{DI} g1{D}
save
quit
