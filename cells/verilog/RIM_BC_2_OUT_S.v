// BC_2. Output, between core (DI) and pad (DO). Takes what the pad is given: in EXTEST the update stage. In
// INTEST it takes the core. For -synch.
// Made by make_cells.py.
`timescale 1ns / 1ps

`celldefine
module RIM_BC_2_OUT_S (input DI, SI, SE, TCK, CE, UE, M1, M2, output reg SO, output DO);
    reg held;
    wire taken = M2 ? DI : DO;
    // One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
    always @(posedge TCK) if (CE) SO <= #1 SE ? SI : taken;
    always @(negedge TCK) if (UE) held <= #1 SO;
    assign DO = M1 ? held : DI;
endmodule
`endcelldefine
