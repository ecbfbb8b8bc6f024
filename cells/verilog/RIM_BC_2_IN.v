// BC_2. Input, between pad (DI) and core (DO). Takes what the core sees: in INTEST the update stage.
// Made by make_cells.py.
`timescale 1ns / 1ps

`celldefine
module RIM_BC_2_IN (input DI, SI, SE, CK, UP, M2, output reg SO, output DO);
    reg held;
    wire taken = DO;
    // One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
    always @(posedge CK) SO <= #1 SE ? SI : taken;
    always @(posedge UP) held <= #1 SO;
    assign DO = M2 ? held : DI;
endmodule
`endcelldefine
