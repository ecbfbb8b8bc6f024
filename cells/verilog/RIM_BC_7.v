// BC_7. Bidirectional, both ways through the cell: core (DI) to pad (DO), pad (SP) to core (CI). Takes the core
// while the pad drives, else what the core sees; in EXTEST the pin. PAD_ON comes from the control cell of the
// pad, RIM_BC_1_OE0 or RIM_BC_1_OE1.
// Made by make_cells.py.
`timescale 1ns / 1ps

`celldefine
module RIM_BC_7 (input DI, SP, SI, SE, CK, UP, M1, M2, PAD_ON, output reg SO, output DO, CI);
    reg held;
    wire taken = (PAD_ON & (~M1 | M2)) ? DI : CI;
    // One time unit after its clock: the neighbour has taken the old value, whatever the order of events.
    always @(posedge CK) SO <= #1 SE ? SI : taken;
    always @(posedge UP) held <= #1 SO;
    assign DO = M1 ? held : DI;
    assign CI = M2 ? held : SP;
endmodule
`endcelldefine
