// Inverter, and inverting buffer for the trees. Made by make_cells.py.
`timescale 1ns / 1ps

`celldefine
module RIM_INV (input A, output Z);
    assign Z = ~A;
endmodule
`endcelldefine
