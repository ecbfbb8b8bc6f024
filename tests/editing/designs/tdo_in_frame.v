// 1 PA a *
// 2 PB b *
// 3 CK ck *
// 4 TDO tdo *
module ring(output q, input d); wire n, m; INV x(.A(n)); INV y(.A(m)); TBUF po(.I(DATA), .OEN(ENABLE), .PAD(q)); endmodule
module frame(output q, input d); ring r(.q(q), .d(FRAME_PIN)); endmodule
module pa(input p, output k); IBUF i(.PAD(p), .C(k)); endmodule
module chip(input a, b, ck, output tdo); wire u, v, w; pa x(.p(a), .k(u)); IBUF i(.PAD(b), .C(w));
frame fr(.q(tdo), .d(TOP_PIN)); FF f(.D(w), .CK(ck), .Q(v)); FF g(.D(u), .CK(ck)); endmodule
