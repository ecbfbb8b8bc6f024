// 1 A a *
// 9 CK ck *
module chip(input a, ck); wire c; MUXI pa(.PAD(a), .C(c)); FF f(.D(c), .CK(ck));
tapm TAP(.BC_LAST(1'b1)); endmodule
