module BC_OBS(input DI, SI, SE, CK, output SO); endmodule
module BC_OE(input DI, SI, SE, CK, TK, UP, MD, OM, output DO, SO); endmodule
module BC_COE(input DI, SI, SE, CK, TK, UP, MD, output DO, SO, OM); endmodule
module BC_X(input DI, SI, SE, CK, TK, UP, MD, XA, output DO, SO); endmodule
module BC_M2(input DI, SI, SE, CK, M2, output DO, SO); endmodule
module BC_MB(input DI, SP, SI, SE, CK, UP, MI, output SY, UO, SO); endmodule
module BBH(input I, EN, inout PAD, output C); endmodule
module DTB(input I, OEN, output PP, PM); endmodule
module BC_MI(input DI, SI, SE, CK, UP, output UO, SO); endmodule
module MXB(input I, OEN, T, M, inout PAD, output C, X); endmodule
module MX2(input I, OEN, T, M, T2, N, inout PAD, output C); endmodule
module BSB(input I, OEN, SI, SE, CK, UP, MD, inout PAD, output C, SO); endmodule
module MACRO(inout IO); endmodule
module TRB(input A, output Z); endmodule
module tapm(input TDI, TMS, TCK, BC_LAST, output TDO, TDO_EN, clockDR, shiftDR, updateDR, mode1, highz, xtra,
            BC_FIRST, BCELL_TCK); endmodule
module EBUF(input EN, output PAD); endmodule
module MUXI(input PAD, T, M, output C); endmodule
module MUXO(input I, T, M, output PAD); endmodule
module MUXT(input I, T, M, OEN, output PAD); endmodule
module BSIN(input PAD, SI, SE, CK, UP, MD, output C, SO); endmodule
module BSOUT(input I, SI, SE, CK, UP, MD, output PAD, SO); endmodule
