// 1 PA a *
// 2 PB b *
// 3 PE e *
// 4 Y y *
// 5 CK ck *
module low(input p, input o, output q, output k); IBUF i(.PAD(p), .C(k)); OBUF j(.I(o), .PAD(q)); endmodule
module mid(input p, r, input o, output q, output k, m); IBUF i(.PAD(r), .C(m));
low u(.p(p), .o(o), .q(q), .k(k)); endmodule
module chip(input a, b, e, output y, input ck); wire v, w, x, z;
mid m(.p(a), .r(b), .o(z), .q(y), .k(v), .m(w)); IBUF i(.PAD(e), .C(x));
FF f(.D(v), .CK(ck), .Q(z)); FF g(.D(w), .CK(ck)); FF h(.D(x), .CK(ck)); endmodule
