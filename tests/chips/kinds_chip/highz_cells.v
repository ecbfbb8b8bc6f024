// Boundary cells that HZ releases by themselves. The output cell has its mode on an extra pin. Gated clocks.

`timescale 1ns / 1ps

`celldefine
// output; HZ forces a 0
module BC_OUTZ (DI, MODE, HZ, DO, SO, SI, SE, CK, UP);
    input DI, MODE, HZ, SI, SE, CK, UP;
    output DO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign DO = HZ ? 1'b0 : MODE ? held : DI;
endmodule

// control; RN and HZ set it to 1
module BC_CTLZ (DI, MODE, HZ, RN, DO, SO, SI, SE, CK, UP);
    input DI, MODE, HZ, RN, SI, SE, CK, UP;
    output DO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP or negedge RN)
        if (!RN) held <= #1 1'b1;
        else     held <= #1 SO;
    assign DO = HZ ? 1'b1 : MODE ? held : DI;
endmodule
`endcelldefine
