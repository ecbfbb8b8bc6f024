// Buffer for the trees of the control signals. Made by make_cells.py.
`timescale 1ns / 1ps

`celldefine
module RIM_BUF (input A, output Z);
    assign Z = A;
endmodule
`endcelldefine
