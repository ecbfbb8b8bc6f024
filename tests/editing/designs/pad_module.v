// 1 A a *
// 2 Y y *
// 8 TCK tck *
// 6 TDI tdi *
// 10 TDO tdo *
// 9 CK ck *
module pads(input a, output c, input q, output y); IBUF pa(.PAD(a), .C(c)); OBUF py(.I(q), .PAD(y)); endmodule
module io(input tdi, output ti, input to, te, output tdo); IBUF pi(.PAD(tdi), .C(ti));
TBUF po(.I(to), .OEN(te), .PAD(tdo)); endmodule
module chip(input a, output y, input ck, tck, tdi, output tdo); wire c, q, k;
pads p(.a(a), .c(c), .q(q), .y(y)); IBUF pk(.PAD(tck), .C(k)); io x(.tdi(tdi), .tdo(tdo));
FF f(.D(c), .CK(ck), .Q(q)); endmodule
