// 1 A a *
// 2 Y y *
// 10 TDO tdo *
// 9 CK ck *
module pa(input a, output c); IBUF p(.PAD(a), .C(c)); endmodule
module py(input i, output y); OBUF p(.I(i), .PAD(y)); endmodule
module io(input t, e, output tdo); TBUF po(.I(t), .OEN(e), .PAD(tdo)); endmodule
module chip(input a, ck, output y, tdo); wire c, q; pa u(.a(a), .c(c)); py v(.i(q), .y(y));
FF f(.D(c), .CK(ck), .Q(q)); io x(.t(q), .e(1'b0), .tdo(tdo)); endmodule
