// BC_2. Input, between pad (DI) and core (DO). Takes what the core sees: in INTEST the update stage. For -synch.
// Made by make_cells.py.
`timescale 1ns / 1ps

`celldefine
module RIM_BC_2_IN_S (input DI, SI, SE, TCK, CE, UE, M2, output reg SO, output DO);
    reg held;
    wire taken = DO;
    // One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
    always @(posedge TCK) if (CE) SO <= #1 SE ? SI : taken;
    always @(negedge TCK) if (UE) held <= #1 SO;
    assign DO = M2 ? held : DI;
endmodule
`endcelldefine
