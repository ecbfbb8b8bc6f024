// 1 P1 a *
// 2 P2 y *
// 3 P3 z0 *
// 4 P4 z1 *
// 5 P5 b *
// 6 P6 tdi *
// 7 P7 tms *
// 8 P8 tck *
// 9 P9 ck *
// 10 P10 tdo *
module B(input i, output o); INV g(.A(i), .Z(o)); endmodule
module A(input i, output o); wire w; B b(.i(i), .o(w)); INV g(.A(w), .Z(o)); endmodule
module chip(input a, output y, output z0, output z1, inout b, input tdi, tms, tck, output tdo, input ck);
wire a_c, u1z, y_i, u3z, u4q, u5z, b_c, u6z, u8q, u7z, ck_c, tdi_c, tms_c, tck_c, tdo_i, tdo_en;
IBUF pa(.PAD(a), .C(a_c)); A top_a(.i(a_c), .o(u1z));
IBUF pck(.PAD(ck), .C(ck_c));
FF u2(.D(u1z), .CK(ck_c), .Q(y_i)); OBUF py(.I(y_i), .PAD(y));
FF u3(.D(u1z), .CK(ck_c), .Q(u3z)); FF u4(.D(u1z), .CK(ck_c), .Q(u4q));
TBUF pz0(.I(u3z), .OEN(u4q), .PAD(z0));
FF u5(.D(u7z), .CK(ck_c), .Q(u5z));
TBUF pz1(.I(u5z), .OEN(u4q), .PAD(z1));
FF u6(.D(u7z), .CK(ck_c), .Q(u6z)); FF u8(.D(u7z), .CK(ck_c), .Q(u8q));
BBUF pb(.I(u6z), .OEN(u8q), .PAD(b), .C(b_c)); INV u7(.A(b_c), .Z(u7z));
IBUF pi(.PAD(tdi), .C(tdi_c)); IBUF pm(.PAD(tms), .C(tms_c)); IBUF pc(.PAD(tck), .C(tck_c));
TBUF po(.I(tdo_i), .OEN(tdo_en), .PAD(tdo));
endmodule
