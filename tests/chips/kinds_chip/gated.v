// Boundary cells on the gated clocks of the TAP: CK rises to capture or shift, UP rises to update. TCK is not
// looked at; for -synch the proof makes cells of these that are clocked by it. The pads with a cell inside count an unwired MODE as 0.

`timescale 1ns / 1ps

`celldefine
// input; MODE is high in INTEST alone
module BC_IN (DI, MODE, DO, SO, SI, SE, CK, UP, TCK);
    input DI, MODE, SI, SE, CK, UP, TCK;
    output DO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign DO = MODE ? held : DI;
endmodule

// looks on: clock pins, observed and inverted signals
module BC_OBS (DI, SO, SI, SE, CK, TCK);
    input DI, SI, SE, CK, TCK;
    output SO;
    reg SO;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
endmodule

// output; MODE is high in EXTEST, INTEST and CLAMP
module BC_OUT (DI, MODE, DO, SO, SI, SE, CK, UP, TCK);
    input DI, MODE, SI, SE, CK, UP, TCK;
    output DO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign DO = MODE ? held : DI;
endmodule

// control; RN sets it to 1
module BC_CTL (DI, MODE, RN, DO, SO, SI, SE, CK, UP, TCK);
    input DI, MODE, RN, SI, SE, CK, UP, TCK;
    output DO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP or negedge RN)
        if (!RN) held <= #1 1'b1;
        else     held <= #1 SO;
    assign DO = MODE ? held : DI;
endmodule

// both ways of a pad; takes the pin, in INTEST the core
module BC_BID (DI, SP, MODE1, MODE2, DO, CI, SO, SI, SE, CK, UP, TCK);
    input DI, SP, MODE1, MODE2, SI, SE, CK, UP, TCK;
    output DO, CI, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : (MODE2 ? DI : SP);
    always @(posedge UP) held <= #1 SO;
    assign DO = MODE1 ? held : DI;
    assign CI = MODE2 ? held : SP;
endmodule

// of a pad with a mux: the pad itself selects
module BC_MUX (DI, UO, SO, SI, SE, CK, UP, TCK);
    input DI, SI, SE, CK, UP, TCK;
    output UO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : DI;
    always @(posedge UP) held <= #1 SO;
    assign UO = held;
endmodule

// both ways of a pad with a mux in the way out
module BC_MUXB (DI, SP, MODE2, CI, UO, SO, SI, SE, CK, UP, TCK);
    input DI, SP, MODE2, SI, SE, CK, UP, TCK;
    output CI, UO, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : (MODE2 ? DI : SP);
    always @(posedge UP) held <= #1 SO;
    assign UO = held;
    assign CI = MODE2 ? held : SP;
endmodule

// input pad with its cell inside
module BSIPAD (PAD, MODE, C, SO, SI, SE, CK, UP, TCK);
    input PAD, MODE, SI, SE, CK, UP, TCK;
    output C, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : PAD;
    always @(posedge UP) held <= #1 SO;
    assign C = MODE === 1'b1 ? held : PAD;
endmodule

// 3-state output pad with its data cell inside, OEN low drives
module BSTPAD (I, OEN, MODE, PAD, SO, SI, SE, CK, UP, TCK);
    input I, OEN, MODE, SI, SE, CK, UP, TCK;
    output PAD, SO;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : I;
    always @(posedge UP) held <= #1 SO;
    assign PAD = OEN ? 1'bz : MODE === 1'b1 ? held : I;
endmodule

// bidirectional pad with its data cell inside; takes the pin, in INTEST the core
module BSBPAD (I, OEN, MODE1, MODE2, C, PAD, SO, SI, SE, CK, UP, TCK);
    input I, OEN, MODE1, MODE2, SI, SE, CK, UP, TCK;
    output C, SO;
    inout PAD;
    reg SO, held;
    always @(posedge CK) SO <= #1 SE ? SI : (MODE2 === 1'b1 ? I : PAD);
    always @(posedge UP) held <= #1 SO;
    assign PAD = OEN ? 1'bz : MODE1 === 1'b1 ? held : I;
    assign C = MODE2 === 1'b1 ? held : PAD;
endmodule
`endcelldefine
