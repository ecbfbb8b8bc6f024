// 1 A a *
// 2 Z z *
// 9 CK ck *
module pads(input a, output c, input q, output z); IBUF pa(.PAD(a), .C(c)); TBUF pz(.I(q), .OEN(1'b0), .PAD(z));
endmodule
module L1(input a, output c, input q, output z); pads p(.a(a), .c(c), .q(q), .z(z)); endmodule
module L2(input a, output c, input q, output z); L1 l(.a(a), .c(c), .q(q), .z(z)); endmodule
module chip(input a, output z, input ck); wire c, q; L2 k(.a(a), .c(c), .q(q), .z(z));
FF f(.D(c), .CK(ck), .Q(q)); endmodule
