module pads(input a, output y, input tdi, tms, tck, output tdo, output a_c, input y_i, output tdi_c, input tdo_c);
IBUF pa(.PAD(a), .C(a_c));
OBUF py(.I(y_i), .PAD(y));
IBUF pi(.PAD(tdi), .C(tdi_c)); IBUF pm(.PAD(tms)); IBUF pc(.PAD(tck));
TBUF po(.I(tdo_c), .OEN(1'b0), .PAD(tdo));
endmodule
module B(input i, input tdi_b, output o, output tdo_b);
INV g(.A(i), .Z(o)); tapm tap(.TDI(tdi_b), .TDO(tdo_b), .BC_LAST(1'b0));
endmodule
module A(input i, input tdi_a, output o, output tdo_a); B b(.i(i), .o(o), .tdi_b(tdi_a), .tdo_b(tdo_a)); endmodule
module chip(input a, output y, input tdi, tms, tck, output tdo, input ck);
wire a_c, y_i, ck_c, tdi_c, tdo_c, n;
IBUF pck(.PAD(ck), .C(ck_c));
pads p(.a(a), .y(y), .tdi(tdi), .tms(tms), .tck(tck), .tdo(tdo), .a_c(a_c), .y_i(y_i), .tdi_c(tdi_c), .tdo_c(tdo_c));
A top_a(.i(a_c), .o(n), .tdi_a(tdi_c), .tdo_a(tdo_c));
FF u1(.D(n), .CK(ck_c), .Q(y_i));
endmodule
