module chip(input a, input ck, input tdi, tms, tck, output tdo);
wire a_c, ck_c, tdi_c, tms_c, tck_c, tdo_i, tdo_en;
IBUF pa(.PAD(a), .C(a_c)); IBUF pck(.PAD(ck), .C(ck_c)); FF u1(.D(a_c), .CK(ck_c));
IBUF pi(.PAD(tdi), .C(tdi_c)); IBUF pm(.PAD(tms), .C(tms_c)); IBUF pc(.PAD(tck), .C(tck_c));
TBUF po(.I(tdo_i), .OEN(tdo_en), .PAD(tdo));
tapm TAP(.TDI(tdi_c), .TMS(tms_c), .TCK(tck_c), .TDO(tdo_i), .TDO_EN(tdo_en), .BC_LAST(1'b0));
endmodule
