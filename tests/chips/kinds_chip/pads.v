// Pads and gates of the kinds chip. A test pin of a pad that nobody wires counts as 0, in the chip before the
// insertion as well; the pads with a boundary cell inside stand with the cells, since they need their clocks.

`timescale 1ns / 1ps

`celldefine
module IPAD (input PAD, output C);              // input
    assign C = PAD;
endmodule

module CKPAD (input PAD, output C);             // clock input
    assign C = PAD;
endmodule

module OPAD (input I, output PAD);              // 2-state output
    assign PAD = I;
endmodule

module TPAD (input I, OEN, output PAD);         // 3-state output, OEN low drives
    assign PAD = OEN ? 1'bz : I;
endmodule

module TPADH (input I, OE, output PAD);         // 3-state output, OE high drives
    assign PAD = OE ? I : 1'bz;
endmodule

module TPAD2 (input I, OEN, OE, output PAD);    // 3-state output with two enables, both have to agree
    assign PAD = OE & ~OEN ? I : 1'bz;
endmodule

module ODPAD (input OEN, output PAD);           // open drain: pulls down while OEN is low
    assign PAD = OEN ? 1'bz : 1'b0;
endmodule

module OSPAD (input OE, output PAD);            // open source: pulls up while OE is high
    assign PAD = OE ? 1'b1 : 1'bz;
endmodule

module BPAD (input I, OEN, output C, inout PAD);  // bidirectional, OEN low drives
    assign PAD = OEN ? 1'bz : I;
    assign C = PAD;
endmodule

module BPADH (input I, OE, output C, inout PAD);  // bidirectional, OE high drives
    assign PAD = OE ? I : 1'bz;
    assign C = PAD;
endmodule

module DIPAD (input PP, PM, output C);          // differential input
    assign C = PP & ~PM;
endmodule

module DOPAD (input I, output PP, PM);          // differential output
    assign PP = I;
    assign PM = ~I;
endmodule

module DTPAD (input I, OEN, output PP, PM);     // differential 3-state output, OEN low drives
    assign PP = OEN ? 1'bz : I;
    assign PM = OEN ? 1'bz : ~I;
endmodule

module MIPAD (input PAD, T, S, output C);       // input, S takes the test input T instead of the pin
    assign C = S === 1'b1 ? T : PAD;
endmodule

module MCKPAD (input PAD, T, S, output C);      // the same for a clock
    assign C = S === 1'b1 ? T : PAD;
endmodule

module MOPAD (input I, T, S, output PAD);       // 2-state output, S takes T instead of I
    assign PAD = S === 1'b1 ? T : I;
endmodule

module MTPAD (input I, T, S, OEN, output PAD);  // the same with an enable
    assign PAD = OEN ? 1'bz : S === 1'b1 ? T : I;
endmodule

module MEPAD (input T, S, OEN, output PAD);     // pulls down while OEN, or T with S, is low
    assign PAD = (S === 1'b1 ? T : OEN) ? 1'bz : 1'b0;
endmodule

module MBPAD (input I, T, S, OEN, output C, inout PAD);  // bidirectional, a mux in the way out
    assign PAD = OEN ? 1'bz : S === 1'b1 ? T : I;
    assign C = PAD;
endmodule

module MBPAD2 (input I, T, S, OEN, T2, S2, output C, inout PAD);  // bidirectional, a mux in each way
    assign PAD = OEN ? 1'bz : S === 1'b1 ? T : I;
    assign C = S2 === 1'b1 ? T2 : PAD;
endmodule

// ---- gates ------------------------------------------------------------------------------------------

module TRBUF (input A, output Z);               // stands between a pad and the core: part of the pad
    assign Z = A;
endmodule

module TBUF (input A, output Z);                // for the trees of the test signals
    assign Z = A;
endmodule

module CBUF (input A, output Z);                // for the chains of the clocks
    assign Z = A;
endmodule

module INV (input A, output Z);
    assign Z = ~A;
endmodule

module NAND2 (input A, B, output Z);
    assign Z = ~(A & B);
endmodule

module XOR2 (input A, B, output Z);
    assign Z = A ^ B;
endmodule

module DFFR (input D, CK, RN, output reg Q);
    always @(posedge CK or negedge RN)
        if (!RN) Q <= #1 1'b0;
        else     Q <= #1 D;
endmodule
`endcelldefine
