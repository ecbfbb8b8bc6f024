// 1 P1 a *
// 2 P2 y *
// 3 P3 b *
// 4 P4 tdi *
// 5 P5 tms *
// 6 P6 tck *
// 7 P7 ck *
// 8 P8 tdo *
module pads(input a, output y, inout b, input tdi, tms, tck, output tdo,
  output a_c, input y_i, output b_c, input b_o, input b_en, output tdi_c, output tck_c, input tdo_c);
IBUF pa(.PAD(a), .C(a_c));
OBUF py(.I(y_i), .PAD(y));
BBUF pb(.I(b_o), .OEN(b_en), .PAD(b), .C(b_c));
IBUF pi(.PAD(tdi), .C(tdi_c)); IBUF pm(.PAD(tms)); IBUF pc(.PAD(tck), .C(tck_c));
TBUF po(.I(tdo_c), .OEN(1'b0), .PAD(tdo));
endmodule
module chip(input a, output y, inout b, input tdi, tms, tck, output tdo, input ck);
wire a_c, y_i, b_c, b_o, b_en, ck_c, tdi_c, tck_c, tdo_c;
IBUF pck(.PAD(ck), .C(ck_c));
pads p(.a(a), .y(y), .b(b), .tdi(tdi), .tms(tms), .tck(tck), .tdo(tdo), .a_c(a_c), .y_i(y_i), .b_c(b_c), .b_o(b_o), .b_en(b_en), .tdi_c(tdi_c), .tck_c(tck_c), .tdo_c(tdo_c));
tapm TAP(.TDI(tdi_c), .TCK(tck_c), .TDO(tdo_c), .BC_LAST(1'b0));
FF u1(.D(a_c), .CK(ck_c), .Q(y_i)); FF u2(.D(b_c), .CK(ck_c), .Q(b_o)); FF u3(.D(b_c), .CK(ck_c), .Q(b_en));
endmodule
