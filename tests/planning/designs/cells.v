// Pads.
module IBUF(input PAD, output C); endmodule
module A_PAD_OF_24_CHARACTERS_X(input PAD, output C); endmodule
module CBUF(input PAD, output C); endmodule
module OBUF(input I, output PAD); endmodule
module TBUF(input I, OEN, EN, output PAD); endmodule
module SAME(input I, output PAD); endmodule
module HBUF(input I, EN, output PAD); endmodule
module EBUF(input OEN, output PAD); endmodule
module BBUF(input I, OEN, inout PAD, output C); endmodule
module DINP(input PP, PM, PX, output C); endmodule
module DOUT(input I, OEN, output PP, PM, PX); endmodule
module BSIN(input PAD, si, sh, ck, di, m2, output C, so); endmodule
module BSOU(input I, si, sh, ck, up, m, di, output PAD, so, do); endmodule
module BSOE(input I, OEN, si, sh, ck, up, m, di, output PAD, so, do); endmodule
module BSCE(input I, OEN, si, sh, ck, up, m, di, output PAD, so, do); endmodule
module BSIO(input I, OEN, si, sh, ck, up, m, di, sp, inout PAD, output C, so, do); endmodule
module MUXI(input PAD, T, S, output C); endmodule
module MUXC(input PAD, T, S, output C); endmodule
module MUXO(input I, T, S, output PAD); endmodule
module MUXT(input I, T, S, OEN, output PAD); endmodule
module MUXE(input T, S, OEN, output PAD); endmodule
module MXB1(input I, OEN, T, S, inout PAD, output C, M); endmodule
module MXB2(input I, OEN, T, S, T2, S2, inout PAD, output C); endmodule
// Cells of the core. GATE and XPAD are in no library but that of a case.
module PLAIN(input A, output Z); endmodule
module INVB(input A, output Z); endmodule
module FEED(input A, output Z); endmodule
module GATE(input A, B, output Z); endmodule
module XPAD(input A, inout PAD); endmodule
module TIEX(output Z, input A); endmodule
module WILD1(input A, output Z); endmodule
// Boundary cells.
module BC_IN(input di, si, sh, ck, tk, output do, so); endmodule
module BC_CLK(input di, si, sh, ck, tk, output so); endmodule
module BC_OUT(input di, si, sh, ck, tk, up, m, output do, so); endmodule
module BC_HZ(input di, si, sh, ck, tk, up, m, hz, output do, so); endmodule
module BC_OE(input di, si, sh, ck, tk, up, m, output do, so, inout oe); endmodule
module BC_BI(input di, sp, si, sh, ck, tk, up, m, output do, sy, so); endmodule
module BC_CTL(input di, si, sh, ck, tk, up, m, r, output do, so); endmodule
module BC_COE(input di, si, sh, ck, tk, up, output do, so, oe); endmodule
module BC_MI(input di, si, sh, ck, tk, up, output uo, so); endmodule
module BC_MO(input di, si, sh, ck, tk, up, output uo, so); endmodule
module BC_MX(input di, si, sh, ck, tk, up, m, output uo, so); endmodule
module BC_MB(input di, sp, md, si, sh, ck, tk, up, output uo, sy, so); endmodule
module BC_X(input di, si, sh, ck, tk, x1, x2, output do, so); endmodule
module BS_1(input PAD, si, output C, so); endmodule
module BC_1(input di, si, sh, tk, output do, so); endmodule
module BC_2(input di, si, ck, tk, output so); endmodule
module BC_BAD(input si, sh, ck, tk, output so); endmodule
// A TAP that a design may hold already.
module oldtap(input tdi, tms, tck, last, output tdo, first, shift, clock, update, mode1, mode2, rst, hz); endmodule
