// Pads and gates with power pins, as the simulation models of a library are. Nothing here looks at the power.

`timescale 1ns / 1ps

`celldefine
module IN_C (PAD, Y, DVDD, DVSS, VDD, VSS);                         // input
    input PAD;
    output Y;
    inout DVDD, DVSS, VDD, VSS;
    assign Y = PAD;
endmodule

module IN_CK (PAD, Y, DVDD, DVSS, VDD, VSS);                        // clock input
    input PAD;
    output Y;
    inout DVDD, DVSS, VDD, VSS;
    assign Y = PAD;
endmodule

module OUT_8 (A, PAD, DVDD, DVSS, VDD, VSS);                        // 2-state output
    input A;
    output PAD;
    inout DVDD, DVSS, VDD, VSS;
    assign PAD = A;
endmodule

module BI_IE (A, OE, IE, PAD, Y, DVDD, DVSS, VDD, VSS);             // bidirectional, IE low cuts the way in
    input A, OE, IE;
    output Y;
    inout PAD, DVDD, DVSS, VDD, VSS;
    assign PAD = OE ? A : 1'bz;
    assign Y = IE & PAD;
endmodule

module BI_DM (A, OE, DM, PAD, Y, DVDD, DVSS, VDD, VSS);             // DM: 3 both ways, 1 in only, others off
    input A, OE;
    input [1:0] DM;
    output Y;
    inout PAD, DVDD, DVSS, VDD, VSS;
    assign PAD = OE & DM[1] & DM[0] ? A : 1'bz;
    assign Y = DM[0] & PAD;
endmodule

// Pads that the core turns on, each in a module that turns it on by ON as well. ON is open before the insertion.
module BI_IE_TEST (A, OE, IE, ON, PAD, Y, DVDD, DVSS, VDD, VSS);
    input A, OE, IE, ON;
    output Y;
    inout PAD, DVDD, DVSS, VDD, VSS;
    BI_IE pad (.A(A), .OE(OE), .IE(IE | ON === 1'b1), .PAD(PAD), .Y(Y),
        .DVDD(DVDD), .DVSS(DVSS), .VDD(VDD), .VSS(VSS));
endmodule

module BI_DM_TEST (A, OE, DM, ON, PAD, Y, DVDD, DVSS, VDD, VSS);
    input A, OE, ON;
    input [1:0] DM;
    output Y;
    inout PAD, DVDD, DVSS, VDD, VSS;
    BI_DM pad (.A(A), .OE(OE), .DM(DM | {2{ON === 1'b1}}), .PAD(PAD), .Y(Y),
        .DVDD(DVDD), .DVSS(DVSS), .VDD(VDD), .VSS(VSS));
endmodule

module ANA (PAD, CORE, DVDD, DVSS, VDD, VSS);                       // analog: a wire
    inout PAD, CORE, DVDD, DVSS, VDD, VSS;
endmodule

module BOND (PAD);                                                  // the metal of a bond pad
    inout PAD;
endmodule

module CORNER (DVDD, DVSS, VDD, VSS);
    inout DVDD, DVSS, VDD, VSS;
endmodule

module FILL (VDD, VSS);
    inout VDD, VSS;
endmodule

module TIEH (Z, VDD, VSS);
    output Z;
    inout VDD, VSS;
    assign Z = 1'b1;
endmodule

module TIEL (Z, VDD, VSS);
    output Z;
    inout VDD, VSS;
    assign Z = 1'b0;
endmodule

module BUF (A, Z, VDD, VSS);
    input A;
    output Z;
    inout VDD, VSS;
    assign Z = A;
endmodule

module XOR2 (A, B, Z, VDD, VSS);
    input A, B;
    output Z;
    inout VDD, VSS;
    assign Z = A ^ B;
endmodule

module DFFR (D, CK, RN, Q, QN, VDD, VSS);
    input D, CK, RN;
    output Q, QN;
    inout VDD, VSS;
    reg Q;
    assign QN = ~Q;
    always @(posedge CK or negedge RN)
        if (!RN) Q <= #1 1'b0;
        else     Q <= #1 D;
endmodule
`endcelldefine

module BC_CTL0 (DI, MODE, RN, DO, SO, SI, SE, CK, UP);              // control of a pad that is off at 0
    input DI, MODE, RN, SI, SE, CK, UP;
    output DO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP or negedge RN)
        if (!RN) held <= #1 1'b0;
        else     held <= #1 SO;
    assign DO = MODE ? held : DI;
endmodule

module TBUF (A, Z);                                                 // for the trees of the test signals
    input A;
    output Z;
    assign Z = A;
endmodule
