// 1 P1 ain *
// 2 P2 y *
// 3 P3 tdi *
// 4 P4 tms *
// 5 P5 tck *
// 6 P6 ck *
// 7 P7 tdo *
module pads(input a, output y, input tms, tck, output tdo,
  output a_c, input y_i, output tck_c, input tdo_c);
IBUF pa(.PAD(a), .C(a_c));
OBUF py(.I(y_i), .PAD(y));
IBUF pm(.PAD(tms)); IBUF pc(.PAD(tck), .C(tck_c));
TBUF po(.I(tdo_c), .OEN(1'b0), .PAD(tdo));
endmodule
module BB(input i, output o); INV g(.A(i), .Z(o)); endmodule
module CC(input i, output o); INV g(.A(i), .Z(o)); endmodule
module AA(input a, output y, input tms, tck, output tdo, output a_c, input y_i, input tdo_c2, output bo);
wire tck_c; 
pads p(.a(a), .y(y), .tms(tms), .tck(tck), .tdo(tdo), .a_c(a_c), .y_i(y_i), .tck_c(tck_c), .tdo_c(tdo_c2));
BB B(.i(y_i), .o(bo));
endmodule
module chip(input ain, output y, inout b, input tdi, tms, tck, output tdo, input ck);
wire a_c, y_i, ck_c, tdi_c, tdo_c, bo, co;
IBUF pck(.PAD(ck), .C(ck_c)); IBUF pi(.PAD(tdi), .C(tdi_c));
AA A(.a(ain), .y(y), .tms(tms), .tck(tck), .tdo(tdo), .a_c(a_c), .y_i(y_i), .tdo_c2(tdo_c), .bo(bo));
CC C(.i(bo), .o(co));
FF u1(.D(a_c), .CK(ck_c), .Q(y_i)); FF u2(.D(co), .CK(ck_c));
BBUF pb(.I(y_i), .OEN(co), .PAD(b));
endmodule
