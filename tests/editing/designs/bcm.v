// 1 PA a *
// 2 PN n IN
// 3 Y y *
// 4 Z0 z0 *
// 5 Z1 z1 *
// 6 PB b *
// 7 CK ck *
// 8 TDI tdi *
// 10 TDO tdo *
module chip(input a, n, output y, z0, z1, inout b, c1, input ck, tdi, output tdo);
wire av, nv, yv, ev, zv, bv, bo, cv, co, ckv;
IBUF pa(.PAD(a), .C(av)); IBUF pn(.PAD(n), .C(nv)); OBUF py(.I(yv), .PAD(y));
TBUF pz0(.I(zv), .OEN(ev), .PAD(z0)); TBUF pz1(.I(yv), .OEN(ev), .PAD(z1));
BBUF pb(.I(bo), .OEN(ev), .PAD(b), .C(bv));
IBUF pck(.PAD(ck), .C(ckv)); IBUF pi(.PAD(tdi)); TBUF po(.I(1'b0), .OEN(1'b1), .PAD(tdo));
FF f(.D(av), .CK(ckv), .Q(yv)); FF g(.D(nv), .CK(ckv), .Q(ev)); FF h(.D(bv), .CK(ckv), .Q(bo));
FF k(.D(av), .CK(ckv), .Q(zv)); endmodule
