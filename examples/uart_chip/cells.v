// The cell library of the example: pads, gates, buffers and boundary-scan cells, with simulation models.
//
// The boundary cells are clocked by the gated clocks of the TAP:
//   CK  idles high, follows TCK in Capture-DR and Shift-DR; its rising edge captures or shifts
//   UP  is high in the low phase of TCK in Update-DR; its rising edge loads the update stage
//   SE  changes at the falling edge of TCK, half a period away from any edge of CK
// The stages answer one time unit after their clock, so a shift is safe whatever order the simulator
// takes the branches of a clock tree in.

`timescale 1ns / 1ps

// ---- pads -------------------------------------------------------------------------------------------

`celldefine
module IPAD (PAD, C);                   // input
    input PAD;
    output C;
    assign C = PAD;
endmodule

module IPADU (PAD, C);                  // input with a pull-up: a test pin that nobody drives reads as 1
    input PAD;
    output C;
`ifndef SYNTHESIS
    tri1 PAD;
`endif
    assign C = PAD;
endmodule

module CKPAD (PAD, C);                  // clock input
    input PAD;
    output C;
    assign C = PAD;
endmodule

module OPAD (I, PAD);                   // 2-state output
    input I;
    output PAD;
    assign PAD = I;
endmodule

module TPAD (I, OEN, PAD);              // 3-state output, OEN low drives
    input I, OEN;
    output PAD;
    assign PAD = OEN ? 1'bz : I;
endmodule

module BPAD (I, OEN, C, PAD);           // bidirectional, OEN low drives
    input I, OEN;
    output C;
    inout PAD;
    assign PAD = OEN ? 1'bz : I;
    assign C = PAD;
endmodule

// ---- boundary cells ---------------------------------------------------------------------------------

// Input, between pad (DI) and core (DO). MODE is the TAP's mode 2, high in INTEST alone: in every other
// instruction the core sees its pins, so EXTEST does not feed the core with test data.
module BC_IN (DI, DO, SI, SO, SE, CK, UP, MODE);
    input DI, SI, SE, CK, UP, MODE;
    output DO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign DO = MODE ? held : DI;
endmodule

// Clock input: looks at the pad and leaves the clock wire alone. No gate in the clock, no skew.
module BC_CLK (DI, SI, SO, SE, CK);
    input DI, SI, SE, CK;
    output SO;
    reg SO;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
endmodule

// Output, between core (DI) and pad (DO). MODE is the TAP's mode 1, high in EXTEST, INTEST and CLAMP.
module BC_OUT (DI, DO, SI, SO, SE, CK, UP, MODE);
    input DI, SI, SE, CK, UP, MODE;
    output DO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign DO = MODE ? held : DI;
endmodule

// Control, between core (DI) and the OEN of one or more pads (DO). RN, low in Test-Logic-Reset, sets the
// update stage to 1, which is off: an EXTEST without a preload releases every bus.
module BC_CTL (DI, DO, SI, SO, SE, CK, UP, MODE, RN);
    input DI, SI, SE, CK, UP, MODE, RN;
    output DO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP or negedge RN)
        if (!RN) held <= #1 1'b1;
        else     held <= #1 SO;
    assign DO = MODE ? held : DI;
endmodule

// Bidirectional: one stage for both directions of a pad. DI and DO are the way out, SP and CI the way in.
// It captures the pin, so that EXTEST sees what really stands there; in INTEST (MODE2) it captures the core.
module BC_BID (DI, DO, SP, CI, SI, SO, SE, CK, UP, MODE1, MODE2);
    input DI, SP, SI, SE, CK, UP, MODE1, MODE2;
    output DO, CI, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : MODE2 ? DI : SP;
    always @(posedge UP) held <= #1 SO;
    assign DO = MODE1 ? held : DI;
    assign CI = MODE2 ? held : SP;
endmodule

// ---- gates ------------------------------------------------------------------------------------------

module BUF (A, Z);
    input A;
    output Z;
    assign Z = A;
endmodule

module TBUF (A, Z);                     // strong buffer for the trees of the test signals
    input A;
    output Z;
    assign Z = A;
endmodule

module INV (A, Z);
    input A;
    output Z;
    assign Z = ~A;
endmodule

module NAND2 (A, B, Z);
    input A, B;
    output Z;
    assign Z = ~(A & B);
endmodule

module NOR2 (A, B, Z);
    input A, B;
    output Z;
    assign Z = ~(A | B);
endmodule

module AND2 (A, B, Z);
    input A, B;
    output Z;
    assign Z = A & B;
endmodule

module OR2 (A, B, Z);
    input A, B;
    output Z;
    assign Z = A | B;
endmodule

module XOR2 (A, B, Z);
    input A, B;
    output Z;
    assign Z = A ^ B;
endmodule

module MUX2 (D0, D1, S, Z);
    input D0, D1, S;
    output Z;
    assign Z = S ? D1 : D0;
endmodule

module DFFR (D, CK, RN, Q);
    input D, CK, RN;
    output Q;
    reg Q;
    always @(posedge CK or negedge RN)
        if (!RN) Q <= #1 1'b0;
        else     Q <= #1 D;
endmodule

module DFFS (D, CK, SN, Q);
    input D, CK, SN;
    output Q;
    reg Q;
    always @(posedge CK or negedge SN)
        if (!SN) Q <= #1 1'b1;
        else     Q <= #1 D;
endmodule

module TIE0 (Z);
    output Z;
    assign Z = 1'b0;
endmodule

module TIE1 (Z);
    output Z;
    assign Z = 1'b1;
endmodule
`endcelldefine
