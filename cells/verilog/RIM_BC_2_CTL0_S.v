// BC_2. Control, between core (DI) and the enable of pads (DO). RN sets it to 0, which turns pads with %EN_H off.
// For -synch.
// Made by make_cells.py.
`timescale 1ns / 1ps

`celldefine
module RIM_BC_2_CTL0_S (input DI, SI, SE, TCK, CE, UE, M1, M2, RN, output reg SO, output DO);
    reg held;
    wire taken = M2 ? DI : DO;
    // One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
    always @(posedge TCK) if (CE) SO <= #1 SE ? SI : taken;
    always @(negedge TCK or negedge RN)
        if (!RN) held <= #1 1'b0;
        else if (UE) held <= #1 SO;
    assign DO = M1 ? held : DI;
endmodule
`endcelldefine
