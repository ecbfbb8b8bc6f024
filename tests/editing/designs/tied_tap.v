// 1 A a *
// 9 CK ck *
module M(input g, l); tapm t(.clockDR(l), .mode1(g), .xtra(g), .BC_FIRST(l), .BC_LAST(l)); endmodule
module chip(input a, ck); wire c; IBUF pa(.PAD(a), .C(c)); FF f(.D(c), .CK(ck));
M m(.g(1'b0), .l(1'b1)); endmodule
