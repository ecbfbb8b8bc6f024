// Pads and gates with power pins, as the simulation models of a library have them. Nothing looks at the power.

`timescale 1ns / 1ps

`celldefine
module IN_C (input PAD, output Y, inout DVDD, DVSS, VDD, VSS);
    assign Y = PAD;
endmodule

module IN_CK (input PAD, output Y, inout DVDD, DVSS, VDD, VSS);                     // of a clock
    assign Y = PAD;
endmodule

module OUT_8 (input A, output PAD, inout DVDD, DVSS, VDD, VSS);
    assign PAD = A;
endmodule

module BI_IE (input A, OE, IE, output Y, inout PAD, DVDD, DVSS, VDD, VSS);          // IE low cuts the way in
    assign PAD = OE ? A : 1'bz;
    assign Y = IE & PAD;
endmodule

module BI_DM (input A, OE, input [1:0] DM, output Y, inout PAD, DVDD, DVSS, VDD, VSS);  // 3: both ways, 1: in only
    assign PAD = OE & DM[1] & DM[0] ? A : 1'bz;
    assign Y = DM[0] & PAD;
endmodule

// Pads that the core turns on, each in a module that turns it on by ON as well. ON is open before the insertion.
module BI_IE_TEST (input A, OE, IE, ON, output Y, inout PAD, DVDD, DVSS, VDD, VSS);
    BI_IE pad (.A(A), .OE(OE), .IE(IE | ON === 1'b1), .PAD(PAD), .Y(Y),
        .DVDD(DVDD), .DVSS(DVSS), .VDD(VDD), .VSS(VSS));
endmodule

module BI_DM_TEST (input A, OE, input [1:0] DM, input ON, output Y, inout PAD, DVDD, DVSS, VDD, VSS);
    BI_DM pad (.A(A), .OE(OE), .DM(DM | {2{ON === 1'b1}}), .PAD(PAD), .Y(Y),
        .DVDD(DVDD), .DVSS(DVSS), .VDD(VDD), .VSS(VSS));
endmodule

module ANA (inout PAD, CORE, DVDD, DVSS, VDD, VSS);                                 // a wire
endmodule

module BOND (inout PAD);                                                            // metal
endmodule

module CORNER (inout DVDD, DVSS, VDD, VSS);
endmodule

module FILL (inout VDD, VSS);
endmodule

module TIEH (output Z, inout VDD, VSS);
    assign Z = 1'b1;
endmodule

module TIEL (output Z, inout VDD, VSS);
    assign Z = 1'b0;
endmodule

module BUF (input A, output Z, inout VDD, VSS);
    assign Z = A;
endmodule

module XOR2 (input A, B, output Z, inout VDD, VSS);
    assign Z = A ^ B;
endmodule

module DFFR (input D, CK, RN, output reg Q, output QN, inout VDD, VSS);
    assign QN = ~Q;
    always @(posedge CK or negedge RN)
        if (!RN) Q <= #1 1'b0;
        else     Q <= #1 D;
endmodule

// ---- what the insertion adds, beside gated.v ---------------------------------------------------------------

module BC_CTL0 (input DI, MODE, RN, SI, SE, CK, UP, output DO, output reg SO);      // control of a pad, off at 0
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP or negedge RN)
        if (!RN) held <= #1 1'b0;
        else     held <= #1 SO;
    assign DO = MODE ? held : DI;
endmodule

module TBUF (input A, output Z);
    assign Z = A;
endmodule
`endcelldefine
