// 1 A a *
// 6 TDI tdi *
// 7 TMS tms *
// 8 TCK tck *
// 10 TDO tdo *
// 9 CK ck *
module B(input i, k, s, output o); tapm t(.TDI(i), .TCK(k), .TMS(s), .TDO(o), .BC_LAST(1'b0)); endmodule
module pads(input a, output c); IBUF pa(.PAD(a), .C(c)); endmodule
module chip(input a, tdi, tck, tms, ck, output tdo); wire c, i, m, k, o; pads p(.a(a), .c(c));
FF f(.D(c), .CK(ck)); IBUF pi(.PAD(tdi), .C(i)); IBUF pm(.PAD(tms), .C(m)); IBUF pc(.PAD(tck), .C(k));
OBUF po(.I(o), .PAD(tdo)); B b(.i(i), .k(k), .s(m), .o(o)); endmodule
