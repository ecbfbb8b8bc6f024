// BC_10. Output that watches its pin, core (DI) to pad (DO). Takes the pin (SP), by the receiver that a
// bidirectional pad has. Not for INTEST.
// Made by make_cells.py.
`timescale 1ns / 1ps

`celldefine
module RIM_BC_10 (input DI, SP, SI, SE, CK, UP, M1, output reg SO, output DO);
    reg held;
    wire taken = SP;
    // One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
    always @(posedge CK) SO <= #1 SE ? SI : taken;
    always @(posedge UP) held <= #1 SO;
    assign DO = M1 ? held : DI;
endmodule
`endcelldefine
