module IBUF(input PAD, output C); endmodule
module OBUF(input I, output PAD); endmodule
module TBUF(input I, input OEN, output PAD); endmodule
module BBUF(input I, input OEN, inout PAD, output C); endmodule
module INV(input A, output Z); endmodule
module BUFX(input A, output Z); endmodule
module IBX(input A, output Z); endmodule
module FF(input D, input CK, output Q); endmodule
module TIE0(output Z); endmodule
module BC_IN(input DI, SI, SE, CK, TK, UP, MD, output DO, SO); endmodule
module BC_OUT(input DI, SI, SE, CK, TK, UP, MD, output DO, SO); endmodule
module BC_CTL(input DI, SI, SE, CK, TK, UP, MD, output DO, SO); endmodule
module BC_BI(input DI, SI, SP, SE, CK, TK, UP, MD, output DO, SYS, SO); endmodule
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
// With few pins, so that a file can be read.
module BC_S(input DI, SI, SE, CK, output DO, SO); endmodule
module BSS(input PAD, SI, SE, CK, output C, SO); endmodule
// The user's module of all cells, as far as the chips reach it.
module chip_BCM(input BCM_TDI, BCM_TMS, BCM_TCK, BCELL0_IN, BCELL1_IN, BCELL2_IN, BCELL3_IN, BCELL4_IN,
  BCELL5_IN, BCELL6_IN, BCELL2_OE, BCELL4_OE, BCELL1_IN_IN, BCELL6_PAD_IN, BCELL6_DATA_IN, BCELL5_PAD_IN, BCELL5_DATA_IN,
  output BCM_TDO, BCM_TDO_EN, BCELL0_OUT, BCELL1_OUT, BCELL2_OUT, BCELL3_OUT, BCELL4_OUT, BCELL5_OUT,
  BCELL6_OUT, BCELL1_IN_OUT, BCELL6_PAD_OUT, BCELL6_DATA_OUT, BCELL5_PAD_OUT, BCELL5_DATA_OUT, BCELL0_UPD_OUT, BCELL0_MODE2); endmodule
module BC_G(input DI, SI, SE, CK, XB, output DO, SO); endmodule
module IB2(input P, IE, inout VDD, output Q); endmodule
module MUXC(input PAD, T, S, output C); endmodule
module TB2(input I, OEN, EN, output PAD); endmodule
