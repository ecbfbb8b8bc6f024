// 1 P1 a *
// 2 P2 -n *
// 3 P3 y * PAD(OBUF)
// 4 P4 y2 *
// 5 P5 tdi *
// 6 P6 tms *
// 7 P7 tck *
// 8 P8 ck *
// 9 P9 tdo *
module chip(input a, input n, output y, output y2, inout b, input ck, input tdi);
wire u1z, u2q;
INV u1(.A(a), .Z(u1z)); INV u9(.A(n));
FF u2(.D(u1z), .CK(ck), .Q(y));
INV u7(.A(b)); INV u8(.A(tdi));
FF u3(.D(a), .CK(ck), .Q(y2));
endmodule
