// Boundary cells that have no mode of their own: OM comes from the control cell of their pad. Gated clocks.

`timescale 1ns / 1ps

`celldefine
// output
module BC_OUTX (DI, OM, DO, SO, SI, SE, CK, UP);
    input DI, OM, SI, SE, CK, UP;
    output DO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign DO = OM ? held : DI;
endmodule

// both ways of a pad
module BC_BIDX (DI, SP, OM, MODE2, DO, CI, SO, SI, SE, CK, UP);
    input DI, SP, OM, MODE2, SI, SE, CK, UP;
    output DO, CI, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : (MODE2 ? DI : SP);
    always @(posedge UP) held <= #1 SO;
    assign DO = OM ? held : DI;
    assign CI = MODE2 ? held : SP;
endmodule

// control, hands its mode on; RN sets it to 1
module BC_CTLX (DI, MODE, RN, DO, OM, SO, SI, SE, CK, UP);
    input DI, MODE, RN, SI, SE, CK, UP;
    output DO, OM, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP or negedge RN)
        if (!RN) held <= #1 1'b1;
        else     held <= #1 SO;
    assign DO = MODE ? held : DI;
    assign OM = MODE;
endmodule
`endcelldefine
