module pads(input a, output y, input tms, tck, output tdo, input tdi_c, output a_c, input y_i);
wire tms_c, tms_t, tdo_t, tdo_c;
IBUF pa(.PAD(a), .C(a_c));
OBUF py(.I(y_i), .PAD(y));
IBUF pm(.PAD(tms), .C(tms_c)); IBUF pc(.PAD(tck));
INV m1(.A(tms_c), .Z(tms_t)); INV t1(.A(tdo_t), .Z(tdo_c));
TBUF po(.I(tdo_c), .OEN(1'b0), .PAD(tdo));
tapm tap(.TDI(tdi_c), .TMS(tms_t), .TDO(tdo_t), .BC_LAST(1'b1));
endmodule
module chip(input a, output y, input tdi, tms, tck, output tdo, input ck);
wire a_c, y_i, ck_c, tdi_c;
IBUF pck(.PAD(ck), .C(ck_c)); IBUF pi(.PAD(tdi), .C(tdi_c));
pads p(.a(a), .y(y), .tms(tms), .tck(tck), .tdo(tdo), .a_c(a_c), .y_i(y_i), .tdi_c(tdi_c));
FF u1(.D(a_c), .CK(ck_c), .Q(y_i));
endmodule
