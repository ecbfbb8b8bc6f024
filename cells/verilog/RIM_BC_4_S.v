// BC_4. Clock or observe-only: looks at its wire (DI) and leaves it alone. For -synch.
// Made by make_cells.py.
`timescale 1ns / 1ps

`celldefine
module RIM_BC_4_S (input DI, SI, SE, TCK, CE, output reg SO);
    wire taken = DI;
    // One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
    always @(posedge TCK) if (CE) SO <= #1 SE ? SI : taken;
endmodule
`endcelldefine
