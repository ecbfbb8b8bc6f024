// 1 PA a *
// 2 PD d *
// 3 PB b *
// 4 PE e *
// 5 CK ck *
/* Both parents have a child of one name and class too. */
module low(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule
module mid(input p, r, output k, m); IBUF i(.PAD(r), .C(m)); low u(.p(p), .k(k)); endmodule
module chip(input a, b, d, e, ck); wire v, w, x, z; mid m(.p(a), .r(b), .k(v), .m(w));
mid n(.p(d), .r(e), .k(x), .m(z)); FF f(.D(v), .CK(ck)); FF g(.D(w), .CK(ck));
FF h(.D(x), .CK(ck)); FF j(.D(z), .CK(ck)); endmodule
