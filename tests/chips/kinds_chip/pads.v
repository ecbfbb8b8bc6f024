// Pads and gates of the kinds chip. A test pin of a pad that nobody wires counts as 0, in the chip before the
// insertion as well; the pads with a boundary cell inside stand with the cells, since they need their clocks.

`timescale 1ns / 1ps

`celldefine
module IPAD (PAD, C);                           // input
    input PAD;
    output C;
    assign C = PAD;
endmodule

module CKPAD (PAD, C);                          // clock input
    input PAD;
    output C;
    assign C = PAD;
endmodule

module OPAD (I, PAD);                           // 2-state output
    input I;
    output PAD;
    assign PAD = I;
endmodule

module TPAD (I, OEN, PAD);                      // 3-state output, OEN low drives
    input I, OEN;
    output PAD;
    assign PAD = OEN ? 1'bz : I;
endmodule

module TPADH (I, OE, PAD);                      // 3-state output, OE high drives
    input I, OE;
    output PAD;
    assign PAD = OE ? I : 1'bz;
endmodule

module TPAD2 (I, OEN, OE, PAD);                 // 3-state output with two enables, both have to agree
    input I, OEN, OE;
    output PAD;
    assign PAD = OE & ~OEN ? I : 1'bz;
endmodule

module ODPAD (OEN, PAD);                        // open drain: pulls down while OEN is low
    input OEN;
    output PAD;
    assign PAD = OEN ? 1'bz : 1'b0;
endmodule

module OSPAD (OE, PAD);                         // open source: pulls up while OE is high
    input OE;
    output PAD;
    assign PAD = OE ? 1'b1 : 1'bz;
endmodule

module BPAD (I, OEN, C, PAD);                   // bidirectional, OEN low drives
    input I, OEN;
    output C;
    inout PAD;
    assign PAD = OEN ? 1'bz : I;
    assign C = PAD;
endmodule

module BPADH (I, OE, C, PAD);                   // bidirectional, OE high drives
    input I, OE;
    output C;
    inout PAD;
    assign PAD = OE ? I : 1'bz;
    assign C = PAD;
endmodule

module DIPAD (PP, PM, C);                       // differential input
    input PP, PM;
    output C;
    assign C = PP & ~PM;
endmodule

module DOPAD (I, PP, PM);                       // differential output
    input I;
    output PP, PM;
    assign PP = I;
    assign PM = ~I;
endmodule

module DTPAD (I, OEN, PP, PM);                  // differential 3-state output, OEN low drives
    input I, OEN;
    output PP, PM;
    assign PP = OEN ? 1'bz : I;
    assign PM = OEN ? 1'bz : ~I;
endmodule

module MIPAD (PAD, T, S, C);                    // input, S takes the test input T instead of the pin
    input PAD, T, S;
    output C;
    assign C = S === 1'b1 ? T : PAD;
endmodule

module MCKPAD (PAD, T, S, C);                   // the same for a clock
    input PAD, T, S;
    output C;
    assign C = S === 1'b1 ? T : PAD;
endmodule

module MOPAD (I, T, S, PAD);                    // 2-state output, S takes T instead of I
    input I, T, S;
    output PAD;
    assign PAD = S === 1'b1 ? T : I;
endmodule

module MTPAD (I, T, S, OEN, PAD);               // the same with an enable
    input I, T, S, OEN;
    output PAD;
    assign PAD = OEN ? 1'bz : S === 1'b1 ? T : I;
endmodule

module MEPAD (T, S, OEN, PAD);                  // pulls down while OEN, or T with S, is low
    input T, S, OEN;
    output PAD;
    assign PAD = (S === 1'b1 ? T : OEN) ? 1'bz : 1'b0;
endmodule

module MBPAD (I, T, S, OEN, C, PAD);            // bidirectional, a mux in the way out
    input I, T, S, OEN;
    output C;
    inout PAD;
    assign PAD = OEN ? 1'bz : S === 1'b1 ? T : I;
    assign C = PAD;
endmodule

module MBPAD2 (I, T, S, OEN, T2, S2, C, PAD);   // bidirectional, a mux in each way
    input I, T, S, OEN, T2, S2;
    output C;
    inout PAD;
    assign PAD = OEN ? 1'bz : S === 1'b1 ? T : I;
    assign C = S2 === 1'b1 ? T2 : PAD;
endmodule

// ---- gates ------------------------------------------------------------------------------------------

module TRBUF (A, Z);                            // stands between a pad and the core: part of the pad
    input A;
    output Z;
    assign Z = A;
endmodule

module TBUF (A, Z);                             // for the trees of the test signals
    input A;
    output Z;
    assign Z = A;
endmodule

module CBUF (A, Z);                             // for the chains of the clocks
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

module XOR2 (A, B, Z);
    input A, B;
    output Z;
    assign Z = A ^ B;
endmodule

module DFFR (D, CK, RN, Q);
    input D, CK, RN;
    output Q;
    reg Q;
    always @(posedge CK or negedge RN)
        if (!RN) Q <= #1 1'b0;
        else     Q <= #1 D;
endmodule
`endcelldefine
