// 1 A a *
// 2 B b *
// 6 TDI tdi *
// 10 TDO tdo *
// 9 CK ck *
module pa(input p, output k, input tdi, output t); IBUF i(.PAD(p), .C(k)); IBUF j(.PAD(tdi), .C(t)); endmodule
module pb(input p, output k, input d, output tdo); wire g; IBUF i(.PAD(p), .C(k)); INV n(.A(d), .Z(g));
OBUF po(.I(g), .PAD(tdo)); endmodule
module chip(input a, b, ck, tdi, output tdo); wire v, w, t; pa ua(.p(a), .k(v), .tdi(tdi), .t(t));
pb ub(.p(b), .k(w), .d(t), .tdo(tdo)); FF f(.D(v), .CK(ck)); FF g(.D(w), .CK(ck)); endmodule
