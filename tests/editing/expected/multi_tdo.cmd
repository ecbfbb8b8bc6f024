==== nothing
== ring_bs0
edit ring_bs0
path ./rimweave_lib 
add vmr_tap_tdo input
add TDO_EN input
connect po{I} vmr_tap_tdo 
connect po{OEN} TDO_EN 
save
quit
== frame_bs0
edit frame_bs0
path ./rimweave_lib 
replace r ring_bs0
add vmr_tap_tdo input
add TDO_EN input
connect r{vmr_tap_tdo} vmr_tap_tdo 
connect r{TDO_EN} TDO_EN 
save
quit
== chip_jtag
edit chip_jtag
path ./rimweave_lib 
add TAP tapm
add BCELL0 BC_S
disconnect i{C}
connect BCELL0{DO} f{D}
connect BCELL0{DI} i{C}
connect BCELL0{CK} TAP{clockDR}
connect BCELL0{SE} TAP{shiftDR}
replace x pa_bs0
connect x{shiftDR} TAP{shiftDR}
connect x{clockDR} TAP{clockDR}
replace fr frame_bs0
add tdi input
connect tdi TAP{TDI}
add tms input
connect tms TAP{TMS}
add tck input
connect tck TAP{TCK}
connect fr{vmr_tap_tdo} TAP{TDO}
connect fr{TDO_EN} TAP{TDO_EN}
connect x{BCELL1_SO} BCELL0{SI} 
connect TAP{BC_LAST} BCELL0{SO} 
connect x{BCELL1_SI} TAP{BC_FIRST} 
save
quit
==== constants
3a4,5
> disconnect po{I}
> disconnect po{OEN}
==== ports to the top
4c4
< add vmr_tap_tdo input
---
> disconnect po{OEN}
6d5
< connect po{I} vmr_tap_tdo 
14d12
< add vmr_tap_tdo input
16d13
< connect r{vmr_tap_tdo} vmr_tap_tdo 
40c37
< connect fr{vmr_tap_tdo} TAP{TDO}
---
> connect fr{d} TAP{TDO}
==== a constant in the top
4c4
< add vmr_tap_tdo input
---
> disconnect po{OEN}
6d5
< connect po{I} vmr_tap_tdo 
14d12
< add vmr_tap_tdo input
16d13
< connect r{vmr_tap_tdo} vmr_tap_tdo 
40c37,38
< connect fr{vmr_tap_tdo} TAP{TDO}
---
> disconnect fr{d}
> connect fr{d} TAP{TDO}
==== a gate in the top
4c4
< add vmr_tap_tdo input
---
> disconnect po{OEN}
6d5
< connect po{I} vmr_tap_tdo 
14d12
< add vmr_tap_tdo input
16d13
< connect r{vmr_tap_tdo} vmr_tap_tdo 
40c37,38
< connect fr{vmr_tap_tdo} TAP{TDO}
---
> disconnect fr{d}
> connect fr{d} TAP{TDO}
==== a constant in the frame
4c4
< add vmr_tap_tdo input
---
> disconnect po{OEN}
6d5
< connect po{I} vmr_tap_tdo 
12a12
> disconnect r{d}
16c16
< connect r{vmr_tap_tdo} vmr_tap_tdo 
---
> connect r{d} vmr_tap_tdo 
