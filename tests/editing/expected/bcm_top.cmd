edit chip_jtag
add chip_BCM chip_BCM
connect pi{C} chip_BCM{BCM_TDI}
add tms input
connect tms chip_BCM{BCM_TMS}
add tck input
connect tck chip_BCM{BCM_TCK}
disconnect po{I}
connect po{I} chip_BCM{BCM_TDO}
disconnect po{OEN}
connect po{OEN} chip_BCM{BCM_TDO_EN}
disconnect  pa{C}
connect  chip_BCM{BCELL0_OUT}  f{D}
connect chip_BCM{BCELL0_IN}  pa{C}
disconnect  pn{C}
connect  chip_BCM{BCELL1_IN_OUT}  g{D}
connect chip_BCM{BCELL1_IN_IN}  pn{C}
disconnect  py{I}
connect  chip_BCM{BCELL2_OUT}  py{I}
connect chip_BCM{BCELL2_IN}  f{Q}
disconnect  pz0{I}
connect  chip_BCM{BCELL3_OUT}  pz0{I}
connect chip_BCM{BCELL3_IN}  k{Q}
disconnect pz0{OEN}
connect chip_BCM{BCELL4_IN} g{Q}
connect chip_BCM{BCELL4_OUT} pz0{OEN}
disconnect  pz1{I}
connect  chip_BCM{BCELL5_OUT}  pz1{I}
connect chip_BCM{BCELL5_IN}  f{Q}
disconnect pz1{OEN}
connect chip_BCM{BCELL4_OUT} pz1{OEN}
disconnect pb{I}
connect chip_BCM{BCELL6_DATA_IN} h{Q}
connect chip_BCM{BCELL6_PAD_OUT}  pb{I}
disconnect pb{C}
connect chip_BCM{BCELL6_DATA_OUT}  h{D}
connect chip_BCM{BCELL6_PAD_IN}  pb{C}
disconnect pb{OEN}
connect chip_BCM{BCELL4_OUT} pb{OEN}
save
quit
