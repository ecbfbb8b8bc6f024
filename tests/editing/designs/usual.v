module chip(input a, output y, output z, inout b, input ck);
wire c, q, en, bc, open;
IBUF pa(.PAD(a), .C(c)); OBUF py(.I(q), .PAD(y));
TBUF pz(.I(q), .OEN(en), .PAD(z)); BBUF pb(.I(q), .OEN(en), .PAD(b), .C(bc));
FF f(.D(c), .CK(ck), .Q(q)); FF e(.D(bc), .CK(ck), .Q(en));
endmodule
