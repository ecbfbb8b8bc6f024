// Boundary cells on the gated clocks of the TAP: CK rises to capture or shift, UP rises to update. TCK is not
// looked at; for -synch the proof makes cells of these that are clocked by it. The pads with a cell inside count an
// unwired MODE as 0.

`timescale 1ns / 1ps

`celldefine
// input; MODE is high in INTEST alone
module BC_IN (input DI, MODE, SI, SE, CK, UP, TCK, output DO, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign DO = MODE ? held : DI;
endmodule

// looks on: clock pins, observed and inverted signals
module BC_OBS (input DI, SI, SE, CK, TCK, output reg SO);
    always @(posedge CK) SO <= #1 SE ? SI : DI;
endmodule

// output; MODE is high in EXTEST, INTEST and CLAMP
module BC_OUT (input DI, MODE, SI, SE, CK, UP, TCK, output DO, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign DO = MODE ? held : DI;
endmodule

// control; RN sets it to 1
module BC_CTL (input DI, MODE, RN, SI, SE, CK, UP, TCK, output DO, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP or negedge RN)
        if (!RN) held <= #1 1'b1;
        else     held <= #1 SO;
    assign DO = MODE ? held : DI;
endmodule

// both ways of a pad; takes the pin, in INTEST the core
module BC_BID (input DI, SP, MODE1, MODE2, SI, SE, CK, UP, TCK, output DO, CI, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : (MODE2 ? DI : SP);
    always @(posedge UP) held <= #1 SO;
    assign DO = MODE1 ? held : DI;
    assign CI = MODE2 ? held : SP;
endmodule

// of a pad with a mux: the pad itself selects
module BC_MUX (input DI, SI, SE, CK, UP, TCK, output UO, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign UO = held;
endmodule

// both ways of a pad with a mux in the way out
module BC_MUXB (input DI, SP, MODE2, SI, SE, CK, UP, TCK, output CI, UO, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : (MODE2 ? DI : SP);
    always @(posedge UP) held <= #1 SO;
    assign UO = held;
    assign CI = MODE2 ? held : SP;
endmodule

// input pad with its cell inside
module BSIPAD (input PAD, MODE, SI, SE, CK, UP, TCK, output C, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : PAD;
    always @(posedge UP) held <= #1 SO;
    assign C = MODE === 1'b1 ? held : PAD;
endmodule

// 3-state output pad with its data cell inside, OEN low drives
module BSTPAD (input I, OEN, MODE, SI, SE, CK, UP, TCK, output PAD, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : I;
    always @(posedge UP) held <= #1 SO;
    assign PAD = OEN ? 1'bz : MODE === 1'b1 ? held : I;
endmodule

// bidirectional pad with its data cell inside; takes the pin, in INTEST the core
module BSBPAD (input I, OEN, MODE1, MODE2, SI, SE, CK, UP, TCK, output C, output reg SO, inout PAD);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : (MODE2 === 1'b1 ? I : PAD);
    always @(posedge UP) held <= #1 SO;
    assign PAD = OEN ? 1'bz : MODE1 === 1'b1 ? held : I;
    assign C = MODE2 === 1'b1 ? held : PAD;
endmodule

// ---- cells that have no mode of their own: OM comes from the control cell of their pad

// output
module BC_OUTX (input DI, OM, SI, SE, CK, UP, TCK, output DO, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign DO = OM ? held : DI;
endmodule

// both ways of a pad
module BC_BIDX (input DI, SP, OM, MODE2, SI, SE, CK, UP, TCK, output DO, CI, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : (MODE2 ? DI : SP);
    always @(posedge UP) held <= #1 SO;
    assign DO = OM ? held : DI;
    assign CI = MODE2 ? held : SP;
endmodule

// control, hands its mode on; RN sets it to 1
module BC_CTLX (input DI, MODE, RN, SI, SE, CK, UP, TCK, output DO, OM, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP or negedge RN)
        if (!RN) held <= #1 1'b1;
        else     held <= #1 SO;
    assign DO = MODE ? held : DI;
    assign OM = MODE;
endmodule

// ---- cells that HZ releases by themselves; the output cell has its mode on an extra pin

// output; HZ forces a 0
module BC_OUTZ (input DI, MODE, HZ, SI, SE, CK, UP, TCK, output DO, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign DO = HZ ? 1'b0 : MODE ? held : DI;
endmodule

// control; RN and HZ set it to 1
module BC_CTLZ (input DI, MODE, HZ, RN, SI, SE, CK, UP, TCK, output DO, output reg SO);
    reg held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP or negedge RN)
        if (!RN) held <= #1 1'b1;
        else     held <= #1 SO;
    assign DO = HZ ? 1'b1 : MODE ? held : DI;
endmodule
`endcelldefine
