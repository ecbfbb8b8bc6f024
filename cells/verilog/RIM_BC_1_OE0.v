// BC_1. Control, between core (DI) and the enable of pads (DO). RN sets it to 0, which turns pads with %EN_H off.
// PAD_ON tells a BC_7 whether the pad drives.
// Made by make_cells.py.
`timescale 1ns / 1ps

`celldefine
module RIM_BC_1_OE0 (input DI, SI, SE, CK, UP, M1, RN, output reg SO, output DO, PAD_ON);
    reg held;
    wire taken = DI;
    // One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
    always @(posedge CK) SO <= #1 SE ? SI : taken;
    always @(posedge UP or negedge RN)
        if (!RN) held <= #1 1'b0;
        else held <= #1 SO;
    assign DO = M1 ? held : DI;
    assign PAD_ON = DO;
endmodule
`endcelldefine
