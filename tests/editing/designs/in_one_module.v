// 1 A a *
// 6 TDI tdi *
// 9 CK ck *
module pads(input a, output k, input tdi, output t); IBUF i(.PAD(a), .C(k)); IBUF j(.PAD(tdi), .C(t));
endmodule
module chip(input a, tdi, ck); wire c, t; INV g(.A(t));
pads p(.a(a), .k(c), .tdi(tdi), .t(t)); FF f(.D(c), .CK(ck)); endmodule
