// BC_9. Output that watches its pin, core (DI) to pad (DO). In EXTEST takes the pin (SP), by the receiver that a
// bidirectional pad has; else the core. For -synch.
// Made by make_cells.py.
`timescale 1ns / 1ps

`celldefine
module RIM_BC_9_S (input DI, SP, SI, SE, TCK, CE, UE, M1, M2, output reg SO, output DO);
    reg held;
    wire taken = (M1 & ~M2) ? SP : DI;
    // One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
    always @(posedge TCK) if (CE) SO <= #1 SE ? SI : taken;
    always @(negedge TCK) if (UE) held <= #1 SO;
    assign DO = M1 ? held : DI;
endmodule
`endcelldefine
